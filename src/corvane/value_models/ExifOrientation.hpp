#pragma once

#include <array>
#include <functional>
#include <optional>

namespace corvane {

class RenamedExifOrientation;

/// The EXIF orientation of an image, raw values 1 to 8, with the four
/// transforms a viewer applies: each is a fixed map over the raw values.
class ExifOrientation {
public:
    /// The eight orientations by raw value: how the stored pixels must be turned to be seen
    /// upright.
    enum Case : int {
        horizontal = 1,
        mirrorHorizontal = 2,
        rotate180 = 3,
        mirrorVertical = 4,
        mirrorHorizontalAndRotate270CW = 5,
        rotate90CW = 6,
        mirrorHorizontalAndRotate90CW = 7,
        rotate270CW = 8,
    };

    /// The orientation of this case.
    constexpr ExifOrientation(Case value) : value_(value) {}
    /// Nothing outside 1 to 8.
    static std::optional<ExifOrientation> fromRawValue(int rawValue);
    /// The orientation of the same raw value.
    explicit ExifOrientation(const RenamedExifOrientation& renamed);
    /// The eight orientations, by raw value.
    static const std::array<ExifOrientation, 8>& allCases();

    /// The raw value, 1 to 8; the case.
    ///@{
    constexpr int rawValue() const { return value_; }
    constexpr Case value() const { return value_; }
    ///@}

    /// The orientation after mirroring the image left to right, top to bottom, turning it a quarter
    /// to the left, to the right.
    ///@{
    ExifOrientation horizontalMirrored() const;
    ExifOrientation verticalMirrored() const;
    ExifOrientation leftRotated() const;
    ExifOrientation rightRotated() const;
    ///@}
    /// The same raw value under its other set of names.
    RenamedExifOrientation renamed() const;

    friend constexpr bool operator==(ExifOrientation, ExifOrientation) = default; ///< same raw value

private:
    Case value_;
};

} // namespace corvane

template <> struct std::hash<corvane::ExifOrientation> {
    size_t operator()(corvane::ExifOrientation o) const noexcept { return std::hash<int>()(o.rawValue()); }
};
