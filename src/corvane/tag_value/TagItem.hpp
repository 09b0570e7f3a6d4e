#pragma once

#include "corvane/converters/DynamicValue.hpp"
#include "corvane/converters/ValueConverter.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/tag_value/TagType.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// One entry of the tag catalogue. Instances are created once, when the
/// catalogue is first used, and live as long as the process; they are
/// immutable, shared, and compared by name.
class TagItem {
public:
    /// How the value is laid out: one value, an open count of values (a list), or a fixed count of
    /// numbers.
    enum class Arrangement { singleValue, dynamicSequence, staticSequence };

    /// One value the tag may take, with the title ExifTool prints for it.
    struct Choice {
        std::string value; ///< the stored value, as ExifTool prints it with "-n"
        std::string title; ///< the readable title ("inches", "On, Fired")
    };

    /// An entry of the catalogue; applications look entries up with `find` rather than make them.
    TagItem(TagName name, TagType type, std::optional<int> count, bool isWritable, bool isList,
            std::string displayName, std::vector<Choice> choices, bool hasOpenChoices = false);

    /// The full name, its family and its key.
    ///@{
    const TagName& name() const { return name_; }
    const TagStream& stream() const { return name_.stream(); }
    const TagKey& key() const { return name_.key(); }
    ///@}
    /// Absent or -1: any number; 1 or less: one value; 2 or more: fixed number.
    /// The catalogue gives every entry a count: -1 for lists and open counts.
    std::optional<int> count() const { return count_; }
    /// The type of one value.
    TagType type() const { return type_; }
    /// ExifTool can write the tag (in some format).
    bool isWritable() const { return isWritable_; }
    /// ExifTool marks the tag as a list (Bag or Seq in XMP, List in IPTC).
    bool isList() const { return isList_; }
    /// English display name from ExifTool's tables.
    const std::string& displayName() const { return displayName_; }
    /// The known values with their titles; empty for a tag without choices.
    const std::vector<Choice>& choices() const { return choices_; }
    /// Whether values outside `choices` are valid too (bit masks, and conversions that
    /// print other values as they are): then the choices only name the known ones.
    bool hasOpenChoices() const { return hasOpenChoices_; }

    /// `dynamicSequence` for an open count, `staticSequence` for two or more numbers, else
    /// `singleValue`.
    Arrangement arrangement() const;
    /// True unless the arrangement is `singleValue`.
    bool isInSequence() const;
    /// ", " for an open count of text, " " otherwise.
    std::string valueSeparator() const;

    /// The converter of the tag's whole value: a list, or an open count of text,
    /// gives an array converter on "," over the type's converter; numbers in a
    /// fixed or open count one on " " (ExifTool writes and reads them so);
    /// anything else the type's converter. Shared; no allocation per call.
    ValueConverterRef converter() const;
    /// Canonical string to typed value (nothing on unreadable input).
    DynamicValue nativeValueFromStringValue(const std::optional<std::string>& value) const;
    /// Typed value to canonical string (nothing when the converter refuses it).
    std::optional<std::string> stringValueFromNativeValue(const DynamicValue& value) const;

    /// The whole catalogue, sorted by name. Loaded once, on first use.
    static const std::vector<const TagItem*>& allCases();
    /// Look-up by name, nullptr if absent.
    static const TagItem* find(const TagName& name);
    static const TagItem* find(std::string_view stream, std::string_view key); ///< the same by the two texts

    /// Equal and ordered by name.
    ///@{
    friend bool operator==(const TagItem& a, const TagItem& b) { return a.name_ == b.name_; }
    friend auto operator<=>(const TagItem& a, const TagItem& b) { return a.name_ <=> b.name_; }
    ///@}

    // One constant per catalogue entry that the library names in its logic:
    // item<Stream><Key>, a hyphen in ExifTool's name written as an underscore.
#include "corvane/tag_value/TagItemConstants.inc"

private:
    bool holdsBlankSeparatedNumbers() const;
    /// The entry behind a named constant; a missing entry is a programming fault.
    static const TagItem& require(std::string_view stream, std::string_view key);

    TagName name_;
    TagType type_;
    std::optional<int> count_;
    bool isWritable_;
    bool isList_;
    std::string displayName_;
    std::vector<Choice> choices_;
    bool hasOpenChoices_;
};

} // namespace corvane

template <> struct std::hash<corvane::TagItem> {
    size_t operator()(const corvane::TagItem& i) const noexcept {
        return std::hash<corvane::TagName>()(i.name());
    }
};
