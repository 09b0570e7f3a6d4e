// Operations on a selection of editors: one session for a concurrent batch, agreement of family
// values, date editions over date tags, and copy and paste through the pasteboard's text form.

#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/tag_editor/EXIFAccessor.hpp"
#include "corvane/tag_editor/InProcessTagPasteboard.hpp"
#include "corvane/tag_editor/TagEditorArrayEditions.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "support/EditorFixtures.hpp"
#include "tag_edition/EditionRecorder.hpp"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::EditionRecorder;
using test::editorWith;

const TagName& artist() {
    return TagItem::itemEXIFArtist().name();
}
const TagName& copyright() {
    return TagItem::itemEXIFCopyright().name();
}
const TagName& city() {
    return TagItem::itemIPTCCity().name();
}

TEST(EditionArrayTest, ConcurrentEditsReachTheHistoryAsOneBatch) {
    std::vector<TagEditorRef> editors;
    for (int i = 0; i < 24; ++i)
        editors.push_back(editorWith({}, "/photos/p" + std::to_string(i) + ".jpg"));
    EditionRecorder recorder;
    TagEditorArrayEditions selection(editors);
    selection.setValue(std::string("Jane"), {artist()});
    auto events = recorder.drain();
    ASSERT_EQ(EditionRecorder::kinds(events), "begin flush end");
    for (const auto& editor : editors) {
        EXPECT_EQ(editor->currentValue(artist()), "Jane");
        EXPECT_TRUE(events[1].history.hasEditions({editor}, {artist()}));
    }
    EXPECT_TRUE(selection.isValueEdited(artist()));
    EXPECT_TRUE(selection.haveWrittenValues({artist()}));
    EXPECT_FALSE(selection.haveOriginalValues({artist()}));

    selection.rotateRightOrientation();
    for (const auto& editor : editors)
        EXPECT_EQ(EXIFAccessor(*editor).exifOrientation(), ExifOrientation::rotate90CW);
}

TEST(EditionArrayTest, FamilyValuesCountOnlyWhenAllEditorsAgree) {
    const std::vector<std::pair<const TagItem*, std::string>> read{{&TagItem::itemEXIFGPSLatitude(), "10"},
                                                                   {&TagItem::itemEXIFGPSLongitude(), "20"},
                                                                   {&TagItem::itemIPTCCity(), "Rome"}};
    auto a = editorWith(read), b = editorWith(read);
    TagEditorArrayEditions both({a, b});
    auto location = both.location();
    ASSERT_TRUE(location);
    EXPECT_EQ(location->coordinate(), Coordinate(10, 20));
    EXPECT_EQ(location->city(), "Rome");

    b->setValue("11", TagItem::itemEXIFGPSLatitude().name());
    EXPECT_FALSE(both.exifGPSLocation());
    EXPECT_FALSE(both.location()) << "no position the editors share";
    EXPECT_FALSE(TagEditorArrayEditions({}).location());

    both.setGPSCoordinate(TypedTagValue<Coordinate>::value(Coordinate(-1.5, 36.8)));
    EXPECT_EQ(both.exifGPSCoordinate(), Coordinate(-1.5, 36.8));
    EXPECT_EQ(both.currentOrEmptyValues(city()), (std::set<std::string>{"Rome"}));
    EXPECT_EQ(both.originalValues(TagItem::itemEXIFGPSLatitude().name()), (std::set<std::string>{"10"}));

    // The family accessors of one editor, on the selection (one of each kind, as they are made alike):
    // set on every editor, read where they agree.
    both.setIptcCity(TypedTagValue<std::string>::value("Oslo"));
    EXPECT_EQ(both.iptcCity(), "Oslo");
    a->setValue("Bergen", city());
    EXPECT_FALSE(both.iptcCity()) << "the editors differ";
    EXPECT_TRUE(both.oneOrMoreIptcLocationTagsAreEdited());
    both.setExifOrientationValue(6);
    both.horizontalFlipExifOrientation();
    EXPECT_EQ(both.exifOrientationValue(), 5); // mirrored and turned 270 degrees
}

