#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// The medium of a file format. The raw value is the case name.
class MediaKind {
public:
    /// The media.
    enum Case : uint8_t { audio, image, movie, sidecar, other };

    constexpr MediaKind() = default;
    /// The kind of this case.
    constexpr MediaKind(Case c) : case_(c) {}

    /// The case; its name ("image"), also given by `name()`; the kind of a name (nothing for
    /// another text).
    ///@{
    constexpr Case value() const { return case_; }
    std::string_view rawValue() const;
    std::string_view name() const { return rawValue(); }
    static std::optional<MediaKind> fromRawValue(std::string_view raw);
    ///@}
    /// audio, image, movie, sidecar, other.
    static const std::vector<MediaKind>& allCases();

    /// The key of the kind's display name in the string table ("MediaKindImage").
    std::string_view localizationKey() const;
    /// The display name in the user's language.
    std::string localizedName() const;

    friend constexpr bool operator==(MediaKind a, MediaKind b) { return a.case_ == b.case_; } ///< same case

private:
    Case case_ = other;
};

} // namespace corvane

template <> struct std::hash<corvane::MediaKind> {
    size_t operator()(corvane::MediaKind k) const noexcept { return static_cast<size_t>(k.value()); }
};
