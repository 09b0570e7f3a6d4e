// Values merged across files, their searches, and the filter's JSON form.

#include "corvane/helpers/SingleKeyCoding.hpp"
#include "corvane/tag_table/MultiValuedString.hpp"
#include "corvane/tag_table/TagValueFilter.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace corvane {
namespace {

using M = MultiValuedString;

M merged(std::set<std::string> values) {
    return M(values);
}

TEST(MultiValuedStringTest, MergingKeepsTheEmptyTextAmongDifferingValues) {
    EXPECT_EQ(M(std::set<std::string>{}), M::none());
    EXPECT_EQ(merged({""}), M::none());
    EXPECT_EQ(merged({"a"}), M::single("a"));
    EXPECT_EQ(merged({"b", "", "a"}), M::multiple({"", "a", "b"}));
    EXPECT_EQ(M::none().pastableValue(), std::optional<std::string>(""));
    EXPECT_EQ(M::single("a").pastableValue(), std::optional<std::string>("a"));
    EXPECT_EQ(merged({"a", "b"}).pastableValue(), std::nullopt) << "differing values aren't copied as one";
}

TEST(MultiValuedStringTest, SearchesFindEveryWordInOneValueAndPatternsMindCase) {
    EXPECT_FALSE(M::none().searches(""));
    EXPECT_TRUE(M::single("Sky over the Café").searches("cafe  SKY"));
    EXPECT_TRUE(M::single("ＡＢＣ").searches("abc")) << "width ignored";
    EXPECT_TRUE(M::single("x").searches(" \n ")) << "no word to find";
    EXPECT_TRUE(merged({"red car", "blue boat"}).searches("boat blue"));
    EXPECT_FALSE(merged({"red car", "blue boat"}).searches("red boat")) << "all words in one value";

    EXPECT_TRUE(merged({"", "Canon"}).matches("^C.n"));
    EXPECT_FALSE(M::single("Canon").matches("^canon"));
    EXPECT_TRUE(M::single("Canon").matches("(?i)^canon"));
    EXPECT_FALSE(M::single("Canon").matches("(unclosed")) << "a malformed pattern matches nothing";
    EXPECT_FALSE(M::none().matches(".*"));
}

TEST(TagValueFilterTest, JSONHoldsOneKeyPerConstraint) {
    TagValueFilter filter;
    EXPECT_TRUE(filter.isEmpty());
    filter.nameConstraint = TagValueFilter::StringConstraint::contains("date");
    filter.valueStateConstraint = TagValueFilter::ValueStateConstraint::without;
    EXPECT_FALSE(filter.isEmpty());
    const nlohmann::json j = filter;
    EXPECT_EQ(j, nlohmann::json::parse(R"({"nameConstraint": {"contains": {"_0": "date"}},
        "valueConstraint": {"none": {}}, "valueEditionConstraint": {"ignore": {}},
        "valueStateConstraint": {"without": {}}})"));
    EXPECT_EQ(j.get<TagValueFilter>(), filter);

    auto broken = j;
    broken["valueConstraint"] = nlohmann::json::object();
    EXPECT_THAT([&] { (void)broken.get<TagValueFilter>(); },
                ::testing::ThrowsMessage<SingleKeyCoding::TypeMismatch>(
                    ::testing::StrEq("Invalid number of keys found, expected one.")));
    broken["valueConstraint"] = nlohmann::json::parse(R"({"none": {}, "contains": {"_0": "x"}})");
    EXPECT_THROW((void)broken.get<TagValueFilter>(), SingleKeyCoding::TypeMismatch);
    broken["valueConstraint"] = nlohmann::json::parse(R"({"contains": {}})");
    EXPECT_THROW((void)broken.get<TagValueFilter>(), SingleKeyCoding::TypeMismatch)
        << "a case without its value";
}

} // namespace
} // namespace corvane
