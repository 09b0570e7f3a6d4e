// `corvane preset make|list` and `corvane set --preset`, run as the built program on real files:
// a preset made from one photo puts the photo's values on another, checked as typed values are.
#include "cli/CliRun.hpp"
#include "support/SampleFiles.hpp"

#include <gtest/gtest.h>

namespace {

using namespace corvane::test;

using PresetCommands = CliTest;

TEST_F(PresetCommands, MakeListAndApplyAPreset) {
    const auto model = makeJPEG(folder / "model.jpg");
    const auto target = makeJPEG(folder / "target.jpg");
    tagWithExifTool(model, {"-EXIF:Artist=Zoë Martin", "-EXIF:DateTimeOriginal=2024:06:01 06:30:00",
                            "-IPTC:Keywords=sea", "-IPTC:Keywords=sun"});
    const auto library = (folder / "presets.json").string();

    // A tag without a value is reported.
    EXPECT_THAT(cliExits(1, {"preset", "make", "-o", library, "--name", "Harbour", model.string(),
                             "EXIF:Artist", "EXIF:DateTimeOriginal", "IPTC:Keywords", "XMP:Title"})
                    .err,
                HasSubstr("no value for XMP:Title"));
    const auto listed = cliOK({"preset", "list", library}).out;
    EXPECT_THAT(listed, HasSubstr("Preset \"Harbour\""));
    EXPECT_THAT(listed,
                HasSubstr("EXIF:DateTimeOriginal\tuse_custom_value {\"value\":\"SELECT(YY: 2024, MM: 6, "
                          "DD: 1, hh: 6, mm: 30, ss: 0)\""));

    cliOK({"set", "--preset", library, "--", target.string()});
    EXPECT_EQ(exifToolValue(target, "EXIF:Artist"), "Zoë Martin");
    EXPECT_EQ(exifToolValue(target, "EXIF:DateTimeOriginal"), "2024:06:01 06:30:00");
    EXPECT_EQ(exifToolValue(target, "IPTC:Keywords"), "sea, sun");

    // With two presets in the library, the one to apply must be named.
    cliOK({"preset", "make", "-o", library, "--name", "Artist only", model.string(), "EXIF:Artist"});
    EXPECT_THAT(cliExits(2, {"set", "--preset", library, target.string()}).err,
                HasSubstr("\"Harbour\", \"Artist only\""));
    cliExits(2, {"set", "--preset", library, "--preset-name", "Nope", target.string()});
    cliOK({"set", "--preset", library, "--preset-name", "Artist only", target.string()});
}

// The preset's value of `tag` replaced by `value` in the library's text.
std::string withPresetValue(std::string text, const std::string& tag, const std::string& value) {
    const auto entry = text.find("\"" + tag + "\"");
    const auto start = text.find("\"value\": \"", entry) + std::string("\"value\": \"").size();
    return text.replace(start, text.find('"', start) - start, value);
}

// A preset's values go through the value checker: one its tag can't hold is refused, naming the tag
// and the value, and nothing of the file is written; a fraction is read for a real number.
TEST_F(PresetCommands, presetValuesAreCheckedAsTypedOnes) {
    const auto model = makeJPEG(folder / "model.jpg");
    const auto target = makeJPEG(folder / "target.jpg");
    tagWithExifTool(model, {"-EXIF:Orientation#=6", "-EXIF:ExposureTime=0.01"});
    const auto library = folder / "presets.json";
    cliOK(
        {"preset", "make", "-o", library.string(), model.string(), "EXIF:Orientation", "EXIF:ExposureTime"});
    const std::string made = fileBytes(library);
    const std::string before = fileBytes(target);

    writeText(library, withPresetValue(made, "EXIF:Orientation", "99"));
    EXPECT_THAT(cliExits(2, {"set", "--preset", library.string(), target.string()}).err,
                HasSubstr("\"99\" is not a valid value for EXIF:Orientation"));
    EXPECT_EQ(fileBytes(target), before);

    writeText(library, withPresetValue(made, "EXIF:ExposureTime", "1/500"));
    cliOK({"set", "--preset", library.string(), target.string()});
    EXPECT_EQ(exifToolValue(target, "EXIF:ExposureTime", true), "0.002");
    EXPECT_EQ(exifToolValue(target, "EXIF:Orientation", true), "6");
}

} // namespace
