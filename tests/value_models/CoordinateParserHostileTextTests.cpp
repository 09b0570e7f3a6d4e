// Text that made the position parser backtrack for seconds or hours, or read numbers too large
// for a double. Each call must come back quickly: the bound here is far above a normal reading
// (microseconds) and far below what these texts took before (1.5 s to hours).

#include "corvane/value_models/CoordinateParser.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>

namespace corvane {
namespace {

using Clock = std::chrono::steady_clock;

std::string blanks(std::size_t count) {
    return std::string(count, ' ');
}

// The slowest of the three general entries on `text`, in milliseconds.
double slowestEntryMilliseconds(const std::string& text) {
    double slowest = 0;
    for (const std::function<void()>& entry :
         std::initializer_list<std::function<void()>>{[&] { (void)CoordinateParser::coordinate(text); },
                                                      [&] { (void)CoordinateParser::latitude(text); },
                                                      [&] { (void)CoordinateParser::longitude(text); }}) {
        const auto start = Clock::now();
        entry();
        slowest = std::max(slowest, std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    return slowest;
}

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
        const double ms = slowestEntryMilliseconds(text);
        worst = std::max(worst, ms);
        EXPECT_LT(ms, 1000) << text.size() << " bytes";
    }
    RecordProperty("worst_ms", std::to_string(worst));
}

TEST(CoordinateParserHostileText, OverlongAndOverflowingTextsGiveNothing) {
    const std::string position = "40.5, -74.0";
    const std::string padded = position + blanks(CoordinateParser::maxTextLength - position.size());
    EXPECT_TRUE(CoordinateParser::coordinate(padded)) << "a text of the greatest length is read";
    EXPECT_FALSE(CoordinateParser::coordinate(padded + " "));
    EXPECT_FALSE(CoordinateParser::coordinateFromFreeDDdddddString(padded + " and more"));

    // 320 digits overflow a double: no position, rather than an infinite latitude.
    EXPECT_FALSE(CoordinateParser::coordinate(std::string(320, '9') + ", 1"));
    EXPECT_FALSE(CoordinateParser::latitude(std::string(200, '9') + "." + std::string(119, '9')));
    // Finite but absurd numbers stay readable: range checks belong to the writers.
    EXPECT_DOUBLE_EQ(CoordinateParser::latitude("91.0")->value(), 91.0);
}

} // namespace
} // namespace corvane
