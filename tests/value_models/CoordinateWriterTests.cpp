#include "corvane/value_models/CoordinateParser.hpp"
#include "corvane/value_models/CoordinateWriter.hpp"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>

using namespace corvane;

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
