#include "corvane/tag_value/TagName.hpp"

#include "corvane/tag_value/TagCatalogue.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagNameMapping.hpp"
#include "corvane/tag_value/detail/DynamicTagItems.hpp"

#include <nlohmann/json.hpp>
#include <stdexcept>

namespace corvane {

// "Stream:Key", split at the first colon; both halves must be non-empty.
// The key keeps any further colon ("A:B:C" is stream "A", key "B:C"): image
// I/O keys such as "OwnerName:string" contain one, and rawValue() gives the
// same text back.
std::optional<TagName> TagName::fromRawValue(std::string_view text) {
    size_t colon = text.find(':');
    if (colon == std::string_view::npos || colon == 0 || colon + 1 == text.size()) return std::nullopt;
    return TagName(TagStream(std::string(text.substr(0, colon))),
                   TagKey(std::string(text.substr(colon + 1))));
}

std::string TagName::rawValue() const {
    if (isEmpty()) return {};
    std::string text;
    text.reserve(stream_.rawValue().size() + 1 + key_.rawValue().size());
    text += stream_.rawValue();
    text += ':';
    text += key_.rawValue();
    return text;
}

const TagItem* TagName::item() const {
    if (const TagItem* item = cachedItem()) return item;
    // Only the catalogue's entries are kept: a name made from a file's content may be given
    // another entry later.
    const TagItem* item = TagCatalogue::shared().find(stream_.rawValue(), key_.rawValue());
    if (!item) return detail::DynamicTagItems::shared().find(stream_.rawValue(), key_.rawValue());
    item_.store(item, std::memory_order_release);
    return item;
}

std::optional<TagName> TagName::etName() const {
    return TagNameMapping::etName(*this);
}

std::optional<TagName> TagName::cgName() const {
    return TagNameMapping::cgName(*this);
}

namespace {

using Names = std::vector<TagName>;

Names names(std::initializer_list<const TagItem*> items) {
    Names v;
    v.reserve(items.size());
    for (const TagItem* item : items)
        v.push_back(item->name());
    return v;
}

Names joined(std::initializer_list<const Names*> groups) {
    Names v;
    for (const Names* g : groups)
        v.insert(v.end(), g->begin(), g->end());
    return v;
}

} // namespace

const std::vector<TagName>& TagName::exifGPSCoordinatesTagNames() {
    static const Names v =
        names({&TagItem::itemEXIFGPSLatitude(), &TagItem::itemEXIFGPSLatitudeRef(),
               &TagItem::itemEXIFGPSLongitude(), &TagItem::itemEXIFGPSLongitudeRef(),
               &TagItem::itemEXIFGPSAltitude(), &TagItem::itemEXIFGPSAltitudeRef(),
               &TagItem::itemEXIFGPSImgDirection(), &TagItem::itemEXIFGPSImgDirectionRef()});
    return v;
}

const std::vector<TagName>& TagName::exifGPSDateStampTagNames() {
    static const Names v = names({&TagItem::itemEXIFGPSDateStamp(), &TagItem::itemEXIFGPSTimeStamp()});
    return v;
}

const std::vector<TagName>& TagName::exifLocationTagNames() {
    static const Names v = joined({&exifGPSCoordinatesTagNames(), &exifGPSDateStampTagNames()});
    return v;
}

const std::vector<TagName>& TagName::exifThumbnailTagNames() {
    static const Names v = names({&TagItem::itemEXIFThumbnailLength(), &TagItem::itemEXIFThumbnailImage(),
                                  &TagItem::itemEXIFPreviewImage(), &TagItem::itemEXIFPreviewImageLength()});
    return v;
}

const std::vector<TagName>& TagName::iptcGPSAddressTagNames() {
    static const Names v = names(
        {&TagItem::itemIPTCCity(), &TagItem::itemIPTCProvince_State(), &TagItem::itemIPTCSub_location(),
         &TagItem::itemIPTCCountry_PrimaryLocationCode(), &TagItem::itemIPTCCountry_PrimaryLocationName()});
    return v;
}

const std::vector<TagName>& TagName::iptcLocationTagNames() {
    return iptcGPSAddressTagNames();
}

const std::vector<TagName>& TagName::xmpGPSCoordinatesTagNames() {
    static const Names v = names({&TagItem::itemXMPGPSLatitude(), &TagItem::itemXMPGPSLatitudeRef(),
                                  &TagItem::itemXMPGPSLongitude(), &TagItem::itemXMPGPSLongitudeRef(),
                                  &TagItem::itemXMPGPSAltitude(), &TagItem::itemXMPGPSAltitudeRef(),
                                  &TagItem::itemXMPGPSImgDirection(), &TagItem::itemXMPGPSImgDirectionRef()});
    return v;
}

const std::vector<TagName>& TagName::xmpGPSDateStampTagNames() {
    static const Names v = names({&TagItem::itemXMPGPSDateTime()});
    return v;
}

const std::vector<TagName>& TagName::xmpGPSAddressTagNames() {
    static const Names v =
        names({&TagItem::itemXMPLocation(), &TagItem::itemXMPCity(), &TagItem::itemXMPState(),
               &TagItem::itemXMPCountry(), &TagItem::itemXMPCountryCode()});
    return v;
}

const std::vector<TagName>& TagName::xmpLocationTagNames() {
    static const Names v =
        joined({&xmpGPSCoordinatesTagNames(), &xmpGPSDateStampTagNames(), &xmpGPSAddressTagNames()});
    return v;
}

const std::vector<TagName>& TagName::quicktimeGPSCoordinatesTagNames() {
    static const Names v = names({&TagItem::itemQuickTimeGPSCoordinates()});
    return v;
}

const std::vector<TagName>& TagName::quicktimeLocationTagNames() {
    return quicktimeGPSCoordinatesTagNames();
}

const std::vector<TagName>& TagName::quicktimeArtworkTagNames() {
    static const Names v = names({&TagItem::itemQuickTimeArtwork(), &TagItem::itemQuickTimeCoverArt()});
    return v;
}

const std::vector<TagName>& TagName::locationTagNames() {
    static const Names v = joined({&exifLocationTagNames(), &iptcLocationTagNames(), &xmpLocationTagNames(),
                                   &quicktimeLocationTagNames()});
    return v;
}

const std::vector<TagName>& TagName::iTunMOVITagNames() {
    static const Names v = names({&TagItem::itemPLISTCast(), &TagItem::itemPLISTCodirectors(),
                                  &TagItem::itemPLISTDirectors(), &TagItem::itemPLISTProducers(),
                                  &TagItem::itemPLISTScreenwriters(), &TagItem::itemPLISTStudio()});
    return v;
}

const std::vector<std::pair<TagName, TagName>>& TagName::imageSizePairs() {
#define CORVANE_SIZE_PAIR(prefix)                                                                            \
    { TagItem::item##prefix##ImageWidth().name(), TagItem::item##prefix##ImageHeight().name() }
    // The order is the order in which an image's size is looked for; Sony's
    // own pair stands twice, as it always has.
    static const std::vector<std::pair<TagName, TagName>> pairs = {
        CORVANE_SIZE_PAIR(Composite),
        CORVANE_SIZE_PAIR(EXIF),
        CORVANE_SIZE_PAIR(EXIFExif),
        CORVANE_SIZE_PAIR(IPTCIPTC),
        CORVANE_SIZE_PAIR(PNG),
        CORVANE_SIZE_PAIR(XMP),
        CORVANE_SIZE_PAIR(DV),
        CORVANE_SIZE_PAIR(GIF),
        CORVANE_SIZE_PAIR(Red),
        CORVANE_SIZE_PAIR(PSP),
        CORVANE_SIZE_PAIR(MXF),
        CORVANE_SIZE_PAIR(MNG),
        CORVANE_SIZE_PAIR(ITC),
        CORVANE_SIZE_PAIR(ASF),
        CORVANE_SIZE_PAIR(SVG),
        CORVANE_SIZE_PAIR(RIFF),
        CORVANE_SIZE_PAIR(MPEG),
        CORVANE_SIZE_PAIR(H264),
        CORVANE_SIZE_PAIR(GIMP),
        CORVANE_SIZE_PAIR(FLIR),
        CORVANE_SIZE_PAIR(DjVu),
        CORVANE_SIZE_PAIR(APP8),
        CORVANE_SIZE_PAIR(Theora),
        CORVANE_SIZE_PAIR(Jpeg2000),
        CORVANE_SIZE_PAIR(MIFF),
        CORVANE_SIZE_PAIR(Canon),
        CORVANE_SIZE_PAIR(Flash),
        CORVANE_SIZE_PAIR(CanonAF),
        CORVANE_SIZE_PAIR(NikonAF),
        CORVANE_SIZE_PAIR(PhotoCD),
        CORVANE_SIZE_PAIR(XMPExif),
        CORVANE_SIZE_PAIR(QuickTime),
        CORVANE_SIZE_PAIR(Photoshop),
        CORVANE_SIZE_PAIR(PhaseOne),
        CORVANE_SIZE_PAIR(CanonRaw),
        CORVANE_SIZE_PAIR(SigmaRaw),
        CORVANE_SIZE_PAIR(MinoltaRaw),
        CORVANE_SIZE_PAIR(FujiFilmRaw),
        CORVANE_SIZE_PAIR(PanasonicPanasonic),
        CORVANE_SIZE_PAIR(OlympusOlympus),
        CORVANE_SIZE_PAIR(OlympusEpson),
        CORVANE_SIZE_PAIR(SonySony),
        CORVANE_SIZE_PAIR(CanonCanon),
        CORVANE_SIZE_PAIR(KodakKodak),
        CORVANE_SIZE_PAIR(RicohRicoh),
        CORVANE_SIZE_PAIR(SonySony),
        CORVANE_SIZE_PAIR(FlashPix),
        CORVANE_SIZE_PAIR(FLIRPaint),
    };
#undef CORVANE_SIZE_PAIR
    return pairs;
}

void to_json(nlohmann::json& j, const TagName& name) {
    j = name.rawValue();
}

void from_json(const nlohmann::json& j, TagName& name) {
    auto parsed = TagName::fromRawValue(j.get<std::string>());
    if (!parsed) throw std::invalid_argument("Not a tag name: " + j.get<std::string>());
    name = std::move(*parsed);
}

} // namespace corvane
