#include "corvane/value_models/Altitude.hpp"

namespace corvane {

std::string_view Altitude::rawValue(Reference reference) {
    return reference == Reference::above ? "0" : "1";
}

std::optional<Altitude::Reference> Altitude::referenceFromRawValue(std::string_view raw) {
    if (raw == "0") return Reference::above;
    if (raw == "1") return Reference::below;
    return std::nullopt;
}

std::optional<Altitude> Altitude::fromOptional(const std::optional<double>& value) {
    if (!value) return std::nullopt;
    return Altitude(*value);
}

const Altitude& Altitude::zero() {
    static const Altitude z(0.0);
    return z;
}

} // namespace corvane
