// Date texts that stopped the process inside ICU: a fractional-seconds field of 35 digits or more
// makes its scaling factor wrap to zero, and the division raises SIGFPE.

#include "corvane/converters/DateTimeValueConverter.hpp"

#include <gtest/gtest.h>

namespace corvane {
namespace {

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

} // namespace
} // namespace corvane
