// Photos profiles: the single-key JSON form of every value kind, the file form with its older root,
// notifications only on real changes, and the manager's editions and storage beside the defaults.

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/MainQueue.hpp"
#include "corvane/helpers/SingleKeyCoding.hpp"
#include "corvane/photos_scripting/PhotosAppExporter.hpp"
#include "corvane/photos_scripting/PhotosAppRemote.hpp"
#include "corvane/photos_scripting/PhotosRemoteManager.hpp"
#include "corvane/photos_scripting/PhotosRemoteProfileFile.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "corvane/value_models/GregorianCalendar.hpp"
#include "support/Names.hpp"
#include "support/NoteRecorder.hpp"
#include "support/ScratchDefaults.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <thread>

namespace corvane {
namespace {

using Profile = PhotosRemoteProfile;
using Manager = PhotosRemoteManager;
using json = nlohmann::ordered_json;
using Recorder = test::NoteRecorder;
using Runner = PhotosScriptRunner;

PhotosRemoteProfileRef fullProfile() {
    auto profile = Profile::create("Trip", "Summer");
    profile->setFilenameValue(Profile::Custom{"IMG"});
    profile->setKeywordsValue(Profile::Keywords{{"sea", "sun"}});
    profile->setDescriptionValue(Profile::Description{"At the beach"});
    profile->setDateTimeValue(Profile::DateTime{Date(978307200 + 86400.5)});
    profile->setLocationValue(Profile::Coordinates{48.8566, -2.5});
    return profile;
}

using test::names;

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

// The scripts sent to the Photos application, to the character, and their runs through a stand-in
// script host that records what it was given and answers as the real one does.

const std::string loopHead = "tell application \"Photos\" \n"
                             "  activate \n"
                             "  set images to (get selection) \n"
                             " \n"
                             "  if images is {} then \n"
                             "    error \"Please select an image in Photos.app\" \n"
                             "  end if \n"
                             " \n"
                             "  repeat with image in images \n";
const std::string loopTail = "  end repeat \nend tell \n";

// The host's message of a failed run, or "no error".
std::string message(const std::optional<Runner::ErrorInfo>& error) {
    return error ? error->at(std::string(Runner::errorMessageKey)) : "no error";
}

TEST(PhotosScriptTest, RemoteScriptOfEveryValueKindAndExporterScriptPaddedToItsColumns) {
    auto profile = Profile::create("All");
    EXPECT_EQ(PhotosAppRemote(0, profile).generateScript(), "delay 0 \n \n" + loopHead + loopTail)
        << "no value to set: an empty loop, and the delay line even for 0";

    profile->setFilenameValue(Profile::Custom{"Don't \"say\" C:\\"});
    profile->setKeywordsValue(Profile::Keywords{{"sea", "O'Brien", "\"quoted\""}});
    profile->setDescriptionValue(Profile::Description{"It's \"here\""});
    const auto date = GregorianCalendar::date(DateComponents::fromFields(2021, 7, 14, 9, 5, 3));
    ASSERT_TRUE(date);
    profile->setDateTimeValue(Profile::DateTime{*date});
    profile->setLocationValue(Profile::Coordinates{48.8566, -2.0});
    EXPECT_EQ(PhotosAppRemote(5, profile).generateScript(),
              "delay 5 \n \n" + loopHead +
                  "    set curFilename to \"Dont say C:\\\\\" \n"
                  "    set the name of image to curFilename \n"
                  "    set curKeywords to {\"sea\", \"OBrien\", \"quoted\"} \n"
                  "    set the keywords of image to curKeywords \n"
                  "    set curDescription to \"Its here\" \n"
                  "    set the description of image to curDescription \n"
                  "    set curDate to the current date \n"
                  "    set the year of curDate to 2021 \n"
                  "    set the month of curDate to 7 \n"
                  "    set the day of curDate to 14 \n"
                  "    set the hours of curDate to 9 \n"
                  "    set the minutes of curDate to 5 \n"
                  "    set the seconds of curDate to 3 \n"
                  "    set the date of image to curDate \n"
                  "    set curLocation to {48.8566, -2.0} \n"
                  "    set the location of image to curLocation \n" +
                  loopTail);

    profile->setFilenameValue(Profile::UseOriginalName{});
    profile->setKeywordsValue(Profile::Keywords{});
    const auto script = PhotosAppRemote(1, profile).generateScript();
    EXPECT_NE(script.find("    set curFilename to the filename of image as text \n"
                          "    set the name of image to curFilename \n"
                          "    set curKeywords to {} \n"),
              std::string::npos)
        << script;
    const PhotosAppExporter exporter(3, {"/photos/a.jpg", "/photos/say \"b\".jpg"});
    const std::string blanks40(40, ' ');
    EXPECT_EQ(exporter.generateScript(), "tell application \"Photos\"" + std::string(13, ' ') + "\n" +
                                             "  activate" + std::string(30, ' ') + "\n" + "end tell" +
                                             std::string(32, ' ') + "\n" + blanks40 + "\n" + "delay 3" +
                                             std::string(21, ' ') + "\n" + blanks40 + "\n" +
                                             "tell application \"Photos\"" + std::string(13, ' ') + "\n" +
                                             "  set filenames to { POSIX file \"/photos/a.jpg\", POSIX file "
                                             "\"/photos/say \\\"b\\\".jpg\" }   \n" +
                                             "  import filenames" + std::string(22, ' ') + "\n" + "end tell" +
                                             std::string(32, ' ') + "\n");
}

// A stand-in for the script host: a real program that records its standard input and behaves as
// `body` says.
class StandInHost {
public:
    explicit StandInHost(const std::string& body) {
        const auto program = folder_ / "host";
        writeFileAtomically(
            program, "#!/bin/sh\ncat > '" + (folder_ / "received").string() + "'\n" + body + "\n", 0700);
        previous_ = Runner::shared();
        Runner::setShared(Runner(program, std::chrono::milliseconds(3000)));
    }
    ~StandInHost() { Runner::setShared(previous_); }
    std::string received() const { return readFileBytes(folder_ / "received"); }

private:
    test::TemporaryFolder folder_;
    std::optional<Runner> previous_;
};

TEST(PhotosScriptTest, RunnerSendsTheScriptAndReadsTheHostsErrors) {
    auto profile = Profile::create("Keywords");
    profile->setKeywordsValue(Profile::Keywords{{"sea"}});
    const PhotosAppRemote remote(0, profile);
    {
        StandInHost host("exit 0");
        EXPECT_EQ(remote.perform(), std::nullopt);
        EXPECT_EQ(host.received(), remote.generateScript());
    }
    {
        StandInHost host(
            "echo 'some warning' >&2\n"
            "echo '-:151:192: execution error: Please select an image in Photos.app (-2700)' >&2\n"
            "exit 1");
        const auto error = remote.perform();
        EXPECT_EQ(message(error), "Please select an image in Photos.app");
        EXPECT_EQ(error->at(std::string(Runner::errorNumberKey)), "-2700");
        EXPECT_EQ(error->at(std::string(Runner::errorRangeKey)), "151:192");
    }
    {
        StandInHost host("echo 'it broke (badly)' >&2; exit 3");
        const auto error = PhotosAppExporter(0, {"/a.jpg"}).perform();
        EXPECT_EQ(message(error), "it broke (badly)");
        EXPECT_FALSE(error->count(std::string(Runner::errorNumberKey)));
    }
    {
        StandInHost host("exit 4");
        EXPECT_EQ(message(remote.perform()), "The script host ended with status 4");
    }
}

TEST(PhotosScriptTest, RunnerFailuresAndAbsenceAreReported) {
    const auto previous = Runner::shared();
    const PhotosAppRemote remote(0, Profile::create("None"));

    Runner::setShared(std::nullopt);
    EXPECT_EQ(remote.perform(), std::nullopt) << "without a script host nothing runs and nothing is reported";

    Runner::setShared(Runner("/nonexistent/host"));
    EXPECT_NE(message(remote.perform()).find("/nonexistent/host"), std::string::npos);

    // A host that never ends is stopped at its time limit, which the script's delay extends.
    test::TemporaryFolder folder;
    writeFileAtomically(folder / "slow", "#!/bin/sh\nexec sleep 30\n", 0700);
    Runner::setShared(Runner(folder / "slow", std::chrono::milliseconds(200)));
    const auto start = std::chrono::steady_clock::now();
    const auto error = PhotosAppRemote(1, Profile::create("Slow")).perform();
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_NE(message(error).find("did not end"), std::string::npos);
    EXPECT_GE(took, std::chrono::milliseconds(1200));
    EXPECT_LT(took, std::chrono::seconds(10));
    Runner::setShared(previous);
}

TEST(PhotosScriptTest, BackgroundRunAnswersOnTheMainQueue) {
    StandInHost host("echo '-:1:2: execution error: Photos got an error (-1728)' >&2; exit 1");
    std::optional<std::optional<Runner::ErrorInfo>> answer;
    bool onMain = false;
    PhotosAppExporter(0, {"/a.jpg"}).performInBackground([&](std::optional<Runner::ErrorInfo> error) {
        onMain = MainQueue::shared().isMainThread();
        answer = std::move(error);
    });
    ASSERT_TRUE(MainQueue::shared().runUntil([&] { return answer.has_value(); }, std::chrono::seconds(10)));
    EXPECT_TRUE(onMain);
    EXPECT_EQ(message(*answer), "Photos got an error");
}

} // namespace
} // namespace corvane
