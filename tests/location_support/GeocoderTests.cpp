// Address look-ups: the offline GeoNames geocoder on known cities, the shared geocoder, and the
// completion of an editor's place from one family's position or address.

#include "corvane/location_support/AddressLookup.hpp"
#include "corvane/location_support/GeoNamesGeocoder.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/tag_editor/EXIFAccessor.hpp"
#include "corvane/tag_editor/IPTCAccessor.hpp"
#include "corvane/tag_editor/QuickTimeAccessor.hpp"
#include "corvane/tag_editor/XMPAccessor.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "support/EditorFixtures.hpp"

#include <gtest/gtest.h>

#include <mutex>
#include <thread>

namespace corvane {
namespace {

using test::editorWith;

class GeoNamesTest : public testing::Test {
protected:
    void SetUp() override {
        if (!GeoNamesGeocoder::isAvailable() || GeoNamesGeocoder::prepare() == 0)
            GTEST_SKIP() << "built without the GeoNames cities database";
    }
    GeoNamesGeocoder geocoder;
};

TEST_F(GeoNamesTest, ReverseGivesTheNearestCityWithinReach) {
    auto paris = geocoder.reverseGeocode(Coordinate(48.853, 2.3499)); // Notre-Dame
    ASSERT_TRUE(paris);
    EXPECT_EQ(paris->city(), "Paris");
    EXPECT_EQ(paris->countryCode(), "FR");
    EXPECT_EQ(paris->timeZone(), "Europe/Paris");

    auto sydney = geocoder.reverseGeocode(Coordinate(-33.8688, 151.2093));
    ASSERT_TRUE(sydney);
    EXPECT_EQ(sydney->countryCode(), "AU");
    EXPECT_EQ(sydney->timeZone(), "Australia/Sydney");

    auto antimeridian = geocoder.reverseGeocode(Coordinate(-18.14, 178.44)); // Suva, Fiji
    ASSERT_TRUE(antimeridian);
    EXPECT_EQ(antimeridian->countryCode(), "FJ");

    EXPECT_FALSE(geocoder.reverseGeocode(Coordinate(0, -140))) << "mid-Pacific is far from every city";
    EXPECT_TRUE(GeoNamesGeocoder(1e8).reverseGeocode(Coordinate(0, -140))) << "unless the reach is unlimited";
}

TEST_F(GeoNamesTest, ForwardMatchesNamesAndPrefersTheNamedStateOrCountry) {
    auto paris = geocoder.geocodeAddress("Paris, Île-de-France, France");
    ASSERT_TRUE(paris);
    EXPECT_EQ(paris->countryCode(), "FR");
    EXPECT_NEAR(paris->coordinate().latitude().value(), 48.85, 0.1);

    auto texas = geocoder.geocodeAddress("Paris, Texas");
    ASSERT_TRUE(texas);
    EXPECT_EQ(texas->countryCode(), "US");
    EXPECT_EQ(texas->state(), "Texas");

    auto zurich = geocoder.geocodeAddress("zürich");
    ASSERT_TRUE(zurich);
    EXPECT_EQ(zurich->countryCode(), "CH");

    auto words = geocoder.geocodeAddress("San Francisco California United States");
    ASSERT_TRUE(words);
    EXPECT_EQ(words->city(), "San Francisco");

    EXPECT_FALSE(geocoder.geocodeAddress("Qxzzyplk"));
    EXPECT_FALSE(geocoder.geocodeAddress("  ,, "));
}

TEST_F(GeoNamesTest, LookupsRunFromManyThreads) {
    std::vector<std::thread> threads;
    std::mutex mutex;
    int found = 0;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < 50; ++i)
                if (geocoder.reverseGeocode(Coordinate(48.85 + t * 0.01, 2.35 + i * 0.001))) {
                    std::lock_guard lock(mutex);
                    ++found;
                }
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(found, 200);
}

// A geocoder with fixed answers, to check what the completion does with them.
class FixedGeocoder : public Geocoder {
public:
    std::optional<PlaceMark> reverseGeocode(const Coordinate& coordinate) const override {
        reverseAsked = coordinate;
        return PlaceMark(Coordinate(45.76, 4.84), "Lyon", "Auvergne-Rhône-Alpes", "France", "FR",
                         "Europe/Paris");
    }
    std::optional<PlaceMark> geocodeAddress(std::string_view address) const override {
        addressAsked = std::string(address);
        if (address.find("Nowhere") != std::string_view::npos) return std::nullopt;
        return PlaceMark(Coordinate(41.9, 12.5), "Rome", "Lazio", "Italy", "IT");
    }
    mutable std::optional<Coordinate> reverseAsked;
    mutable std::string addressAsked;
};

TEST(AddressLookupTest, ReverseKeepsTheFamilysFixAndForwardTakesTheAddresssPosition) {
    auto geocoder = std::make_shared<FixedGeocoder>();
    auto editor = editorWith({{&TagItem::itemEXIFGPSLatitude(), "45.75"},
                              {&TagItem::itemEXIFGPSLongitude(), "4.85"},
                              {&TagItem::itemEXIFGPSAltitude(), "170"}});
    AddressLookup lookup(geocoder);
    EXPECT_FALSE(lookup.autocompleteUsingXMPCoordinate(*editor)) << "no XMP position";
    ASSERT_TRUE(lookup.autocompleteUsingEXIFCoordinate(*editor));
    EXPECT_EQ(geocoder->reverseAsked, Coordinate(45.75, 4.85));
    EXPECT_EQ(EXIFAccessor(*editor).exifGPSCoordinate(), Coordinate(45.75, 4.85));
    EXPECT_DOUBLE_EQ(EXIFAccessor(*editor).exifGPSAltitude()->value(), 170) << "the altitude stays";
    EXPECT_EQ(IPTCAccessor(*editor).iptcCity(), "Lyon");
    EXPECT_EQ(XMPAccessor(*editor).xmpCountryCode(), "FR");
    EXPECT_EQ(XMPAccessor(*editor).xmpGPSCoordinate(), Coordinate(45.75, 4.85));
    auto movie =
        editorWith({{&TagItem::itemXMPCity(), "Rome"}, {&TagItem::itemXMPCountry(), "Italy"}}, "/m/clip.mov");
    EXPECT_FALSE(lookup.autocompleteUsingIPTCAddress(*movie));
    const std::string address = XMPAccessor(*movie).xmpTextLocation()->formattedAddress();
    ASSERT_TRUE(lookup.autocompleteUsingXMPAddress(*movie));
    EXPECT_EQ(geocoder->addressAsked, address);
    EXPECT_EQ(QuickTimeAccessor(*movie).quicktimeGPSCoordinate(), Coordinate(41.9, 12.5));
    EXPECT_EQ(XMPAccessor(*movie).xmpLocationState(), "Lazio");

    auto nowhere = editorWith({{&TagItem::itemIPTCCity(), "Nowhere"}});
    EXPECT_FALSE(lookup.autocompleteUsingIPTCAddress(*nowhere));
    EXPECT_FALSE(nowhere->isEdited());
    EXPECT_FALSE(AddressLookup(nullptr).autocompleteUsingIPTCAddress(*nowhere));
}

TEST(GeocoderSharedTest, HostCanReplaceTheProcessGeocoderAndPlaceMarksBecomeLocations) {
    auto before = Geocoder::shared();
    EXPECT_EQ(before != nullptr, GeoNamesGeocoder::isAvailable());
    auto fixed = std::make_shared<FixedGeocoder>();
    Geocoder::setShared(fixed);
    EXPECT_EQ(Geocoder::shared(), fixed);
    Geocoder::setShared(before);
    PlaceMark mark(Coordinate(41.9, 12.5), "Rome", " ", "Italy", "IT", "Europe/Rome", "Colosseum");
    TextLocation text = textLocationFromPlaceMark(mark);
    EXPECT_EQ(text.placeName(), "Colosseum");
    EXPECT_FALSE(text.state()) << "blank fields are absent";
    Location location = locationFromPlaceMark(mark);
    EXPECT_EQ(location.coordinate(), Coordinate(41.9, 12.5));
    EXPECT_EQ(location.city(), "Rome");
    EXPECT_EQ(location.countryCode(), "IT");
    EXPECT_FALSE(location.altitude());
}

} // namespace
} // namespace corvane
