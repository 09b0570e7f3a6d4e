#include "corvane/value_models/Country.hpp"
#include "corvane/converters/CountryValueConverter.hpp"

#include <gtest/gtest.h>

#include <set>

using namespace corvane;

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
