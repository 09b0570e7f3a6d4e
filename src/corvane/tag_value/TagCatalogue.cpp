#include "corvane/tag_value/TagCatalogue.hpp"

#include <algorithm>
#include <charconv>
#include <string>

// The catalogue text is linked in as it stands: no code generation step, and
// CMake rebuilds this file whenever data/catalogue.tsv changes (OBJECT_DEPENDS).
__asm__(".section .rodata\n"
        ".balign 16\n"
        ".globl corvane_catalogue_begin\n"
        "corvane_catalogue_begin:\n"
        ".incbin \"" CORVANE_SOURCE_DIR "/data/catalogue.tsv\"\n"
        ".globl corvane_catalogue_end\n"
        "corvane_catalogue_end:\n"
        ".byte 0\n"
        ".previous\n");

extern "C" const char corvane_catalogue_begin[];
extern "C" const char corvane_catalogue_end[];

namespace corvane {

namespace {

// Splits `text` at `separator`, calling `f` on each piece (empty pieces too).
template <typename F> void forEachPiece(std::string_view text, char separator, F&& f) {
    size_t start = 0;
    while (true) {
        size_t end = text.find(separator, start);
        if (end == std::string_view::npos) {
            f(text.substr(start));
            return;
        }
        f(text.substr(start, end - start));
        start = end + 1;
    }
}

// Undoes the generator's escapes: \\ \t \n \r.
std::string unescape(std::string_view field) {
    if (field.find('\\') == std::string_view::npos) return std::string(field);
    std::string out;
    out.reserve(field.size());
    for (size_t i = 0; i < field.size(); ++i) {
        char c = field[i];
        if (c == '\\' && i + 1 < field.size()) {
            char n = field[++i];
            out += n == 't' ? '\t' : n == 'n' ? '\n' : n == 'r' ? '\r' : n;
        } else {
            out += c;
        }
    }
    return out;
}

int parseInt(std::string_view text, int fallback) {
    int value = fallback;
    auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    return ec == std::errc() && ptr == text.data() + text.size() ? value : fallback;
}

} // namespace

std::string_view TagCatalogue::data() {
    return std::string_view(corvane_catalogue_begin,
                            static_cast<size_t>(corvane_catalogue_end - corvane_catalogue_begin));
}

const TagCatalogue& TagCatalogue::shared() {
    // Never destroyed: freeing its tens of thousands of items one by one would only delay the end
    // of every program that used it.
    static const TagCatalogue& catalogue = *new TagCatalogue;
    return catalogue;
}

TagCatalogue::TagCatalogue() {
    parse(data());
}

void TagCatalogue::parse(std::string_view text) {
    size_t rowCount = static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
    items_.reserve(rowCount); // no reallocation: the maps below point into items_

    std::vector<std::string_view> fields;
    forEachPiece(text, '\n', [&](std::string_view line) {
        if (line.empty() || line.front() == '#') return;
        fields.clear();
        forEachPiece(line, '\t', [&](std::string_view f) { fields.push_back(f); });
        if (fields.front() == "@families" || fields.front() == "@makers") {
            auto& list = fields.front() == "@families" ? streams_ : makerStreams_;
            for (size_t i = 1; i < fields.size(); ++i)
                list.emplace_back(std::string(fields[i]));
            return;
        }
        if (fields.size() < 6) return;
        std::vector<TagItem::Choice> choices;
        if (fields.size() > 6) {
            choices.reserve((fields.size() - 6) / 2);
            for (size_t i = 6; i + 1 < fields.size(); i += 2)
                choices.push_back({unescape(fields[i]), unescape(fields[i + 1])});
        }
        std::string_view flags = fields[4];
        items_.emplace_back(TagName(TagStream(unescape(fields[0])), TagKey(unescape(fields[1]))),
                            TagType::fromRawValue(fields[2]).value_or(TagType::unknown),
                            parseInt(fields[3], -1), flags.find('w') != std::string_view::npos,
                            flags.find('l') != std::string_view::npos, unescape(fields[5]),
                            std::move(choices), flags.find('o') != std::string_view::npos);
    });

    // Display order: File, EXIF, IPTC, XMP, then every other family in catalogue order.
    const TagStream* leading[] = {&TagStream::streamFile, &TagStream::streamEXIF, &TagStream::streamIPTC,
                                  &TagStream::streamXMP};
    int nextIndex = static_cast<int>(std::size(leading));
    families_.reserve(streams_.size());
    for (const TagStream& stream : streams_) {
        Family& f = families_[stream.rawValue()];
        f.stream = &stream;
        auto lead =
            std::find_if(std::begin(leading), std::end(leading), [&](auto* s) { return *s == stream; });
        f.index = lead != std::end(leading) ? static_cast<int>(lead - std::begin(leading)) : nextIndex++;
    }
    for (const TagStream& maker : makerStreams_) {
        auto it = families_.find(maker.rawValue());
        if (it != families_.end()) it->second.isMaker = true;
    }

    itemPointers_.reserve(items_.size());
    for (const TagItem& item : items_)
        itemPointers_.push_back(&item);
    auto byName = [](const TagItem* a, const TagItem* b) { return a->name() < b->name(); };
    if (!std::is_sorted(itemPointers_.begin(), itemPointers_.end(), byName))
        std::sort(itemPointers_.begin(), itemPointers_.end(), byName);

    // Items are filed under their family; an item of a family outside the
    // family list would be skipped (the generator never writes one).
    for (const TagItem* item : itemPointers_) {
        auto it = families_.find(item->stream().rawValue());
        if (it == families_.end()) continue;
        it->second.itemsByKey.emplace(item->key().rawValue(), item);
        it->second.items.push_back(item);
    }
}

} // namespace corvane
