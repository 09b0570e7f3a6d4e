// Presets on editors: each kind of edition on tags of each kind, entries applied in order in one
// batch, and pairs turned into entries that put their value back. A preset applied to real files is
// the command line's test (`set --preset`); writing the edited storage, the writer's.

#include "corvane/preset_support/TagEditorPresets.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/tag_editor/TagEditorArrayEditions.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagPair.hpp"
#include "support/EditorFixtures.hpp"
#include "tag_edition/EditionRecorder.hpp"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::EditionRecorder;
using test::editorWith;
using Insertion = UseCustomValueSettings::Insertion;
using Action = UseCustomActionSettings::Action;

const TagItem& artist() {
    return TagItem::itemEXIFArtist();
}
const TagItem& keywords() {
    return TagItem::itemIPTCKeywords();
}
const TagItem& cropOrigin() { // two numbers
    return *TagItem::find("EXIF", "DefaultCropOrigin");
}
const TagItem& marked() { // a Boolean
    return *TagItem::find("XMP", "Marked");
}
const TagItem& original() {
    return TagItem::itemEXIFDateTimeOriginal();
}

std::optional<std::string> current(const std::shared_ptr<TagEditor>& editor, const TagItem& item) {
    return editor->currentValue(item.name());
}

void customValue(const std::shared_ptr<TagEditor>& editor, const TagItem& item, std::string value,
                 Insertion insertion) {
    TagEditorPresets(*editor).useCustomValue(item, {std::move(value), insertion});
}

TEST(PresetCustomValueTest, InsertionJoinsWithTheTagsSeparatorAndDatesReadADateEdition) {
    auto editor = editorWith({{&artist(), "Jane"}, {&keywords(), "sea,sun"}, {&cropOrigin(), "8 8"}});
    customValue(editor, artist(), "Dr.", Insertion::prepend);
    EXPECT_EQ(current(editor, artist()), "Dr. Jane") << "one value: one blank";
    customValue(editor, keywords(), "sand", Insertion::append);
    EXPECT_EQ(current(editor, keywords()), "sea,sun, sand") << "a list: comma and blank";
    customValue(editor, cropOrigin(), "4", Insertion::append);
    EXPECT_EQ(current(editor, cropOrigin()), "8 8 4") << "a count of two: one blank";
    customValue(editor, artist(), "Smith", Insertion::replace);
    EXPECT_EQ(current(editor, artist()), "Smith");

    // An empty text keeps the current one; an empty current value takes the text alone.
    customValue(editor, artist(), "", Insertion::prepend);
    EXPECT_EQ(current(editor, artist()), "Smith");
    customValue(editor, TagItem::itemEXIFImageDescription(), "Beach", Insertion::append);
    EXPECT_EQ(current(editor, TagItem::itemEXIFImageDescription()), "Beach");

    // Tags of other kinds take the text in place of the value.
    auto flags = editorWith({{&marked(), "True"}});
    customValue(flags, marked(), "False", Insertion::append);
    EXPECT_EQ(current(flags, marked()), "false") << "in the converter's canonical form";
    auto dated = editorWith({{&original(), "2024:01:31 23:00:00"}});
    customValue(dated, original(), "SHIFT(hh: 2)", Insertion::append);
    EXPECT_EQ(current(dated, original()), "2024:02:01 01:00:00") << "the insertion is ignored";
    customValue(dated, original(), "next tuesday", Insertion::replace);
    EXPECT_EQ(current(dated, original()), "2024:02:01 01:00:00");
    customValue(dated, original(), "REMOVE()", Insertion::replace);
    EXPECT_EQ(current(dated, original()), "");
}

TEST(PresetCopyValueTest, CopiesRawOrShownValuesAndDatesByKind) {
    auto editor = editorWith(
        {{&artist(), "Jane"}, {&TagItem::itemEXIFFNumber(), "2.8"}, {&original(), "2021:07:04 08:30:15"}});
    TagEditorPresets presets(*editor);
    const TagItem& description = TagItem::itemEXIFImageDescription();
    presets.copyValue(description, {artist().name(), CopyTagValueSettings::Formatter::raw,
                                    CopyTagValueSettings::Insertion::replace});
    EXPECT_EQ(current(editor, description), "Jane");
    presets.copyValue(description, {TagItem::itemEXIFFNumber().name(), CopyTagValueSettings::Formatter::raw,
                                    CopyTagValueSettings::Insertion::prepend});
    EXPECT_EQ(current(editor, description), "2.8 Jane");

    // A date target takes the date of the source whatever the formatter and insertion say.
    presets.copyValue(TagItem::itemIPTCDateCreated(),
                      {original().name(), CopyTagValueSettings::Formatter::pretty,
                       CopyTagValueSettings::Insertion::append});
    EXPECT_EQ(current(editor, TagItem::itemIPTCDateCreated()), "2021:07:04");

    // A source without a value gives the empty text, which clears a replaced target.
    presets.copyValue(artist(), {TagItem::itemEXIFCopyright().name(), CopyTagValueSettings::Formatter::raw,
                                 CopyTagValueSettings::Insertion::replace});
    EXPECT_EQ(current(editor, artist()), "");
}

