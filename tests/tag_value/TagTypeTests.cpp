#include "corvane/converters/ArrayValueConverter.hpp"
#include "corvane/converters/BoolValueConverter.hpp"
#include "corvane/converters/CountryValueConverter.hpp"
#include "corvane/converters/DateTimeValueConverter.hpp"
#include "corvane/converters/NoneValueConverter.hpp"
#include "corvane/converters/SDoubleValueConverter.hpp"
#include "corvane/converters/SIntValueConverter.hpp"
#include "corvane/converters/StringValueConverter.hpp"
#include "corvane/converters/UDoubleValueConverter.hpp"
#include "corvane/converters/UIntValueConverter.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagType.hpp"

#include <gtest/gtest.h>

#include <set>

using namespace corvane;

namespace {

template <typename C> bool is(const ValueConverterRef& c) {
    return dynamic_cast<const C*>(c.get()) != nullptr;
}

std::string dateFormat(const ValueConverterRef& c) {
    auto* d = dynamic_cast<const DateTimeValueConverter*>(c.get());
    return d ? d->dateFormat() : "";
}

TagItem makeItem(TagType type, std::optional<int> count, bool isList = false) {
    return TagItem(*TagName::fromRawValue("Test:Tag"), type, count, true, isList, "Tag", {});
}

} // namespace

TEST(TagType, RawValuesRoundTripOrdinalsAreFixedAndTheSignedSetIsTheConvertersOne) {
    ASSERT_EQ(TagType::allCases().size(), static_cast<size_t>(TagType::caseCount));
    std::set<std::string_view> raws;
    for (TagType t : TagType::allCases()) {
        EXPECT_EQ(TagType::fromRawValue(t.rawValue()), t) << t.rawValue();
        raws.insert(t.rawValue());
    }
    EXPECT_EQ(raws.size(), static_cast<size_t>(TagType::caseCount));
    EXPECT_EQ(TagType::fromRawValue("?"), TagType::unknown);
    EXPECT_EQ(TagType::fromRawValue("lang-alt"), TagType::langAlt);
    // Ordinals are fixed (the catalogue refers to them): the signed set below pins the numeric ones.
    EXPECT_EQ(TagType::fromRawValue("Unknown")->ordinal(), 70);
    EXPECT_EQ(TagType::fromRawValue("no such type"), std::nullopt);
    const std::set<int> expected = {10, 13, 16, 18, 19, 20, 21, 22, 24, 30, 31, 33, 35};
    std::set<int> actual;
    for (TagType t : TagType::allCases())
        if (t.isSigned()) actual.insert(t.ordinal());
    EXPECT_EQ(actual, expected);
}

TEST(TagType, ConverterFollowsTheSelectionOrder) {
    for (TagType t : TagType::allCases()) {
        ValueConverterRef c = t.converter();
        ASSERT_TRUE(c) << t.rawValue();
        EXPECT_EQ(c, t.converter()) << "shared, not rebuilt";
        EXPECT_EQ(t.isSupported(), !is<NoneValueConverter>(c)) << t.rawValue();
        if (t.isShortString()) {
            EXPECT_TRUE(is<StringValueConverter>(c)) << t.rawValue();
        } else if (t.isFloat()) {
            EXPECT_TRUE(t.isSigned() ? is<SDoubleValueConverter>(c) : is<UDoubleValueConverter>(c));
        } else if (t.isInteger()) {
            EXPECT_TRUE(t.isSigned() ? is<SIntValueConverter>(c) : is<UIntValueConverter>(c));
        }
    }
    EXPECT_TRUE(is<UIntValueConverter>(TagType(TagType::int16u).converter()));
    EXPECT_TRUE(is<SDoubleValueConverter>(TagType(TagType::rational64s).converter()));
    EXPECT_TRUE(is<UDoubleValueConverter>(TagType(TagType::rational64u).converter()));
    EXPECT_TRUE(is<StringValueConverter>(TagType(TagType::longString).converter()));
    EXPECT_TRUE(is<BoolValueConverter>(TagType(TagType::boolean).converter()));
    EXPECT_TRUE(is<CountryValueConverter>(TagType(TagType::countryCode).converter()));
    EXPECT_TRUE(is<NoneValueConverter>(TagType(TagType::undef).converter()));
    EXPECT_TRUE(is<NoneValueConverter>(TagType(TagType::structure).converter()));
    EXPECT_EQ(dateFormat(TagType(TagType::dateTime).converter()), "yyyy:MM:dd HH:mm:ss");
    EXPECT_EQ(dateFormat(TagType(TagType::localDateTime).converter()), "yyyy:MM:dd HH:mm:ss");
    EXPECT_EQ(dateFormat(TagType(TagType::dateTimeZone).converter()), "yyyy:MM:dd HH:mm:ssZZZZZ");
    EXPECT_EQ(dateFormat(TagType(TagType::date).converter()), "yyyy:MM:dd");
    EXPECT_EQ(dateFormat(TagType(TagType::partialDate).converter()), "yyyy:MM:dd");
    EXPECT_EQ(dateFormat(TagType(TagType::time).converter()), "HH:mm:ss");
    EXPECT_EQ(dateFormat(TagType(TagType::partialTime).converter()), "HH:mm:ss");
}

