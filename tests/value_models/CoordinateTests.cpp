#include "corvane/value_models/Altitude.hpp"
#include "corvane/value_models/CoordinateParser.hpp"
#include "corvane/value_models/CoordinateWriter.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <clocale>
#include <cmath>
#include <thread>
#include <unordered_set>

using namespace corvane;
using P = CoordinateParser;

namespace {

std::optional<double> lat(const std::string& s) {
    auto l = P::latitude(s);
    return l ? std::optional<double>(l->value()) : std::nullopt;
}
std::optional<double> lon(const std::string& s) {
    auto l = P::longitude(s);
    return l ? std::optional<double>(l->value()) : std::nullopt;
}

void expectCoordinate(const std::string& text, double latitude, double longitude) {
    const auto c = P::coordinate(text);
    ASSERT_TRUE(c) << text;
    EXPECT_NEAR(c->latitude().value(), latitude, 1e-9) << text;
    EXPECT_NEAR(c->longitude().value(), longitude, 1e-9) << text;
}

} // namespace

TEST(CoordinateValues, DerivedPartsReferencesAndDescription) {
    const Latitude l(-33.8688);
    EXPECT_EQ(l.reference(), Latitude::Reference::south);
    EXPECT_DOUBLE_EQ(l.degrees(), 33.8688);
    EXPECT_NEAR(l.minutes(), 52.128, 1e-9);
    EXPECT_NEAR(l.seconds(), 7.68, 1e-9);
    EXPECT_EQ(Latitude(-0.0).reference(), Latitude::Reference::north);
    EXPECT_EQ(Longitude(std::nan("")).reference(), Longitude::Reference::west);
    EXPECT_EQ(Altitude(-0.5).reference(), Altitude::Reference::below);
    EXPECT_EQ(Altitude::referenceFromRawValue("1"), Altitude::Reference::below);
    EXPECT_FALSE(Latitude::referenceFromRawValue("s"));
    EXPECT_FALSE(Altitude::referenceFromRawValue("2"));
    EXPECT_EQ(Coordinate(40.2, -75.5).description(), "40.2, -75.5");
    EXPECT_EQ(Coordinate(0.0, 12.0).description(), "0.0, 12.0");
    EXPECT_EQ(Coordinate(0.1 + 0.2, 1e-5).description(), "0.30000000000000004, 1e-05");
    std::unordered_set<Coordinate> set{Coordinate(1, 2), Coordinate(1, 2), Coordinate(2, 1)};
    EXPECT_EQ(set.size(), 2u);
}

// The shapes the writer gives are read in the writer's round trip below.
TEST(CoordinateParserISO, ReadsDegreesMinutesAndSeconds) {
    expectCoordinate("+4012.3-07530.6+12CRSWGS_84/", 40.0 + 12.3 / 60, -(75.0 + 30.6 / 60));
    expectCoordinate("+4012.3-07530.6-0012/", 40.0 + 12.3 / 60, -(75.0 + 30.6 / 60));
    // The tail is a sign and non-digits, then word characters: an altitude
    // with a fraction followed by letters doesn't fit it.
    EXPECT_FALSE(P::coordinateFromISO6709String("+4012.3-07530.6+12.5CRSWGS_84/"));
    expectCoordinate("-401230.5+0753015.0/", -(40 + 12.0 / 60 + 30.5 / 3600), 75 + 30.0 / 60 + 15.0 / 3600);
    expectCoordinate("  +40-075  ", 40, -75);
    // Unicode spaces lead in like ASCII ones; read otherwise, the free decimal
    // pair would take "+4012.3-07530.6/" for 401.0, 2.3.
    expectCoordinate("\u00a0+4012.3-07530.6/", 40.0 + 12.3 / 60, -(75.0 + 30.6 / 60));
    EXPECT_EQ(P::latitudeFromISO6709String("+40.5"), 40.5);
    EXPECT_EQ(P::latitudeFromISO6709String("-4030.0"), -40.5);
    // Minutes or seconds without a fraction are refused although they match.
    EXPECT_FALSE(P::latitudeFromISO6709String("+4030"));
    EXPECT_FALSE(P::coordinateFromISO6709String("+1230-07530.6/"));
    EXPECT_FALSE(P::latitudeFromISO6709String("40.5"));
    EXPECT_FALSE(P::longitudeFromISO6709String("-075.50"));
    EXPECT_FALSE(P::longitudeFromISO6709String("+075"));
    // The general entry still reads it as decimal degrees.
    EXPECT_EQ(lon("-075.50"), -75.5);
}

