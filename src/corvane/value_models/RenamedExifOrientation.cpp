#include "corvane/value_models/RenamedExifOrientation.hpp"

namespace corvane {

std::optional<RenamedExifOrientation> RenamedExifOrientation::fromRawValue(int rawValue) {
    if (rawValue < 1 || rawValue > 8) return std::nullopt;
    return RenamedExifOrientation(static_cast<Case>(rawValue));
}

const std::array<RenamedExifOrientation, 8>& RenamedExifOrientation::allCases() {
    static const std::array<RenamedExifOrientation, 8> cases = {
        up, upMirrored, down, downMirrored, leftMirrored, left, rightMirrored, right};
    return cases;
}

RenamedExifOrientation RenamedExifOrientation::horizontalMirrored() const {
    return static_cast<Case>(orientation_maps::horizontalMirrored[value_]);
}
RenamedExifOrientation RenamedExifOrientation::verticalMirrored() const {
    return static_cast<Case>(orientation_maps::verticalMirrored[value_]);
}
RenamedExifOrientation RenamedExifOrientation::leftRotated() const {
    return static_cast<Case>(orientation_maps::leftRotated[value_]);
}
RenamedExifOrientation RenamedExifOrientation::rightRotated() const {
    return static_cast<Case>(orientation_maps::rightRotated[value_]);
}

} // namespace corvane
