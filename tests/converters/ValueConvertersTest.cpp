#include "corvane/converters/ArrayValueConverter.hpp"
#include "corvane/converters/BoolValueConverter.hpp"
#include "corvane/converters/CountryValueConverter.hpp"
#include "corvane/converters/DynamicValue.hpp"
#include "corvane/converters/SDoubleValueConverter.hpp"
#include "corvane/converters/SIntValueConverter.hpp"
#include "corvane/converters/StringValueConverter.hpp"
#include "corvane/converters/UDoubleValueConverter.hpp"
#include "corvane/converters/UIntValueConverter.hpp"
#include "corvane/value_models/Country.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <clocale>
#include <cmath>
#include <limits>
#include <set>

using namespace corvane;

namespace {

template <typename T> std::optional<T> typed(const TypedValueConverter<T>& c, const char* s) {
    return c.typedValueFromStringValue(std::string(s));
}
ArrayValueConverter uintList() {
    return ArrayValueConverter(std::make_shared<UIntValueConverter>(), ",");
}

} // namespace

TEST(DynamicValue, ConstructorsPickTheExpectedCaseAndNumbersReadAsAnyKind) {
    EXPECT_TRUE(DynamicValue(std::optional<int>()).isNothing());
    EXPECT_TRUE(DynamicValue("text").is<std::string>()); // not a Bool
    EXPECT_TRUE(DynamicValue(3).is<int64_t>());
    EXPECT_TRUE(DynamicValue(3u).is<uint64_t>());
    EXPECT_TRUE(DynamicValue(2.5f).is<double>());
    auto d = Number::fromDouble(-3.9);
    EXPECT_EQ(d.integerValue(), -3);
    EXPECT_TRUE(d.boolValue());
    EXPECT_EQ(Number::fromDouble(NAN).integerValue(), 0);
    EXPECT_EQ(Number::fromDouble(1e300).integerValue(), INT64_MAX);
    EXPECT_EQ(Number::fromInteger(0).boolValue(), false);
    EXPECT_EQ(Number::fromBool(true).doubleValue(), 1.0);
    EXPECT_NE(Number::fromInteger(1), Number::fromBool(true));
}

TEST(DynamicValue, PrintsDoublesInTheirShortestRoundTripTextAndOtherCasesStably) {
    EXPECT_EQ(DynamicValue(5.0).description(), "5.0");
    EXPECT_EQ(DynamicValue(-0.0).description(), "-0.0");
    EXPECT_EQ(DynamicValue(9007199254740992.0).description(), "9007199254740992.0");
    EXPECT_EQ(DynamicValue(1e16).description(), "1e+16");
    EXPECT_EQ(DynamicValue(0.0001).description(), "0.0001");
    EXPECT_EQ(DynamicValue(0.00001).description(), "1e-05");
    EXPECT_EQ(DynamicValue(INFINITY).description(), "inf");
    EXPECT_EQ(DynamicValue(NAN).description(), "nan");
    EXPECT_EQ(DynamicValue(false).description(), "false");
    EXPECT_EQ(DynamicValue(Number::fromDouble(2.0)).description(), "2");
    EXPECT_EQ(DynamicValue(Number::fromBool(true)).description(), "1");
    EXPECT_EQ(DynamicValue(StringArray{"a", "b\"c"}).description(), "[\"a\", \"b\\\"c\"]");
    EXPECT_EQ(DynamicValue(DynamicArray{int64_t{1}, "x", 2.0}).description(), "[1, \"x\", 2.0]");
    EXPECT_EQ(DynamicValue(PartialDate(2021, 3, 4)).description(), "2021:03:04");
    EXPECT_EQ(DynamicValue(PartialTime(5, 6, 7)).description(), "05:06:07");
    EXPECT_EQ(DynamicValue(Date(0)).description(), "1970-01-01 00:00:00 +0000");
    EXPECT_EQ(DynamicValue(Country::france()).description(), "FR");
}

