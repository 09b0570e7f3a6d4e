// The preset library: identity of presets and groups, the notifications of every change (and of
// none for a change that changes nothing), the manager's append and selection rules, the file form
// with its older shapes, and the round trip through the user defaults.

#include "corvane/preset_support/Identified.hpp"
#include "corvane/preset_support/PresetFile.hpp"
#include "corvane/preset_support/PresetManager.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/utilities/FileError.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "support/NoteRecorder.hpp"
#include "support/ScratchDefaults.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sys/stat.h>

namespace corvane {
namespace {

using json = nlohmann::ordered_json;

PresetItemRef preset(const std::string& name, const std::string& artist = "Jane") {
    return PresetItem::create(name, "",
                              {{TagItem::itemEXIFArtist().name(), PresetEdition::useCustomValue(artist)}});
}

using Recorder = test::NoteRecorder;

TEST(PresetItemTest, ChangesPostWhatChangedAndGroupsAndPresetsAreEqualOnlyToThemselves) {
    auto item = preset("Travel");
    Recorder info(PresetItem::didChangeInfoNotification);
    Recorder entries(PresetItem::didChangeEntriesNotification);

    item->setName("Travel");
    item->setDetail("");
    item->setEntries(item->entries());
    item->insertEntries({}, 0);
    item->removeEntries({});
    EXPECT_TRUE(info.notes.empty());
    EXPECT_TRUE(entries.notes.empty());

    item->setName("Holidays");
    ASSERT_EQ(info.notes.size(), 1u);
    EXPECT_EQ(info.notes[0].object<PresetItem>(), item);

    const PresetItemEntry keep(TagItem::itemEXIFImageDescription().name(), PresetEdition::keepCurrentValue());
    item->insertEntries({keep, keep}, 0);
    item->removeEntries({0, 2});
    item->modifyEntries([](auto& list) { list.pop_back(); });
    EXPECT_EQ(entries.each(&PresetItem::entryEdition),
              (std::vector<std::optional<PresetItem::EntryEdition>>{PresetItem::InsertEntries{{0, 1}},
                                                                    PresetItem::RemoveEntries{{0, 2}},
                                                                    PresetItem::ReloadEntries{}}));
    EXPECT_TRUE(item->entries().empty()) << "the kept entry and then the Artist entry are gone";
    EXPECT_FALSE(PresetItem::entryEdition(info.notes[0]));
    // A group's list works as a preset's (its insertions are the manager's test), but holds presets
    // by identity: a fresh copy with equal contents is another preset, so this is a change.
    auto group = PresetGroup::create("Mine", "", {preset("A")});
    Recorder presets(PresetGroup::didChangePresetsNotification);
    group->setPresets({preset("A")});
    EXPECT_EQ(presets.each(&PresetGroup::presetEdition),
              std::vector<std::optional<PresetGroup::PresetEdition>>{PresetGroup::ReloadPresets{}});

    auto box = Identified<int>::create(7);
    EXPECT_EQ(box->copy()->value(), 7);
    EXPECT_NE(*box->copy(), *box);
}

TEST(PresetManagerTest, AppendSelectAndRemove) {
    auto manager = PresetManager::create();
    Recorder groups(PresetManager::didChangeGroupsNotification);
    Recorder presets(PresetGroup::didChangePresetsNotification);

    auto first = preset("First");
    manager->appendPresetItem(first);
    ASSERT_EQ(manager->groups().size(), 1u);
    EXPECT_EQ(manager->groups()[0]->name(), "") << "a new unnamed group holds the first preset";
    EXPECT_EQ(manager->groups()[0]->presets(), std::vector<PresetItemRef>{first});
    ASSERT_EQ(groups.notes.size(), 1u);
    EXPECT_EQ(groups.notes[0].sender(), manager.get());
    EXPECT_EQ(PresetManager::groupEdition(groups.notes[0]),
              PresetManager::GroupEdition(PresetManager::InsertGroups{{0}}));

    manager->insertGroups({PresetGroup::create("Second", "", {})}, 1);
    manager->appendPresetItem(preset("Next"));
    EXPECT_EQ(manager->groups()[1]->presets().size(), 1u) << "appended to the last group";
    ASSERT_EQ(presets.notes.size(), 1u);
    EXPECT_EQ(presets.notes[0].sender(), manager->groups()[1].get());
    EXPECT_EQ(PresetGroup::presetEdition(presets.notes[0]),
              PresetGroup::PresetEdition(PresetGroup::InsertPresets{{0}}));

    groups.notes.clear();
    manager->selectItem(first);
    manager->selectItem(first);
    EXPECT_EQ(manager->selectedItems(), std::vector<EquatableObjectRef>{first});
    manager->selectItem(Identified<int>::create(1));
    EXPECT_TRUE(manager->selectedItems().empty()) << "only groups and presets can be selected";
    manager->selectItem(nullptr);
    ASSERT_EQ(groups.notes.size(), 2u) << "selecting the same item again or nothing twice posts nothing";
    EXPECT_EQ(PresetManager::groupEdition(groups.notes[1]),
              PresetManager::GroupEdition(PresetManager::ReloadSelection{}));

    manager->removeGroups({0});
    ASSERT_EQ(manager->groups().size(), 1u);
    EXPECT_EQ(manager->groups()[0]->name(), "Second");
    EXPECT_EQ(PresetManager::groupEdition(groups.notes.back()),
              PresetManager::GroupEdition(PresetManager::RemoveGroups{{0}}));
}

TEST(PresetFileTest, WritesTheCurrentFormAndOpensOlderShapes) {
    const PresetFile file(std::nullopt,
                          {PresetGroup::create("Trips", "on the road", {preset("Sea", "Ann")})});
    const json written = json::parse(file.jsonData());
    EXPECT_EQ(written.dump(),
              R"({"description":"","groups":[{"name":"Trips","detail":"on the road","presets":)"
              R"([{"name":"Sea","detail":"","entries":[{"tag_name":"EXIF:Artist","edition":)"
              R"({"type":"use_custom_value","settings":{"value":"Ann","insertion":"replace"}}}]}]}]})");
    EXPECT_NE(file.jsonData().find("\n  \"groups\""), std::string::npos) << "pretty-printed";

    const PresetFile back = PresetFile::fromJSONData(file.jsonData());
    EXPECT_EQ(back.description(), std::string()) << "an absent description comes back empty";
    ASSERT_EQ(back.groups().size(), 1u);
    EXPECT_EQ(back.groups()[0]->toJSON(), file.groups()[0]->toJSON());
    EXPECT_NE(back.groups()[0], file.groups()[0]) << "new objects";

    const std::string groups = written["groups"].dump();
    auto bareGroups = PresetFile::fromJSONData(groups);
    EXPECT_FALSE(bareGroups.description());
    ASSERT_EQ(bareGroups.groups().size(), 1u);
    EXPECT_EQ(bareGroups.groups()[0]->name(), "Trips");

    auto barePresets = PresetFile::fromJSONData(written["groups"][0]["presets"].dump());
    ASSERT_EQ(barePresets.groups().size(), 1u);
    EXPECT_EQ(barePresets.groups()[0]->toJSON(),
              PresetGroup::create("", "", file.groups()[0]->presets())->toJSON());

    for (const char* bad : {R"({"groups":[{"name":"no presets"}]})", "[1]", "{"})
        EXPECT_THROW(PresetFile::fromJSONData(bad), PresetFile::DecodingError) << bad;

    test::TemporaryFolder folder;
    file.exportTo(folder / "presets.json");
    EXPECT_EQ(PresetFile::fromJSONURL(folder / "presets.json").groups()[0]->name(), "Trips");
    struct stat info {};
    ASSERT_EQ(::stat((folder / "presets.json").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u) << "readable by its owner only";
    EXPECT_THROW(PresetFile::fromJSONURL(folder / "missing.json"), FileError);
    EXPECT_THROW(PresetFile::fromJSONURL(folder.path()), FileError) << "a folder";
}

TEST(PresetManagerTest, DefaultsRoundTripMakesNewObjects) {
    test::ScratchDefaults defaults;
    auto manager = PresetManager::create();
    manager->loadFromDefaults();
    EXPECT_TRUE(manager->groups().empty()) << "nothing stored yet";
    manager->appendPresetItem(preset("Keep"));
    manager->saveToDefaults();
    const auto before = manager->groups();

    Recorder groups(PresetManager::didChangeGroupsNotification);
    manager->loadFromDefaults();
    EXPECT_EQ(groups.each(&PresetManager::groupEdition),
              std::vector<std::optional<PresetManager::GroupEdition>>{PresetManager::ReloadGroups{}});
    ASSERT_EQ(manager->groups().size(), 1u);
    EXPECT_NE(manager->groups()[0], before[0]);
    EXPECT_EQ(manager->groups()[0]->presets()[0]->name(), "Keep");

    // A library that can't be read leaves the groups alone.
    KitSettings::shared().userDefaults()->set(std::string(PresetManager::presetsUserDefaultsKey),
                                              nlohmann::json::parse(R"({"groups": 3})"));
    const auto loaded = manager->groups();
    EXPECT_THROW(manager->loadFromDefaults(), std::exception);
    EXPECT_EQ(manager->groups(), loaded);
}

} // namespace
} // namespace corvane
