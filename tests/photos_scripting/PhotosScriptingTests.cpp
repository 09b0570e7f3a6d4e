// Photos profiles: the single-key JSON form of every value kind, the file form with its older root,
// notifications only on real changes, and the manager's editions and storage beside the defaults.

#include "corvane/helpers/SingleKeyCoding.hpp"
#include "corvane/photos_scripting/PhotosRemoteManager.hpp"
#include "corvane/photos_scripting/PhotosRemoteProfileFile.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "support/NoteRecorder.hpp"
#include "support/ScratchDefaults.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <thread>

namespace corvane {
namespace {

using Profile = PhotosRemoteProfile;
using Manager = PhotosRemoteManager;
using json = nlohmann::ordered_json;
using Recorder = test::NoteRecorder;

PhotosRemoteProfileRef fullProfile() {
    auto profile = Profile::create("Trip", "Summer");
    profile->setFilenameValue(Profile::Custom{"IMG"});
    profile->setKeywordsValue(Profile::Keywords{{"sea", "sun"}});
    profile->setDescriptionValue(Profile::Description{"At the beach"});
    profile->setDateTimeValue(Profile::DateTime{Date(978307200 + 86400.5)});
    profile->setLocationValue(Profile::Coordinates{48.8566, -2.5});
    return profile;
}

std::vector<std::string> names(const std::vector<PhotosRemoteProfileRef>& profiles) {
    std::vector<std::string> list;
    for (const auto& p : profiles)
        list.push_back(p->name());
    return list;
}

TEST(PhotosProfileTest, EveryValueKindHasItsSingleKeyForm) {
    const auto none = Profile::create("Blank");
    EXPECT_EQ(none->toJSON(), json::parse(R"({"name":"Blank","description":"",
        "filename_value":{"none":{}},"keywords_value":{"none":{}},"description_value":{"none":{}},
        "dateTime_value":{"none":{}},"location_value":{"none":{}}})"));

    const auto full = fullProfile()->toJSON();
    EXPECT_EQ(full, json::parse(R"({"name":"Trip","description":"Summer",
        "filename_value":{"custom":{"_0":"IMG"}},"keywords_value":{"keywords":{"_0":["sea","sun"]}},
        "description_value":{"description":{"_0":"At the beach"}},"dateTime_value":{"dateTime":{"_0":86400.5}},
        "location_value":{"coordinates":{"_0":48.8566,"_1":-2.5}}})"));
    auto original = Profile::create("Original");
    original->setFilenameValue(Profile::UseOriginalName{});
    EXPECT_EQ(original->toJSON()["filename_value"], json::parse(R"({"useOriginalName":{}})"));

    // Read back, every value is the same.
    for (const auto& profile : {fullProfile(), original, none})
        EXPECT_EQ(Profile::fromJSON(profile->toJSON())->toJSON(), profile->toJSON());

    // Zero or two keys, an unknown case, a case without its value, a missing key: all refused.
    auto broken = [&](const char* key, const char* value) {
        json j = full;
        j[key] = json::parse(value);
        return j;
    };
    // The single-key reader's texts are the multi-valued string's test.
    for (const auto& [key, value] : {std::pair{"filename_value", R"({"none":{},"custom":{"_0":"x"}})"},
                                     {"keywords_value", "{}"},
                                     {"location_value", R"({"place":{}})"},
                                     {"location_value", R"({"coordinates":{"_0":1}})"},
                                     {"dateTime_value", R"({"dateTime":{"_0":"today"}})"}})
        EXPECT_THROW(Profile::fromJSON(broken(key, value)), SingleKeyCoding::TypeMismatch) << value;
    json missing = full;
    missing.erase("description");
    EXPECT_THROW(Profile::fromJSON(missing), nlohmann::json::exception);
}

TEST(PhotosProfileTest, FileFormReadsOlderRootsAndRefusesOthers) {
    const PhotosRemoteProfileFile file(std::nullopt, {fullProfile(), Profile::create("Blank")});
    const auto written = json::parse(file.jsonData());
    EXPECT_EQ(written.begin().key(), "description");
    EXPECT_EQ(written["description"], "") << "an absent description is written as the empty text";

    const auto read = PhotosRemoteProfileFile::fromJSONData(file.jsonData());
    EXPECT_EQ(names(read.profiles()), (std::vector<std::string>{"Trip", "Blank"}));

    const auto older = PhotosRemoteProfileFile::fromJSONData(written["profiles"].dump());
    EXPECT_FALSE(older.description());
    EXPECT_EQ(names(older.profiles()), (std::vector<std::string>{"Trip", "Blank"}));

    EXPECT_THROW(PhotosRemoteProfileFile::fromJSONData(R"({"description":"x"})"),
                 PhotosRemoteProfileFile::DecodingError);
    EXPECT_THROW(PhotosRemoteProfileFile::fromJSONData(R"({"profiles":[{"name":"x"}]})"),
                 PhotosRemoteProfileFile::DecodingError);
    json unknown = written;
    unknown["profiles"][0]["location_value"] = json::parse(R"({"address":{}})");
    EXPECT_THAT(
        [&] { PhotosRemoteProfileFile::fromJSONData(unknown.dump(), "profiles.json"); },
        testing::ThrowsMessage<PhotosRemoteProfileFile::DecodingError>(testing::HasSubstr("profiles.json")));
}

TEST(PhotosProfileTest, ProfilesAndTheManagerPostOnlyRealChanges) {
    auto manager = Manager::create();
    auto a = Profile::create("A"), b = Profile::create("B"), c = Profile::create("C");
    Recorder notes(Manager::didChangeProfilesNotification);
    auto editions = [&] {
        std::vector<Manager::ProfileEdition> list;
        for (const auto& note : notes.notes) {
            EXPECT_EQ(note.sender(), manager.get());
            list.push_back(*Manager::profileEdition(note));
        }
        notes.notes.clear();
        return list;
    };

    manager->insertProfiles({}, 0);
    manager->removeProfiles({});
    manager->removeProfiles({4});
    manager->moveProfiles({}, 0);
    manager->setProfiles({});
    manager->setSelectedProfiles({});
    EXPECT_TRUE(editions().empty()) << "changes that change nothing post nothing";

    manager->insertProfiles({a, c}, 0);
    manager->insertProfiles({b}, 1);
    manager->moveProfiles({2}, 0);
    manager->removeProfiles({1, 7});
    EXPECT_EQ(names(manager->profiles()), (std::vector<std::string>{"C", "B"}));
    EXPECT_EQ(editions(), (std::vector<Manager::ProfileEdition>{
                              Manager::InsertProfiles{{0, 1}}, Manager::InsertProfiles{{1}},
                              Manager::MoveProfiles{{2}, 0}, Manager::RemoveProfiles{{1}}}));

    manager->selectProfile(b);
    manager->selectProfile(b);
    manager->setSelectedProfiles({b});
    manager->setProfiles({c, b});
    manager->setProfiles({Profile::create("C"), b});
    EXPECT_EQ(editions(),
              (std::vector<Manager::ProfileEdition>{Manager::ReloadSelection{}, Manager::ReloadProfiles{}}))
        << "lists compare by identity";
    EXPECT_EQ(manager->selectedProfiles(), std::vector<PhotosRemoteProfileRef>{b});
    auto profile = fullProfile();
    Recorder info(Profile::didChangeInfoNotification);
    Recorder values(Profile::didChangeValuesNotification);
    profile->setName("Trip");
    profile->setLocationValue(Profile::Coordinates{48.8566, -2.5});
    EXPECT_TRUE(info.notes.empty());
    EXPECT_TRUE(values.notes.empty());
    profile->setName("Holiday");
    profile->setFilenameValue(Profile::None{});
    profile->setDateTimeValue(Profile::DateTime{Date(0)});
    ASSERT_EQ(info.notes.size(), 1u);
    EXPECT_EQ(info.notes[0].sender(), profile.get());
    EXPECT_EQ(values.notes.size(), 2u);
}

TEST(PhotosProfileTest, ManagerListsTakeChangesFromSeveralThreads) {
    auto manager = Manager::create();
    auto work = [&] {
        for (int i = 0; i < 200; ++i) {
            manager->insertProfiles({Profile::create("P")}, 0);
            manager->selectProfile(manager->profiles().front());
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(manager->profiles().size(), 400u);
    EXPECT_EQ(manager->selectedProfiles().size(), 1u);
}

// Where and how the library is stored (owner-only file, fallback under the key, a damaged file that
// changes nothing) is the shared defaults storage's, checked with the keyword library; here, that
// the profiles go there and come back whole.
TEST(PhotosProfileTest, ManagerKeepsItsLibraryBesideTheDefaults) {
    test::ScratchDefaults defaults;
    auto manager = Manager::create();
    manager->loadFromDefaults();
    EXPECT_TRUE(manager->profiles().empty()) << "nothing stored leaves the library as it is";
    manager->insertProfiles({fullProfile(), Profile::create("Blank")}, 0);
    manager->saveToDefaults();
    EXPECT_TRUE(std::filesystem::exists(defaults.folder / "QRVPhotosAppRemoteProfiles.data"));

    auto loaded = Manager::create();
    Recorder notes(Manager::didChangeProfilesNotification);
    loaded->loadFromDefaults();
    EXPECT_EQ(names(loaded->profiles()), (std::vector<std::string>{"Trip", "Blank"}));
    EXPECT_EQ(loaded->profiles()[0]->toJSON(), manager->profiles()[0]->toJSON());
    EXPECT_EQ(notes.each(&Manager::profileEdition),
              std::vector<std::optional<Manager::ProfileEdition>>{Manager::ReloadProfiles{}});
}

} // namespace
} // namespace corvane
