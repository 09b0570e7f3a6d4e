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
    const std::vector<PresetEdition> editions = {
        PresetEdition::keepCurrentValue(),
        PresetEdition::useCustomValue("Jane", CustomInsertion::prepend),
        PresetEdition::copyTagValue(
            {artist(), CopyTagValueSettings::Formatter::pretty, CopyTagValueSettings::Insertion::append}),
        PresetEdition::useCustomAction(Action::sortInDescendingOrder),
        PresetEdition::searchAndReplace(search),
    };
    for (const auto& edition : editions) {
        json j = edition;
        EXPECT_EQ(j.get<PresetEdition>(), edition) << j.dump();
    }
    EXPECT_EQ(json(editions[0]).dump(), R"({"type":"keep_current_value"})");
    EXPECT_EQ(json(editions[1]).dump(),
              R"({"type":"use_custom_value","settings":{"value":"Jane","insertion":"prepend"}})");
    EXPECT_EQ(json(editions[2]).dump(), R"({"type":"copy_tag_value","settings":{"tag_name":"EXIF:Artist",)"
                                        R"("formatter":"pretty","insertion":"append"}})");
    EXPECT_EQ(json(editions[3]).dump(),
              R"({"type":"use_custom_action","settings":{"action":"sort_in_descending_order"}})");
    EXPECT_EQ(json(editions[4]).dump(),
              R"({"type":"search_and_replace","settings":{"search":"foo","value":"bar","ignore_case":false,)"
              R"("ignore_diacritic":true,"ignore_width":false,"use_regex":true}})");
    const PresetItemEntry entry(artist(), PresetEdition::useCustomValue("Jane"));
    json j = entry;
    EXPECT_EQ(j.dump(), R"({"tag_name":"EXIF:Artist","edition":{"type":"use_custom_value",)"
                        R"("settings":{"value":"Jane","insertion":"replace"}}})");
    EXPECT_EQ(j.get<PresetItemEntry>(), entry);
    EXPECT_THROW(json::parse(R"({"tag_name":"EXIF:Artist"})").get<PresetItemEntry>(), json::out_of_range);
}

TEST(PresetEditionJSONTest, OlderFormsReadAsTheirCurrentEquivalents) {
    EXPECT_EQ(decode(R"({"type":"none"})"), PresetEdition::keepCurrentValue());
    EXPECT_EQ(decode(R"({"type":"remove"})"), PresetEdition::useCustomAction(Action::removeCurrentValue));
    EXPECT_EQ(decode(R"({"type":"restore"})"), PresetEdition::useCustomAction(Action::restoreOriginalValue));
    EXPECT_EQ(decode(R"({"type":"value","value":"x"})"), PresetEdition::useCustomValue("x"));
    EXPECT_EQ(decode(R"({"type":"merge","value":"x"})"), decode(R"({"type":"append","value":"x"})"));
    EXPECT_EQ(decode(R"({"type":"append","value":"x"})"),
              PresetEdition::useCustomValue("x", CustomInsertion::append));
    EXPECT_EQ(decode(R"({"type":"prepend","value":"x"})"),
              PresetEdition::useCustomValue("x", CustomInsertion::prepend));
    EXPECT_EQ(decode(R"({"type":"copy","value":"EXIF:Artist"})"),
              PresetEdition::copyTagValue({artist(), CopyTagValueSettings::Formatter::raw,
                                           CopyTagValueSettings::Insertion::replace}));
    EXPECT_EQ(decode(R"({"type":"clone","value":"EXIF:Artist"})"),
              PresetEdition::copyTagValue({artist(), CopyTagValueSettings::Formatter::pretty,
                                           CopyTagValueSettings::Insertion::replace}));

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
