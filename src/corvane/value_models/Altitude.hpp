#pragma once

#include <functional>
#include <optional>
#include <string_view>

namespace corvane {

/// A height in metres, kept with its sign; the reference tells above or below
/// sea level the way EXIF writes it ("0" or "1").
class Altitude {
public:
    /// Above or below sea level; their EXIF texts "0" and "1"; the reference of a text (nothing for
    /// another).
    ///@{
    enum class Reference { above, below };
    static std::string_view rawValue(Reference reference);
    static std::optional<Reference> referenceFromRawValue(std::string_view raw);
    ///@}

    /// An altitude in metres; negative is below sea level.
    explicit Altitude(double value)
        : value_(value), reference_(value >= 0 ? Reference::above : Reference::below) {}
    /// The altitude of a number, if there is one.
    static std::optional<Altitude> fromOptional(const std::optional<double>& value);
    /// Sea level.
    static const Altitude& zero();

    /// Metres (negative below sea level); the side of sea level.
    ///@{
    double value() const { return value_; }
    Reference reference() const { return reference_; }
    ///@}

    friend bool operator==(const Altitude&, const Altitude&) = default;

private:
    double value_;
    Reference reference_;
};

} // namespace corvane

template <> struct std::hash<corvane::Altitude> {
    size_t operator()(const corvane::Altitude& a) const noexcept {
        return std::hash<double>()(a.value()) * 31 + static_cast<size_t>(a.reference());
    }
};
