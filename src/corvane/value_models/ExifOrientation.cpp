#include "corvane/value_models/ExifOrientation.hpp"

#include "corvane/value_models/RenamedExifOrientation.hpp"

namespace corvane {

std::optional<ExifOrientation> ExifOrientation::fromRawValue(int rawValue) {
    if (rawValue < 1 || rawValue > 8) return std::nullopt;
    return ExifOrientation(static_cast<Case>(rawValue));
}

ExifOrientation::ExifOrientation(const RenamedExifOrientation& renamed)
    : value_(static_cast<Case>(renamed.rawValue())) {}

const std::array<ExifOrientation, 8>& ExifOrientation::allCases() {
    static const std::array<ExifOrientation, 8> cases = {horizontal,
                                                         mirrorHorizontal,
                                                         rotate180,
                                                         mirrorVertical,
                                                         mirrorHorizontalAndRotate270CW,
                                                         rotate90CW,
                                                         mirrorHorizontalAndRotate90CW,
                                                         rotate270CW};
    return cases;
}

ExifOrientation ExifOrientation::horizontalMirrored() const {
    return static_cast<Case>(orientation_maps::horizontalMirrored[value_]);
}
ExifOrientation ExifOrientation::verticalMirrored() const {
    return static_cast<Case>(orientation_maps::verticalMirrored[value_]);
}
ExifOrientation ExifOrientation::leftRotated() const {
    return static_cast<Case>(orientation_maps::leftRotated[value_]);
}
ExifOrientation ExifOrientation::rightRotated() const {
    return static_cast<Case>(orientation_maps::rightRotated[value_]);
}

RenamedExifOrientation ExifOrientation::renamed() const {
    return static_cast<RenamedExifOrientation::Case>(value_);
}

} // namespace corvane
