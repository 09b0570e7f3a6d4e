#include "TagSelection.hpp"

#include "corvane/tag_value/TagName.hpp"
#include "corvane/tag_value/TagStream.hpp"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>
#include <unordered_map>

namespace corvane::cli {

namespace {

std::string lowercase(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return result;
}

// The families a person edits, in the order a bare name prefers them.
constexpr std::array<std::string_view, 4> preferredFamilies{"exif", "iptc", "xmp", "quicktime"};

std::size_t preference(const TagItem& item) {
    const std::string family = lowercase(item.stream().rawValue());
    const auto at = std::find(preferredFamilies.begin(), preferredFamilies.end(), family);
    return static_cast<std::size_t>(at - preferredFamilies.begin());
}

// The catalogue by lower-case key, built once.
const std::unordered_map<std::string, std::vector<const TagItem*>>& itemsByKey() {
    static const auto index = [] {
        std::unordered_map<std::string, std::vector<const TagItem*>> map;
        for (const TagItem* item : TagItem::allCases())
            map[lowercase(item->key().rawValue())].push_back(item);
        return map;
    }();
    return index;
}

// The catalogue's families named `family` (lower case), in name order, each with at least one tag.
// Only those families' tags are loaded: a full name costs the parse of one family, not of the
// whole catalogue.
std::vector<const TagStream*> familiesNamed(const std::string& family) {
    std::vector<const TagStream*> found;
    for (const TagStream& stream : TagStream::allCases())
        if (lowercase(stream.rawValue()) == family && !stream.items().empty()) found.push_back(&stream);
    std::sort(found.begin(), found.end(), [](auto* a, auto* b) { return a->rawValue() < b->rawValue(); });
    return found;
}

} // namespace

std::optional<TagSelector> TagSelector::resolve(const std::string& text, bool writableOnly,
                                                std::string& error) {
    TagSelector selector;
    selector.text_ = text;
    std::vector<const TagStream*> families;
    const auto colon = text.find(':');
    if (colon == std::string::npos) {
        selector.bare_ = text != "*";
        if (!selector.bare_) return selector;
        selector.key_ = lowercase(text);
    } else {
        selector.family_ = lowercase(text.substr(0, colon));
        selector.key_ = lowercase(text.substr(colon + 1));
        if (selector.family_ == "*") selector.family_.clear();
        if (selector.key_ == "*") selector.key_.clear();
        if (selector.family_.empty() && selector.key_.empty()) return selector;
        if (!selector.family_.empty()) {
            families = familiesNamed(selector.family_);
            if (families.empty()) {
                error = "unknown tag family \"" + text.substr(0, colon) + "\" in \"" + text + "\"";
                return std::nullopt;
            }
        }
        if (selector.key_.empty()) return selector;
    }
    std::vector<const TagItem*> candidates;
    bool knownKey = false;
    if (!selector.family_.empty()) {
        for (const TagStream* family : families)
            for (const TagItem* item : family->items())
                if (lowercase(item->key().rawValue()) == selector.key_) candidates.push_back(item);
    } else if (const auto found = itemsByKey().find(selector.key_); found != itemsByKey().end()) {
        knownKey = true;
        for (const TagItem* item : found->second)
            if (!writableOnly || !selector.bare_ || item->isWritable()) candidates.push_back(item);
    }
    if (!selector.bare_) {
        // A full name the catalogue doesn't have may still be a tag a file holds: a language of a
        // text ("XMP:Title-de-CH") is a tag of its own, known through its name.
        if (candidates.empty() && !selector.family_.empty()) {
            if (const auto name = TagName::fromRawValue(text); name && name->item())
                candidates.push_back(name->item());
        }
        if (candidates.empty() && writableOnly) {
            error = "unknown tag \"" + text + "\" (tags are named Family:Key or Key, see `corvane tags`)";
            return std::nullopt;
        }
        selector.candidates_ = std::move(candidates);
        return selector;
    }
    if (candidates.empty()) {
        error = !knownKey
                    ? "unknown tag \"" + text + "\" (tags are named Family:Key or Key, see `corvane tags`)"
                    : "tag \"" + text + "\" is not editable";
        return std::nullopt;
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const TagItem* a, const TagItem* b) { return preference(*a) < preference(*b); });
    if (candidates.size() > 1 && preference(*candidates.front()) == preferredFamilies.size()) {
        error = "\"" + text + "\" is ambiguous: name one of";
        for (const TagItem* item : candidates)
            (error += ' ') += item->name().rawValue();
        return std::nullopt;
    }
    selector.candidates_ = std::move(candidates);
    return selector;
}

bool TagSelector::matches(const TagName& name) const {
    if (!candidates_.empty())
        return std::any_of(candidates_.begin(), candidates_.end(),
                           [&](const TagItem* item) { return item->name() == name; });
    return (family_.empty() || lowercase(name.stream().rawValue()) == family_) &&
           (key_.empty() || lowercase(name.key().rawValue()) == key_);
}

std::vector<TagName> selectedNames(const std::vector<TagSelector>& selectors,
                                   const std::vector<TagName>& present) {
    if (selectors.empty()) return present;
    std::vector<TagName> names;
    std::set<TagName> taken;
    for (const TagSelector& selector : selectors) {
        if (selector.isBare()) {
            // The best candidate the file holds.
            for (const TagItem* item : selector.candidates())
                if (std::find(present.begin(), present.end(), item->name()) != present.end()) {
                    if (taken.insert(item->name()).second) names.push_back(item->name());
                    break;
                }
            continue;
        }
        for (const TagName& name : present)
            if (selector.matches(name) && taken.insert(name).second) names.push_back(name);
    }
    return names;
}

} // namespace corvane::cli
