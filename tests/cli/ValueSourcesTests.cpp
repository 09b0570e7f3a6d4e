// Values that reach a file from a preset or a sidecar are checked as `corvane set` checks typed
// ones, run as the built program on real files: a value its tag can't hold is refused, naming the
// tag and the value, and nothing of the file is written.
#include "cli/CliRun.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace corvane::test;
using corvane::test::corvane;

using ValueSources = CliTest;

void writeText(const std::filesystem::path& path, const std::string& text) {
    writeBytes(path, std::vector<std::uint8_t>(text.begin(), text.end()));
}

// The preset's value of `tag` replaced by `value` in the library's text.
std::string withPresetValue(std::string text, const std::string& tag, const std::string& value) {
    const auto entry = text.find("\"" + tag + "\"");
    const auto key = text.find("\"value\": \"", entry);
    const auto start = key + std::string("\"value\": \"").size();
    return text.replace(start, text.find('"', start) - start, value);
}

TEST_F(ValueSources, presetValuesAreCheckedAsTypedOnes) {
    const auto model = makeJPEG(folder / "model.jpg");
    const auto target = makeJPEG(folder / "target.jpg");
    tagWithExifTool(model, {"-EXIF:Orientation#=6", "-IPTC:ObjectName=short", "-EXIF:ExposureTime=0.01"});
    const auto library = folder / "presets.json";
    ASSERT_EQ(corvane({"preset", "make", "-o", library.string(), model.string(), "EXIF:Orientation",
                       "IPTC:ObjectName", "EXIF:ExposureTime"},
                      scratch)
                  .exitCode,
              0);
    const std::string made = readText(library);
    const std::string before = readText(target);

    const std::pair<std::string, std::string> refused[] = {{"EXIF:Orientation", "99"},
                                                           {"IPTC:ObjectName", std::string(300, 'x')},
                                                           {"EXIF:ExposureTime", "fast"}};
    for (const auto& [tag, value] : refused) {
        writeText(library, withPresetValue(made, tag, value));
        auto run = corvane({"set", "--preset", library.string(), target.string()}, scratch);
        EXPECT_EQ(run.exitCode, 2) << tag;
        EXPECT_NE(run.err.find("\"" + value + "\" is not a valid value for " + tag), std::string::npos)
            << run.err;
        EXPECT_EQ(readText(target), before) << tag;
    }

    // A fraction is read for a real number, as on the command line.
    writeText(library, withPresetValue(made, "EXIF:ExposureTime", "1/500"));
    auto run = corvane({"set", "--preset", library.string(), target.string()}, scratch);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(exifToolValue(target, "EXIF:ExposureTime", true), "0.002");
    EXPECT_EQ(exifToolValue(target, "EXIF:Orientation", true), "6");
}

TEST_F(ValueSources, sidecarValuesTheTagsCantHoldWriteNothing) {
    const auto target = makeJPEG(folder / "target.jpg");
    tagWithExifTool(target, {"-EXIF:Artist=Before"});
    const std::string before = readText(target);
    // The target's own sidecar (same base name): its orientation is taken too.
    const auto sidecar = folder / "target.json";
    writeText(sidecar, R"({"EXIF": {"Artist": "After", "Orientation": 99}, "IPTC": {"ObjectName": ")" +
                           std::string(300, 'x') + "\"}}");

    auto run = corvane({"sidecar", "import", sidecar.string(), target.string()}, scratch);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("\"99\" is not a valid value for EXIF:Orientation"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("is not a valid value for IPTC:ObjectName"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("target.jpg"), std::string::npos) << run.err;
    EXPECT_EQ(readText(target), before);

    writeText(sidecar, R"({"EXIF": {"Artist": "After", "Orientation": 6}})");
    auto good = corvane({"sidecar", "import", sidecar.string(), target.string()}, scratch);
    ASSERT_EQ(good.exitCode, 0) << good.err;
    EXPECT_EQ(exifToolValue(target, "EXIF:Artist"), "After");
}

} // namespace
