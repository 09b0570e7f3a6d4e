// Values a person gives for tags: the text to write, or the reason the tag can't hold them.
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagValueChecker.hpp"
#include "support/StorageValues.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace corvane;
using corvane::test::tagName;
using ::testing::HasSubstr;

TEST(TagValueChecker, WritesCanonicalNumbersAndTrimmedDatesAndRefusesWhatTheTagCantHold) {
    struct Case {
        const char* tag;
        std::string typed;
        std::string text;  // what to write, when accepted
        const char* error; // part of the reason when refused, else null
    };
    const Case cases[] = {
        {"EXIF:ExposureTime", "1/500", "0.00200000", nullptr},
        {"EXIF:Orientation", "6", "6", nullptr},
        {"EXIF:LensInfo", "24 70 2.8 4", "24.00000000 70.00000000 2.80000000 4.00000000", nullptr},
        {"EXIF:GPSLatitude", "45", "45.00000000", nullptr}, // degrees alone, for a fixed count of three
        {"EXIF:DateTimeOriginal", " 2023:02:03 10:00:00 ", "2023:02:03 10:00:00", nullptr},
        {"XMP:DateCreated", "2024:01:02 03:04:05.25+02:00", "2024:01:02 03:04:05.25+02:00", nullptr},
        {"XMP:DateCreated", "2024", "2024", nullptr},
        {"IPTC:ObjectName", std::string(64, 'x'), std::string(64, 'x'), nullptr},
        {"EXIF:Artist", "", "", nullptr}, // clears the tag
        {"EXIF:Artist", "  as typed  ", "  as typed  ", nullptr},
        {"EXIF:ResolutionUnit", "inches", "", "is not a valid value for EXIF:ResolutionUnit"},
        {"EXIF:ExposureTime", "1/0", "", "is not a valid value"},
        {"EXIF:Orientation", "99", "", ": one of 1, 2, 3, 4, 5, 6, 7, 8 is needed"},
        {"EXIF:LensInfo", "24 70 2.8", "", ": 4 values are needed"},
        {"EXIF:SubjectArea", "10 x 20", "", ": an element isn't a valid int16u"},
        {"IPTC:Keywords", "a,b,,c", "", ": an element is empty"},
        {"EXIF:GPSLongitude", "10 75 0", "", ": degrees from 0 to 180 are needed"},
        {"EXIF:ISO", "1e999", "", "EXIF:ISO: \"1e999\" is not a finite number"},
        {"IPTC:ObjectName", std::string(65, 'x'), "", ": longer than the 64 bytes the tag holds"},
        {"EXIF:DateTimeOriginal", "2024:01:02 03:04:05+02:00", "", ": the tag holds no time zone"},
        {"EXIF:DateTimeOriginal", "2024:01:02 03:04:05.25", "", ": the tag holds no fraction"},
        {"EXIF:DateTimeOriginal", "2024:01:02", "", ": a date and time is needed"},
        {"EXIF:DateTimeOriginal", "2023:02:30 10:00:00", "", ": no such date or time"},
        {"EXIF:DateTimeOriginal", "garbage", "", ": not a date in the form"},
        {"QuickTime:CreateDate", "2024:01:02", "", ": a date and time is needed"},
        {"XMP:DateCreated", "03:04:05", "", ": a date is needed"},
        {"XMP:DateCreated", "2024:01 10:00", "", ": a time needs a whole date"},
        {"IPTC:DateCreated", "2024:01:02 03:04", "", ": a date alone is needed"},
        {"IPTC:TimeCreated", "03:04:05.5", "", ": a time alone is needed"},
        {"EXIF:GPSTimeStamp", "10:00:00+01:00", "", ": a UTC time alone is needed"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.tag) + "=" + c.typed);
        const auto result = TagValueChecker::check(*tagName(c.tag).item(), c.typed);
        EXPECT_EQ(result.text, c.text);
        EXPECT_THAT(result.error, HasSubstr(c.error ? c.error : ""));
        EXPECT_EQ(result.isValid(), !c.error) << result.error;
    }
    // The whole text of a refusal: the value, the tag, why.
    EXPECT_EQ(TagValueChecker::check(TagItem::itemEXIFOrientation(), "sideways").error,
              "\"sideways\" is not a valid value for EXIF:Orientation");

    // Errors of several values in the order of the tags; a name the catalogue doesn't know is left out.
    EXPECT_EQ(
        TagValueChecker::errors({{tagName("EXIF:Orientation"), "9"},
                                 {tagName("EXIF:ISO"), "x"},
                                 {tagName("XMP:NoSuchTag"), "x"},
                                 {tagName("EXIF:Artist"), "fine"}}),
        (std::vector<std::string>{"\"x\" is not a valid value for EXIF:ISO: an element isn't a valid int16u",
                                  "\"9\" is not a valid value for EXIF:Orientation: one of 1, 2, 3, 4, 5, "
                                  "6, 7, 8 is needed (see `corvane tags`)"}));
}
