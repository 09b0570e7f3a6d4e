#pragma once

#include <array>
#include <functional>
#include <optional>

namespace corvane {

class ExifOrientation;

/// The EXIF orientation under the names image frameworks use, with the same raw
/// values 1 to 8 and the same transforms as ExifOrientation.
class RenamedExifOrientation {
public:
    /// The eight orientations by raw value, named after the edge that is up.
    enum Case : int {
        up = 1,
        upMirrored = 2,
        down = 3,
        downMirrored = 4,
        leftMirrored = 5,
        left = 6,
        rightMirrored = 7,
        right = 8,
    };

    /// The orientation of this case.
    constexpr RenamedExifOrientation(Case value) : value_(value) {}
    /// Nothing outside 1 to 8.
    static std::optional<RenamedExifOrientation> fromRawValue(int rawValue);
    /// The eight orientations, by raw value.
    static const std::array<RenamedExifOrientation, 8>& allCases();

    /// The raw value, 1 to 8; the case.
    ///@{
    constexpr int rawValue() const { return value_; }
    constexpr Case value() const { return value_; }
    ///@}

    /// The orientation after mirroring left to right, top to bottom, turning a quarter to the left,
    /// to the right.
    ///@{
    RenamedExifOrientation horizontalMirrored() const;
    RenamedExifOrientation verticalMirrored() const;
    RenamedExifOrientation leftRotated() const;
    RenamedExifOrientation rightRotated() const;
    ///@}

    /// Same raw value.
    friend constexpr bool operator==(RenamedExifOrientation, RenamedExifOrientation) = default;

private:
    Case value_;
};

namespace orientation_maps {
/// Raw value to raw value, index 0 unused.
inline constexpr int horizontalMirrored[9] = {0, 2, 1, 4, 3, 6, 5, 8, 7};
inline constexpr int verticalMirrored[9] = {0, 4, 3, 2, 1, 8, 7, 6, 5};
inline constexpr int leftRotated[9] = {0, 8, 5, 6, 7, 4, 1, 2, 3};
inline constexpr int rightRotated[9] = {0, 6, 7, 8, 5, 2, 3, 4, 1};
} // namespace orientation_maps

} // namespace corvane

template <> struct std::hash<corvane::RenamedExifOrientation> {
    size_t operator()(corvane::RenamedExifOrientation o) const noexcept {
        return std::hash<int>()(o.rawValue());
    }
};
