// Every reader of JSON from outside refuses nesting deeper than any real document and turns the
// parser's number overflow into its own typed error: nothing reaches a recursive walk of the tree
// deep enough to exhaust the stack, and no bare parser exception escapes where a reader documents
// its errors.

#include "corvane/converters/DynamicValue.hpp"
#include "corvane/helpers/JSONInput.hpp"
#include "corvane/keyword_support/KeywordFile.hpp"
#include "corvane/location_support/LocationFile.hpp"
#include "corvane/preset_support/PresetFile.hpp"
#include "corvane/sidecar_support/JSONSidecarReader.hpp"
#include "corvane/tag_set/TagSet.hpp"
#include "corvane/tag_set/TagSetFile.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <functional>

namespace corvane {
namespace {

std::string nested(std::size_t depth, const std::string& inner = "1") {
    return std::string(depth, '[') + inner + std::string(depth, ']');
}

TEST(JSONReadersHostileInput, DeepNestingIsRefusedByEveryLibraryAndSidecarReader) {
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
}

TEST(JSONReadersHostileInput, NumberOverflowBecomesTheReadersTypedError) {
    try {
        JSONSidecarReader().readData(R"({"EXIF":{"ISO":1e400}})");
        ADD_FAILURE() << "no error";
    } catch (const JSONSidecarReader::ReadException& error) {
        EXPECT_EQ(error.error(), JSONSidecarReader::ReadError::dataDecodingFailed);
    }
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

} // namespace
} // namespace corvane
