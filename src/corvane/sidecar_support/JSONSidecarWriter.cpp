#include "corvane/sidecar_support/JSONSidecarWriter.hpp"

#include "corvane/csv_support/detail/Utf8.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagType.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>

namespace corvane {
namespace utf8 = detail::utf8;

std::string_view message(JSONSidecarWriter::WriteError error) {
    switch (error) {
    case JSONSidecarWriter::WriteError::dataEncodingFailed:
        return "Data encoding failed";
    case JSONSidecarWriter::WriteError::dataValidationFailed:
        return "Data validation failed";
    }
    return "Data encoding failed";
}

ValueConverterRef JSONSidecarWriter::converter(const TagName& name) {
    if (const TagItem* item = TagItem::find(name)) return item->converter();
    static const ValueConverterRef textConverter = TagType(TagType::string).converter();
    return textConverter;
}

namespace {

// What the platform's serializer accepts: texts (keys included) of valid UTF-8, and no value that
// JSON can't hold.
bool isValidJSONValue(const nlohmann::json& json) {
    switch (json.type()) {
    case nlohmann::json::value_t::string:
        return utf8::isValid(json.get_ref<const std::string&>());
    case nlohmann::json::value_t::array:
        for (const auto& element : json)
            if (!isValidJSONValue(element)) return false;
        return true;
    case nlohmann::json::value_t::object:
        for (const auto& [key, value] : json.items())
            if (!utf8::isValid(key) || !isValidJSONValue(value)) return false;
        return true;
    case nlohmann::json::value_t::binary:
    case nlohmann::json::value_t::discarded:
        return false;
    default:
        return true;
    }
}

// NaN and the infinities, which JSON has no numbers for: the bridge would write them as null and
// the tag would be lost without a word, so the serializer's check refuses them instead.
bool holdsNonFiniteNumber(const DynamicValue& value) {
    if (const double* d = value.doubleValue()) return !std::isfinite(*d);
    if (const Number* n = value.numberValue()) return n->isReal() && !std::isfinite(n->doubleValue());
    if (const DynamicArray* array = value.arrayValue())
        return std::any_of(array->begin(), array->end(), holdsNonFiniteNumber);
    return false;
}

} // namespace

std::string JSONSidecarWriter::data(const TagStorage& storage) const {
    nlohmann::json root = nlohmann::json::object();
    for (const TagName& name : storage.currentTagNames()) {
        auto converter = JSONSidecarWriter::converter(name);
        auto value = converter->jsonValueFromNativeValue(DynamicValue(storage.currentValue(name)));
        if (holdsNonFiniteNumber(value)) throw WriteException(WriteError::dataValidationFailed);
        // A family's object is made at first need; nothing becomes null.
        root[name.stream().rawValue()][name.key().rawValue()] = toJson(value);
    }
    if (!isValidJSONValue(root)) throw WriteException(WriteError::dataValidationFailed);
    try {
        return root.dump(2);
    } catch (const nlohmann::json::exception&) {
        throw WriteException(WriteError::dataEncodingFailed);
    }
}

} // namespace corvane
