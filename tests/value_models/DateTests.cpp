// Dates: the records of date and time fields, the values of an edition and the editions themselves.
#include "ZoneGuard.hpp"

#include "corvane/converters/DateTimeValueConverter.hpp"
#include "corvane/value_models/DateEdition.hpp"
#include "corvane/value_models/DateTime.hpp"
#include "corvane/value_models/DateValues.hpp"
#include "corvane/value_models/GregorianCalendar.hpp"
#include "corvane/value_models/PartialDate.hpp"
#include "corvane/value_models/PartialTime.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <tuple>
#include <unordered_set>

using namespace corvane;

namespace {

const char* kFormat = "yyyy:MM:dd HH:mm:ss";

Date at(const std::string& text) {
    return DateTimeValueConverter::parse(text, kFormat).value();
}
std::string text(const std::optional<Date>& date) {
    return date ? DateTimeValueConverter::format(*date, kFormat) : "nothing";
}

DateValues values(std::optional<int64_t> year, std::optional<int64_t> month, std::optional<int64_t> day,
                  std::optional<int64_t> hour = {}, std::optional<int64_t> minute = {},
                  std::optional<int64_t> second = {}) {
    DateValues v;
    std::tie(v.year, v.month, v.day, v.hour, v.minute, v.second) =
        std::tie(year, month, day, hour, minute, second);
    return v;
}

} // namespace

TEST(DateValuesText, WritesPresentFieldsAndReadsLeniently) {
    EXPECT_EQ(values(2021, {}, {}, 8).description(), "YY: 2021, hh: 8");
    EXPECT_EQ(values(-1, 2, 3, 4, 5, -6).description(), "YY: -1, MM: 2, DD: 3, hh: 4, mm: 5, ss: -6");
    EXPECT_EQ(DateValues().description(), "");
    EXPECT_TRUE(DateValues().isEmpty());
    EXPECT_FALSE(values({}, {}, {}, {}, {}, 0).isEmpty());
    EXPECT_EQ(DateValues::fromDescription("YY: 2021, foo: 3, MM: x"), values(2021, {}, {}));
    // Without ", " the whole text is one piece whose value doesn't parse.
    EXPECT_TRUE(DateValues::fromDescription("YY:2021,MM:3").isEmpty());
    EXPECT_EQ(DateValues::fromDescription("\tDD :\t+7 , nothing, hh: -3"), values({}, {}, 7, -3));
    // A later piece overrides an earlier one, even to nothing.
    EXPECT_EQ(DateValues::fromDescription("YY: 1, YY: 2"), values(2, {}, {}));
    EXPECT_TRUE(DateValues::fromDescription("YY: 1, YY: ").isEmpty());
    // Keys are case-sensitive: "mm" is minutes and "MM" months.
    EXPECT_EQ(DateValues::fromDescription("mm: 5, yy: 3"), values({}, {}, {}, {}, 5));
    EXPECT_TRUE(DateValues::fromDescription("ss: +-1, hh: 1.5, DD: 99999999999999999999").isEmpty());
    EXPECT_TRUE(DateValues::fromDescription(std::nullopt).isEmpty());
    const DateValues all = values(2021, 12, 31, 23, 59, 58);
    EXPECT_EQ(DateValues::fromDescription(all.description()), all);
}

TEST(DateValuesCalendar, SelectBuildsFromTheFieldsAndUpdateKeepsTheAbsentOnes) {
    ZoneGuard zone("Europe/Paris");
    EXPECT_EQ(text(values(2021, 3, 4, 5, 6, 7).date()), "2021:03:04 05:06:07");
    // Absent fields take the calendar's defaults.
    EXPECT_EQ(text(values(2021, {}, {}).date()), "2021:01:01 00:00:00");
    EXPECT_EQ(text(DateValues().date()), "0001:01:01 00:00:00");
    EXPECT_EQ(DateValues(at("2021:03:04 05:06:07")), values(2021, 3, 4, 5, 6, 7));
    EXPECT_TRUE(DateValues(std::nullopt).isEmpty());
    const Date old = at("2020:02:29 10:20:30");
    EXPECT_EQ(text(values(2019, {}, {}, {}, 0).updateDate(old)), "2019:03:01 10:00:30");
    EXPECT_EQ(text(DateValues().updateDate(old)), "2020:02:29 10:20:30");
    EXPECT_FALSE(values(2019, {}, {}).updateDate(std::nullopt));
}

TEST(DateValuesCalendar, ShiftClampsMonthEndsCarriesKeepsFractionsAndCrossesDaylightSaving) {
    EXPECT_EQ(text(values({}, 1, {}).shiftDate(at("2021:01:31 12:00:00"))), "2021:02:28 12:00:00");
    EXPECT_EQ(text(values({}, 1, {}).shiftDate(at("2020:01:31 12:00:00"))), "2020:02:29 12:00:00");
    EXPECT_EQ(text(values(1, {}, {}).shiftDate(at("2020:02:29 12:00:00"))), "2021:02:28 12:00:00");
    EXPECT_EQ(text(values({}, {}, {}, {}, {}, 40).shiftDate(at("2021:12:31 23:59:30"))),
              "2022:01:01 00:00:10");
    EXPECT_EQ(text(values({}, {}, -1, -1).shiftDate(at("2021:03:01 00:30:00"))), "2021:02:27 23:30:00");
    EXPECT_EQ(text(values({}, 14, {}).shiftDate(at("2021:11:30 08:00:00"))), "2023:01:30 08:00:00");
    const Date d = at("2021:01:31 12:00:00").addingTimeInterval(0.25);
    const auto shifted = values({}, 1, {}).shiftDate(d);
    EXPECT_DOUBLE_EQ(shifted->timeIntervalSince1970() - at("2021:02:28 12:00:00").timeIntervalSince1970(),
                     0.25);
    ZoneGuard zone("Europe/Paris");
    const Date before = at("2021:03:27 12:00:00");
    // A day keeps the wall-clock time; 24 hours are 24 hours of real time.
    EXPECT_EQ(text(values({}, {}, 1).shiftDate(before)), "2021:03:28 12:00:00");
    EXPECT_EQ(text(values({}, {}, {}, 24).shiftDate(before)), "2021:03:28 13:00:00");
}

