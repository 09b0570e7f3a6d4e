#include "corvane/value_models/Latitude.hpp"

#include "corvane/value_models/AxisParts.hpp"

namespace corvane {

std::string_view Latitude::rawValue(Reference reference) {
    return reference == Reference::north ? "N" : "S";
}

std::optional<Latitude::Reference> Latitude::referenceFromRawValue(std::string_view raw) {
    if (raw == "N") return Reference::north;
    if (raw == "S") return Reference::south;
    return std::nullopt;
}

Latitude::Latitude(double value) : value_(value) {
    const AxisParts parts(value);
    seconds_ = parts.seconds;
    degrees_ = parts.degrees;
    minutes_ = parts.minutes;
    reference_ = parts.negative ? Reference::south : Reference::north;
}

const Latitude& Latitude::zero() {
    static const Latitude z(0.0);
    return z;
}

} // namespace corvane
