#include "corvane/tag_value/TagStream.hpp"

#include "corvane/tag_value/TagCatalogue.hpp"

#include <algorithm>
#include <string>
#include <string_view>

namespace corvane {

const std::vector<TagStream>& TagStream::allCases() {
    // Read from the catalogue's family line alone: the format registry asks for the families at
    // start-up, long before (and often without) any question about the tags themselves, which
    // would cost the parse of the whole catalogue.
    static const std::vector<TagStream> streams = [] {
        std::vector<TagStream> list;
        const std::string_view text = TagCatalogue::data();
        constexpr std::string_view mark = "@families\t";
        std::string line = "\n"; // appended to: GCC 12 warns, wrongly (-Wrestrict), on "\n" + text
        line += mark;
        std::size_t at = text.starts_with(mark) ? 0 : text.find(line);
        if (at == std::string_view::npos) return TagCatalogue::shared().streams();
        at = text.find('\t', at);
        const std::size_t end = std::min(text.find('\n', at), text.size());
        while (at < end) {
            const std::size_t next = std::min(text.find('\t', at + 1), end);
            list.emplace_back(std::string(text.substr(at + 1, next - at - 1)));
            at = next;
        }
        return list;
    }();
    return streams;
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
    return family ? family->items() : none;
}

} // namespace corvane
