// `corvane photos-script`, run as the built program: the script of the chosen profile is printed,
// and with --run it goes to the script host (here a stand-in program that records what it gets).
#include "cli/CliRun.hpp"
#include "corvane/photos_scripting/PhotosRemoteProfileFile.hpp"

#include <gtest/gtest.h>

#include <fstream>

namespace {

using namespace corvane::test;

using Profile = corvane::PhotosRemoteProfile;

class PhotosScriptCommands : public CliTest {
protected:
    // Two profiles, "Sea" and "City"; the file's path.
    fs::path writeProfiles() {
        auto sea = Profile::create("Sea");
        sea->setKeywordsValue(Profile::Keywords{{"sea"}});
        auto city = Profile::create("City");
        city->setDescriptionValue(Profile::Description{"Streets"});
        const auto path = folder / "profiles.json";
        corvane::PhotosRemoteProfileFile({}, {sea, city}).exportTo(path);
        return path;
    }
    // A script host that records its input, writes `errorLine` to standard error and exits with
    // `status`.
    fs::path writeHost(const std::string& errorLine, int status) {
        const auto path = folder / "host";
        std::ofstream(path) << "#!/bin/sh\ncat > '" << (folder / "received").string() << "'\n"
                            << (errorLine.empty() ? "" : "echo '" + errorLine + "' >&2\n") << "exit "
                            << status << "\n";
        fs::permissions(path, fs::perms::owner_all);
        return path;
    }
};

TEST_F(PhotosScriptCommands, RemotePrintsOrRunsTheChosenProfile) {
    const auto profiles = writeProfiles().string();
    auto printed = cliOK({"photos-script", "remote", profiles, "--profile", "Sea", "--delay", "2"});
    EXPECT_THAT(printed.out, StartsWith("delay 2 \n \ntell application \"Photos\" \n"));
    EXPECT_THAT(printed.out, HasSubstr("    set curKeywords to {\"sea\"} \n"));
    EXPECT_THAT(printed.out, Not(HasSubstr("curDescription")));

    EXPECT_EQ(cliExits(2, {"photos-script", "remote", profiles}).err,
              "corvane: " + profiles + ": 2 profiles: choose one with --profile\n");
    cliExits(1, {"photos-script", "remote", profiles, "--profile", "Moon"});
    writeText(folder / "broken.json", R"({"profiles": [{"name": "x"}]})");
    EXPECT_THAT(cliExits(1, {"photos-script", "remote", (folder / "broken.json").string()}).err,
                StartsWith("corvane: " + (folder / "broken.json").string() + ": "));

    EXPECT_EQ(cliOK({"photos-script", "remote", profiles, "--profile", "City", "--run", "--host",
                     writeHost("", 0).string()})
                  .out,
              "");
    EXPECT_EQ(fileBytes(folder / "received"),
              cli({"photos-script", "remote", profiles, "--profile", "City"}).out);

    EXPECT_EQ(
        cliExits(
            1,
            {"photos-script", "remote", profiles, "--profile", "City", "--run", "--host",
             writeHost("-:1:9: execution error: Please select an image in Photos.app (-2700)", 1).string()})
            .err,
        "corvane: Photos: Please select an image in Photos.app (-2700)\n");
}

TEST_F(PhotosScriptCommands, ImportTakesFullPathsOfFilesThatAreThere) {
    writeText(folder / "a.jpg", "x");
    auto printed = cli({"photos-script", "import", "a.jpg"}, folder.path());
    EXPECT_EQ(printed.exitCode, 0) << printed.err;
    EXPECT_THAT(printed.out,
                HasSubstr("  set filenames to { POSIX file \"" + (folder / "a.jpg").string() + "\" }   \n"));

    auto missing = cli({"photos-script", "import", "a.jpg", "gone.jpg"}, folder.path());
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.err, "corvane: gone.jpg: not a file\n");
    EXPECT_EQ(missing.out, "") << "no script for part of the files";
}

} // namespace
