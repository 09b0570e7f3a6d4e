#pragma once

#include "corvane/tag_value/TagName.hpp"
#include "corvane/tag_value/TagStream.hpp"

#include <functional>
#include <string>

namespace corvane {

/// The name of one group (section) of a comparison: a tag family.
struct TagComparatorGroupName {
    TagStream stream; ///< the family

    friend bool operator==(const TagComparatorGroupName&, const TagComparatorGroupName&) = default;
};

/// The row heading of one tag in a comparison, with whether the family is left out of its text.
class TagComparatorGroupKey {
public:
    /// The heading of `name`; with `hidesStream` the family is left out of its text.
    TagComparatorGroupKey(TagName name, bool hidesStream)
        : name_(std::move(name)), hidesStream_(hidesStream) {}

    /// The tag; whether the family is left out of the text.
    ///@{
    const TagName& name() const { return name_; }
    bool hidesStream() const { return hidesStream_; }
    ///@}

    /// The family, a blank, and the tag's display name ("EXIF Camera Model Name").
    std::string localizedNameText() const;
    /// The tag's display name alone; the key itself for a tag the catalogue doesn't know.
    std::string localizedKeyText() const;
    /// `localizedKeyText()` when the family is hidden, else `localizedNameText()`.
    std::string localizedText() const { return hidesStream_ ? localizedKeyText() : localizedNameText(); }

    friend bool operator==(const TagComparatorGroupKey&, const TagComparatorGroupKey&) = default;

private:
    TagName name_;
    bool hidesStream_ = false;
};

} // namespace corvane

template <> struct std::hash<corvane::TagComparatorGroupName> {
    size_t operator()(const corvane::TagComparatorGroupName& n) const noexcept {
        return std::hash<corvane::TagStream>()(n.stream);
    }
};

template <> struct std::hash<corvane::TagComparatorGroupKey> {
    size_t operator()(const corvane::TagComparatorGroupKey& k) const noexcept {
        return std::hash<corvane::TagName>()(k.name()) ^ (k.hidesStream() ? 0x9e3779b97f4a7c15ULL : 0);
    }
};
