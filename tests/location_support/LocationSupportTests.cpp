// The location library: items equal by value (so equal selections and lists post nothing), moves
// by index sets with their edition, the file form with the thirteen location keys, and the
// storage beside the user defaults.

#include "corvane/location_support/LocationFile.hpp"
#include "corvane/location_support/LocationManager.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "support/NoteRecorder.hpp"
#include "support/ScratchDefaults.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace corvane {
namespace {

using Recorder = test::NoteRecorder;

using Manager = LocationManager;

LocationItemRef place(const std::string& name, double latitude = 48.8566, double longitude = 2.3522) {
    return LocationItem::create(name, Location(latitude, longitude));
}

std::vector<std::string> names(const std::vector<LocationItemRef>& items) {
    std::vector<std::string> list;
    for (const auto& item : items)
        list.push_back(item->name());
    return list;
}

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
    ordered->moveItems({}, 0);
    EXPECT_TRUE(moves.notes.empty()) << "an empty move posts nothing";

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

} // namespace
} // namespace corvane
