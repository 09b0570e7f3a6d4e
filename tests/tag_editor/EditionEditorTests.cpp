// The editing operations on one editor: the preferred family, orientation turns, copies between
// tags and date kinds, whole-family clears, text transforms, keyword sorting, date editions, the
// place across families and the image size.

#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/tag_editor/EXIFAccessor.hpp"
#include "corvane/tag_editor/IPTCAccessor.hpp"
#include "corvane/tag_editor/QuickTimeAccessor.hpp"
#include "corvane/tag_editor/TagEditorEditions.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "support/EditorFixtures.hpp"
#include "tag_edition/EditionRecorder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace corvane {
namespace {

using test::EditionRecorder;
using test::editorWith;

std::optional<std::string> current(const std::shared_ptr<TagEditor>& editor, const TagItem& item) {
    return editor->currentValue(item.name());
}

const TagItem& xmpArtist() {
    return *TagItem::find("XMP", "Artist");
}

DateValues offset(std::optional<int64_t> days, std::optional<int64_t> hours) {
    DateValues values;
    values.day = days;
    values.hour = hours;
    return values;
}

// Movies prefer QuickTime, and so do images whose EXIF can't be created (a QuickTime image), but not
// a HEIC photo (its QuickTime may be changed, not created) nor a folder.
TEST(EditionFormatTest, MoviesAndFormatsWithoutEXIFCreationPreferQuickTime) {
    for (const auto& [path, prefers] : std::vector<std::pair<std::string, bool>>{{"/m/clip.mov", true},
                                                                                 {"/m/still.qtif", true},
                                                                                 {"/p/shot.jpg", false},
                                                                                 {"/p/shot.heic", false},
                                                                                 {"/p/folder", false}})
        EXPECT_EQ(TagEditorEditions(*editorWith({}, path)).prefersQuicktime(), prefers) << path;
}

// The turns themselves are the accessors' test; here, the family each format turns, and the clamp.
TEST(EditionOrientationTest, TurnsThePreferredFamilyAndClamps) {
    auto photo = editorWith({{&TagItem::itemEXIFOrientation(), "6"}});
    TagEditorEditions editions(*photo);
    editions.rotateLeftOrientation();
    EXPECT_EQ(editions.orientation(), ExifOrientation::horizontal);
    editions.verticalFlipOrientation(); // a flip twice over, as the accessors' test does, can't tell which
    EXPECT_EQ(editions.orientationValue(), 4);
    EXPECT_EQ(editions.originalOrientationValue(), 6);

    editions.setOrientationValue(0);
    EXPECT_EQ(current(photo, TagItem::itemEXIFOrientation()), "1");
    editions.setOrientationValue(9);
    EXPECT_EQ(current(photo, TagItem::itemEXIFOrientation()), "8");

    auto movie = editorWith({}, "/m/clip.mov");
    TagEditorEditions movieEditions(*movie);
    movieEditions.rotateLeftOrientation();
    EXPECT_EQ(current(movie, TagItem::itemQuickTimeVideoOrientation()), "8");
    EXPECT_FALSE(current(movie, TagItem::itemEXIFOrientation()));
}

TEST(EditionCopyTest, ValuesGoThroughBothConvertersAndDatesByKind) {
    using I = TagItem;
    auto editor = editorWith({{&I::itemEXIFArtist(), "Jane"},
                              {&I::itemEXIFDateTimeOriginal(), "2024:05:01 10:20:30"},
                              {&I::itemEXIFCreateDate(), "2001:02:03 04:05:06"},
                              {&I::itemEXIFGPSTimeStamp(), "23:59:59"}});
    TagEditorEditions editions(*editor);
    // In order: whether the copy is of a date, source, target, and the target's value after it.
    const std::tuple<bool, const TagItem*, const TagItem*, std::optional<std::string>> steps[] = {
        {false, &I::itemEXIFArtist(), &xmpArtist(), "Jane"},
        {false, &I::itemIPTCCity(), &I::itemXMPCity(), std::nullopt}, // no source value, nothing set
        {false, &I::itemEXIFDateTimeOriginal(), &I::itemEXIFGPSDateStamp(), "2024:05:01"},
        // A date-only source keeps the target's time; a time-only one its date.
        {true, &I::itemEXIFGPSDateStamp(), &I::itemEXIFCreateDate(), "2024:05:01 04:05:06"},
        {true, &I::itemEXIFGPSTimeStamp(), &I::itemEXIFCreateDate(), "2024:05:01 23:59:59"},
        {true, &I::itemEXIFGPSTimeStamp(), &I::itemEXIFModifyDate(), std::nullopt},   // no day to land on
        {true, &I::itemEXIFGPSTimeStamp(), &I::itemEXIFGPSDateStamp(), "2024:05:01"}, // copies nothing
        {true, &I::itemEXIFDateTimeOriginal(), &I::itemEXIFGPSTimeStamp(), "10:20:30"}};
    for (const auto& [date, from, to, expected] : steps) {
        date ? editions.copyDate(from->name(), to->name()) : editions.copyValue(from->name(), to->name());
        EXPECT_EQ(current(editor, *to), expected)
            << from->name().rawValue() << " to " << to->name().rawValue();
    }
    EXPECT_EQ(editions.rawValue(I::itemEXIFDateTimeOriginal().name(), I::itemEXIFGPSDateStamp().name()),
              "2024:05:01");
    EXPECT_FALSE(
        editions.rawValue(TagName(TagStream::streamEXIF, TagKey("Nope")), I::itemEXIFArtist().name()));
}

TEST(EditionStreamTest, ClearingAFolderTouchesTheCatalogueAFileOnlyWhatItHolds) {
    auto folder = editorWith({}, "/photos/trip");
    ASSERT_TRUE(folder->isFolder());
    TagEditorEditions(*folder).clearValues({TagStream::streamIPTC});
    auto writable = std::count_if(TagStream::streamIPTC.items().begin(), TagStream::streamIPTC.items().end(),
                                  [](const TagItem* item) { return item->isWritable(); });
    EXPECT_GT(writable, 10);
    EXPECT_EQ(static_cast<long>(folder->writtenTagNames().size()), writable);

    auto file = editorWith({{&TagItem::itemIPTCCity(), "Paris"}, {&TagItem::itemEXIFArtist(), "Jane"}});
    TagEditorEditions editions(*file);
    editions.clearValues({TagStream::streamIPTC});
    EXPECT_EQ(file->writtenTagNames(), std::vector<TagName>{TagItem::itemIPTCCity().name()});
    EXPECT_EQ(current(file, TagItem::itemIPTCCity()), "");
    editions.restoreValues({TagStream::streamIPTC});
    EXPECT_FALSE(file->isEdited());
}

TEST(EditionTextTest, TransformsApplyToTextAndListsElementByElement) {
    using I = TagItem;
    using E = TagEditorEditions;
    auto editor = editorWith({{&I::itemEXIFArtist(), "  jane DOE\n"},
                              {&I::itemEXIFExifImageWidth(), " 640 "},
                              {&I::itemIPTCKeywords(), "sea view, ÉTÉ"}});
    TagEditorEditions editions(*editor);
    const std::tuple<const TagItem*, void (E::*)(const TagItem&) const, std::optional<std::string>> steps[] =
        {{&I::itemEXIFArtist(), &E::trimWhitespacesText, "jane DOE"},
         {&I::itemEXIFArtist(), &E::capitalizeText, "Jane Doe"},
         {&I::itemEXIFArtist(), &E::uppercaseText, "JANE DOE"},
         {&I::itemEXIFExifImageWidth(), &E::trimWhitespacesText, " 640 "}, // a number is no text
         {&I::itemIPTCKeywords(), &E::lowercaseText, "sea view,été"},
         {&I::itemIPTCKeywords(), &E::capitalizeText, "Sea View,Été"},
         {&I::itemXMPCity(), &E::uppercaseText, std::nullopt}}; // no value, nothing set
    for (const auto& [item, transform, expected] : steps) {
        (editions.*transform)(*item);
        EXPECT_EQ(current(editor, *item), expected) << item->name().rawValue();
    }
    EXPECT_FALSE(editor->isValueEdited(I::itemEXIFExifImageWidth().name()));
}

TEST(EditionTextTest, KeywordSortingIsStableAndOnlyForLists) {
    auto editor = editorWith(
        {{&TagItem::itemIPTCKeywords(), "pear, Apple, apple, banana"}, {&TagItem::itemEXIFArtist(), "b, a"}});
    TagEditorEditions editions(*editor);
    const TagItem& keywords = TagItem::itemIPTCKeywords();
    editions.ascendingSortKeywords(keywords);
    EXPECT_EQ(current(editor, keywords), "Apple,apple,banana,pear");
    editions.descendingSortKeywords(keywords);
    EXPECT_EQ(current(editor, keywords), "pear,banana,apple,Apple");
    editions.ascendingSortKeywords(TagItem::itemEXIFArtist());
    EXPECT_EQ(current(editor, TagItem::itemEXIFArtist()), "b, a");
    EXPECT_FALSE(editor->isValueEdited(TagItem::itemEXIFArtist().name()));
}

// The calendar arithmetic is the date editions' own test; here, which tags each edition touches and
// how a date-only tag is written back. The list form (a date with its time) is the selection's test.
TEST(EditionDateTest, EachEditionActsOnDateTagsAlone) {
    auto editor = editorWith({{&TagItem::itemEXIFDateTimeOriginal(), "2024:01:31 23:30:00"},
                              {&TagItem::itemEXIFCreateDate(), "2023:12:31 12:00:00"},
                              {&TagItem::itemEXIFGPSDateStamp(), "2024:02:28"},
                              {&TagItem::itemEXIFArtist(), "Jane"}});
    DateValues year, whole;
    year.year = 1999;
    whole.year = 2020, whole.month = 6, whole.day = 15, whole.hour = 8, whole.minute = 0, whole.second = 5;
    const std::tuple<DateEdition, const TagItem*, std::optional<std::string>> steps[] = {
        {DateEdition::shift(offset(std::nullopt, 1)), &TagItem::itemEXIFDateTimeOriginal(),
         "2024:02:01 00:30:00"},
        {DateEdition::shift(offset(2, std::nullopt)), &TagItem::itemEXIFGPSDateStamp(), "2024:03:01"},
        {DateEdition::update(year), &TagItem::itemEXIFCreateDate(), "1999:12:31 12:00:00"},
        {DateEdition::update(year), &TagItem::itemEXIFModifyDate(), std::nullopt}, // nothing to update
        {DateEdition::select(whole), &TagItem::itemEXIFModifyDate(), "2020:06:15 08:00:05"},
        {DateEdition::remove(), &TagItem::itemEXIFCreateDate(), ""},
        {DateEdition::restore(), &TagItem::itemEXIFCreateDate(), "2023:12:31 12:00:00"},
        {DateEdition::shift(offset(1, std::nullopt)), &TagItem::itemEXIFArtist(), "Jane"}, // not a date tag
        {DateEdition::remove(), &TagItem::itemEXIFArtist(), "Jane"}};
    TagEditorEditions editions(*editor);
    for (const auto& [edition, item, expected] : steps) {
        editions.editDate(edition, *item);
        EXPECT_EQ(current(editor, *item), expected)
            << edition.description() << " on " << item->name().rawValue();
    }
}

// Each family's values, read back from a real write, are the round-trip tests'; here, the families a
// format doesn't get, the one batch, and what the place replaces.
TEST(EditionLocationTest, SetLocationSpreadsOverTheFamiliesTheFormatHas) {
    Location place(48.8584, 2.2945);
    place.setPlaceName("Eiffel Tower");

    auto photo = editorWith({{&TagItem::itemIPTCProvince_State(), "Texas"}});
    EditionRecorder recorder;
    TagEditorEditions(*photo).setLocation(TypedTagValue<Location>::value(place));
    EXPECT_EQ(EditionRecorder::kinds(recorder.drain()), "begin flush end") << "one batch";
    EXPECT_EQ(IPTCAccessor(*photo).iptcProvince_State(), "");
    EXPECT_FALSE(current(photo, TagItem::itemQuickTimeGPSCoordinates())) << "no QuickTime in a JPEG";

    auto movie = editorWith({}, "/m/clip.mov");
    TagEditorEditions(*movie).setLocation(TypedTagValue<Location>::value(place));
    EXPECT_FALSE(EXIFAccessor(*movie).exifGPSCoordinate());

    TagEditorEditions(*photo).setLocation(TypedTagValue<Location>::restore());
    EXPECT_FALSE(photo->isEdited());
    TagEditorEditions(*movie).setLocation(TypedTagValue<Location>::clear());
    EXPECT_FALSE(current(movie, TagItem::itemQuickTimeGPSCoordinates()));
    EXPECT_FALSE(TagEditorEditions(*movie).gpsCoordinate());
}

// An infinite or huge latitude (from a run of 310 digits, or 2^63) has no ISO 6709 text: it is
// refused before any family changes, rather than stopping the process in the writer.
TEST(EditionLocationTest, PositionsOffTheGlobeAreRefusedBeforeAnyFamilyChanges) {
    auto movie = editorWith({}, "/m/clip.mov");
    for (const Coordinate& off :
         {Coordinate(std::numeric_limits<double>::infinity(), 1), Coordinate(9.3e18, 1), Coordinate(45, 181),
          Coordinate(std::numeric_limits<double>::quiet_NaN(), 0)}) {
        EXPECT_THROW(TagEditorEditions(*movie).setGPSCoordinate(TypedTagValue<Coordinate>::value(off)),
                     Error);
        EXPECT_THROW(TagEditorEditions(*movie).setLocation(TypedTagValue<Location>::value(
                         Location(off.latitude().value(), off.longitude().value()))),
                     Error);
        EXPECT_THROW(
            QuickTimeAccessor(*movie).setQuicktimeGPSCoordinate(TypedTagValue<Coordinate>::value(off)),
            Error);
    }
    EXPECT_FALSE(movie->isEdited());
    TagEditorEditions(*movie).setGPSCoordinate(TypedTagValue<Coordinate>::value(Coordinate(-90, 180)));
    EXPECT_EQ(QuickTimeAccessor(*movie).quicktimeGPSCoordinate(), Coordinate(-90, 180));
}

TEST(EditionLocationTest, GPSCoordinatePrefersQuickTimeThenEXIFThenXMP) {
    auto editor = editorWith({{&TagItem::itemXMPGPSLatitude(), "1"},
                              {&TagItem::itemXMPGPSLongitude(), "2"},
                              {&TagItem::itemEXIFGPSLatitude(), "3"}});
    EXPECT_EQ(TagEditorEditions(*editor).gpsCoordinate(), Coordinate(1, 2)) << "EXIF lacks its longitude";
    editor->setValue("4", TagItem::itemEXIFGPSLongitude().name());
    EXPECT_EQ(TagEditorEditions(*editor).gpsCoordinate(), Coordinate(3, 4));
}

TEST(EditionSizeTest, FirstCompletePairGivesTheSize) {
    auto editor = editorWith({{&TagItem::itemEXIFImageWidth(), "4000"},
                              {&TagItem::itemEXIFExifImageWidth(), "640"},
                              {&TagItem::itemEXIFExifImageHeight(), "480"}});
    EXPECT_EQ(TagEditorEditions(*editor).imageSize(), (ImageSize{640, 480}));
    EXPECT_FALSE(TagEditorEditions(*editorWith({})).imageSize());
}

} // namespace
} // namespace corvane
