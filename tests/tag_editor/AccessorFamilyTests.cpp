// The typed family views on one editor: GPS numbers with their references, stamps, the place as
// text, QuickTime coordinates and names, orientation, embedded images and the group predicates.

#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/tag_editor/EXIFAccessor.hpp"
#include "corvane/tag_editor/EmbeddedImageAccessor.hpp"
#include "corvane/tag_editor/IPTCAccessor.hpp"
#include "corvane/tag_editor/QuickTimeAccessor.hpp"
#include "corvane/tag_editor/XMPAccessor.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "support/EditorFixtures.hpp"
#include "tag_edition/EditionRecorder.hpp"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::EditionRecorder;
using test::editorWith;

const TagName& name(const TagItem& item) {
    return item.name();
}

// The editor's current values of `items`, in order, for comparing whole.
std::vector<std::optional<std::string>> currents(const TagEditor& editor,
                                                 std::initializer_list<const TagItem*> items) {
    std::vector<std::optional<std::string>> values;
    for (const TagItem* item : items)
        values.push_back(editor.currentValue(item->name()));
    return values;
}
using Texts = std::vector<std::optional<std::string>>;

TEST(AccessorGPSTest, LatitudeReadsTheMagnitudeWithItsReference) {
    const TagItem &number = TagItem::itemEXIFGPSLatitude(), &reference = TagItem::itemEXIFGPSLatitudeRef();
    const auto latitude = [](const std::vector<std::pair<const TagItem*, std::string>>& values) {
        return EXIFAccessor(*editorWith(values)).exifGPSLatitude();
    };
    EXPECT_EQ(latitude({{&number, "45.5"}, {&reference, "S"}}), Latitude(-45.5));
    EXPECT_EQ(latitude({{&number, "45.5"}}), Latitude(45.5)) << "no reference";
    EXPECT_FALSE(latitude({{&number, "-45.5"}})) << "the number tag holds a magnitude";
    EXPECT_FALSE(latitude({{&number, "north"}}));

    auto west =
        editorWith({{&TagItem::itemEXIFGPSLongitude(), "75.5"}, {&TagItem::itemEXIFGPSLongitudeRef(), "W"}});
    EXPECT_EQ(EXIFAccessor(*west).exifGPSLongitude(), Longitude(-75.5));
    EXPECT_FALSE(EXIFAccessor(*west).exifGPSCoordinate()) << "a coordinate needs both axes";
}

TEST(AccessorGPSTest, WritersSplitSignIntoMagnitudeAndReference) {
    EditionRecorder recorder;
    auto editor = editorWith({});
    EXIFAccessor exif(*editor);
    exif.setExifGPSLatitude(TypedTagValue<Latitude>::value(Latitude(-45.5)));
    exif.setExifGPSAltitude(TypedTagValue<Altitude>::value(Altitude(-12)));
    exif.setExifGPSImgDirection(TypedTagValue<double>::value(270.25));
    EXPECT_EQ(
        currents(*editor, {&TagItem::itemEXIFGPSLatitude(), &TagItem::itemEXIFGPSLatitudeRef(),
                           &TagItem::itemEXIFGPSAltitude(), &TagItem::itemEXIFGPSAltitudeRef(),
                           &TagItem::itemEXIFGPSImgDirection(), &TagItem::itemEXIFGPSImgDirectionRef()}),
        (Texts{"45.50000000", "S", "12.00000000", "1", "270.25000000", "T"}));
    EXPECT_DOUBLE_EQ(exif.exifGPSAltitude()->value(), -12);
    // No range is enforced: an altitude whose fixed form takes 80 characters is written whole.
    exif.setExifGPSAltitude(TypedTagValue<Altitude>::value(Altitude(-1e70)));
    EXPECT_DOUBLE_EQ(exif.exifGPSAltitude()->value(), -1e70);
    recorder.drain();

    // A whole location reaches the history as one batch.
    GPSLocation location(Coordinate(48.8566, 2.3522), Altitude(35), std::nullopt);
    exif.setExifGPSLocation(TypedTagValue<GPSLocation>::value(location));
    auto events = recorder.drain();
    EXPECT_EQ(EditionRecorder::kinds(events), "begin flush end");
    EXPECT_EQ(exif.exifGPSLocation(), location) << "an absent direction clears the direction tags";
    EXPECT_FALSE(editor->currentValue(name(TagItem::itemEXIFGPSImgDirection())))
        << "clearing a tag the file doesn't hold takes the new value back";
}

