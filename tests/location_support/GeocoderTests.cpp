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

// A place as "city, state, country code, zone", "-" for an absent field, or "none".
std::string described(const std::optional<PlaceMark>& place) {
    if (!place) return "none";
    std::string text;
    for (const auto* field : {&place->city(), &place->state(), &place->countryCode(), &place->timeZone()})
        text += (text.empty() ? "" : ", ") + field->value_or("-");
    return text;
}

TEST_F(GeoNamesTest, ReverseGivesTheNearestCityWithinReach) {
    EXPECT_EQ(described(geocoder.reverseGeocode(Coordinate(48.853, 2.3499))),
              "Paris, Île-de-France Region, FR, Europe/Paris");
    EXPECT_EQ(described(geocoder.reverseGeocode(Coordinate(-33.8688, 151.2093))),
              "Sydney, New South Wales, AU, Australia/Sydney");
    EXPECT_EQ(described(geocoder.reverseGeocode(Coordinate(-18.14, 178.44))),
              "Suva, Central, FJ, Pacific/Fiji")
        << "across the antimeridian";
    EXPECT_FALSE(geocoder.reverseGeocode(Coordinate(0, -140))) << "mid-Pacific is far from every city";
    EXPECT_TRUE(GeoNamesGeocoder(1e8).reverseGeocode(Coordinate(0, -140))) << "unless the reach is unlimited";
}

TEST_F(GeoNamesTest, ForwardMatchesNamesAndPrefersTheNamedStateOrCountry) {
    auto paris = geocoder.geocodeAddress("Paris, Île-de-France, France");
    ASSERT_TRUE(paris);
    EXPECT_EQ(described(paris), "Paris, Île-de-France Region, FR, Europe/Paris");
    EXPECT_NEAR(paris->coordinate().latitude().value(), 48.85, 0.1);
    EXPECT_EQ(described(geocoder.geocodeAddress("Paris, Texas")), "Paris, Texas, US, America/Chicago");
    EXPECT_EQ(described(geocoder.geocodeAddress("zürich")), "Zurich, Canton of Zurich, CH, Europe/Zurich");
    EXPECT_EQ(described(geocoder.geocodeAddress("San Francisco California United States")),
              "San Francisco, California, US, America/Los_Angeles");
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

TEST(GeocoderSharedTest, TheProcessGeocoderIsGeoNamesAndPlaceMarksBecomeLocations) {
    EXPECT_EQ(Geocoder::shared() != nullptr, GeoNamesGeocoder::isAvailable());
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
