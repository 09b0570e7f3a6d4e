// `corvane photos-script`, run as the built program: the script of the chosen profile is printed,
// and with --run it goes to the script host (here a stand-in program that records what it gets).
#include "cli/CliRun.hpp"
#include "corvane/photos_scripting/PhotosRemoteProfileFile.hpp"

#include <gtest/gtest.h>

#include <fstream>

namespace {

using namespace corvane::test;
using corvane::test::corvane;

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
    auto printed =
        corvane({"photos-script", "remote", profiles, "--profile", "Sea", "--delay", "2"}, scratch);
    ASSERT_EQ(printed.exitCode, 0) << printed.err;
    EXPECT_TRUE(printed.out.starts_with("delay 2 \n \ntell application \"Photos\" \n")) << printed.out;
    EXPECT_NE(printed.out.find("    set curKeywords to {\"sea\"} \n"), std::string::npos) << printed.out;
    EXPECT_EQ(printed.out.find("curDescription"), std::string::npos) << "only the chosen profile's values";

    auto ambiguous = corvane({"photos-script", "remote", profiles}, scratch);
    EXPECT_EQ(ambiguous.exitCode, 2);
    EXPECT_EQ(ambiguous.err, "corvane: " + profiles + ": 2 profiles: choose one with --profile\n");
    EXPECT_EQ(corvane({"photos-script", "remote", profiles, "--profile", "Moon"}, scratch).exitCode, 1);
    std::ofstream(folder / "broken.json") << R"({"profiles": [{"name": "x"}]})";
    auto broken = corvane({"photos-script", "remote", (folder / "broken.json").string()}, scratch);
    EXPECT_EQ(broken.exitCode, 1);
    EXPECT_TRUE(broken.err.starts_with("corvane: " + (folder / "broken.json").string() + ": ")) << broken.err;

    auto ran = corvane({"photos-script", "remote", profiles, "--profile", "City", "--run", "--host",
                        writeHost("", 0).string()},
                       scratch);
    ASSERT_EQ(ran.exitCode, 0) << ran.err;
    EXPECT_EQ(ran.out, "");
    const auto city = corvane({"photos-script", "remote", profiles, "--profile", "City"}, scratch).out;
    EXPECT_EQ(readText(folder / "received"), city);

    auto refused = corvane(
        {"photos-script", "remote", profiles, "--profile", "City", "--run", "--host",
         writeHost("-:1:9: execution error: Please select an image in Photos.app (-2700)", 1).string()},
        scratch);
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err, "corvane: Photos: Please select an image in Photos.app (-2700)\n");
}

TEST_F(PhotosScriptCommands, ImportTakesFullPathsOfFilesThatAreThere) {
    std::ofstream(folder / "a.jpg") << "x";
    auto printed = corvane({"photos-script", "import", "a.jpg"}, scratch, folder.path());
    ASSERT_EQ(printed.exitCode, 0) << printed.err;
    EXPECT_NE(
        printed.out.find("  set filenames to { POSIX file \"" + (folder / "a.jpg").string() + "\" }   \n"),
        std::string::npos)
        << printed.out;

    auto missing = corvane({"photos-script", "import", "a.jpg", "gone.jpg"}, scratch, folder.path());
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.err, "corvane: gone.jpg: not a file\n");
    EXPECT_EQ(missing.out, "") << "no script for part of the files";
}

} // namespace