TEST(DateEditionText, ParsesEveryCommandRefusesOtherShapesAndRoundTrips) {
    EXPECT_EQ(DateEdition::fromDescription("SELECT(YY: 2021)"), DateEdition::select(values(2021, {}, {})));
    EXPECT_EQ(DateEdition::fromDescription("Update(MM: 2)"), DateEdition::update(values({}, 2, {})));
    EXPECT_EQ(DateEdition::fromDescription("shift(hh: 1)"), DateEdition::shift(values({}, {}, {}, 1)));
    EXPECT_EQ(DateEdition::fromDescription("RESTORE()"), DateEdition::restore());
    EXPECT_EQ(DateEdition::fromDescription("remove(anything)"), DateEdition::remove());
    EXPECT_EQ(DateEdition::fromDescription("shift()"), DateEdition::shift(DateValues()));
    // Keys inside stay case-sensitive.
    EXPECT_EQ(DateEdition::fromDescription("SHIFT(HH: 1)"), DateEdition::shift(DateValues()));
    for (const char* bad : {"", "SELECT", "SELECT(YY: 1", "MOVE(YY: 1)", " SELECT(YY: 1)", "SELECT (YY: 1)",
                            "(YY: 1)", "SELECT(YY: 1) "})
        EXPECT_FALSE(DateEdition::fromDescription(std::string(bad))) << bad;
    const DateEdition editions[] = {
        DateEdition::select(values(2021, 3, 4, 5, 6, 7)), DateEdition::update(values({}, {}, 9)),
        DateEdition::shift(values({}, -1, {}, {}, {}, 30)), DateEdition::restore(), DateEdition::remove()};
    for (const auto& e : editions)
        EXPECT_EQ(DateEdition::fromDescription(e.description()), e) << e.description();
    EXPECT_EQ(DateEdition::fromDescription("remove(anything)")->description(), "REMOVE()");
    EXPECT_EQ(DateEdition::shift(values({}, -1, {}, {}, {}, 30)).description(), "SHIFT(MM: -1, ss: 30)");
    EXPECT_THAT(DateEdition::shift(values(1, {}, {})).localizedDescription(),
                testing::MatchesRegex(".+\\(YY: 1\\)"));
    const std::string remove = DateEdition::remove().localizedDescription();
    EXPECT_THAT(remove, testing::MatchesRegex("[^(]+"));
    EXPECT_NE(remove, DateEdition::restore().localizedDescription());
}

TEST(DateEditionApply, EachCaseActsOnTheOldDate) {
    ZoneGuard zone("Europe/Paris");
    const Date old = at("2021:01:31 10:00:00");
    EXPECT_EQ(text(DateEdition::select(values(2000, 6, 1)).apply(old)), "2000:06:01 00:00:00");
    EXPECT_EQ(text(DateEdition::update(values(2000, {}, {})).apply(old)), "2000:01:31 10:00:00");
    EXPECT_EQ(text(DateEdition::shift(values({}, 1, {})).apply(old)), "2021:02:28 10:00:00");
    EXPECT_EQ(text(DateEdition::restore().apply(old)), "2021:01:31 10:00:00");
    EXPECT_FALSE(DateEdition::remove().apply(old));
    // Select ignores the old date, even when there is none; the others keep nothing.
    EXPECT_EQ(DateEdition::select(DateValues()).apply(std::nullopt),
              DateEdition::select(DateValues()).apply(old));
    EXPECT_TRUE(DateEdition::select(DateValues()).apply(std::nullopt));
    EXPECT_FALSE(DateEdition::shift(values({}, 1, {})).apply(std::nullopt));
    EXPECT_FALSE(DateEdition::restore().apply(std::nullopt));
}

TEST(DateEditionJson, IsOneStringAndRejectsOthers) {
    const DateEdition edition = DateEdition::update(values(2021, {}, {}, 8));
    const nlohmann::json json = edition;
    EXPECT_EQ(json, nlohmann::json("UPDATE(YY: 2021, hh: 8)"));
    EXPECT_EQ(json.get<DateEdition>(), edition);
    const auto list =
        nlohmann::json::parse(R"json(["restore()", "SHIFT(DD: -2)"])json").get<std::vector<DateEdition>>();
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[1], DateEdition::shift(values({}, {}, -2)));
    // Its text, and that it is the library's error, are the error test's.
    EXPECT_THAT([] { (void)nlohmann::json("JUMP(YY: 1)").get<DateEdition>(); },
                testing::Throws<DateEdition::DecodingException>());
    EXPECT_THROW((void)nlohmann::json(12).get<DateEdition>(), nlohmann::json::type_error);
}

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
    EXPECT_EQ(DateTime::fromOptional(at("2020:02:29 10:11:12")), DateTime(2020, 2, 29, 10, 11, 12));
    std::unordered_set<DateTime> set{DateTime(2021, 1, 2, 3, 4, 5), DateTime(2021, 1, 2, 3, 4, 5),
                                     DateTime(2021, 1, 2, 3, 5, 4)};
    EXPECT_EQ(set.size(), 2u);
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