TEST(AccessorGPSTest, ClearingTheLocationLeavesTheStampsAndRestoreTakesEditsBack) {
    auto editor = editorWith({{&TagItem::itemEXIFGPSLatitude(), "10"},
                              {&TagItem::itemEXIFGPSLatitudeRef(), "N"},
                              {&TagItem::itemEXIFGPSLongitude(), "20"},
                              {&TagItem::itemEXIFGPSLongitudeRef(), "E"},
                              {&TagItem::itemEXIFGPSDateStamp(), "2024:05:01"},
                              {&TagItem::itemEXIFGPSTimeStamp(), "10:20:30"}});
    EXIFAccessor exif(*editor);
    const auto stamp = exif.exifGPSStamp();
    EXPECT_EQ(stamp, DateTime(2024, 5, 1, 10, 20, 30));
    ASSERT_TRUE(exif.exifGPSLocation());
    EXPECT_EQ(exif.exifGPSLocation()->stamp(), stamp);

    exif.setExifGPSLocation(TypedTagValue<GPSLocation>::clear());
    EXPECT_FALSE(exif.exifGPSCoordinate());
    EXPECT_EQ(editor->currentValue(name(TagItem::itemEXIFGPSLatitudeRef())), "");
    EXPECT_EQ(exif.exifGPSStamp(), stamp) << "the stamps are outside the location's tags";
    EXPECT_TRUE(exif.oneOrMoreExifLocationTagsAreEdited());

    exif.setExifGPSLocation(TypedTagValue<GPSLocation>::restore());
    EXPECT_TRUE(exif.exifGPSCoordinate());
    EXPECT_FALSE(exif.oneOrMoreExifLocationTagsAreEdited());

    exif.setExifGPSStamp(TypedTagValue<DateTime>::value(DateTime(2023, 12, 31, 23, 59, 58)));
    EXPECT_EQ(currents(*editor, {&TagItem::itemEXIFGPSDateStamp(), &TagItem::itemEXIFGPSTimeStamp()}),
              (Texts{"2023:12:31", "23:59:58"}));
}

// A signed position read back from XMP is the file round trips' test.
TEST(AccessorGPSTest, XMPCarriesTheHemisphereInTheValue) {
    auto editor = editorWith({});
    XMPAccessor xmp(*editor);
    xmp.setXmpGPSLocation(
        TypedTagValue<GPSLocation>::value(GPSLocation(Coordinate(-45.5, -75.25), Altitude(-3))));
    EXPECT_EQ(currents(*editor, {&TagItem::itemXMPGPSLatitude(), &TagItem::itemXMPGPSLongitude(),
                                 &TagItem::itemXMPGPSAltitude(), &TagItem::itemXMPGPSAltitudeRef()}),
              (Texts{"-45.50000000", "-75.25000000", "3.00000000", "1"}));
    EXPECT_EQ(xmp.xmpGPSLocation(), GPSLocation(Coordinate(-45.5, -75.25), Altitude(-3)));
}

TEST(AccessorTextLocationTest, FiveTagsReadAsOnePlaceAndPredicatesKeepToTheirFamily) {
    auto editor = editorWith({{&TagItem::itemIPTCCity(), "Paris"},
                              {&TagItem::itemIPTCCountry_PrimaryLocationName(), "France"},
                              {&TagItem::itemIPTCProvince_State(), "Texas"}});
    IPTCAccessor iptc(*editor);
    EXPECT_EQ(iptc.iptcTextLocation(), TextLocation(std::nullopt, std::nullopt, std::nullopt, "Paris",
                                                    "Texas", std::nullopt, "France", std::nullopt));

    auto blank = editorWith({{&TagItem::itemIPTCCity(), "   "}});
    EXPECT_FALSE(IPTCAccessor(*blank).iptcTextLocation()) << "all blank is no place";

    // A place written whole is read back by the file round trips; that a new place without a state
    // doesn't keep the old one, by the location edition test.

    // The group predicates look at their own family only.
    auto paris = editorWith({{&TagItem::itemIPTCCity(), "Paris"}});
    EXPECT_TRUE(IPTCAccessor(*paris).hasOneOrMoreIptcLocationValues());
    EXPECT_FALSE(EXIFAccessor(*paris).hasOneOrMoreExifLocationValues());
    EXPECT_FALSE(XMPAccessor(*paris).hasOneOrMoreXmpLocationValues());
    EXPECT_FALSE(IPTCAccessor(*paris).oneOrMoreIptcLocationTagsAreEdited());
    XMPAccessor(*paris).setXMPLocationCity(TypedTagValue<std::string>::value("Rome"));
    EXPECT_TRUE(XMPAccessor(*paris).oneOrMoreXmpLocationTagsAreEdited());
}

