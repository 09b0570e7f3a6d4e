#pragma once

#include "corvane/converters/DynamicValue.hpp"
#include "corvane/tag_value/TagName.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

class PresetItemEntry;

/// One tag's value in storage form: a catalogue name and its canonical string.
class TagPair {
public:
    /// The pair of `name` and its text.
    TagPair(TagName name, std::string value) : name_(std::move(name)), value_(std::move(value)) {}

    /// The pair of a typed value: the name must be in the catalogue and the
    /// value convertible by the entry's converter; the pair holds the
    /// catalogue's own name.
    static std::optional<TagPair> fromName(const TagName& name, const DynamicValue& rawValue);
    /// The same, with the name given as text ("EXIF:Artist").
    static std::optional<TagPair> fromRawName(std::string_view rawName, const DynamicValue& rawValue);

    /// The preset entry that puts this value back: a text for `useCustomValue` with `replace`, or
    /// for a date or time tag the date edition "SELECT(...)" of the date the value holds (its
    /// fields, or none when the value isn't a date). Nothing for a name outside the catalogue.
    std::optional<PresetItemEntry> convertToPresetEntry() const;

    /// The tag; its value as text.
    ///@{
    const TagName& name() const { return name_; }
    const std::string& value() const { return value_; }
    ///@}

    friend bool operator==(const TagPair&, const TagPair&) = default;

private:
    TagName name_;
    std::string value_;
};

} // namespace corvane

template <> struct std::hash<corvane::TagPair> {
    size_t operator()(const corvane::TagPair& p) const noexcept {
        size_t h = std::hash<corvane::TagName>()(p.name());
        return h ^ (std::hash<std::string>()(p.value()) + 0x9e3779b97f4a7c15ULL + (h << 6) + (h >> 2));
    }
};
