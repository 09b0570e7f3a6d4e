// Every reader of JSON from outside refuses nesting deeper than any real document and turns the
// parser's number overflow into its own typed error: nothing reaches a recursive walk of the tree
// deep enough to exhaust the stack, and no bare parser exception escapes where a reader documents
// its errors. Readers of files name the file; ordinary documents, brackets in strings included, read
// as before.

#include "corvane/converters/DynamicValue.hpp"
#include "corvane/helpers/JSONInput.hpp"
#include "corvane/keyword_support/KeywordFile.hpp"
#include "corvane/location_support/LocationFile.hpp"
#include "corvane/preset_support/PresetFile.hpp"
#include "corvane/sidecar_support/JSONSidecarReader.hpp"
#include "corvane/sidecar_support/SidecarReader.hpp"
#include "corvane/tag_set/TagSet.hpp"
#include "corvane/tag_set/TagSetFile.hpp"
#include "corvane/utilities/UserDefaults.hpp"

#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <functional>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::ThrowsMessage;

std::string nested(std::size_t depth, const std::string& inner = "1") {
    return std::string(depth, '[') + inner + std::string(depth, ']');
}

TEST(JSONReadersHostileInput, DeepNestingIsRefusedByEveryReaderAndCountedOutsideStrings) {
    // A deep array beside a second key: the shape that overflowed the stack of the preset reader.
    const std::string deep = "{\"groups\": " + nested(90'000) + ", \"description\": \"x\"}";
    const std::vector<std::pair<const char*, std::function<void()>>> readers{
        {"preset", [&] { PresetFile::fromJSONData(deep); }},
        {"tag set", [&] { TagSet::fromJSONData(deep); }},
        {"tag set file", [&] { TagSetFile::fromJSONData(deep); }},
        {"keywords", [&] { KeywordFile::fromJSONData(deep); }},
        {"locations", [&] { LocationFile::fromJSONData(deep); }},
        {"sidecar", [&] { JSONSidecarReader().readData("{\"EXIF\": {\"ISO\": " + nested(10'000) + "}}"); }},
    };
    for (const auto& [kind, read] : readers)
        EXPECT_THROW(read(), JSONNestingError) << kind;
    EXPECT_NO_THROW(checkJSONNesting(nested(maxJSONNesting), "x"));
    EXPECT_THROW(checkJSONNesting(nested(maxJSONNesting + 1), "x"), JSONNestingError);
    const std::string brackets = "[\"" + std::string(1000, '[') + "\\\"{\"]";
    EXPECT_EQ(parseJSONInput(brackets, "x")[0].get<std::string>(), std::string(1000, '[') + "\"{");
    EXPECT_THROW(parseJSONInput("[1,", "x"), nlohmann::json::parse_error);
}

TEST(JSONReadersHostileInput, NumberOverflowBecomesTheReadersTypedError) {
    EXPECT_THAT([] { JSONSidecarReader().readData(R"({"EXIF":{"ISO":1e400}})"); },
                ThrowsMessage<JSONSidecarReader::ReadException>(testing::StrEq("Data decoding failed")));
    EXPECT_THROW(TagSet::fromJSONData(R"({"entries": [1e400]})"), TagSet::DecodingError);
    EXPECT_THROW(KeywordFile::fromJSONData(R"({"items": [1e400]})"), KeywordFile::DecodingError);
    EXPECT_THROW(LocationFile::fromJSONData(R"([1e400])"), LocationFile::DecodingError);
}

TEST(JSONReadersHostileInput, DynamicValuesOfDeepTreesParsedElsewhereStopAtADepth) {
    // A tree built without the nesting check (nlohmann's parser itself doesn't recurse).
    auto depthOf = [](const DynamicValue& value) {
        std::size_t depth = 0;
        for (const DynamicValue* at = &value; at->arrayValue() && !at->arrayValue()->empty();
             at = &at->arrayValue()->front())
            ++depth;
        return depth;
    };
    EXPECT_EQ(depthOf(dynamicValueFromJson(nlohmann::json::parse(nested(20'000)))), 64u);
    const auto shallow = dynamicValueFromJson(nlohmann::json::parse(nested(3, "\"a\"")));
    EXPECT_EQ(depthOf(shallow), 3u);
}

fs::path writeText(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

TEST(JSONInput, TooDeepInputIsRefusedByEveryReaderWithItsFileNamed) {
    test::TemporaryFolder folder;
    // 50,000 levels in 100 KB: what crashed the sidecar import.
    const std::string deep = "{\"XMP\":{\"Title\":" + nested(50000) + "}}";
    const fs::path sidecar = writeText(folder / "deep.json", deep);
    EXPECT_THAT([&] { SidecarReader::readSidecar(sidecar); },
                ThrowsMessage<JSONNestingError>(sidecar.string() + ": JSON nested deeper than 256 levels"));
    const fs::path presets = writeText(folder / "presets.json", deep);
    EXPECT_THAT([&] { PresetFile::fromJSONURL(presets); },
                ThrowsMessage<JSONNestingError>(presets.string() + ": JSON nested deeper than 256 levels"));
    // User defaults never fail a read: such a file counts as empty.
    UserDefaults defaults(writeText(folder / "defaults.json", deep));
    EXPECT_FALSE(defaults.value("XMP").has_value());
}

} // namespace
} // namespace corvane
