// List values whose elements hold the list's separator: a keyword "Smith, John" must stay one
// keyword from the file to the storage's text and back, through every form the converter gives.
#include "corvane/converters/ArrayValueConverter.hpp"
#include "corvane/converters/StringValueConverter.hpp"
#include "corvane/converters/UIntValueConverter.hpp"

#include <gtest/gtest.h>

using namespace corvane;

namespace {

ArrayValueConverter keywords() {
    return ArrayValueConverter(std::make_shared<StringValueConverter>(), ",");
}

} // namespace

TEST(ListElementQuoting, ElementsHoldingTheSeparatorOrAQuoteRoundTrip) {
    const auto c = keywords();
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
    const auto c = keywords();
    // Plain lists, and quotes that don't enclose a whole element, split on every separator.
    EXPECT_EQ(c.nativeValueFromStringValue("a, b,c"), DynamicValue(DynamicArray{"a", "b", "c"}));
    EXPECT_EQ(c.nativeValueFromStringValue("\"a,b"), DynamicValue(DynamicArray{"\"a", "b"}));
    EXPECT_EQ(c.nativeValueFromStringValue("\"a\" b,c"), DynamicValue(DynamicArray{"\"a\" b", "c"}));
    EXPECT_EQ(c.nativeValueFromStringValue("x \"y, z\""), DynamicValue(DynamicArray{"x \"y", "z\""}));
    // A number list never meets a quote: unreadable elements are still dropped.
    const ArrayValueConverter numbers(std::make_shared<UIntValueConverter>(), ",");
    EXPECT_EQ(numbers.nativeValueFromStringValue("1, x, 3"),
              DynamicValue(DynamicArray{int64_t{1}, int64_t{3}}));
    // With a blank as separator, blanks are never padding: empty pieces stay.
    const ArrayValueConverter blanks(std::make_shared<StringValueConverter>(), " ");
    EXPECT_EQ(blanks.nativeValueFromStringValue("a  \"b c\""), DynamicValue(DynamicArray{"a", "", "b c"}));
}
