#include "corvane/converters/DateTimeValueConverter.hpp"
#include "corvane/tag_value/TagType.hpp"
#include "corvane/value_models/DateValues.hpp"
#include "value_models/ZoneGuard.hpp"

#include <gtest/gtest.h>
#include <unicode/timezone.h>

#include <cmath>
#include <cstdio>
#include <ctime>
#include <thread>
#include <vector>

using namespace corvane;

namespace {

Date utc(int y, int mo, int d, int h, int mi, int s) {
    std::tm tm{};
    tm.tm_sec = s, tm.tm_min = mi, tm.tm_hour = h, tm.tm_mday = d, tm.tm_mon = mo - 1, tm.tm_year = y - 1900;
    return Date(static_cast<double>(timegm(&tm)));
}

// Runs every test in Berlin time (UTC+1 in winter, +2 in summer) and puts the
// process's zone back afterwards.
class DateTimeValueConverterTest : public ::testing::Test {
protected:
    ZoneGuard zone{"Europe/Berlin"};
    std::optional<Date> parse(const char* s) const { return full.typedValueFromStringValue(std::string(s)); }

    DateTimeValueConverter full{"yyyy:MM:dd HH:mm:ss"};
};

} // namespace

TEST_F(DateTimeValueConverterTest, ReadsEveryShapeByItsLengthWithZonesAndFractions) {
    EXPECT_EQ(parse("2021:03:04 05:06:07"), utc(2021, 3, 4, 4, 6, 7));
    EXPECT_EQ(parse("2021"), utc(2020, 12, 31, 23, 0, 0));
    EXPECT_EQ(parse("20210304"), utc(2021, 3, 3, 23, 0, 0));
    EXPECT_EQ(parse("2021:03:04"), utc(2021, 3, 3, 23, 0, 0));
    EXPECT_EQ(parse("20210304050607"), utc(2021, 3, 4, 4, 6, 7));
    EXPECT_EQ(parse("  2021_03_04 05:06:07\n"), utc(2021, 3, 4, 4, 6, 7));
    EXPECT_EQ(parse("2021:07:04 05:06:07"), utc(2021, 7, 4, 3, 6, 7)); // summer time
    EXPECT_EQ(parse("2021:03:04 05:06:07+02:00"), utc(2021, 3, 4, 3, 6, 7));
    EXPECT_EQ(parse("2021:03:04 05:06:07-0500"), utc(2021, 3, 4, 10, 6, 7));
    EXPECT_EQ(parse("2021:03:04 05:06:07Z"), utc(2021, 3, 4, 5, 6, 7)); // UTC, as XMP means it
    EXPECT_EQ(parse("2021:03:04 05:06:07.123456"), utc(2021, 3, 4, 4, 6, 7).addingTimeInterval(0.123456));
    EXPECT_EQ(parse("2021:03:04 05:06+01:00"), utc(2021, 3, 4, 4, 6, 0)); // XMP without seconds
}

