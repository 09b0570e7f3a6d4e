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

TEST(PresetCustomValueTest, InsertionJoinsWithTheTagsSeparatorAndDatesReadADateEdition) {
    auto editor = editorWith({{&artist(), "Jane"},
                              {&keywords(), "sea,sun"},
                              {&cropOrigin(), "8 8"},
                              {&marked(), "True"},
                              {&original(), "2024:01:31 23:00:00"}});
    const std::tuple<const TagItem*, const char*, Insertion, const char*> steps[] = {
        {&artist(), "Dr.", Insertion::prepend, "Dr. Jane"},        // one value: one blank
        {&keywords(), "sand", Insertion::append, "sea,sun, sand"}, // a list: comma and blank
        {&cropOrigin(), "4", Insertion::append, "8 8 4"},          // a count of two: one blank
        {&artist(), "Smith", Insertion::replace, "Smith"},
        // An empty text keeps the current one; an empty current value takes the text alone.
        {&artist(), "", Insertion::prepend, "Smith"},
        {&TagItem::itemEXIFImageDescription(), "Beach", Insertion::append, "Beach"},
        // Tags of other kinds take the text in place of the value, in the converter's canonical form;
        // a date tag reads a date edition and ignores the insertion.
        {&marked(), "False", Insertion::append, "false"},
        {&original(), "SHIFT(hh: 2)", Insertion::append, "2024:02:01 01:00:00"},
        {&original(), "next tuesday", Insertion::replace, "2024:02:01 01:00:00"},
        {&original(), "REMOVE()", Insertion::replace, ""}};
    for (const auto& [item, value, insertion, expected] : steps) {
        TagEditorPresets(*editor).useCustomValue(*item, {value, insertion});
        EXPECT_EQ(current(editor, *item), expected) << item->name().rawValue() << " " << value;
    }
}

TEST(PresetCopyValueTest, CopiesRawValuesAndDatesByKind) {
    using Formatter = CopyTagValueSettings::Formatter;
    using Copy = CopyTagValueSettings::Insertion;
    auto editor = editorWith(
        {{&artist(), "Jane"}, {&TagItem::itemEXIFFNumber(), "2.8"}, {&original(), "2021:07:04 08:30:15"}});
    const TagItem& description = TagItem::itemEXIFImageDescription();
    const std::tuple<const TagItem*, CopyTagValueSettings, const char*> steps[] = {
        {&description, {artist().name(), Formatter::raw, Copy::replace}, "Jane"},
        {&description, {TagItem::itemEXIFFNumber().name(), Formatter::raw, Copy::prepend}, "2.8 Jane"},
        // A date target takes the date of the source whatever the formatter and insertion say.
        {&TagItem::itemIPTCDateCreated(), {original().name(), Formatter::pretty, Copy::append}, "2021:07:04"},
        // A source without a value gives the empty text, which clears a replaced target.
        {&artist(), {TagItem::itemEXIFCopyright().name(), Formatter::raw, Copy::replace}, ""}};
    for (const auto& [target, settings, expected] : steps) {
        TagEditorPresets(*editor).copyValue(*target, settings);
        EXPECT_EQ(current(editor, *target), expected) << target->name().rawValue();
    }
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
    EXPECT_EQ(events[1].history.tagNames({editor}).size(), 3u) << "three tags changed in the one batch";

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
    EXPECT_EQ(TagPair(original().name(), "someday").convertToPresetEntry(),
              PresetItemEntry(original().name(), PresetEdition::useCustomValue("SELECT()")));
}

} // namespace
} // namespace corvane
