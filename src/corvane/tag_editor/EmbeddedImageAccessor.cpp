#include "corvane/tag_editor/EmbeddedImageAccessor.hpp"

#include "corvane/tag_value/TypedTagValue.hpp"

namespace corvane {

bool EmbeddedImageAccessor::isPositive(const DynamicValue& value) {
    if (const auto* u = value.uintValue()) return *u > 0;
    if (const auto* i = value.intValue()) return *i > 0;
    if (const auto* n = value.numberValue()) return n->doubleValue() > 0;
    if (const auto* d = value.doubleValue()) return *d > 0;
    return false;
}

bool EmbeddedImageAccessor::hasCurrentExifThumbnail() const {
    return isPositive(currentNativeValue(TagItem::itemEXIFThumbnailLength()));
}
bool EmbeddedImageAccessor::hasOriginalExifThumbnail() const {
    return isPositive(originalNativeValue(TagItem::itemEXIFThumbnailLength()));
}
bool EmbeddedImageAccessor::isExifThumbnailEdited() const {
    return hasCurrentExifThumbnail() != hasOriginalExifThumbnail();
}
void EmbeddedImageAccessor::clearExifThumbnail() const {
    setStrings(TagValueClear, {&TagItem::itemEXIFThumbnailImage(), &TagItem::itemEXIFThumbnailLength()});
}
void EmbeddedImageAccessor::restoreExifThumbnail() const {
    setStrings(TagValueRestore, {&TagItem::itemEXIFThumbnailImage(), &TagItem::itemEXIFThumbnailLength()});
}

bool EmbeddedImageAccessor::hasCurrentExifPreview() const {
    return isPositive(currentNativeValue(TagItem::itemEXIFPreviewImageLength()));
}
bool EmbeddedImageAccessor::hasOriginalExifPreview() const {
    return isPositive(originalNativeValue(TagItem::itemEXIFPreviewImageLength()));
}
bool EmbeddedImageAccessor::isExifPreviewEdited() const {
    return hasCurrentExifPreview() != hasOriginalExifPreview();
}
void EmbeddedImageAccessor::clearExifPreview() const {
    setStrings(TagValueClear, {&TagItem::itemEXIFPreviewImage(), &TagItem::itemEXIFPreviewImageLength()});
}
void EmbeddedImageAccessor::restoreExifPreview() const {
    setStrings(TagValueRestore, {&TagItem::itemEXIFPreviewImage(), &TagItem::itemEXIFPreviewImageLength()});
}

} // namespace corvane
