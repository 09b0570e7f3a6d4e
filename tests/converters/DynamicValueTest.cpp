#include "corvane/converters/DynamicValue.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>

using namespace corvane;

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