TEST(CoordinateParserDecimal, HemisphereLettersSignsAndUnits) {
    EXPECT_EQ(lat("45,5 N"), 45.5);
    EXPECT_EQ(lat("45.5 s"), -45.5);
    EXPECT_EQ(lat("S 45.5"), -45.5);
    EXPECT_EQ(lat("-45.5"), -45.5);
    EXPECT_EQ(lat("- 45.5"), -45.5);
    EXPECT_FALSE(lat("S 45.5 S"));
    EXPECT_FALSE(lat("-45.5 S"));
    EXPECT_FALSE(lat("00.0 N"));
    EXPECT_EQ(lat("45.5 deg N"), 45.5);
    EXPECT_EQ(lat("45.5° N"), 45.5);
    EXPECT_EQ(lon("120.25 W"), -120.25);
    EXPECT_EQ(lon("e 120.25°"), 120.25);
    EXPECT_FALSE(lon("120.25 N"));
    EXPECT_EQ(lat("91.0"), 91.0);
    EXPECT_FALSE(lat("7 N"));
    EXPECT_EQ(lat("07 N"), 7.0);
    EXPECT_EQ(lat("7.0 N"), 7.0);
    EXPECT_EQ(lat("75"), 75.0);
    // Three digits are too many for decimal degrees of latitude, but fit the
    // degrees, minutes and seconds pattern as 1° 2' 3.5".
    EXPECT_FALSE(P::latitudeFromDDdddddString("123.5"));
    EXPECT_NEAR(*lat("123.5"), 1 + 2 / 60.0 + 3.5 / 3600, 1e-12);
    EXPECT_EQ(lon("123.5"), 123.5);
}

TEST(CoordinateParserDegreesMinutes, WithSecondsReadAxesAndPairsWithoutOnlyPairs) {
    expectCoordinate("40 26 46.302 N, 79 58 55.903 W", 40 + 26 / 60.0 + 46.302 / 3600,
                     -(79 + 58 / 60.0 + 55.903 / 3600));
    expectCoordinate("40deg 26min 46,3sec S; 079deg 58min 55,9sec E", -(40 + 26 / 60.0 + 46.3 / 3600),
                     79 + 58 / 60.0 + 55.9 / 3600);
    EXPECT_NEAR(*lat("40 26 46.30 N"), 40 + 26 / 60.0 + 46.3 / 3600, 1e-12);
    // Longitude minutes take three digits and seconds a three-digit float.
    EXPECT_NEAR(*P::longitudeFromDDMMSSsString("10 100 100.0"), 10 + 100 / 60.0 + 100 / 3600.0, 1e-12);
    EXPECT_FALSE(P::latitudeFromDDMMSSsString("10 100 10.0"));
    EXPECT_FALSE(P::latitudeFromDDMMSSsString("10 00 10.0 N"));
    EXPECT_FALSE(P::latitudeFromDDMMmmmString("40 26.77 N"));
    // The general entry falls through to degrees, minutes and seconds, where
    // "26.77" splits into 2' 6.77".
    EXPECT_NEAR(P::latitude("40 26.77 N")->value(), 40 + 2 / 60.0 + 6.77 / 3600, 1e-12);
    EXPECT_FALSE(P::latitude("40 6.77 N"));
    expectCoordinate("40 26.77 N 79 58.93 W", 40 + 26.77 / 60, -(79 + 58.93 / 60));
    // The sign of the degrees doesn't reach the minutes.
    EXPECT_EQ(P::coordinateFromDDMMmmmString("-10 30.0, 20 15.0"), Coordinate(-9.5, 20.25));
    // With a letter, both numbers must be positive.
    EXPECT_FALSE(P::coordinateFromDDMMmmmString("40 00.0 N, 79 58.93 W"));
}

TEST(CoordinateParserPairs, FreeTextAfterTheNumbersNeedsTheFreeEntry) {
    EXPECT_FALSE(P::coordinateFromDDdddddString("40.5, -74.0 and more text"));
    EXPECT_TRUE(P::coordinateFromFreeDDdddddString("40.5, -74.0 and more text"));
    expectCoordinate("40.5, -74.0 and more text", 40.5, -74.0);
    expectCoordinate("40,5; -74,0", 40.5, -74.0);
    expectCoordinate("  N45.5   W120.25  ", 45.5, -120.25);
    EXPECT_FALSE(P::coordinate("hello"));
    EXPECT_FALSE(P::coordinate(""));
    EXPECT_FALSE(P::coordinate("45.5 N"));
}

