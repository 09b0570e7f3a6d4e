#include "corvane/tag_value/TagStream.hpp"

#include "corvane/tag_value/TagCatalogue.hpp"

namespace corvane {

const std::vector<TagStream>& TagStream::allCases() {
    return TagCatalogue::shared().streams();
}

const std::vector<TagStream>& TagStream::makerStreams() {
    return TagCatalogue::shared().makerStreams();
}

std::optional<int> TagStream::index() const {
    const TagCatalogue::Family* family = TagCatalogue::shared().family(rawValue_);
    if (!family) return std::nullopt;
    return family->index;
}

bool TagStream::sortWithIndex(const TagStream& lhs, const TagStream& rhs) {
    auto l = lhs.index();
    auto r = rhs.index();
    // Kept non-strict on purpose: a family compared with itself gives true.
    if (l && r) return *r >= *l;
    if (lhs == rhs) return false;
    return lhs.rawValue_ < rhs.rawValue_;
}

bool TagStream::isG0Stream() const {
    return TagCatalogue::shared().family(rawValue_) != nullptr;
}

bool TagStream::isMakerStream() const {
    const TagCatalogue::Family* family = TagCatalogue::shared().family(rawValue_);
    return family && family->isMaker;
}

TagStream TagStream::makerFamilyFixed() const {
    return isMakerStream() ? streamMakerNotes : *this;
}

const std::vector<const TagItem*>& TagStream::items() const {
    static const std::vector<const TagItem*> none;
    const TagCatalogue::Family* family = TagCatalogue::shared().family(rawValue_);
    return family ? family->items : none;
}

} // namespace corvane