TEST(DynamicValue, JsonRoundTripAndObjectValues) {
    DynamicValue value(DynamicArray{Number::fromInteger(1), Number::fromDouble(2.5), Number::fromBool(false),
                                    "s", DynamicValue(), DynamicArray{"n"}});
    nlohmann::json json = toJson(value);
    EXPECT_EQ(json.dump(), R"([1,2.5,false,"s",null,["n"]])");
    EXPECT_EQ(dynamicValueFromJson(json), value);
    EXPECT_EQ(toJson(DynamicValue(NAN)), nlohmann::json(nullptr));
    EXPECT_EQ(toJson(StringArray{"a"}), nlohmann::json::array({"a"}));
    EXPECT_EQ(toJson(Country::japan()), nlohmann::json("JP"));
    // Dates and their parts are written as their printed text, also inside arrays.
    EXPECT_EQ(toJson(DynamicArray{Date(0), PartialDate(2021, 3, 4), PartialTime(5, 6, 7)}),
              nlohmann::json::array({"1970-01-01 00:00:00 +0000", "2021:03:04", "05:06:07"}));
    EXPECT_EQ(dynamicValueFromJson(nlohmann::json::parse(R"({"a":1})")),
              DynamicValue(OtherValue{R"({"a":1})"}));
    EXPECT_EQ(dynamicValueFromJson(nlohmann::json(18446744073709551615ull)),
              DynamicValue(Number::fromDouble(18446744073709551615.0)));
    EXPECT_EQ(objectValueFromDynamicValue(int64_t{3}), ObjectValue(Number::fromInteger(3)));
    EXPECT_EQ(objectValueFromDynamicValue(DynamicArray{true, 1.5, "x"}),
              ObjectValue(DynamicArray{Number::fromBool(true), Number::fromDouble(1.5), "x"}));
    EXPECT_EQ(objectValueFromDynamicValue(StringArray{"a"}), ObjectValue(DynamicArray{"a"}));
}

TEST(BoolValueConverter, ReadsExactSpellingsAndNativeValuesAndWritesTrueFalse) {
    BoolValueConverter c;
    for (auto s : {"True", "true", "1", "Yes", "yes", "Y", "y"})
        EXPECT_EQ(typed(c, s), true) << s;
    for (auto s : {"False", "false", "0", "No", "no", "N", "n"})
        EXPECT_EQ(typed(c, s), false) << s;
    for (auto s : {"", " true", "TRUE", "2", "Ja", "yes "})
        EXPECT_EQ(typed(c, s), std::nullopt) << s;
    EXPECT_EQ(c.typedValueFromNativeValue(false), false);
    EXPECT_EQ(c.typedValueFromNativeValue(Number::fromInteger(7)), true); // a platform number is non-zero
    EXPECT_EQ(c.typedValueFromNativeValue(int64_t{1}), true);
    EXPECT_EQ(c.typedValueFromNativeValue(int64_t{2}), std::nullopt);
    EXPECT_EQ(c.typedValueFromNativeValue(1.0), true);
    EXPECT_EQ(c.typedValueFromNativeValue(0.5), std::nullopt);
    EXPECT_EQ(c.typedValueFromNativeValue(std::nan("")), std::nullopt);
    EXPECT_EQ(c.typedValueFromNativeValue("no"), false);
    EXPECT_EQ(c.typedValueFromNativeValue(uint64_t{1}), true); // printed, then read
    EXPECT_EQ(c.typedValueFromDoubleValue(0.0), false);
    EXPECT_EQ(c.formattedValueFromStringValue("Yes"), "true");
    EXPECT_EQ(c.stringValueFromStringValue("n"), "false");
    EXPECT_EQ(c.objectValueFromStringValue("y"), ObjectValue(Number::fromBool(true)));
    EXPECT_EQ(c.jsonValueFromNativeValue("0"), DynamicValue(Number::fromBool(false)));
    EXPECT_EQ(c.nativeValueFromStringValue("True"), DynamicValue(true));
}

TEST(SDoubleValueConverter, ReadsCommasBlanksAndTheStrtodForms) {
    SDoubleValueConverter c;
    EXPECT_EQ(typed(c, "\t1 000,25"), 1000.25);
    EXPECT_EQ(typed(c, "-2.5e3"), -2500.0);
    EXPECT_EQ(typed(c, "+.5"), 0.5);
    EXPECT_EQ(typed(c, "0x10"), 16.0);
    EXPECT_EQ(typed(c, "0x1p-2"), 0.25);
    EXPECT_TRUE(std::isinf(*typed(c, "inf")));
    EXPECT_TRUE(std::isnan(*typed(c, "nan")));
    for (auto s : {"", ",", "1,234.5", "12abc", "abc", "1e", "\n5", "5\n", "--1"})
        EXPECT_EQ(typed(c, s), std::nullopt) << s;
    std::string embeddedNul("1\0"
                            "2",
                            3);
    EXPECT_EQ(c.typedValueFromStringValue(embeddedNul), std::nullopt);
}

