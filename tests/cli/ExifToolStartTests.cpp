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
    ScopedEnvironment path{"PATH", tools.path().string() + ":" +
                                       (std::getenv("PATH") ? std::getenv("PATH") : "/usr/bin:/bin")};

    void SetUp() override {
        writeText(tools / "exiftool", "#!/bin/sh\necho \"$$\" >> '" + (tools / "starts").string() +
                                          "'\nexec /usr/bin/exiftool \"$@\"\n");
        fs::permissions(tools / "exiftool", fs::perms::owner_all);
    }

    // The ExifTool processes started so far, by id; none may outlive its command.
    std::vector<std::string> starts() const {
        std::ifstream in(tools / "starts");
        std::vector<std::string> ids;
        for (std::string line; std::getline(in, line);) {
            ids.push_back(line);
            EXPECT_FALSE(fs::exists("/proc/" + line + "/cmdline") &&
                         !readText("/proc/" + line + "/cmdline").empty());
        }
        return ids;
    }
};

TEST_F(ExifToolStarts, SetReadsAndWritesThroughOneExifToolThatEndsWithTheCommand) {
    const auto photo = makeJPEG(folder / "photo.jpg");
    cliOK({"set", "EXIF:Artist=Once", "--", photo.string()});
    EXPECT_EQ(exifToolValue(photo, "EXIF:Artist"), "Once");
    EXPECT_EQ(starts().size(), 1u);
}

TEST_F(ExifToolStarts, ReadStartsTheProcessesItsBatchIsSplitAcrossAndNoMore) {
    // One process for a file; for a batch large enough to be split, one per share (two here, or
    // one on a single processor).
    const auto photo = makeJPEG(folder / "photo.jpg");
    cliOK({"read", "--json", photo.string()});
    EXPECT_EQ(starts().size(), 1u);
    std::vector<std::string> arguments = {"read", "--json"};
    for (int i = 0; i < 40; ++i)
        arguments.push_back(makeJPEG(folder / ("batch" + std::to_string(i) + ".jpg")).string());
    cliOK(arguments);
    EXPECT_EQ(starts().size(), 1u + std::min(2u, std::max(1u, std::thread::hardware_concurrency())));
}

} // namespace