TEST(AccessorTextLocationTest, CountryCodesAreCheckedAgainstTheCountryIndex) {
    auto editor = editorWith({{&TagItem::itemIPTCCountry_PrimaryLocationCode(), "DE"}});
    IPTCAccessor iptc(*editor);
    iptc.setIptcLocationCode(TypedTagValue<std::string>::value("zz"));
    EXPECT_EQ(iptc.iptcLocationCode(), "DE");
    EXPECT_FALSE(editor->isEdited());
    iptc.setIptcLocationCode(TypedTagValue<std::string>::value("fr"));
    EXPECT_EQ(iptc.iptcLocationCode(), "fr");
    iptc.setIptcLocationCode(TypedTagValue<std::string>::clear());
    EXPECT_EQ(iptc.iptcLocationCode(), "");

    XMPAccessor xmp(*editor);
    xmp.setXmpCountryCode(TypedTagValue<std::string>::value("ESP"));
    EXPECT_EQ(xmp.xmpCountryCode(), "ESP");
}

// Reading a QuickTime position back is the file round trips' and the address look-up's test.
TEST(AccessorQuickTimeTest, CoordinatesAreISO6709AndTheNameIsTheFormattedAddress) {
    auto editor = editorWith({}, "/movies/clip.mov");
    QuickTimeAccessor quicktime(*editor);
    quicktime.setQuicktimeGPSCoordinate(TypedTagValue<Coordinate>::value(Coordinate(40.2, -75.5)));
    EXPECT_EQ(editor->currentValue(name(TagItem::itemQuickTimeGPSCoordinates())), "+40.20000-075.50000/");
    EXPECT_TRUE(quicktime.hasOneOrMoreQuicktimeLocationValues());

    TextLocation place(std::nullopt, std::nullopt, std::nullopt, "Paris", std::nullopt, std::nullopt,
                       "France", "FR");
    quicktime.setQuicktimeLocationName(TypedTagValue<TextLocation>::value(place));
    EXPECT_EQ(quicktime.quicktimeLocationName(), place.formattedAddress());
    quicktime.setQuicktimeLocationName(TypedTagValue<TextLocation>::restore());
    EXPECT_FALSE(quicktime.quicktimeLocationName());

    auto other = editorWith({{&TagItem::itemQuickTimeGPSCoordinates(), "not a place"}}, "/movies/b.mov");
    EXPECT_FALSE(QuickTimeAccessor(*other).quicktimeGPSCoordinate());
}

TEST(AccessorOrientationTest, OutOfRangeReadsHorizontalAndTurnsFollowTheTable) {
    auto editor = editorWith({{&TagItem::itemEXIFOrientation(), "9"}});
    EXIFAccessor exif(*editor);
    EXPECT_EQ(exif.exifOrientationValue(), 9);
    EXPECT_EQ(exif.exifOrientation(), ExifOrientation::horizontal);

    auto absent = editorWith({});
    EXPECT_EQ(EXIFAccessor(*absent).exifOrientationValue(), 1);

    // Each turn once, from 6: a turn wired to another one ends elsewhere.
    exif.setExifOrientation(ExifOrientation::rotate90CW);
    exif.horizontalFlipExifOrientation();
    exif.verticalFlipExifOrientation();
    exif.rotateRightExifOrientation();
    EXPECT_EQ(exif.exifOrientation(), ExifOrientation::horizontal);
    exif.rotateLeftExifOrientation();
    EXPECT_EQ(exif.exifOrientationValue(), 8);
    EXPECT_EQ(exif.originalExifOrientationValue(), 9);

    auto movie = editorWith({{&TagItem::itemQuickTimeVideoOrientation(), "3"}}, "/movies/clip.mov");
    QuickTimeAccessor quicktime(*movie);
    quicktime.rotateLeftQuicktimeOrientation();
    EXPECT_EQ(quicktime.quicktimeOrientation(), ExifOrientation::rotate90CW);
    EXPECT_EQ(quicktime.originalQuicktimeOrientation(), ExifOrientation::rotate180);
}

TEST(AccessorEmbeddedImageTest, ThumbnailPresenceFollowsItsLength) {
    auto editor = editorWith({{&TagItem::itemEXIFThumbnailLength(), "5120"},
                              {&TagItem::itemEXIFThumbnailImage(), "(Binary data 5120 bytes)"}});
    EmbeddedImageAccessor images(*editor);
    EXPECT_TRUE(images.hasCurrentExifThumbnail() && !images.isExifThumbnailEdited());
    EXPECT_FALSE(images.hasCurrentExifPreview());
    images.clearExifThumbnail();
    EXPECT_TRUE(!images.hasCurrentExifThumbnail() && images.hasOriginalExifThumbnail());
    EXPECT_TRUE(images.isExifThumbnailEdited() &&
                editor->isValueEdited(name(TagItem::itemEXIFThumbnailImage())));
    images.restoreExifThumbnail();
    EXPECT_FALSE(images.isExifThumbnailEdited());
    EXPECT_FALSE(editor->isEdited());
}

} // namespace
} // namespace corvane