// Eight decimals and a point, whatever the process's numeric locale: the checks run again under a
// decimal-comma locale when one is installed.
TEST(SDoubleValueConverter, WritesEightDecimalsInAnyLocale) {
    const char* current = std::setlocale(LC_NUMERIC, nullptr);
    const std::string saved = current ? current : "C";
    for (const char* locale : {"C", "de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8"}) {
        if (!std::setlocale(LC_NUMERIC, locale)) continue;
        SCOPED_TRACE(locale);
        SDoubleValueConverter c;
        EXPECT_EQ(c.typedValueFromStringValue("3.25"), 3.25);
        EXPECT_EQ(c.stringValueFromStringValue("\t1 000,25"), "1000.25000000");
        EXPECT_EQ(c.stringValueFromTypedValue(1.5), "1.50000000");
        EXPECT_EQ(c.formattedValueFromStringValue("-2"), "-2.00000000");
        EXPECT_EQ(c.stringValueFromNativeValue(Number::fromDouble(0.125)), "0.12500000");
        EXPECT_EQ(c.stringValueFromNativeValue(uint64_t{7}), "7.00000000");
        EXPECT_EQ(c.stringValueFromNativeValue("1,5"), "1.50000000");
        EXPECT_EQ(c.stringValueFromNativeValue(true), std::nullopt); // printed "true", which is no number
        EXPECT_EQ(c.objectValueFromStringValue("2,5"), ObjectValue(Number::fromDouble(2.5)));
        EXPECT_EQ(c.jsonValueFromNativeValue("7"), DynamicValue(Number::fromDouble(7)));
        EXPECT_TRUE(c.jsonValueFromNativeValue("x").isNothing());
    }
    std::setlocale(LC_NUMERIC, saved.c_str());
}

TEST(UDoubleValueConverter, RefusesNegativesAndNaNEverywhere) {
    UDoubleValueConverter c;
    EXPECT_EQ(typed(c, "-0.5"), std::nullopt);
    EXPECT_EQ(c.formattedValueFromStringValue("-0.5"), std::nullopt);
    EXPECT_EQ(c.objectValueFromStringValue("-0.5"), std::nullopt);
    EXPECT_TRUE(c.jsonValueFromNativeValue(-0.5).isNothing());
    EXPECT_EQ(c.stringValueFromTypedValue(-1.0), std::nullopt);
    EXPECT_EQ(c.typedValueFromNativeValue(int64_t{-3}), std::nullopt);
    EXPECT_EQ(typed(c, "nan"), std::nullopt);
    EXPECT_EQ(c.formattedValueFromStringValue("0"), "0.00000000");
    ASSERT_TRUE(typed(c, "-0").has_value()); // -0.0 >= 0.0
    EXPECT_EQ(c.stringValueFromStringValue("2,5"), "2.50000000");
}

TEST(SIntValueConverter, WholeNumbersThroughTheDecimalReaderToTheEdgesOfTheShortestText) {
    SIntValueConverter c;
    EXPECT_EQ(typed(c, "12.0"), 12);
    EXPECT_EQ(typed(c, "1e3"), 1000);
    EXPECT_EQ(typed(c, "-42"), -42);
    EXPECT_EQ(typed(c, "12.5"), std::nullopt);
    EXPECT_EQ(typed(c, "nan"), std::nullopt);
    EXPECT_EQ(c.stringValueFromStringValue("007"), "7");
    EXPECT_EQ(c.stringValueFromStringValue("-0"), "0");
    EXPECT_EQ(typed(c, "9007199254740992"), 9007199254740992); // 2^53 still prints in full
    EXPECT_EQ(typed(c, "10000000000000000"), 1);               // 1e+16
    EXPECT_EQ(typed(c, "-25000000000000000"), -2);             // -2.5e+16
    EXPECT_EQ(typed(c, "inf"), 0);
}

TEST(SIntValueConverter, NativeValuesOfEveryKind) {
    SIntValueConverter c;
    EXPECT_EQ(c.typedValueFromNativeValue(12.5), 12);
    EXPECT_EQ(c.typedValueFromNativeValue(-3.7), -3);
    EXPECT_EQ(c.typedValueFromNativeValue(0.00001), 1); // "1e-05"
    EXPECT_EQ(c.typedValueFromNativeValue(Number::fromDouble(3.9)), 3);
    EXPECT_EQ(c.typedValueFromNativeValue(Number::fromBool(true)), 1);
    EXPECT_EQ(c.typedValueFromNativeValue(uint64_t{5}), 5);
    EXPECT_EQ(c.typedValueFromNativeValue("12.5"), std::nullopt);
    EXPECT_EQ(c.typedValueFromNativeValue(OtherValue{"44"}), 44);
    EXPECT_EQ(c.formattedValueFromStringValue("1 000"), "1000");
    EXPECT_EQ(c.objectValueFromStringValue("5"), ObjectValue(Number::fromInteger(5)));
    EXPECT_EQ(c.jsonValueFromNativeValue(5.5), DynamicValue(Number::fromInteger(5)));
}

