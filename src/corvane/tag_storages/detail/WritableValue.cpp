#include "corvane/tag_storages/detail/WritableValue.hpp"

#include "corvane/converters/ArrayValueConverter.hpp"
#include "corvane/converters/SDoubleValueConverter.hpp"
#include "corvane/converters/SIntValueConverter.hpp"
#include "corvane/helpers/WhiteSpace.hpp"
#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/value_models/CoordinateParser.hpp"

#include <cmath>
#include <vector>

namespace corvane::detail {

namespace {

std::vector<std::string_view> pieces(std::string_view value, const std::string& separator) {
    if (separator.empty()) return {value};
    std::vector<std::string_view> out;
    std::size_t start = 0;
    for (std::size_t at; (at = value.find(separator, start)) != std::string_view::npos;
         start = at + separator.size())
        out.push_back(value.substr(start, at - start));
    out.push_back(value.substr(start));
    return out;
}

// The greatest magnitude a GPS key's number may have, or nothing for other keys.
std::optional<double> degreeBound(const std::string& key) {
    if (!key.starts_with("GPS")) return std::nullopt;
    if (key.ends_with("Latitude")) return 90.0;
    if (key.ends_with("Longitude")) return 180.0;
    return std::nullopt;
}

std::optional<std::string> numberProblem(const TagItem& item, std::string_view piece) {
    const auto number = SDoubleValueConverter::parseDecimal(std::string(piece));
    if (!number) return std::nullopt;
    if (!std::isfinite(*number)) return "is not a finite number";
    if (item.type().isInteger() && std::floor(*number) == *number) {
        // Past 2^53 the integer converter reads the double's exponent text ("1e+16" reads 1).
        const auto integer = SIntValueConverter().typedValueFromStringValue(std::string(piece));
        if (!integer || static_cast<double>(*integer) != *number) return "is out of the integer range";
    }
    if (const auto bound = degreeBound(item.name().key().rawValue()); bound && std::fabs(*number) > *bound)
        return "is beyond " + std::to_string(static_cast<int>(*bound)) + " degrees";
    return std::nullopt;
}

std::optional<std::string> positionProblem(const std::string& value) {
    const auto position = CoordinateParser::coordinate(value);
    if (!position) return std::nullopt;
    const double latitude = position->latitude().value();
    const double longitude = position->longitude().value();
    if (!std::isfinite(latitude) || !std::isfinite(longitude) || std::fabs(latitude) > 90 ||
        std::fabs(longitude) > 180)
        return "is not a position on the globe";
    return std::nullopt;
}

} // namespace

std::optional<std::string> unwritableValueReason(const TagItem& item, const std::string& value) {
    std::optional<std::string> problem;
    std::string_view culprit = value;
    if (item.type().isNumber()) {
        const auto converter = item.converter();
        const auto* array = dynamic_cast<const ArrayValueConverter*>(converter.get());
        for (const std::string_view piece : pieces(value, array ? array->separator() : std::string())) {
            const std::string_view trimmed = trimUnicodeBlanks(piece);
            if ((problem = numberProblem(item, trimmed))) {
                culprit = trimmed;
                break;
            }
        }
    } else if (item.name() == TagItem::itemQuickTimeGPSCoordinates().name()) {
        problem = positionProblem(value);
    }
    if (!problem) return std::nullopt;
    return item.name().rawValue() + ": \"" + std::string(culprit) + "\" " + *problem;
}

std::optional<std::string> unwritableStorageReason(const TagStorage& storage) {
    for (const auto& [tagName, string] : storage.writtenValues()) {
        if (tagName.stream() == TagStream::streamFile) continue;
        const TagItem* item = TagItem::find(tagName);
        if (!item) continue;
        if (auto reason = unwritableValueReason(*item, string)) return reason;
    }
    return std::nullopt;
}

} // namespace corvane::detail
