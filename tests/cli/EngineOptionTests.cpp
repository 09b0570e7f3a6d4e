// `corvane --engine`: the same commands through the in-process engine or through ExifTool.
#include "cli/CliRun.hpp"
#include "support/SampleFiles.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using namespace corvane::test;

using EngineOption = CliTest;

TEST_F(EngineOption, readAndSetThroughEitherEngine) {
#ifndef CORVANE_HAVE_EXIV2
    GTEST_SKIP() << "built without exiv2: no in-process engine";
#endif
    const auto jpeg = makeJPEG(folder / "photo.jpg");
    const auto tiff = makeTIFF(folder / "scan.tif");
    const auto bad = writeBytes(folder / "bad.jpg", {0xFF, 0xD8, 0xFF});

    auto set = cliExits(1, {"--engine", "image-io", "set", "EXIF:Artist=In process", "IPTC:Keywords=a,b",
                            "--", jpeg.string(), tiff.string(), bad.string()});
    // The damaged file gives its own error, with its name; the others are written.
    EXPECT_THAT(set.err, HasSubstr("bad.jpg: Source is invalid"));
    EXPECT_THAT(set.out, HasSubstr("2 files updated"));
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:Artist"), "In process");
    EXPECT_EQ(exifToolValue(tiff, "IPTC:Keywords"), "a, b");

    const auto fast =
        nlohmann::json::parse(cliOK({"--engine", "image-io", "read", "--json", jpeg.string()}).out)[0];
    const auto full =
        nlohmann::json::parse(cliOK({"--engine", "exiftool", "read", "--json", jpeg.string()}).out)[0];
    EXPECT_EQ(fast.at("EXIF:Artist"), "In process");
    EXPECT_EQ(fast.at("IPTC:Keywords"), nlohmann::json::array({"a", "b"}));
    // The in-process engine reads fewer tags; those it reads agree with ExifTool.
    EXPECT_LT(fast.size(), full.size());
    for (const auto& [tag, value] : fast.items()) {
        if (tag.rfind("File:", 0) != 0) {
            EXPECT_EQ(value, full.contains(tag) ? full.at(tag) : nlohmann::json()) << tag;
        }
    }
}

} // namespace
