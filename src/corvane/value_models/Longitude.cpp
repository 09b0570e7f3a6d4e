#include "corvane/value_models/Longitude.hpp"

#include "corvane/value_models/AxisParts.hpp"

namespace corvane {

std::string_view Longitude::rawValue(Reference reference) {
    return reference == Reference::east ? "E" : "W";
}

std::optional<Longitude::Reference> Longitude::referenceFromRawValue(std::string_view raw) {
    if (raw == "E") return Reference::east;
    if (raw == "W") return Reference::west;
    return std::nullopt;
}

Longitude::Longitude(double value) : value_(value) {
    const AxisParts parts(value);
    seconds_ = parts.seconds;
    degrees_ = parts.degrees;
    minutes_ = parts.minutes;
    reference_ = parts.negative ? Reference::west : Reference::east;
}

const Longitude& Longitude::zero() {
    static const Longitude z(0.0);
    return z;
}

} // namespace corvane
