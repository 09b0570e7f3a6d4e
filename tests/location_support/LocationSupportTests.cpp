// The location library: items equal by value (so equal selections and lists post nothing), moves
// by index sets with their edition, the file form with the thirteen location keys, and the
// storage beside the user defaults.

#include "corvane/location_support/AddressLookup.hpp"
#include "corvane/location_support/GeoNamesGeocoder.hpp"
#include "corvane/location_support/LocationFile.hpp"
#include "corvane/location_support/LocationManager.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/tag_editor/EXIFAccessor.hpp"
#include "corvane/tag_editor/IPTCAccessor.hpp"
#include "corvane/tag_editor/QuickTimeAccessor.hpp"
#include "corvane/tag_editor/XMPAccessor.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "support/EditorFixtures.hpp"
#include "support/Names.hpp"
#include "support/NoteRecorder.hpp"
#include "support/ScratchDefaults.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <mutex>
#include <thread>

namespace corvane {
namespace {

using Recorder = test::NoteRecorder;

using Manager = LocationManager;

LocationItemRef place(const std::string& name, double latitude = 48.8566, double longitude = 2.3522) {
    return LocationItem::create(name, Location(latitude, longitude));
}

using test::names;

TEST(LocationLibraryTest, EqualPlacesAreNoChangeAndMovesGoByIndexSets) {
    auto paris = place("Paris"), twin = place("Paris");
    const std::hash<LocationItem> hash;
    EXPECT_TRUE(*paris == *twin && hash(*paris) == hash(*twin));
    EXPECT_NE(*paris, *place("Paris", 48.8566, 2.35));
    EXPECT_EQ(hash(*place("Zero", 0.0, 0.0)), hash(*place("Zero", -0.0, 0.0)));

    Recorder info(LocationItem::didChangeInfoNotification);
    paris->setName("Paris");
    paris->setLocation(twin->location());
    EXPECT_TRUE(info.notes.empty());
    paris->modifyLocation([](Location& location) { location.setCity("Paris"); });
    ASSERT_EQ(info.notes.size(), 1u);
    EXPECT_EQ(info.notes[0].sender(), paris.get());

    auto manager = Manager::create();
    Recorder items(Manager::didChangeItemsNotification);
    manager->setSelectedItem(nullptr);
    manager->setSelectedItem(twin);
    manager->setSelectedItem(place("Paris"));
    manager->insertItems({twin, place("Lyon")}, 0);
    manager->setItems({place("Paris"), place("Lyon")});
    EXPECT_EQ(items.each(&Manager::itemEdition),
              (std::vector<std::optional<Manager::ItemEdition>>{Manager::ReloadSelection{},
                                                                Manager::InsertItems{{0, 1}}}))
        << "an equal selection and an equal list post nothing";
    manager->setSelectedItem(nullptr);
    EXPECT_EQ(Manager::itemEdition(items.notes.back()), Manager::ItemEdition(Manager::ReloadSelection{}));
    auto ordered = Manager::create();
    ordered->insertItems({place("A"), place("B"), place("C"), place("D"), place("E")}, 0);
    Recorder moves(Manager::didChangeItemsNotification);
    ordered->moveItems({}, 0); // posts nothing: the editions below don't list it
    ordered->moveItems({0, 2}, 4);
    EXPECT_EQ(names(ordered->items()), (std::vector<std::string>{"B", "D", "A", "C", "E"}));
    // Other targets are the index moves' own test (ArrayMoves).
    ordered->removeItems({0, 4});
    EXPECT_EQ(moves.each(&Manager::itemEdition),
              (std::vector<std::optional<Manager::ItemEdition>>{Manager::MoveItems{{0, 2}, 4},
                                                                Manager::RemoveItems{{0, 4}}}));
    EXPECT_EQ(names(ordered->items()), (std::vector<std::string>{"D", "A", "C"}));
}

TEST(LocationLibraryTest, FileFormAndStorageBesideTheDefaults) {
    Location full(-33.8688, 151.2093);
    full.setAltitude(-4.5);
    full.setStamp(Date(1700000000));
    full.setCity("Sydney");
    full.setCountryCode("AU");
    const LocationFile file("Trips", {LocationItem::create("Opera", full), place("Paris")});
    const auto read = LocationFile::fromJSONData(file.jsonData());
    EXPECT_EQ(read, file) << file.jsonData();

    EXPECT_THROW(LocationFile::fromJSONData(R"({"description":"x"})"), LocationFile::DecodingError);
    EXPECT_EQ(
        LocationFile::fromJSONData(nlohmann::json::parse(file.jsonData())["items"].dump()).items().size(), 2u)
        << "a bare array of places";

    test::ScratchDefaults defaults;
    auto manager = Manager::create();
    manager->setItems(file.items());
    manager->saveToDefaults();
    // The storage itself (owner-only file, fallback under the key) is the keyword library's test.
    EXPECT_TRUE(std::filesystem::exists(defaults.folder / "QRVLocations.data"));
    auto loaded = Manager::create();
    loaded->loadFromDefaults();
    EXPECT_TRUE(equalItems(loaded->items(), file.items()));
    Recorder items(Manager::didChangeItemsNotification);
    loaded->loadFromDefaults();
    EXPECT_TRUE(items.notes.empty()) << "equal places reloaded are no change";
}

// Address look-ups: the offline GeoNames geocoder on known cities, the shared geocoder, and the
// completion of an editor's place from one family's position or address.

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
