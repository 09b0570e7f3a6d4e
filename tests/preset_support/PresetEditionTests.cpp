// The JSON form of preset editions and entries: the written form of each case, every older form
// that libraries still hold, and the errors of unreadable editions.

#include "corvane/preset_support/PresetEdition.hpp"
#include "corvane/preset_support/PresetItemEntry.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace corvane {
namespace {

using json = nlohmann::ordered_json;
using Action = UseCustomActionSettings::Action;
using CustomInsertion = UseCustomValueSettings::Insertion;

PresetEdition decode(const char* text) {
    return json::parse(text).get<PresetEdition>();
}

TagName artist() {
    return TagItem::itemEXIFArtist().name();
}

TEST(PresetEditionJSONTest, EveryCaseAndEntryWritesItsFormAndReadsBack) {
    SearchAndReplaceSettings search("foo", "bar");
    search.ignoreDiacritic = true;
    search.useRegex = true;
    const std::pair<PresetEdition, const char*> cases[] = {
        {PresetEdition::keepCurrentValue(), R"({"type":"keep_current_value"})"},
        {PresetEdition::useCustomValue("Jane", CustomInsertion::prepend),
         R"({"type":"use_custom_value","settings":{"value":"Jane","insertion":"prepend"}})"},
        {PresetEdition::copyTagValue(
             {artist(), CopyTagValueSettings::Formatter::pretty, CopyTagValueSettings::Insertion::append}),
         R"({"type":"copy_tag_value","settings":{"tag_name":"EXIF:Artist","formatter":"pretty","insertion":"append"}})"},
        {PresetEdition::useCustomAction(Action::sortInDescendingOrder),
         R"({"type":"use_custom_action","settings":{"action":"sort_in_descending_order"}})"},
        {PresetEdition::searchAndReplace(search),
         R"({"type":"search_and_replace","settings":{"search":"foo","value":"bar","ignore_case":false,)"
         R"("ignore_diacritic":true,"ignore_width":false,"use_regex":true}})"},
    };
    for (const auto& [edition, text] : cases) {
        EXPECT_EQ(json(edition).dump(), text);
        EXPECT_EQ(decode(text), edition) << text;
    }
    const PresetItemEntry entry(artist(), PresetEdition::useCustomValue("Jane"));
    json j = entry;
    EXPECT_EQ(j.dump(), R"({"tag_name":"EXIF:Artist","edition":{"type":"use_custom_value",)"
                        R"("settings":{"value":"Jane","insertion":"replace"}}})");
    EXPECT_EQ(j.get<PresetItemEntry>(), entry);
    EXPECT_THROW(json::parse(R"({"tag_name":"EXIF:Artist"})").get<PresetItemEntry>(), json::out_of_range);
}

TEST(PresetEditionJSONTest, OlderFormsReadAsTheirCurrentEquivalents) {
    using Copy = CopyTagValueSettings;
    const std::pair<const char*, PresetEdition> cases[] = {
        {R"({"type":"none"})", PresetEdition::keepCurrentValue()},
        {R"({"type":"remove"})", PresetEdition::useCustomAction(Action::removeCurrentValue)},
        {R"({"type":"restore"})", PresetEdition::useCustomAction(Action::restoreOriginalValue)},
        {R"({"type":"value","value":"x"})", PresetEdition::useCustomValue("x")},
        {R"({"type":"merge","value":"x"})", PresetEdition::useCustomValue("x", CustomInsertion::append)},
        {R"({"type":"append","value":"x"})", PresetEdition::useCustomValue("x", CustomInsertion::append)},
        {R"({"type":"prepend","value":"x"})", PresetEdition::useCustomValue("x", CustomInsertion::prepend)},
        {R"({"type":"copy","value":"EXIF:Artist"})",
         PresetEdition::copyTagValue({artist(), Copy::Formatter::raw, Copy::Insertion::replace})},
        {R"({"type":"clone","value":"EXIF:Artist"})",
         PresetEdition::copyTagValue({artist(), Copy::Formatter::pretty, Copy::Insertion::replace})},
    };
    for (const auto& [text, edition] : cases)
        EXPECT_EQ(decode(text), edition) << text;
    // Written back, an old edition takes the current form.
    EXPECT_EQ(json(decode(R"({"type":"value","value":"x"})")).dump(),
              R"({"type":"use_custom_value","settings":{"value":"x","insertion":"replace"}})");
}

TEST(PresetEditionJSONTest, UnreadableEditionsFail) {
    EXPECT_THAT(
        [] { decode(R"({"type":"Use_Custom_Value","settings":{"value":"x","insertion":"replace"}})"); },
        testing::ThrowsMessage<PresetEdition::CodingException>(testing::StrEq("Unknown decoding type")))
        << "the type is compared exactly";
    EXPECT_EQ(PresetEdition::message(PresetEdition::CodingError::unknownEncodingType),
              "Unknown encoding type");
    // All six search keys are required.
    EXPECT_THROW(decode(R"({"type":"search_and_replace","settings":{"search":"a","value":"b",)"
                        R"("ignore_case":false,"ignore_diacritic":false,"ignore_width":false}})"),
                 json::out_of_range);
    EXPECT_THROW(decode(R"({"type":"use_custom_action","settings":{"action":"shout"}})"),
                 std::invalid_argument);
    EXPECT_THROW(decode(R"({"type":"copy","value":"not a name"})"), std::invalid_argument);
    EXPECT_THROW(decode(R"({"type":"value"})"), json::out_of_range);
    EXPECT_THROW(decode(R"({"settings":{}})"), json::out_of_range);
}

} // namespace
} // namespace corvane
