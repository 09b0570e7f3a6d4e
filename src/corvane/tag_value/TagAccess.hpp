#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

/// What may be done with one metadata family in one file format. Encoded in
/// JSON by its raw value ("N", "R", "RW", "RWC").
class TagAccess {
public:
    /// The four levels, each including the one before.
    enum Case : uint8_t {
        n,   ///< the family does not occur in the format
        r,   ///< read only
        rw,  ///< existing tags may be changed, new ones may not be added
        rwc, ///< tags, or the whole family, may also be created
    };

    constexpr TagAccess() = default;
    /// The access of this case.
    constexpr TagAccess(Case c) : case_(c) {}

    /// The case; the raw value ("N", "R", "RW", "RWC"); the access of a raw value (nothing for
    /// another text); every case in order.
    ///@{
    constexpr Case value() const { return case_; }
    std::string_view rawValue() const;
    static std::optional<TagAccess> fromRawValue(std::string_view raw);
    static const std::vector<TagAccess>& allCases();
    ///@}

    /// Whether tags of the family can be read; changed; created.
    ///@{
    constexpr bool canBeRead() const { return case_ != n; }
    constexpr bool canBeEdited() const { return case_ == rw || case_ == rwc; }
    constexpr bool canBeCreated() const { return case_ == rwc; }
    ///@}

    friend constexpr bool operator==(TagAccess a, TagAccess b) { return a.case_ == b.case_; } ///< same case

private:
    Case case_ = n;
};

/// The raw value as a JSON string.
void to_json(nlohmann::json& j, const TagAccess& access);
/// Throws std::invalid_argument for anything but one of the four raw values.
void from_json(const nlohmann::json& j, TagAccess& access);

} // namespace corvane

template <> struct std::hash<corvane::TagAccess> {
    size_t operator()(corvane::TagAccess a) const noexcept { return static_cast<size_t>(a.value()); }
};