// No tag's value moves or vanishes with the machine's zone: a written offset and fraction are kept
// by the tags that can hold them, a shift moves the wall clock and keeps the offset, and a local
// time that the zone skips (the hour lost to daylight saving) is read and written back as it stands.
TEST_F(DateTimeValueConverterTest, ValuesKeepTheirOwnClockOnAnyMachine) {
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("UTC"));
    const auto xmp = TagType(TagType::dateTimeZone).converter();
    const auto quickTime = TagType(TagType::localDateTime).converter();
    const auto iptcTime = TagType(TagType::time).converter();
    for (const char* text :
         {"2023:05:06 11:25:40+03:00", "2023:05:06 11:25:40.5-04:00", "2023:05:06 11:25:40Z"})
        EXPECT_EQ(xmp->stringValueFromStringValue(text), text);
    EXPECT_EQ(xmp->stringValueFromStringValue("2023:05:06 11:25+03:00"), "2023:05:06 11:25:00+03:00");
    EXPECT_EQ(xmp->stringValueFromStringValue("2004:02:26"), "2004:02:26");
    EXPECT_EQ(xmp->stringValueFromStringValue("1920"), "1920");
    EXPECT_EQ(quickTime->stringValueFromStringValue("2023:05:06 11:25:40+03:00"),
              "2023:05:06 11:25:40+03:00");
    EXPECT_EQ(iptcTime->stringValueFromStringValue("23:37:53-04:00"), "23:37:53-04:00");

    DateValues hour;
    hour.hour = 1;
    const DynamicValue lateValue = iptcTime->nativeValueFromStringValue("23:37:53-04:00");
    const Date* late = lateValue.dateValue();
    ASSERT_TRUE(late);
    EXPECT_EQ(iptcTime->stringValueFromNativeValue(DynamicValue(*hour.shiftDate(*late))), "00:37:53-04:00");

    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("America/New_York"));
    const auto skipped = parse("2023:03:12 02:30:00");
    ASSERT_TRUE(skipped);
    EXPECT_EQ(*skipped, utc(2023, 3, 12, 7, 30, 0)); // read with the offset before the change
    const auto exif = TagType(TagType::dateTime).converter();
    EXPECT_EQ(exif->stringValueFromNativeValue(DynamicValue(*skipped)), "2023:03:12 02:30:00");
    EXPECT_EQ(exif->stringValueFromNativeValue(DynamicValue(*hour.shiftDate(*skipped))),
              "2023:03:12 03:30:00");
    EXPECT_EQ(full.stringValueFromTypedValue(skipped), "2023:03:12 03:30:00"); // the process's clock
}

TEST_F(DateTimeValueConverterTest, RefusesWhatTheStrictFormatterRefusesAndPutsTimesAloneOnToday) {
    for (auto s : {"", "   ", "2021-03-04", "2021:13:04", "2021:02:30", "2021:03:04 25:00:00", "abcd", "202"})
        EXPECT_EQ(parse(s), std::nullopt) << s;
    std::string today = DateTimeValueConverter::format(Date::now(), "yyyy:MM:dd");
    auto at = [&](const char* time) { return parse((today + " " + time).c_str()); };
    EXPECT_EQ(parse("05:06:07"), at("05:06:07"));
    EXPECT_EQ(parse("05"), at("05:00:00"));
    EXPECT_EQ(parse("2021:07"), at("20:21:07")); // six digits read as a time
    auto zoned = parse("05:06:07+00:00");
    ASSERT_TRUE(zoned);
    EXPECT_EQ(std::fmod(zoned->timeIntervalSince1970(), 86400.0), 5 * 3600 + 6 * 60 + 7); // 05:06:07 UTC
}

TEST_F(DateTimeValueConverterTest, WritesInItsOwnFormat) {
    EXPECT_EQ(full.stringValueFromStringValue("20210304050607"), "2021:03:04 05:06:07");
    DateTimeValueConverter zoned("yyyy:MM:dd HH:mm:ssZZZZZ");
    EXPECT_EQ(zoned.stringValueFromStringValue("2021:07:04 05:06:07"), "2021:07:04 05:06:07+02:00");
    EXPECT_EQ(zoned.stringValueFromStringValue("2021:03:04 05:06:07-05:00"), "2021:03:04 11:06:07+01:00");
    DateTimeValueConverter dateOnly("yyyy:MM:dd");
    EXPECT_EQ(dateOnly.stringValueFromStringValue("2021:03:04 23:59:59"), "2021:03:04");
    DateTimeValueConverter timeOnly("HH:mm:ss");
    EXPECT_EQ(timeOnly.formattedValueFromStringValue("2021:03:04 23:59:59"), "23:59:59");

    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("UTC"));
    EXPECT_EQ(zoned.stringValueFromTypedValue(utc(2021, 3, 4, 5, 6, 7)), "2021:03:04 05:06:07Z");
}

