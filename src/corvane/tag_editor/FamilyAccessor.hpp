#pragma once

#include "corvane/converters/DynamicValue.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/tag_value/TypedTagValue.hpp"
#include "corvane/value_models/TextLocation.hpp"

#include <array>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// The common ground of the typed views on one editor (EXIFAccessor, XMPAccessor, IPTCAccessor,
/// QuickTimeAccessor, EmbeddedImageAccessor): reading and writing one catalogue tag as a string or
/// through its converter, and the signed numbers that GPS tags keep as a magnitude plus a
/// reference tag.
///
/// An accessor is a light view: it holds a reference to the editor and nothing else, so it is made
/// on the spot (`EXIFAccessor(*editor).exifGPSCoordinate()`) and must not outlive the editor. Every
/// read is one shared pass of the editor; every write goes through `TagEditor::setValue`, so access
/// rules, edited state and the edition history apply as usual. A writer that touches several tags
/// opens one session of the edition manager around them, so the history receives them as one batch.
class FamilyAccessor {
public:
    /// Views `editor`, which must outlive the view.
    explicit FamilyAccessor(TagEditor& editor) : editor_(editor) {}

    /// The editor viewed.
    TagEditor& editor() const { return editor_; }

    /// The current (written, else original) string of a tag.
    std::optional<std::string> currentString(const TagItem& item) const;
    /// The same for the value read from the file.
    std::optional<std::string> originalString(const TagItem& item) const;
    /// The current string through the item's converter; nothing when absent or unreadable.
    DynamicValue currentNativeValue(const TagItem& item) const;
    /// The same for the value read from the file.
    DynamicValue originalNativeValue(const TagItem& item) const;
    /// A typed value through the item's converter, then `setValue`. A value that the converter
    /// refuses sets nothing (it doesn't clear the tag).
    void setNativeValue(const DynamicValue& value, const TagItem& item) const;
    /// `setValue` on the item's name: a value, TagValueClear or TagValueRestore.
    void setString(const std::optional<std::string>& value, const TagItem& item) const;
    /// The same marker on every item, in order, in one session.
    void setStrings(const std::optional<std::string>& value, const std::vector<const TagItem*>& items) const;

    /// True as soon as one name has a current value / is edited; an empty list gives false.
    ///@{
    bool hasOneOrMoreValues(const std::vector<TagName>& tagNames) const;
    bool oneOrMoreTagsAreEdited(const std::vector<TagName>& tagNames) const;
    ///@}

protected:
    /// The signed number kept as a magnitude in `number` and a hemisphere in `reference`. The
    /// magnitude must not be negative; an absent reference counts as the positive one; the
    /// reference `negative` turns the sign.
    std::optional<double> readReferencedNumber(const TagItem& number, const TagItem& reference,
                                               std::string_view negative) const;
    /// Writes the magnitude with eight decimals and the matching reference, number tag first.
    void writeReferencedNumber(double value, const TagItem& number, const TagItem& reference,
                               std::string_view positive, std::string_view negative) const;

    /// The five tags of a place as text: sub-location, city, state, country name, country code.
    using TextLocationItems = std::array<const TagItem*, 5>;
    /// The place the five tags hold; nothing when all are blank.
    std::optional<TextLocation> readTextLocation(const TextLocationItems& items) const;
    /// `value` writes the five fields in order (an absent field clears its tag, so that a new place
    /// doesn't inherit parts of the old one; the country code goes through `writeCountryCode`);
    /// `clear` and `restore` act on the five tags. One session.
    void writeTextLocation(const TypedTagValue<TextLocation>& value, const TextLocationItems& items) const;
    /// A text value as given, or the marker.
    void writeText(const TypedTagValue<std::string>& value, const TagItem& item) const;
    /// A code is written as given only if it names a country (alpha-2, alpha-3 or numeric, in any
    /// case); an unknown code leaves the tag as it is.
    void writeCountryCode(const TypedTagValue<std::string>& value, const TagItem& item) const;

private:
    TagEditor& editor_;
};

} // namespace corvane
