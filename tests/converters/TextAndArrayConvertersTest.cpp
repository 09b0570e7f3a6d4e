#include "corvane/converters/ArrayValueConverter.hpp"
#include "corvane/converters/BoolValueConverter.hpp"
#include "corvane/converters/SDoubleValueConverter.hpp"
#include "corvane/converters/StringValueConverter.hpp"
#include "corvane/converters/UIntValueConverter.hpp"

#include <gtest/gtest.h>

using namespace corvane;

TEST(StringValueConverter, KeepsStringsAsTheyStandAndTurnsOtherValuesIntoText) {
    StringValueConverter c;
    EXPECT_EQ(c.stringValueFromStringValue("  padded \t"), "  padded \t");
    EXPECT_EQ(c.nativeValueFromStringValue(""), DynamicValue(""));
    EXPECT_EQ(c.objectValueFromStringValue("x"), ObjectValue("x"));
    EXPECT_EQ(c.exifToolValueFromStringValue(" a "), DynamicValue(" a "));
    EXPECT_EQ(c.formattedValueFromStringValue("a,b"), "a,b");
    EXPECT_EQ(c.stringValueFromNativeValue(StringArray{"a", "b"}), "a, b");
    EXPECT_EQ(c.stringValueFromNativeValue(DynamicArray{"a", "b"}), "a, b");
    EXPECT_EQ(c.stringValueFromNativeValue(Number::fromDouble(1.5)), "1.5");
    EXPECT_EQ(c.stringValueFromNativeValue(int64_t{-4}), "-4");
    EXPECT_EQ(c.jsonValueFromNativeValue(int64_t{3}), DynamicValue("3"));
}

namespace {
ArrayValueConverter uintList() {
    return ArrayValueConverter(std::make_shared<UIntValueConverter>(), ",");
}
} // namespace

TEST(ArrayValueConverter, SplitsTrimsAndDropsUnreadableElements) {
    auto c = uintList();
    EXPECT_TRUE(c.nativeValueFromStringValue("").isNothing());
    EXPECT_EQ(c.nativeValueFromStringValue("1, x, 3"), DynamicValue(DynamicArray{int64_t{1}, int64_t{3}}));
    EXPECT_EQ(c.nativeValueFromStringValue("x,,y"), DynamicValue(DynamicArray{})); // empty, not nothing
    EXPECT_EQ(c.stringValueFromStringValue("1, x, 3"), "1,3");
    EXPECT_EQ(c.coreImageValueFromStringValue(" 2\u00a0,\t4"),
              DynamicValue(DynamicArray{int64_t{2}, int64_t{4}}));
    EXPECT_EQ(c.objectValueFromStringValue("1,2"),
              ObjectValue(DynamicArray{Number::fromInteger(1), Number::fromInteger(2)}));
    EXPECT_EQ(c.exifToolValueFromStringValue("1 , 2,-3"), DynamicValue("1,2"));
    ArrayValueConverter blank(std::make_shared<SDoubleValueConverter>(), " ");
    EXPECT_EQ(blank.stringValueFromStringValue("1 2,5"), "1.00000000 2.50000000");
    ArrayValueConverter comma(std::make_shared<SDoubleValueConverter>(), ",");
    EXPECT_EQ(comma.stringValueFromStringValue("1,5"), "1.00000000,5.00000000");
}