TEST_F(DateTimeValueConverterTest, OtherFormsAndNativeValuesOfEveryKind) {
    const OptionalString typed = "2021:03:04 05:06:07+02:00";
    DateTimeValueConverter zoned("yyyy:MM:dd HH:mm:ssZZZZZ");
    EXPECT_EQ(zoned.exifToolValueFromStringValue("garbage"), DynamicValue("garbage"));
    EXPECT_EQ(zoned.nativeValueFromStringValue(typed), DynamicValue(utc(2021, 3, 4, 3, 6, 7)));
    EXPECT_EQ(zoned.objectValueFromStringValue(typed), ObjectValue("2021:03:04 04:06:07+01:00"));
    EXPECT_EQ(zoned.jsonValueFromNativeValue(utc(2021, 3, 4, 3, 6, 7)),
              DynamicValue("2021:03:04 04:06:07+01:00"));
    EXPECT_EQ(zoned.objectValueFromStringValue("bad"), std::nullopt);
    PartialDate day(2021, 3, 4);
    PartialTime time(5, 6, 7);
    EXPECT_EQ(full.typedValueFromNativeValue(day), day.date());
    EXPECT_EQ(full.typedValueFromNativeValue(time), time.date());
    EXPECT_EQ(full.typedValueFromNativeValue(int64_t{2021}), utc(2020, 12, 31, 23, 0, 0)); // printed "2021"
    EXPECT_EQ(full.typedValueFromNativeValue({}), std::nullopt);
    EXPECT_EQ(full.typedValueFromNativeValue(true), std::nullopt);
}

TEST_F(DateTimeValueConverterTest, ThreadsShareNoFormatter) {
    std::vector<std::thread> threads;
    std::vector<int> failures(4, 0);
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            DateTimeValueConverter c("yyyy:MM:dd HH:mm:ss");
            for (int i = 0; i < 200; ++i) {
                char text[32];
                std::snprintf(text, sizeof text, "2021:03:%02d 05:06:%02d", 1 + (i + t) % 28, i % 60);
                if (c.stringValueFromStringValue(std::string(text)) != std::string(text)) ++failures[t];
            }
        });
    for (auto& thread : threads)
        thread.join();
    for (int f : failures)
        EXPECT_EQ(f, 0);
}

// The reader takes a quick route for plain digits; it must agree with ICU's
// strict formatter on every input, valid or not.
TEST_F(DateTimeValueConverterTest, QuickReaderAgreesWithTheStrictFormatter) {
    const char* plain[] = {"20210304 050607", "20240229 235959", "20230229 120000", "00000101 000000",
                           "20211301 000000", "20210431 000000", "20210304 240000", "20210304 126000",
                           "20210304 120060", "20211031 023000", "99991231 235959", "15821010 000000",
                           "00010101 000000"};
    for (const char* text : plain) {
        std::string rebuilt = std::string(text).substr(0, 4) + ":" + std::string(text).substr(4);
        EXPECT_EQ(parse(rebuilt.c_str()), DateTimeValueConverter::parse(text, "yyyyMMdd HHmmss")) << text;
    }
    const char* zoned[] = {"20210304 050607+0200", "20210304 050607-1130", "20210304 050607+2359",
                           "20210304 050607+2400", "20210304 050607+0060", "20210229 050607+0000"};
    for (const char* text : zoned)
        EXPECT_EQ(parse(text), DateTimeValueConverter::parse(text, "yyyyMMdd HHmmssZ")) << text;
}

// Date texts that stopped the process inside ICU: a fractional-seconds field of 35 digits or more
// makes its scaling factor wrap to zero, and the division raises SIGFPE.
TEST(DateParsingHostileText, LongFractionsGiveNothingAndShortOnesStillRead) {
    EXPECT_FALSE(DateTimeValueConverter::parse("99999999999999999999999999999999990", "S"));
    EXPECT_FALSE(DateTimeValueConverter::parse("2021:03:04 05:06:07." + std::string(40, '9'),
                                               "yyyy:MM:dd HH:mm:ss.SSS"));
    // Digits of other scripts count as digits.
    std::string arabicIndic;
    for (int i = 0; i < 40; ++i)
        arabicIndic += "\u0669";
    EXPECT_FALSE(DateTimeValueConverter::parse(arabicIndic, "S"));
    // A quoted S is text, not a field: no limit on the digits of the other fields.
    EXPECT_TRUE(DateTimeValueConverter::parse("S2021", "'S'yyyy"));

    // A compact text with every field, 17 digits, is well under the bound.
    const auto compact = DateTimeValueConverter::parse("20210304050607123", "yyyyMMddHHmmssSSS");
    const auto spaced = DateTimeValueConverter::parse("2021:03:04 05:06:07.123", "yyyy:MM:dd HH:mm:ss.SSS");
    ASSERT_TRUE(compact);
    EXPECT_EQ(compact, spaced);
}