// What each transform does to a text is the editions' test; here, that each action runs its own.
TEST(PresetActionTest, ActionsMapToTheEditorsOperations) {
    auto editor = editorWith({{&artist(), "  jane doe \n"}, {&keywords(), "b,c,a"}});
    const std::tuple<const TagItem*, Action, const char*> steps[] = {
        {&artist(), Action::trimWhitespacesText, "jane doe"},
        {&artist(), Action::capitalizeText, "Jane Doe"},
        {&artist(), Action::uppercaseText, "JANE DOE"},
        {&artist(), Action::lowercaseText, "jane doe"},
        {&keywords(), Action::sortInDescendingOrder, "c,b,a"},
        {&keywords(), Action::sortInAscendingOrder, "a,b,c"},
        {&keywords(), Action::removeCurrentValue, ""},
        {&keywords(), Action::restoreOriginalValue, "b,c,a"}};
    for (const auto& [item, action, expected] : steps) {
        TagEditorPresets(*editor).useCustomAction(*item, {action});
        EXPECT_EQ(current(editor, *item), expected) << static_cast<int>(action);
    }
    EXPECT_FALSE(editor->isValueEdited(keywords().name()));
}

TEST(PresetSearchTest, ReplacesInTheCurrentValueUnlessTheSearchIsBlank) {
    auto editor = editorWith({{&artist(), "Jane  Doe"}});
    TagEditorPresets presets(*editor);
    SearchAndReplaceSettings blank("  ", "_");
    blank.useRegex = true; // a valid pattern, still blank
    presets.searchAndReplace(artist(), blank);
    EXPECT_EQ(current(editor, artist()), "Jane  Doe");
    EXPECT_FALSE(editor->isValueEdited(artist().name()));

    SearchAndReplaceSettings names("(\\w+)\\s+(\\w+)", "$2, $1");
    names.useRegex = true;
    presets.searchAndReplace(artist(), names);
    EXPECT_EQ(current(editor, artist()), "Doe, Jane");
    SearchAndReplaceSettings caseless("JANE", "John");
    caseless.ignoreCase = true;
    presets.searchAndReplace(artist(), caseless);
    EXPECT_EQ(current(editor, artist()), "Doe, John");

    // No value: the replacement runs on the empty text and stores what it gives.
    SearchAndReplaceSettings empty("^$", "(none)");
    empty.useRegex = true;
    presets.searchAndReplace(TagItem::itemEXIFCopyright(), empty);
    EXPECT_EQ(current(editor, TagItem::itemEXIFCopyright()), "(none)");
}

TEST(PresetApplyTest, EntriesFormOneBatchAndUnknownTagsAreSkipped) {
    EditionRecorder recorder;
    auto editor = editorWith({{&artist(), "Jane"}, {&keywords(), "b,a"}});
    const std::vector<PresetItemEntry> entries = {
        {artist().name(), PresetEdition::useCustomValue("Doe", Insertion::append)},
        {*TagName::fromRawValue("XMP:NoSuchTagAnywhere"), PresetEdition::useCustomValue("x")},
        {keywords().name(), PresetEdition::useCustomAction(Action::sortInAscendingOrder)},
        {TagItem::itemEXIFImageDescription().name(), PresetEdition::keepCurrentValue()},
        // Entries apply in order: a copy sees the edit of an earlier entry.
        {TagItem::itemEXIFCopyright().name(), PresetEdition::copyTagValue({artist().name()})},
    };
    TagEditorPresets(*editor).apply(entries);
    EXPECT_EQ(current(editor, artist()), "Jane Doe");
    EXPECT_EQ(current(editor, keywords()), "a,b");
    EXPECT_FALSE(current(editor, TagItem::itemEXIFImageDescription()));
    EXPECT_EQ(current(editor, TagItem::itemEXIFCopyright()), "Jane Doe");
    const auto events = recorder.drain();
    ASSERT_EQ(EditionRecorder::kinds(events), "begin flush end");
    const auto* changed = events[1].history.tagNamesOf(editor);
    ASSERT_TRUE(changed);
    EXPECT_EQ(changed->size(), 3u) << "three tags changed in the one batch";

    auto second = editorWith({{&artist(), "Ann"}}, "/photos/other.jpg");
    TagEditorArrayEditions({editor, second}).applyPresetEntries({entries[0]});
    EXPECT_EQ(current(editor, artist()), "Jane Doe Doe");
    EXPECT_EQ(current(second, artist()), "Ann Doe");
}

// A text or a whole date becoming an entry that puts it back is the command line's test (`preset make`).
TEST(PresetPairTest, UnknownTagsGiveNoEntryTimesPutTheirTimeBackAndNonDatesSelectNothing) {
    EXPECT_FALSE(TagPair(*TagName::fromRawValue("XMP:NoSuchTagAnywhere"), "x").convertToPresetEntry());
    auto time = TagPair(TagItem::itemEXIFGPSTimeStamp().name(), "17:05:09").convertToPresetEntry();
    ASSERT_TRUE(time);
    auto editor = editorWith({});
    TagEditorPresets(*editor).apply(std::vector<PresetItemEntry>{*time});
    EXPECT_EQ(current(editor, TagItem::itemEXIFGPSTimeStamp()), "17:05:09");
    auto bad = TagPair(original().name(), "someday").convertToPresetEntry();
    ASSERT_TRUE(bad);
    EXPECT_EQ(bad->edition(), PresetEdition::useCustomValue("SELECT()"));
}

} // namespace
} // namespace corvane