TEST(TagItem, ArrangementSeparatorAndConverterFollowTheCount) {
    struct Case {
        TagType type;
        std::optional<int> count;
        bool isList;
        TagItem::Arrangement arrangement;
        std::string separator;
        std::string arraySeparator; // empty: the type's own converter
    };
    using A = TagItem::Arrangement;
    const Case cases[] = {
        // An open count of numbers keeps ExifTool's blanks: "8 8 8" is three values, not 888.
        {TagType::int16u, std::nullopt, false, A::dynamicSequence, " ", " "},
        {TagType::int16u, -1, false, A::dynamicSequence, " ", " "},
        {TagType::int16u, -1, true, A::dynamicSequence, ", ", ","},
        {TagType::int16u, 0, false, A::singleValue, " ", ""},
        {TagType::int16u, 1, false, A::singleValue, " ", ""},
        {TagType::rational64u, 3, false, A::staticSequence, " ", " "},
        {TagType::string, 2, false, A::singleValue, " ", ""},
        {TagType::string, -1, true, A::dynamicSequence, ", ", ","},
        // A list flag alone gives the comma array, whatever the count says.
        {TagType::string, 1, true, A::singleValue, " ", ","},
    };
    for (const Case& c : cases) {
        TagItem item = makeItem(c.type, c.count, c.isList);
        SCOPED_TRACE(std::string(c.type.rawValue()) + " count " +
                     (c.count ? std::to_string(*c.count) : "none"));
        EXPECT_EQ(item.arrangement(), c.arrangement);
        EXPECT_EQ(item.isInSequence(), c.arrangement != A::singleValue);
        EXPECT_EQ(item.valueSeparator(), c.separator);
        ValueConverterRef conv = item.converter();
        EXPECT_EQ(conv, item.converter()) << "no allocation per call";
        if (c.arraySeparator.empty()) {
            EXPECT_EQ(conv, c.type.converter());
        } else {
            auto* array = dynamic_cast<const ArrayValueConverter*>(conv.get());
            ASSERT_NE(array, nullptr);
            EXPECT_EQ(array->separator(), c.arraySeparator);
            EXPECT_EQ(array->valueConverter(), c.type.converter());
        }
    }
}

TEST(TagItem, ConvertsThroughItsCatalogueEntry) {
    const TagItem& lensInfo = TagItem::itemEXIFLensInfo(); // four rationals
    EXPECT_EQ(lensInfo.arrangement(), TagItem::Arrangement::staticSequence);
    DynamicValue v = lensInfo.nativeValueFromStringValue("24 70 2,8 4");
    ASSERT_TRUE(v.arrayValue());
    ASSERT_EQ(v.arrayValue()->size(), 4u);
    EXPECT_EQ(lensInfo.stringValueFromNativeValue(v), "24.00000000 70.00000000 2.80000000 4.00000000");

    const TagItem& keywords = TagItem::itemIPTCKeywords();
    EXPECT_EQ(keywords.stringValueFromNativeValue(
                  DynamicValue(DynamicArray{DynamicValue("sea"), DynamicValue("sun")})),
              "sea,sun");
    EXPECT_EQ(keywords.nativeValueFromStringValue(std::nullopt), DynamicValue());

    const TagItem& orientation = TagItem::itemEXIFOrientation();
    EXPECT_EQ(orientation.stringValueFromNativeValue(DynamicValue(int64_t{6})), "6");
    EXPECT_EQ(orientation.stringValueFromNativeValue(DynamicValue("rotate")), std::nullopt);
}