TEST(CoordinateParserPairs, SafeFromManyThreads) {
    std::vector<std::thread> threads;
    std::atomic<int> failures{0};
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&failures, t] {
            for (int i = 0; i < 300; ++i) {
                const double a = (t * 300 + i) % 80 + 0.25;
                const auto c = P::coordinate(std::to_string(a) + " N, " + std::to_string(a + 10) + " W");
                if (!c || std::abs(c->latitude().value() - a) > 1e-9 ||
                    std::abs(c->longitude().value() + a + 10) > 1e-9)
                    ++failures;
            }
        });
    for (auto& th : threads)
        th.join();
    EXPECT_EQ(failures.load(), 0);
}

// Text that made the position parser backtrack for seconds or hours, or read numbers too large
// for a double. Each call must come back quickly: the bound here is far above a normal reading
// (microseconds) and far below what these texts took before (1.5 s to hours).

namespace {

using Clock = std::chrono::steady_clock;

std::string blanks(std::size_t count) {
    return std::string(count, ' ');
}

// The time the three general entries take together on `text`, in milliseconds.
double entriesMilliseconds(const std::string& text) {
    const auto start = Clock::now();
    (void)P::coordinate(text);
    (void)P::latitude(text);
    (void)P::longitude(text);
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

} // namespace

TEST(CoordinateParserHostileText, RunsOfBlanksAndDigitsEndQuickly) {
    const std::vector<std::string> texts{
        "10 00 10.4" + blanks(17) + ".0" + blanks(3) + "N", // 33 bytes, took 1.5 s
        "10 00 10.4" + blanks(40) + ".0" + blanks(3) + "N", // over 100 s
        "-45" + blanks(45),                                 // 39 s
        blanks(400),                                        // 35 s in the free-form pattern alone
        "10 00 10.4" + blanks(200) + ".0" + blanks(40) + "N",
        "12 34 56" + blanks(120) + "78 90 12" + blanks(120) + "E",
        blanks(4096), // refused by its length
    };
    double worst = 0;
    for (const auto& text : texts) {
        const double ms = entriesMilliseconds(text);
        worst = std::max(worst, ms);
        EXPECT_LT(ms, 1000) << text.size() << " bytes";
    }
    RecordProperty("worst_ms", std::to_string(worst));
}

TEST(CoordinateParserHostileText, OverlongAndOverflowingTextsGiveNothing) {
    const std::string position = "40.5, -74.0";
    const std::string padded = position + blanks(P::maxTextLength - position.size());
    EXPECT_TRUE(P::coordinate(padded)) << "a text of the greatest length is read";
    EXPECT_FALSE(P::coordinate(padded + " "));
    EXPECT_FALSE(P::coordinateFromFreeDDdddddString(padded + " and more"));

    // 320 digits overflow a double: no position, rather than an infinite latitude.
    EXPECT_FALSE(P::coordinate(std::string(320, '9') + ", 1"));
    EXPECT_FALSE(P::latitude(std::string(200, '9') + "." + std::string(119, '9')));
    // Finite but absurd numbers stay readable: range checks belong to the writers.
    EXPECT_DOUBLE_EQ(P::latitude("91.0")->value(), 91.0);
}

TEST(CoordinateWriterNotations, DefaultsOfEachNotation) {
    const CoordinateWriter w;
    const Latitude l(-33.8688);
    EXPECT_EQ(w.iso6709(l), "-33.86880");
    EXPECT_EQ(w.DDddddd(l), "-33.86880°");
    EXPECT_EQ(w.preDDddddd(l), "S 33.86880°");
    EXPECT_EQ(w.postDDddddd(l), "33.86880° S");
    EXPECT_EQ(w.preDDMMmmm(l), "S 33° 52.1280'");
    EXPECT_EQ(w.postDDMMmmm(l), "33° 52.1280' S");
    EXPECT_EQ(w.preDDMMSSs(l), "S 33° 52' 07.7\"");
    EXPECT_EQ(w.postDDMMSSs(l), "33° 52' 07.7\" S");
    EXPECT_EQ(w.iso6709(Longitude(151.2093)), "+151.20930");
    EXPECT_EQ(w.iso6709(Coordinate(40.2, -75.5)), "+40.20000-075.50000/");
    EXPECT_EQ(w.iso6709(Latitude(0)), "+00.00000");
    EXPECT_EQ(w.postDDMMmmm(Coordinate(-33.8688, 151.2093)), "33° 52.1280' S, 151° 12.5580' E");
}

TEST(CoordinateWriterNotations, FlagsPaddingNoCarryAndNoLocale) {
    CoordinateWriter w;
    w.displaysUnits = false;
    w.displaysSpaces = false;
    EXPECT_EQ(w.postDDMMSSs(Latitude(-33.8688)), "335207.7S");
    w = CoordinateWriter();
    EXPECT_EQ(w.DDddddd(Latitude(-5.25)), "-5.25000°");
    w.latitudePadding = 2;
    EXPECT_EQ(w.DDddddd(Latitude(-5.25)), "-05.25000°");
    // Zeros are counted before rounding.
    EXPECT_EQ(w.DDddddd(Latitude(9.999999)), "010.00000°");
    w = CoordinateWriter();
    w.displaysSymbol = true;
    EXPECT_EQ(w.preDDMMSSs(Latitude(10.5)), "N +10° +30' +00.0\"");
    EXPECT_EQ(w.DDddddd(Longitude(-1.5)), "-1.50000°");
    w = CoordinateWriter();
    w.displaysSeparator = false;
    w.longitudePrecision = 2;
    EXPECT_EQ(w.DDddddd(Coordinate(1.5, 2.5)), "1.50000°2.50°");
    w.separator = " / ";
    w.displaysSeparator = true;
    w.degUnit = "d";
    EXPECT_EQ(w.DDddddd(Coordinate(1.5, 2.5)), "1.50000d / 2.50d");
    w = CoordinateWriter();
    // 59.96 seconds round to "60.0"; the minutes stay as they are.
    const Latitude l(10 + 59 / 60.0 + 59.96 / 3600);
    EXPECT_EQ(w.postDDMMSSs(l), "10° 59' 60.0\" N");
    EXPECT_EQ(w.postDDMMmmm(Latitude(10 + 59.99996 / 60)), "10° 60.0000' N");
    w = CoordinateWriter();
    w.numberComma = ",";
    const char* saved = std::setlocale(LC_NUMERIC, nullptr);
    const std::string previous = saved ? saved : "C";
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8"); // may be absent; the result must not depend on it
    EXPECT_EQ(w.DDddddd(Latitude(1.25)), "1.25000°");
    std::setlocale(LC_NUMERIC, previous.c_str());
}

TEST(CoordinateWriterNotations, RoundTripsThroughTheParser) {
    const CoordinateWriter w;
    using Writer = std::string (CoordinateWriter::*)(const Coordinate&) const;
    const std::pair<const char*, Writer> notations[] = {
        {"iso6709", &CoordinateWriter::iso6709},       {"DDddddd", &CoordinateWriter::DDddddd},
        {"preDDddddd", &CoordinateWriter::preDDddddd}, {"postDDddddd", &CoordinateWriter::postDDddddd},
        {"preDDMMmmm", &CoordinateWriter::preDDMMmmm}, {"postDDMMmmm", &CoordinateWriter::postDDMMmmm},
        {"preDDMMSSs", &CoordinateWriter::preDDMMSSs}, {"postDDMMSSs", &CoordinateWriter::postDDMMSSs},
    };
    const Coordinate places[] = {Coordinate(40.446195, -79.982195), Coordinate(-33.8688, 151.2093),
                                 Coordinate(51.5007, -0.1246 - 10), Coordinate(-12.0464, -77.0428),
                                 Coordinate(64.1466, 21.9426)};
    for (const auto& [name, write] : notations)
        for (const auto& c : places) {
            const std::string text = (w.*write)(c);
            const auto back = CoordinateParser::coordinate(text);
            ASSERT_TRUE(back) << name << ": " << text;
            // Seconds are written with one decimal: 0.05" is about 1.4e-5 degrees.
            EXPECT_NEAR(back->latitude().value(), c.latitude().value(), 2e-5) << name << ": " << text;
            EXPECT_NEAR(back->longitude().value(), c.longitude().value(), 2e-5) << name << ": " << text;
        }
}

TEST(CoordinateWriterDeathTest, NonFiniteValuesStopTheProcess) {
    const CoordinateWriter w;
    EXPECT_DEATH((void)w.DDddddd(Latitude(std::nan(""))), "CoordinateWriter");
    EXPECT_DEATH((void)w.iso6709(Longitude(1e300)), "CoordinateWriter");
}
