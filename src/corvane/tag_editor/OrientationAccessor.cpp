#include "corvane/tag_editor/OrientationAccessor.hpp"

#include <algorithm>
#include <string>

namespace corvane {

int OrientationAccessor::valueOf(const DynamicValue& value) const {
    if (const auto* i = value.intValue()) return static_cast<int>(*i);
    if (const auto* u = value.uintValue()) return static_cast<int>(std::min<uint64_t>(*u, 1u << 30));
    if (const auto* n = value.numberValue()) return static_cast<int>(n->integerValue());
    if (const auto* d = value.doubleValue()) return static_cast<int>(*d);
    if (const auto* s = value.stringValue()) {
        // A string-typed tag (QuickTime's) holds the digits as text.
        try {
            std::size_t used = 0;
            int number = std::stoi(*s, &used);
            if (used == s->size()) return number;
        } catch (const std::exception&) {
        }
    }
    return 1;
}

int OrientationAccessor::orientationValue() const {
    return valueOf(currentNativeValue(item_));
}

int OrientationAccessor::originalOrientationValue() const {
    return valueOf(originalNativeValue(item_));
}

ExifOrientation OrientationAccessor::orientation(int value) {
    return ExifOrientation::fromRawValue(value).value_or(ExifOrientation::horizontal);
}

ExifOrientation OrientationAccessor::orientation() const {
    return orientation(orientationValue());
}

ExifOrientation OrientationAccessor::originalOrientation() const {
    return orientation(originalOrientationValue());
}

void OrientationAccessor::setOrientationValue(int value) const {
    setString(std::to_string(value), item_);
}

void OrientationAccessor::setOrientation(ExifOrientation orientation) const {
    setOrientationValue(orientation.rawValue());
}

void OrientationAccessor::setClampedOrientationValue(int value) const {
    setOrientationValue(std::clamp(value, 1, 8));
}

void OrientationAccessor::horizontalFlipOrientation() const {
    setOrientation(orientation().horizontalMirrored());
}

void OrientationAccessor::verticalFlipOrientation() const {
    setOrientation(orientation().verticalMirrored());
}

void OrientationAccessor::rotateLeftOrientation() const {
    setOrientation(orientation().leftRotated());
}

void OrientationAccessor::rotateRightOrientation() const {
    setOrientation(orientation().rightRotated());
}

} // namespace corvane
