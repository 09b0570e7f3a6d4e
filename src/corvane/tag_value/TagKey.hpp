#pragma once

#include <functional>
#include <string>

namespace corvane {

/// A tag's name inside its family ("Artist", "By-line").
class TagKey {
public:
    TagKey() = default;
    /// The key as ExifTool spells it.
    explicit TagKey(std::string rawValue) : rawValue_(std::move(rawValue)) {}

    /// The key's text.
    const std::string& rawValue() const { return rawValue_; }

    friend bool operator==(const TagKey&, const TagKey&) = default;
    /// Ordered by text.
    friend auto operator<=>(const TagKey& a, const TagKey& b) { return a.rawValue_ <=> b.rawValue_; }

private:
    std::string rawValue_;
};

} // namespace corvane

template <> struct std::hash<corvane::TagKey> {
    size_t operator()(const corvane::TagKey& k) const noexcept {
        return std::hash<std::string>()(k.rawValue());
    }
};
