// How many ExifTool programs a command starts: `corvane set` reads and writes through one process,
// which ends with the command.
#include "cli/CliRun.hpp"
#include "support/SampleFiles.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>
#include <thread>

namespace {

using namespace corvane::test;

// Puts first in PATH an "exiftool" that notes each start of ExifTool, then runs the real one.
class ExifToolStarts : public CliTest {
protected:
    TemporaryFolder tools{"corvane-cli-tools"};
    std::optional<std::string> savedPath;

    void SetUp() override {
        const fs::path script = tools / "exiftool";
        std::ofstream(script) << "#!/bin/sh\necho \"$$\" >> '" << (tools / "starts").string()
                              << "'\nexec /usr/bin/exiftool \"$@\"\n";
        fs::permissions(script, fs::perms::owner_all);
        if (const char* path = std::getenv("PATH")) savedPath = path;
        ::setenv("PATH", (tools.path().string() + ":" + savedPath.value_or("/usr/bin:/bin")).c_str(), 1);
    }
    void TearDown() override { savedPath ? ::setenv("PATH", savedPath->c_str(), 1) : ::unsetenv("PATH"); }

    // The ExifTool processes started so far, by id.
    std::vector<std::string> starts() const {
        std::ifstream in(tools / "starts");
        std::vector<std::string> ids;
        for (std::string line; std::getline(in, line);)
            ids.push_back(line);
        return ids;
    }
};

TEST_F(ExifToolStarts, SetReadsAndWritesThroughOneExifToolThatEndsWithTheCommand) {
    const auto photo = makeJPEG(folder / "photo.jpg");
    const auto run = corvane::test::corvane({"set", "EXIF:Artist=Once", "--", photo.string()}, scratch);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(exifToolValue(photo, "EXIF:Artist"), "Once");
    const auto ids = starts();
    ASSERT_EQ(ids.size(), 1u);
    // The command's ExifTool didn't outlive it.
    EXPECT_FALSE(fs::exists("/proc/" + ids.front() + "/cmdline") &&
                 !readText("/proc/" + ids.front() + "/cmdline").empty());
}

TEST_F(ExifToolStarts, ReadStartsTheProcessesItsBatchIsSplitAcrossAndNoMore) {
    // One process for a file; for a batch large enough to be split, one per share (two here, or
    // one on a single processor).
    const auto photo = makeJPEG(folder / "photo.jpg");
    auto run = corvane::test::corvane({"read", "--json", photo.string()}, scratch);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(starts().size(), 1u);
    std::vector<std::string> arguments = {"read", "--json"};
    for (int i = 0; i < 40; ++i)
        arguments.push_back(makeJPEG(folder / ("batch" + std::to_string(i) + ".jpg")).string());
    run = corvane::test::corvane(arguments, scratch);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(starts().size(), 1u + std::min(2u, std::max(1u, std::thread::hardware_concurrency())));
    for (const auto& id : starts())
        EXPECT_FALSE(fs::exists("/proc/" + id + "/cmdline") && !readText("/proc/" + id + "/cmdline").empty());
}

} // namespace
