#include "corvane/converters/ArrayValueConverter.hpp"

#include "corvane/converters/NoneValueConverter.hpp"
#include "corvane/converters/detail/ConverterText.hpp"
#include "corvane/helpers/WhiteSpace.hpp"

namespace corvane {
namespace converter_text = detail::converter_text;

ArrayValueConverter::ArrayValueConverter(ValueConverterRef valueConverter, std::string separator)
    : valueConverter_(valueConverter ? std::move(valueConverter) : std::make_shared<NoneValueConverter>()),
      separator_(std::move(separator)) {}

std::optional<DynamicArray> ArrayValueConverter::elements(const OptionalString& value) const {
    if (!value || value->empty()) return std::nullopt;
    DynamicArray out;
    for (auto& piece : converter_text::splitListElements(*value, separator_)) {
        DynamicValue element =
            valueConverter_->nativeValueFromStringValue(std::string(trimUnicodeBlanks(piece)));
        if (!element.isNothing()) out.push_back(std::move(element));
    }
    return out;
}

DynamicValue ArrayValueConverter::nativeValueFromStringValue(const OptionalString& value) const {
    return DynamicValue(elements(value));
}

DynamicValue ArrayValueConverter::coreImageValueFromStringValue(const OptionalString& value) const {
    return nativeValueFromStringValue(value);
}

std::optional<ObjectValue>
ArrayValueConverter::objectValueFromStringValue(const OptionalString& value) const {
    auto array = elements(value);
    if (!array) return std::nullopt;
    return objectValueFromDynamicValue(DynamicValue(std::move(*array)));
}

OptionalString ArrayValueConverter::joinedElements(const DynamicArray& elements) const {
    std::string out;
    bool first = true;
    for (const auto& element : elements) {
        auto text = valueConverter_->stringValueFromNativeValue(element);
        if (!text) continue;
        if (!first) out += separator_;
        out += converter_text::listElementText(trimUnicodeBlanks(*text), separator_);
        first = false;
    }
    return out;
}

OptionalString ArrayValueConverter::stringValueFromNativeValue(const DynamicValue& value) const {
    if (auto array = value.arrayValue()) return joinedElements(*array);
    if (auto strings = value.stringArrayValue())
        return joinedElements(DynamicArray(strings->begin(), strings->end()));
    if (auto s = value.stringValue()) return *s;
    return valueConverter_->stringValueFromNativeValue(value);
}

OptionalString ArrayValueConverter::csvValueFromNativeValue(const DynamicValue& value) const {
    return stringValueFromNativeValue(value);
}

OptionalString ArrayValueConverter::formattedValueFromStringValue(const OptionalString& value) const {
    return stringValueFromNativeValue(DynamicValue(value));
}

OptionalString ArrayValueConverter::stringValueFromStringValue(const OptionalString& value) const {
    return stringValueFromNativeValue(nativeValueFromStringValue(value));
}

DynamicValue ArrayValueConverter::jsonValueFromNativeValue(const DynamicValue& value) const {
    auto text = stringValueFromNativeValue(value);
    if (!text || text->empty()) return {};
    DynamicArray out;
    for (auto& piece : converter_text::splitListElements(*text, separator_)) {
        DynamicValue element =
            valueConverter_->jsonValueFromNativeValue(std::string(trimUnicodeBlanks(piece)));
        if (!element.isNothing()) out.push_back(std::move(element));
    }
    return out;
}

DynamicValue ArrayValueConverter::exifToolValueFromStringValue(const OptionalString& value) const {
    return DynamicValue(stringValueFromNativeValue(nativeValueFromStringValue(value)));
}

} // namespace corvane
