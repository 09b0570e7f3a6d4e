// Readers of outside JSON refuse input nested beyond reason, naming the file, instead of running
// out of stack; ordinary documents, brackets in strings included, read as before.
#include "corvane/helpers/JSONInput.hpp"
#include "corvane/preset_support/PresetFile.hpp"
#include "corvane/sidecar_support/SidecarReader.hpp"
#include "corvane/utilities/UserDefaults.hpp"

#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace corvane {
namespace {

namespace fs = std::filesystem;

std::string nested(std::size_t depth, const std::string& inner = "1") {
    return std::string(depth, '[') + inner + std::string(depth, ']');
}

fs::path writeText(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

template <class Read> std::string refusal(Read&& read) {
    try {
        read();
    } catch (const JSONNestingError& error) {
        return error.what();
    }
    return "not refused";
}

TEST(JSONInput, TooDeepInputIsRefusedByEveryReaderWithItsFileNamed) {
    test::TemporaryFolder folder;
    // 50,000 levels in 100 KB: what crashed the sidecar import.
    const std::string deep = "{\"XMP\":{\"Title\":" + nested(50000) + "}}";
    const fs::path sidecar = writeText(folder / "deep.json", deep);
    EXPECT_EQ(refusal([&] { SidecarReader::readSidecar(sidecar); }),
              sidecar.string() + ": JSON nested deeper than 256 levels");
    const fs::path presets = writeText(folder / "presets.json", deep);
    EXPECT_EQ(refusal([&] { PresetFile::fromJSONURL(presets); }),
              presets.string() + ": JSON nested deeper than 256 levels");
    // User defaults never fail a read: such a file counts as empty.
    UserDefaults defaults(writeText(folder / "defaults.json", deep));
    EXPECT_FALSE(defaults.value("XMP").has_value());
}

TEST(JSONInput, DepthIsCountedOutsideStringsOnly) {
    EXPECT_NO_THROW(checkJSONNesting(nested(maxJSONNesting), "x"));
    EXPECT_THROW(checkJSONNesting(nested(maxJSONNesting + 1), "x"), JSONNestingError);
    const std::string brackets = "[\"" + std::string(1000, '[') + "\\\"{\"]";
    EXPECT_EQ(parseJSONInput(brackets, "x")[0].get<std::string>(), std::string(1000, '[') + "\"{");
    EXPECT_THROW(parseJSONInput("[1,", "x"), nlohmann::json::parse_error);
}

} // namespace
} // namespace corvane
