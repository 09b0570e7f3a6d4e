#include "corvane/tag_value/TagCatalogue.hpp"

#include <algorithm>
#include <charconv>
#include <optional>
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

// One row: family, key, type, count, flags, display name, then choice value/title pairs. A row of
// fewer fields gives no item.
std::optional<TagItem> parseRow(std::string_view line, std::vector<std::string_view>& fields) {
    fields.clear();
    forEachPiece(line, '\t', [&](std::string_view f) { fields.push_back(f); });
    if (fields.size() < 6) return std::nullopt;
    std::vector<TagItem::Choice> choices;
    if (fields.size() > 6) {
        choices.reserve((fields.size() - 6) / 2);
        for (size_t i = 6; i + 1 < fields.size(); i += 2)
            choices.push_back({unescape(fields[i]), unescape(fields[i + 1])});
    }
    std::string_view flags = fields[4];
    return TagItem(TagName(TagStream(unescape(fields[0])), TagKey(unescape(fields[1]))),
                   TagType::fromRawValue(fields[2]).value_or(TagType::unknown), parseInt(fields[3], -1),
                   flags.find('w') != std::string_view::npos, flags.find('l') != std::string_view::npos,
                   unescape(fields[5]), std::move(choices), flags.find('o') != std::string_view::npos);
}

// A row's key as the text holds it (the second field).
std::string_view keyField(std::string_view line) {
    const size_t start = line.find('\t');
    if (start == std::string_view::npos) return {};
    return line.substr(start + 1, line.find('\t', start + 1) - start - 1);
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
    // Each family's rows are found as runs of lines (one run in a catalogue sorted by name), and
    // their lines are noted, so that a lookup can find its row without another pass over the text.
    struct Run {
        std::string family;
        std::vector<std::string_view> lines;
        bool sorted;    // by key, strictly
        bool plainKeys; // no key holds an escape
    };
    std::vector<Run> runs;
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
        const std::string_view key = keyField(line);
        if (runs.empty() || family != runFamily) {
            runFamily = family;
            runs.push_back({unescape(family), {}, true, true});
        } else {
            runs.back().sorted = runs.back().sorted && keyField(runs.back().lines.back()) < key;
        }
        runs.back().plainKeys = runs.back().plainKeys && key.find('\\') == std::string_view::npos;
        runs.back().lines.push_back(line);
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
        if (f.lines_.empty()) {
            textOrder_.push_back(&f);
            f.sorted_ = run.sorted;
            f.searchable_ = run.plainKeys;
        } else {
            f.sorted_ = false;
            f.searchable_ = f.searchable_ && run.plainKeys;
        }
        f.lines_.insert(f.lines_.end(), run.lines.begin(), run.lines.end());
    }
}

const std::vector<std::string_view>& TagCatalogue::Family::lines() const {
    // The generator writes each family's rows sorted by key: a lookup finds its row by a binary
    // search. Other text is sorted here, the first of two rows with one key staying first, as in the
    // family's list.
    if (!sorted_)
        std::call_once(linesSorted_, [this] {
            std::stable_sort(lines_.begin(), lines_.end(), [](std::string_view a, std::string_view b) {
                return keyField(a) < keyField(b);
            });
        });
    return lines_;
}

void TagCatalogue::Family::load() const {
    std::call_once(loading_, [this] {
        const auto& rows = lines();
        // Items already parsed alone join the list as they are, so that they stay the same objects.
        std::lock_guard lock(aloneMutex_);
        storage_.reserve(rows.size()); // no reallocation: the lists below point into storage_
        items_.reserve(rows.size());
        std::vector<std::string_view> fields;
        for (std::string_view line : rows) {
            if (auto alone = aloneByKey_.find(keyField(line)); alone != aloneByKey_.end()) {
                items_.push_back(alone->second);
                aloneByKey_.erase(alone); // a second row with the key is an item of its own
            } else if (auto item = parseRow(line, fields)) {
                items_.push_back(&storage_.emplace_back(std::move(*item)));
            }
        }
        auto byName = [](const TagItem* a, const TagItem* b) { return a->name() < b->name(); };
        if (!std::is_sorted(items_.begin(), items_.end(), byName))
            std::stable_sort(items_.begin(), items_.end(), byName);
        itemsByKey_.reserve(items_.size());
        for (const TagItem* item : items_)
            itemsByKey_.emplace(item->key().rawValue(), item);
        loaded_.store(true, std::memory_order_release);
    });
}

// Answers a lookup from the row found for it, parsing that row alone. Returns nullptr when the family
// was loaded meanwhile or has answered so many lookups that it is better loaded: the caller looks in
// the family's list.
const TagItem* TagCatalogue::Family::findAlone(std::string_view line) const {
    // A batch of files asks the same keys again and again: past this many lookups the family is
    // parsed whole and answered without a lock.
    constexpr int lookupsBeforeLoading = 1024;
    if (lookups_.fetch_add(1, std::memory_order_relaxed) >= lookupsBeforeLoading) return nullptr;
    std::lock_guard lock(aloneMutex_);
    if (loaded_.load(std::memory_order_relaxed)) return nullptr; // set under this lock
    const std::string_view key = keyField(line);
    if (auto found = aloneByKey_.find(key); found != aloneByKey_.end()) return found->second;
    std::vector<std::string_view> fields;
    auto item = parseRow(line, fields);
    if (!item) return nullptr;
    const TagItem* parsed = &alone_.emplace_back(std::move(*item));
    aloneByKey_.emplace(key, parsed);
    return parsed;
}

const TagItem* TagCatalogue::Family::find(std::string_view key) const {
    if (!loaded_.load(std::memory_order_acquire)) {
        const auto& rows = lines();
        if (searchable_) {
            const auto line =
                std::lower_bound(rows.begin(), rows.end(), key,
                                 [](std::string_view row, std::string_view k) { return keyField(row) < k; });
            if (line == rows.end() || keyField(*line) != key) return nullptr;
            if (const TagItem* item = findAlone(*line)) return item;
        }
        load();
    }
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
            for (const TagItem* item : f->items())
                itemPointers_.push_back(item);
        }
        auto byName = [](const TagItem* a, const TagItem* b) { return a->name() < b->name(); };
        if (!std::is_sorted(itemPointers_.begin(), itemPointers_.end(), byName))
            std::sort(itemPointers_.begin(), itemPointers_.end(), byName);
    });
    return itemPointers_;
}

} // namespace corvane
