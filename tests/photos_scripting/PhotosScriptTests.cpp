// The scripts sent to the Photos application, to the character, and their runs through a stand-in
// script host that records what it was given and answers as the real one does.

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/MainQueue.hpp"
#include "corvane/photos_scripting/PhotosAppExporter.hpp"
#include "corvane/photos_scripting/PhotosAppRemote.hpp"
#include "corvane/value_models/GregorianCalendar.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <chrono>

namespace corvane {
namespace {

using Profile = PhotosRemoteProfile;
using Runner = PhotosScriptRunner;

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
