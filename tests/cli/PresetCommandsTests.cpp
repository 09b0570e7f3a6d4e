// `corvane preset make|list` and `corvane set --preset`, run as the built program on real files:
// a preset made from one photo puts the photo's values on another.
#include "cli/CliRun.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

namespace {

using namespace corvane::test;
using corvane::test::corvane;

TEST(PresetCommands, MakeListAndApplyAPreset) {
    TemporaryFolder folder("corvane-cli-presets");
    const auto model = makeJPEG(folder / "model.jpg");
    const auto target = makeJPEG(folder / "target.jpg");
    tagWithExifTool(model, {"-EXIF:Artist=Zoë Martin", "-EXIF:DateTimeOriginal=2024:06:01 06:30:00",
                            "-IPTC:Keywords=sea", "-IPTC:Keywords=sun"});
    const auto library = (folder / "presets.json").string();

    auto made = corvane({"preset", "make", "-o", library, "--name", "Harbour", model.string(), "EXIF:Artist",
                         "EXIF:DateTimeOriginal", "IPTC:Keywords", "XMP:Title"},
                        folder);
    EXPECT_EQ(made.exitCode, 1) << "a tag without a value is reported";
    EXPECT_NE(made.err.find("no value for XMP:Title"), std::string::npos) << made.err;

    auto listed = corvane({"preset", "list", library}, folder);
    ASSERT_EQ(listed.exitCode, 0) << listed.err;
    EXPECT_NE(listed.out.find("Preset \"Harbour\""), std::string::npos) << listed.out;
    EXPECT_NE(listed.out.find("EXIF:DateTimeOriginal\tuse_custom_value {\"value\":\"SELECT(YY: 2024, MM: 6, "
                              "DD: 1, hh: 6, mm: 30, ss: 0)\""),
              std::string::npos)
        << listed.out;

    auto applied = corvane({"set", "--preset", library, "--", target.string()}, folder);
    ASSERT_EQ(applied.exitCode, 0) << applied.err;
    EXPECT_EQ(exifToolValue(target, "EXIF:Artist"), "Zoë Martin");
    EXPECT_EQ(exifToolValue(target, "EXIF:DateTimeOriginal"), "2024:06:01 06:30:00");
    EXPECT_EQ(exifToolValue(target, "IPTC:Keywords"), "sea, sun");

    // With two presets in the library, the one to apply must be named.
    ASSERT_EQ(
        corvane({"preset", "make", "-o", library, "--name", "Artist only", model.string(), "EXIF:Artist"},
                folder)
            .exitCode,
        0);
    auto ambiguous = corvane({"set", "--preset", library, target.string()}, folder);
    EXPECT_EQ(ambiguous.exitCode, 2);
    EXPECT_NE(ambiguous.err.find("\"Harbour\", \"Artist only\""), std::string::npos) << ambiguous.err;
    auto unknown = corvane({"set", "--preset", library, "--preset-name", "Nope", target.string()}, folder);
    EXPECT_EQ(unknown.exitCode, 2);
    auto named =
        corvane({"set", "--preset", library, "--preset-name", "Artist only", target.string()}, folder);
    EXPECT_EQ(named.exitCode, 0) << named.err;
}

} // namespace