TEST(SIntValueConverterDeathTest, UIntBeyondTheGreatestIntStops) {
    SIntValueConverter c;
    EXPECT_DEATH(c.typedValueFromNativeValue(std::numeric_limits<uint64_t>::max()), "Int");
}

TEST(UIntValueConverter, RefusesNegativesEverywhere) {
    UIntValueConverter c;
    EXPECT_EQ(typed(c, "-1"), std::nullopt);
    EXPECT_EQ(c.formattedValueFromStringValue("-1"), std::nullopt);
    EXPECT_TRUE(c.jsonValueFromNativeValue("-1").isNothing());
    EXPECT_EQ(c.objectValueFromStringValue("-1"), std::nullopt);
    EXPECT_EQ(c.stringValueFromTypedValue(-1), std::nullopt);
    EXPECT_EQ(c.typedValueFromNativeValue(-0.5), 0); // "-0.5" reads -0, which is not negative
    EXPECT_EQ(c.stringValueFromStringValue("1e3"), "1000");
}

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

TEST(Country, TableShapeAndKeptIrregularities) {
    const auto& all = Country::allCases();
    ASSERT_EQ(all.size(), 248u);
    EXPECT_EQ(Country::algeria(), Country("DZ", "DZA", "012"));
    EXPECT_EQ(std::count(all.begin(), all.end(), Country::algeria()), 0);
    EXPECT_EQ(Country::iraq().numeric(), "368");

    std::set<std::string> alpha3s;
    for (const auto& c : all) {
        EXPECT_TRUE(c.alpha2().size() == 2 && c.alpha3().size() == 3 && c.numeric().size() == 3)
            << c.alpha3();
        alpha3s.insert(c.alpha3());
    }
    EXPECT_EQ(alpha3s.size(), all.size());
}

TEST(Country, LooksUpAnyCodeInAnyCaseAndDescribesItself) {
    EXPECT_EQ(Country::from("fra"), Country::france());
    EXPECT_EQ(Country::from("FR"), Country::france());
    EXPECT_EQ(Country::from("250"), Country::france());
    EXPECT_EQ(Country::from("368"), Country::ireland()); // the later row wins
    EXPECT_EQ(Country::from("IRQ"), Country::iraq());
    EXPECT_EQ(Country::from("gu"), Country::guam());
    EXPECT_EQ(Country::from("dz"), std::nullopt);
    EXPECT_EQ(Country::from(""), std::nullopt);
    EXPECT_EQ(Country::from("XX"), std::nullopt);
    EXPECT_FALSE(Country::france().hasCode("fra"));
    EXPECT_TRUE(Country::france().hasCode("FRA"));
    EXPECT_TRUE(Country::france().hasCode("250"));
    EXPECT_FALSE(Country::guam().hasCode("GU"));
    const auto& fr = Country::france();
    EXPECT_FALSE(fr.localizedName().empty());
    EXPECT_EQ(fr.localizedDescription(), fr.localizedName() + " (FR, FRA, 250");
    EXPECT_EQ(fr.englishName(), "France");
    EXPECT_EQ(Country::algeria().englishName(), "Algeria");
}

TEST(CountryValueConverter, NormalisesToAlpha2) {
    CountryValueConverter c;
    EXPECT_EQ(c.stringValueFromStringValue("USA"), "US");
    EXPECT_EQ(c.stringValueFromStringValue("840"), "US");
    EXPECT_EQ(c.stringValueFromStringValue("gum"), "Gu");
    EXPECT_EQ(c.stringValueFromStringValue("nowhere"), std::nullopt);
    EXPECT_EQ(c.stringValueFromStringValue(std::nullopt), std::nullopt);
    EXPECT_EQ(c.nativeValueFromStringValue("de"), DynamicValue(Country::germany()));
    EXPECT_EQ(c.stringValueFromNativeValue(Country::japan()), "JP");
    EXPECT_EQ(c.stringValueFromNativeValue(int64_t{250}), "FR"); // printed, then looked up
    EXPECT_EQ(c.exifToolValueFromStringValue("826"), DynamicValue("GB"));
    EXPECT_EQ(c.objectValueFromStringValue("esp"), ObjectValue("ES"));
    EXPECT_EQ(c.objectValueFromStringValue("zz"), std::nullopt);
    EXPECT_EQ(c.formattedValueFromStringValue("fr"), Country::france().localizedDescription());
    EXPECT_EQ(c.formattedValueFromStringValue("zz"), std::nullopt);
}
