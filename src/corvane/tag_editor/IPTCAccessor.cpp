#include "corvane/tag_editor/IPTCAccessor.hpp"

namespace corvane {

const FamilyAccessor::TextLocationItems& IPTCAccessor::textLocationItems() {
    static const TextLocationItems items{
        &TagItem::itemIPTCSub_location(), &TagItem::itemIPTCCity(), &TagItem::itemIPTCProvince_State(),
        &TagItem::itemIPTCCountry_PrimaryLocationName(), &TagItem::itemIPTCCountry_PrimaryLocationCode()};
    return items;
}

std::optional<std::string> IPTCAccessor::iptcSubLocation() const {
    return currentString(TagItem::itemIPTCSub_location());
}
std::optional<std::string> IPTCAccessor::iptcCity() const {
    return currentString(TagItem::itemIPTCCity());
}
std::optional<std::string> IPTCAccessor::iptcProvince_State() const {
    return currentString(TagItem::itemIPTCProvince_State());
}
std::optional<std::string> IPTCAccessor::iptcLocationName() const {
    return currentString(TagItem::itemIPTCCountry_PrimaryLocationName());
}
std::optional<std::string> IPTCAccessor::iptcLocationCode() const {
    return currentString(TagItem::itemIPTCCountry_PrimaryLocationCode());
}
void IPTCAccessor::setIptcSubLocation(const TypedTagValue<std::string>& value) const {
    writeText(value, TagItem::itemIPTCSub_location());
}
void IPTCAccessor::setIptcCity(const TypedTagValue<std::string>& value) const {
    writeText(value, TagItem::itemIPTCCity());
}
void IPTCAccessor::setIptcProvince_State(const TypedTagValue<std::string>& value) const {
    writeText(value, TagItem::itemIPTCProvince_State());
}
void IPTCAccessor::setIptcLocationName(const TypedTagValue<std::string>& value) const {
    writeText(value, TagItem::itemIPTCCountry_PrimaryLocationName());
}
void IPTCAccessor::setIptcLocationCode(const TypedTagValue<std::string>& value) const {
    writeCountryCode(value, TagItem::itemIPTCCountry_PrimaryLocationCode());
}

std::optional<TextLocation> IPTCAccessor::iptcTextLocation() const {
    return readTextLocation(textLocationItems());
}

void IPTCAccessor::setIptcTextLocation(const TypedTagValue<TextLocation>& value) const {
    writeTextLocation(value, textLocationItems());
}

bool IPTCAccessor::oneOrMoreIptcLocationTagsAreEdited() const {
    return oneOrMoreTagsAreEdited(TagName::iptcLocationTagNames());
}

bool IPTCAccessor::hasOneOrMoreIptcLocationValues() const {
    return hasOneOrMoreValues(TagName::iptcLocationTagNames());
}

} // namespace corvane
