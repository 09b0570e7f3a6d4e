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
    enum Case : uint8_t {
        n,   ///< the family does not occur in the format
        r,   ///< read only
        rw,  ///< existing tags may be changed, new ones may not be added
        rwc, ///< tags, or the whole family, may also be created
    };

    constexpr TagAccess() = default;
    constexpr TagAccess(Case c) : case_(c) {}

    constexpr Case value() const { return case_; }
    std::string_view rawValue() const;
    static std::optional<TagAccess> fromRawValue(std::string_view raw);
    static const std::vector<TagAccess>& allCases();

    constexpr bool canBeRead() const { return case_ != n; }
    constexpr bool canBeEdited() const { return case_ == rw || case_ == rwc; }
    constexpr bool canBeCreated() const { return case_ == rwc; }

    friend constexpr bool operator==(TagAccess a, TagAccess b) { return a.case_ == b.case_; }

private:
    Case case_ = n;
};

void to_json(nlohmann::json& j, const TagAccess& access);
/// Throws std::invalid_argument for anything but one of the four raw values.
void from_json(const nlohmann::json& j, TagAccess& access);

} // namespace corvane

template <> struct std::hash<corvane::TagAccess> {
    size_t operator()(corvane::TagAccess a) const noexcept { return static_cast<size_t>(a.value()); }
};
