#include "corvane/tag_value/TagCatalogue.hpp"

#include <algorithm>
#include <charconv>
#include <string>
#include <vector>

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

// One row: family, key, type, count, flags, display name, then choice value/title pairs. Rows of
// fewer fields are skipped.
void appendRow(std::string_view line, std::vector<std::string_view>& fields, std::vector<TagItem>& items) {
    fields.clear();
    forEachPiece(line, '\t', [&](std::string_view f) { fields.push_back(f); });
    if (fields.size() < 6) return;
    std::vector<TagItem::Choice> choices;
    if (fields.size() > 6) {
        choices.reserve((fields.size() - 6) / 2);
        for (size_t i = 6; i + 1 < fields.size(); i += 2)
            choices.push_back({unescape(fields[i]), unescape(fields[i + 1])});
    }
    std::string_view flags = fields[4];
    items.emplace_back(TagName(TagStream(unescape(fields[0])), TagKey(unescape(fields[1]))),
                       TagType::fromRawValue(fields[2]).value_or(TagType::unknown), parseInt(fields[3], -1),
                       flags.find('w') != std::string_view::npos, flags.find('l') != std::string_view::npos,
                       unescape(fields[5]), std::move(choices), flags.find('o') != std::string_view::npos);
}

bool isRow(std::string_view line) {
    return !line.empty() && line.front() != '#' && line.front() != '@';
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
    index(data());
}

void TagCatalogue::index(std::string_view text) {
    // Each family's rows are found as runs of lines (one run in a catalogue sorted by name); a
    // comment line inside a run stays in it and is skipped when the run is parsed.
    struct Run {
        std::string family;
        std::string_view rows;
    };
    std::vector<Run> runs;
    const char* runStart = nullptr;
    std::string_view runFamily;
    forEachPiece(text, '\n', [&](std::string_view line) {
        if (line.empty() || line.front() == '#') return;
        if (line.front() == '@') {
            std::vector<std::string_view> fields;
            forEachPiece(line, '\t', [&](std::string_view f) { fields.push_back(f); });
            if (fields.front() != "@families" && fields.front() != "@makers") return;
            auto& list = fields.front() == "@families" ? streams_ : makerStreams_;
            for (size_t i = 1; i < fields.size(); ++i)
                list.emplace_back(std::string(fields[i]));
            return;
        }
        const std::string_view family = line.substr(0, line.find('\t'));
        if (runStart && family == runFamily) {
            runs.back().rows = std::string_view(runStart, static_cast<size_t>(line.end() - runStart));
            return;
        }
        runStart = line.data();
        runFamily = family;
        runs.push_back({unescape(family), line});
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

    // Rows of a family outside the family list are listed among all items but filed under no
    // family (the generator never writes one).
    for (Run& run : runs) {
        auto it = families_.find(run.family);
        Family& f = it == families_.end() ? unlisted_ : it->second;
        if (f.rows_.empty()) textOrder_.push_back(&f);
        f.rows_.push_back(run.rows);
    }
}

void TagCatalogue::Family::load() const {
    std::call_once(loaded_, [this] {
        size_t rowCount = 0;
        for (std::string_view run : rows_)
            rowCount += static_cast<size_t>(std::count(run.begin(), run.end(), '\n')) + 1;
        storage_.reserve(rowCount); // no reallocation: the lists below point into storage_
        std::vector<std::string_view> fields;
        for (std::string_view run : rows_)
            forEachPiece(run, '\n', [&](std::string_view line) {
                if (isRow(line)) appendRow(line, fields, storage_);
            });

        items_.reserve(storage_.size());
        for (const TagItem& item : storage_)
            items_.push_back(&item);
        auto byName = [](const TagItem* a, const TagItem* b) { return a->name() < b->name(); };
        if (!std::is_sorted(items_.begin(), items_.end(), byName))
            std::sort(items_.begin(), items_.end(), byName);
        itemsByKey_.reserve(items_.size());
        for (const TagItem* item : items_)
            itemsByKey_.emplace(item->key().rawValue(), item);
    });
}

const TagItem* TagCatalogue::Family::find(std::string_view key) const {
    load();
    auto it = itemsByKey_.find(key);
    return it == itemsByKey_.end() ? nullptr : it->second;
}

const std::vector<const TagItem*>& TagCatalogue::Family::items() const {
    load();
    return items_;
}

const std::vector<const TagItem*>& TagCatalogue::items() const {
    std::call_once(allLoaded_, [this] {
        for (const Family* f : textOrder_) {
            f->load();
            for (const TagItem& item : f->storage_)
                itemPointers_.push_back(&item);
        }
        auto byName = [](const TagItem* a, const TagItem* b) { return a->name() < b->name(); };
        if (!std::is_sorted(itemPointers_.begin(), itemPointers_.end(), byName))
            std::sort(itemPointers_.begin(), itemPointers_.end(), byName);
    });
    return itemPointers_;
}

} // namespace corvane
