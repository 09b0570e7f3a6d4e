// `corvane --engine`: the same commands through the in-process engine or through ExifTool.
#include "cli/CliRun.hpp"
#include "support/SampleFiles.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using namespace corvane::test;
using corvane::test::corvane;

using EngineOption = CliTest;

TEST_F(EngineOption, readAndSetThroughEitherEngine) {
#ifndef CORVANE_HAVE_EXIV2
    GTEST_SKIP() << "built without exiv2: no in-process engine";
#endif
    const auto jpeg = makeJPEG(folder / "photo.jpg");
    const auto tiff = makeTIFF(folder / "scan.tif");
    const auto bad = writeBytes(folder / "bad.jpg", {0xFF, 0xD8, 0xFF});

    auto set = corvane({"--engine", "image-io", "set", "EXIF:Artist=In process", "IPTC:Keywords=a,b", "--",
                        jpeg.string(), tiff.string(), bad.string()},
                       scratch);
    EXPECT_EQ(set.exitCode, 1) << set.err;
    // The damaged file gives its own error, with its name; the others are written.
    EXPECT_NE(set.err.find("bad.jpg: Source is invalid"), std::string::npos) << set.err;
    EXPECT_NE(set.out.find("2 files updated"), std::string::npos) << set.out;
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:Artist"), "In process");
    EXPECT_EQ(exifToolValue(tiff, "IPTC:Keywords"), "a, b");

    auto inProcess = corvane({"--engine", "image-io", "read", "--json", jpeg.string()}, scratch);
    auto exifTool = corvane({"--engine", "exiftool", "read", "--json", jpeg.string()}, scratch);
    ASSERT_EQ(inProcess.exitCode, 0) << inProcess.err;
    ASSERT_EQ(exifTool.exitCode, 0) << exifTool.err;
    const auto fast = nlohmann::json::parse(inProcess.out).at(0);
    const auto full = nlohmann::json::parse(exifTool.out).at(0);
    EXPECT_EQ(fast.at("EXIF:Artist"), "In process");
    EXPECT_EQ(fast.at("IPTC:Keywords"), nlohmann::json::array({"a", "b"}));
    // The in-process engine reads fewer tags; those it reads agree with ExifTool.
    EXPECT_LT(fast.size(), full.size());
    for (const auto& [tag, value] : fast.items()) {
        if (tag.rfind("File:", 0) != 0) {
            EXPECT_EQ(value, full.contains(tag) ? full.at(tag) : nlohmann::json()) << tag;
        }
    }

    auto unknown = corvane({"--engine", "other", "read", jpeg.string()}, scratch);
    EXPECT_NE(unknown.exitCode, 0);
}

} // namespace
