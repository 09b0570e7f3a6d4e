#include "corvane/converters/SIntValueConverter.hpp"

#include "corvane/converters/SDoubleValueConverter.hpp"
#include "corvane/converters/detail/ConverterText.hpp"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace corvane {
namespace converter_text = detail::converter_text;

std::optional<int64_t> SIntValueConverter::typedValueFromStringValue(const OptionalString& value) const {
    auto number = SDoubleValueConverter::parseDecimal(value);
    if (!number) return std::nullopt;
    // Whole numbers only ("3.5" is refused); NaN fails this test too.
    if (!(std::floor(*number) == *number)) return std::nullopt;
    // The integer is read back from the shortest text of the double, which
    // keeps its known edges: 1e16 prints "1e+16" and reads 1, "inf" reads 0.
    return admit(converter_text::integerFromDoubleText(*number));
}

std::optional<int64_t> SIntValueConverter::typedValueFromNativeValue(const DynamicValue& value) const {
    if (value.isNothing()) return std::nullopt;
    // A Double is truncated through its text, without the whole-number test.
    if (auto d = value.doubleValue()) return admit(converter_text::integerFromDoubleText(*d));
    if (auto n = value.numberValue()) return admit(n->integerValue());
    if (auto i = value.intValue()) return admit(*i);
    if (auto u = value.uintValue()) {
        if (*u > static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) {
            std::fprintf(stderr,
                         "Fatal error: Not enough bits to represent the passed value %llu as an Int\n",
                         static_cast<unsigned long long>(*u));
            std::abort();
        }
        return admit(static_cast<int64_t>(*u));
    }
    if (auto s = value.stringValue()) return typedValueFromStringValue(*s);
    return typedValueFromStringValue(value.description());
}

OptionalString SIntValueConverter::stringValueFromTypedValue(const std::optional<int64_t>& value) const {
    auto admitted = admit(value);
    if (!admitted) return std::nullopt;
    return std::to_string(*admitted);
}

std::optional<ObjectValue> SIntValueConverter::objectValueFromStringValue(const OptionalString& value) const {
    auto typed = typedValueFromStringValue(value);
    if (!typed) return std::nullopt;
    return ObjectValue(Number::fromInteger(*typed));
}

OptionalString SIntValueConverter::formattedValueFromStringValue(const OptionalString& value) const {
    return stringValueFromTypedValue(typedValueFromNativeValue(DynamicValue(value)));
}

DynamicValue SIntValueConverter::jsonValueFromNativeValue(const DynamicValue& value) const {
    auto typed = typedValueFromNativeValue(value);
    if (!typed) return {};
    return Number::fromInteger(*typed);
}

} // namespace corvane
