#include "ZoneGuard.hpp"

#include "corvane/converters/DateTimeValueConverter.hpp"
#include "corvane/value_models/DateTime.hpp"
#include "corvane/value_models/GregorianCalendar.hpp"
#include "corvane/value_models/PartialDate.hpp"
#include "corvane/value_models/PartialTime.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <unordered_set>

using namespace corvane;

namespace {

const char* kFormat = "yyyy:MM:dd HH:mm:ss";

Date at(const std::string& text) {
    return DateTimeValueConverter::parse(text, kFormat).value();
}
std::string text(Date date) {
    return DateTimeValueConverter::format(date, kFormat);
}

} // namespace

TEST(DateRecords, FieldsRoundTripThroughDateInTheProcessZone) {
    ZoneGuard zone("America/New_York");
    const Date d = at("2021:07:04 21:05:09");
    EXPECT_EQ(DateTime(d), DateTime(2021, 7, 4, 21, 5, 9));
    EXPECT_EQ(PartialDate(d), PartialDate(2021, 7, 4));
    EXPECT_EQ(PartialTime(d), PartialTime(21, 5, 9));
    EXPECT_EQ(DateTime(d).date(), d);
    EXPECT_EQ(text(PartialDate(d).date()), "2021:07:04 00:00:00");
    EXPECT_EQ(text(PartialTime(d).date()), "2000:01:01 21:05:09");
    EXPECT_EQ(GregorianCalendar::timeZoneIdentifier(), "America/New_York");
}

TEST(DateRecords, JoinSplitOptionalAndHash) {
    const DateTime dt(PartialDate(1999, 12, 31), PartialTime(23, 59, 58));
    EXPECT_EQ(dt, DateTime(1999, 12, 31, 23, 59, 58));
    EXPECT_EQ(dt.partialDate(), PartialDate(1999, 12, 31));
    EXPECT_EQ(dt.partialTime(), PartialTime(23, 59, 58));
    EXPECT_EQ(dt.dateComponents().date(), dt.date());
    EXPECT_FALSE(DateTime::fromOptional(std::nullopt));
    const Date d = at("2020:02:29 10:11:12");
    EXPECT_EQ(DateTime::fromOptional(d), DateTime(2020, 2, 29, 10, 11, 12));
    std::unordered_set<DateTime> set{DateTime(2021, 1, 2, 3, 4, 5), DateTime(2021, 1, 2, 3, 4, 5),
                                     DateTime(2021, 1, 2, 3, 5, 4)};
    EXPECT_EQ(set.size(), 2u);
    std::unordered_set<PartialDate> dates{PartialDate(2021, 1, 12), PartialDate(2021, 11, 2)};
    EXPECT_EQ(dates.size(), 2u);
}

TEST(DateRecords, OutOfRangeFieldsAndSkippedLocalTimesRollForward) {
    ZoneGuard zone("Europe/Paris");
    EXPECT_EQ(text(PartialTime(25, 0, 0).date()), "2000:01:02 01:00:00");
    EXPECT_EQ(text(PartialDate(2021, 13, 1).date()), "2022:01:01 00:00:00");
    EXPECT_EQ(text(DateTime(2021, 2, 29, 0, 0, 0).date()), "2021:03:01 00:00:00");
    // 02:30 doesn't exist on 2021-03-28 in Paris: clocks jump from 02:00 to 03:00.
    EXPECT_EQ(text(DateTime(2021, 3, 28, 2, 30, 0).date()), "2021:03:28 03:30:00");
    // Summer and winter times of the same wall clock are an hour apart in UTC.
    const double summer = DateTime(2021, 7, 1, 12, 0, 0).date().timeIntervalSince1970();
    const double winter = DateTime(2021, 1, 1, 12, 0, 0).date().timeIntervalSince1970();
    EXPECT_EQ(std::fmod(summer - winter, 86400.0), 86400.0 - 3600.0);
}

TEST(DateRecords, DefaultsAndUnbuildableFieldsGiveThePresentMoment) {
    const double before = Date::now().timeIntervalSince1970();
    const double got = PartialDate(int64_t(1) << 40, 1, 1).date().timeIntervalSince1970();
    EXPECT_GE(got, before);
    EXPECT_LE(got, Date::now().timeIntervalSince1970());
    const PartialDate today;
    EXPECT_EQ(today, PartialDate(Date::now()));
    const PartialTime now;
    const PartialTime later(Date::now());
    const auto seconds = [](const PartialTime& t) { return t.hour * 3600 + t.minute * 60 + t.second; };
    EXPECT_LE((seconds(later) - seconds(now) + 86400) % 86400, 2);
}