TEST(EditionArrayTest, DateEditionsReachEveryMetadataDateButNotTheFileDates) {
    auto a = editorWith({{&TagItem::itemEXIFDateTimeOriginal(), "2024:01:31 23:00:00"},
                         {&TagItem::itemFileFileModifyDate(), "2024:01:31 23:00:00+00:00"},
                         {&TagItem::itemEXIFArtist(), "Jane"}});
    auto b = editorWith({{&TagItem::itemEXIFCreateDate(), "2024:12:31 23:00:00"}});
    DateValues hours;
    hours.hour = 2;
    TagEditorArrayEditions({a, b}).applyDateEditionToDateTags(DateEdition::shift(hours));
    EXPECT_EQ(a->currentValue(TagItem::itemEXIFDateTimeOriginal().name()), "2024:02:01 01:00:00");
    EXPECT_FALSE(a->isValueEdited(TagItem::itemFileFileModifyDate().name()));
    EXPECT_EQ(b->currentValue(TagItem::itemEXIFCreateDate().name()), "2025:01:01 01:00:00");

    // A date and its time move as one moment, on the time's own offset, whatever the machine's zone.
    auto c = editorWith({{&TagItem::itemIPTCDigitalCreationDate(), "2023:05:06"},
                         {&TagItem::itemIPTCDigitalCreationTime(), "23:37:53-04:00"}});
    hours.hour = 1;
    TagEditorArrayEditions({c}).applyDateEditionToDateTags(DateEdition::shift(hours));
    EXPECT_EQ(c->currentValue(TagItem::itemIPTCDigitalCreationDate().name()), "2023:05:07");
    EXPECT_EQ(c->currentValue(TagItem::itemIPTCDigitalCreationTime().name()), "00:37:53-04:00");
}

TEST(PasteboardTextTest, PairsRoundTripWithEscapes) {
    std::vector<TagPair> pairs{TagPair(artist(), "Jane \"JD\" Doe"), TagPair(copyright(), "line 1\nC:\\path"),
                               TagPair(city(), "")};
    std::string text = TagPasteboard::multipleValuesText(pairs);
    EXPECT_EQ(text.substr(0, text.find('\n')), R"(EXIF:Artist: "Jane \"JD\" Doe")");
    EXPECT_EQ(TagPasteboard::parseMultipleValues(text), pairs);

    auto parsed = TagPasteboard::parseMultipleValues("EXIF:Artist: \"ok\"\n"
                                                     "garbage line\n"
                                                     "EXIF:Copyright: \"unterminated\n"
                                                     "IPTC:City: \"Paris\" trailing\n"
                                                     "  IPTC:City: \"Rome\"  \r\n");
    EXPECT_EQ(parsed, (std::vector<TagPair>{TagPair(artist(), "ok"), TagPair(city(), "Rome")}));
}

TEST(EditionPasteTest, CopyKeepsAgreedValuesAndPasteClearsTheOthersOfTheFamilies) {
    auto pasteboard = std::make_shared<InProcessTagPasteboard>();
    auto a = editorWith({{&TagItem::itemEXIFArtist(), "Jane"}, {&TagItem::itemEXIFCopyright(), "A"}});
    auto b = editorWith({{&TagItem::itemEXIFArtist(), "Jane"}, {&TagItem::itemEXIFCopyright(), "B"}});
    auto copied = TagEditorArrayEditions({a, b}).copyTags({artist(), copyright(), city()}, *pasteboard);
    EXPECT_EQ(copied, std::vector<TagPair>{TagPair(artist(), "Jane")});
    EXPECT_EQ(pasteboard->string(), "EXIF:Artist: \"Jane\"\n");

    auto c = editorWith({{&TagItem::itemEXIFArtist(), "Old"},
                         {&TagItem::itemEXIFCopyright(), "C"},
                         {&TagItem::itemIPTCCity(), "Paris"}});
    auto d = editorWith({{&TagItem::itemEXIFCopyright(), "D"}});
    TagEditorArrayEditions targets({c, d});
    targets.pasteTags(std::vector<TagName>{copyright()}, *pasteboard);
    EXPECT_FALSE(c->isEdited()) << "the pasteboard holds no copyright";

    targets.pasteTags(true, *pasteboard);
    EXPECT_EQ(c->currentValue(artist()), "Jane");
    EXPECT_EQ(c->currentValue(copyright()), "") << "cleared with the rest of EXIF";
    EXPECT_EQ(c->currentValue(city()), "Paris") << "IPTC wasn't pasted";
    EXPECT_EQ(d->currentValue(artist()), "Jane");

    pasteboard->setString("EXIF:Copyright: \"(c) 2024\"\nEXIF:Artist: \"Ann\"\n");
    targets.pasteTags(std::vector<TagName>{copyright()}, *pasteboard);
    EXPECT_EQ(d->currentValue(copyright()), "(c) 2024");
    EXPECT_EQ(d->currentValue(artist()), "Jane") << "only the names asked for";
}

} // namespace
} // namespace corvane
