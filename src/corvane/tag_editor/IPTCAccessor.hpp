#pragma once

#include "corvane/tag_editor/FamilyAccessor.hpp"
#include "corvane/tag_value/TypedTagValue.hpp"
#include "corvane/value_models/TextLocation.hpp"

#include <optional>
#include <string>

namespace corvane {

/// Typed view of an editor's IPTC place tags: Sub-location, City, Province-State,
/// Country-PrimaryLocationName and Country-PrimaryLocationCode, one by one and as a `TextLocation`.
class IPTCAccessor : public FamilyAccessor {
public:
    /// Views the editor; the editor must outlive the view.
    using FamilyAccessor::FamilyAccessor;

    /// The five place tags as text: Sub-location, City, Province-State,
    /// Country-PrimaryLocationName, Country-PrimaryLocationCode.
    ///@{
    std::optional<std::string> iptcSubLocation() const;
    std::optional<std::string> iptcCity() const;
    std::optional<std::string> iptcProvince_State() const;
    std::optional<std::string> iptcLocationName() const;
    std::optional<std::string> iptcLocationCode() const;
    ///@}
    /// Write one text tag of the place.
    ///@{
    void setIptcSubLocation(const TypedTagValue<std::string>& value) const;
    void setIptcCity(const TypedTagValue<std::string>& value) const;
    void setIptcProvince_State(const TypedTagValue<std::string>& value) const;
    void setIptcLocationName(const TypedTagValue<std::string>& value) const;
    ///@}
    /// Only a known country code is written; an unknown one changes nothing.
    void setIptcLocationCode(const TypedTagValue<std::string>& value) const;

    /// The five tags as a whole; nothing when all are blank.
    ///@{
    std::optional<TextLocation> iptcTextLocation() const;
    void setIptcTextLocation(const TypedTagValue<TextLocation>& value) const;
    ///@}

    // --- Groups, over TagName::iptcLocationTagNames()
    /// Whether any tag of the group has a pending edit; whether any holds a value.
    ///@{
    bool oneOrMoreIptcLocationTagsAreEdited() const;
    bool hasOneOrMoreIptcLocationValues() const;
    ///@}

    /// The five place tags, by role, for `TextLocation` reading and writing.
    static const TextLocationItems& textLocationItems();
};

} // namespace corvane