TEST(ArrayValueConverter, JoinsArraysLeavesStringsAndConvertsJsonElements) {
    auto c = uintList();
    EXPECT_EQ(c.stringValueFromNativeValue("1, -2, x"), "1, -2, x");
    EXPECT_EQ(c.formattedValueFromStringValue("a,b"), "a,b");
    EXPECT_EQ(c.stringValueFromNativeValue(DynamicArray{int64_t{1}, int64_t{-2}, "5"}), "1,5");
    EXPECT_EQ(c.stringValueFromNativeValue(StringArray{"7", "8"}), "7,8");
    EXPECT_EQ(c.stringValueFromNativeValue(int64_t{9}), "9"); // a single value goes to the element converter
    EXPECT_EQ(c.csvValueFromNativeValue(DynamicArray{}), "");

    // Trimming keeps empty strings: they are joined.
    ArrayValueConverter strings(std::make_shared<StringValueConverter>(), ";");
    EXPECT_EQ(strings.stringValueFromNativeValue(DynamicArray{" a ", "", "b"}), "a;;b");
    EXPECT_EQ(strings.nativeValueFromStringValue("a; ;b"), DynamicValue(DynamicArray{"a", "", "b"}));
    EXPECT_EQ(c.jsonValueFromNativeValue("1, x, 3"),
              DynamicValue(DynamicArray{Number::fromInteger(1), Number::fromInteger(3)}));
    EXPECT_TRUE(c.jsonValueFromNativeValue("").isNothing());
    ArrayValueConverter flags(std::make_shared<BoolValueConverter>(), "|");
    EXPECT_EQ(flags.jsonValueFromNativeValue(DynamicArray{true, "no"}),
              DynamicValue(DynamicArray{Number::fromBool(true), Number::fromBool(false)}));
}

// List values whose elements hold the list's separator: a keyword "Smith, John" must stay one
// keyword from the file to the storage's text and back, through every form the converter gives.
TEST(ListElementQuoting, ElementsHoldingTheSeparatorOrAQuoteRoundTrip) {
    const ArrayValueConverter c(std::make_shared<StringValueConverter>(), ",");
    const DynamicArray elements{"Smith, John", "Paris", "say \"hi\"", "\"quoted\"", "a,b,c"};
    const auto text = c.stringValueFromNativeValue(elements);
    // Only what needs quotes is quoted; a quote inside a quoted element is doubled.
    EXPECT_EQ(text, "\"Smith, John\",Paris,say \"hi\",\"\"\"quoted\"\"\",\"a,b,c\"");
    EXPECT_EQ(c.nativeValueFromStringValue(text), DynamicValue(elements));
    EXPECT_EQ(c.stringValueFromStringValue(text), text);
    EXPECT_EQ(c.exifToolValueFromStringValue(text), DynamicValue(*text));
    // The JSON form (sidecars, `read --json`) keeps the elements too.
    EXPECT_EQ(c.jsonValueFromNativeValue(DynamicValue(*text)), DynamicValue(elements));
    // Blanks around a quoted element are the list's padding, not the element's.
    EXPECT_EQ(c.nativeValueFromStringValue("one,  \"two, three\" ,four"),
              DynamicValue(DynamicArray{"one", "two, three", "four"}));
}

TEST(ListElementQuoting, TextWithoutWholeQuotedElementsSplitsAsBefore) {
    const ArrayValueConverter c(std::make_shared<StringValueConverter>(), ",");
    // Plain lists, and quotes that don't enclose a whole element, split on every separator.
    EXPECT_EQ(c.nativeValueFromStringValue("a, b,c"), DynamicValue(DynamicArray{"a", "b", "c"}));
    EXPECT_EQ(c.nativeValueFromStringValue("\"a,b"), DynamicValue(DynamicArray{"\"a", "b"}));
    EXPECT_EQ(c.nativeValueFromStringValue("\"a\" b,c"), DynamicValue(DynamicArray{"\"a\" b", "c"}));
    EXPECT_EQ(c.nativeValueFromStringValue("x \"y, z\""), DynamicValue(DynamicArray{"x \"y", "z\""}));
    // With a blank as separator, blanks are never padding: empty pieces stay.
    const ArrayValueConverter blanks(std::make_shared<StringValueConverter>(), " ");
    EXPECT_EQ(blanks.nativeValueFromStringValue("a  \"b c\""), DynamicValue(DynamicArray{"a", "", "b c"}));
}
