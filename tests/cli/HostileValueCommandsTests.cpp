// `corvane set` with values that the converters read but no file should get, and positions that
// once made the parser run for minutes: each is refused, naming the tag, and the file stays as it
// was.

#include "cli/CliRun.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace {

using namespace corvane::test;
using corvane::test::corvane;

using HostileValueCommands = CliTest;

TEST_F(HostileValueCommands, NonFiniteNumbersAndRunawayPositionsAreRefusedQuicklyByTag) {
    const auto jpeg = makeJPEG(folder / "a.jpg");
    const std::string before = readText(jpeg);
    for (const auto& [assignment, tag] : {std::pair{"EXIF:ExposureTime=inf", "EXIF:ExposureTime"},
                                          {"EXIF:ExposureTime=nan", "EXIF:ExposureTime"},
                                          {"EXIF:ISO=1e999", "EXIF:ISO"},
                                          {"EXIF:ISO=infinity", "EXIF:ISO"}}) {
        const auto run = corvane({"set", assignment, jpeg.string()}, scratch);
        EXPECT_NE(run.exitCode, 0) << assignment;
        EXPECT_NE(run.err.find(tag), std::string::npos) << run.err;
    }
    const auto start = std::chrono::steady_clock::now();
    for (const std::string& position : {"10 00 10.4" + std::string(40, ' ') + ".0   N",
                                        std::string(320, '9') + ", 1", std::string(4096, ' ') + "1"}) {
        const auto run = corvane({"set", "--location", position, jpeg.string()}, scratch);
        EXPECT_NE(run.exitCode, 0) << run.err;
    }
    // Over 100 s for the first of them before; three runs of the program take well under 10.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_EQ(readText(jpeg), before);
}

} // namespace
