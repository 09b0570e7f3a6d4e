#include "corvane/tag_set/TagSetManager.hpp"

#include "corvane/helpers/ArrayMoves.hpp"
#include "corvane/helpers/MainQueue.hpp"
#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/utilities/FatalError.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "corvane/utilities/UserDefaults.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>

namespace corvane {

using Domain = TagSetManager::Domain;

std::string_view TagSetManager::label(Domain domain) {
    return domain == Domain::application ? "Application" : "PhotosExtension";
}

std::string_view TagSetManager::userDefaultsKey(Domain domain) {
    return domain == Domain::application ? "QRVTagSetApplication" : "QRVTagSetPhotosExtension";
}

std::optional<Domain> TagSetManager::domain(std::string_view text) {
    for (Domain domain : allDomains) {
        const std::string_view name = label(domain);
        if (std::equal(name.begin(), name.end(), text.begin(), text.end(), [](char a, char b) {
                return std::tolower(static_cast<unsigned char>(a)) ==
                       std::tolower(static_cast<unsigned char>(b));
            }))
            return domain;
    }
    return std::nullopt;
}

std::optional<Domain> TagSetManager::domain(const Notification& note) {
    if (const Domain* domain = note.userInfoValue<Domain>(std::string(domainKey))) return *domain;
    return std::nullopt;
}

TagSetManager& TagSetManager::shared() {
    static TagSetManager manager;
    return manager;
}

TagSet TagSetManager::defaultTagSet(Domain domain) const {
    return atomic_.read([&] {
        auto it = nonAtomicDefaultSets_.find(domain);
        return it == nonAtomicDefaultSets_.end() ? TagSet() : it->second;
    });
}

void TagSetManager::registerDefault(Domain domain, TagSet defaultTagSet) {
    atomic_.write([&] { nonAtomicDefaultSets_.insert_or_assign(domain, std::move(defaultTagSet)); });
}

TagSet TagSetManager::tagSet(Domain domain) const {
    return atomic_.read([&] {
        auto it = nonAtomicUserSets_.find(domain);
        return it == nonAtomicUserSets_.end() ? TagSet() : it->second;
    });
}

void TagSetManager::reload(Domain domain) {
    const auto stored = KitSettings::shared().userDefaults()->value(std::string(userDefaultsKey(domain)));
    // The set is kept as a JSON value; a text holds the JSON data of an exported set. Empty data, or
    // none, counts as nothing stored.
    const bool isEmpty =
        !stored || stored->is_null() || (stored->is_string() && stored->get<std::string>().empty());
    if (isEmpty) {
        TagSet fallback = defaultTagSet(domain);
        edit(domain, [&](TagSet) { return fallback; });
        return;
    }
    TagSet loaded = stored->is_string() ? TagSet::fromJSONData(stored->get<std::string>())
                                        : TagSet::fromJSON(nlohmann::ordered_json(*stored));
    edit(domain, [&](TagSet) { return loaded; });
}

void TagSetManager::restore(Domain domain) {
    TagSet fallback = defaultTagSet(domain);
    edit(domain, [&](TagSet) { return fallback; });
}

void TagSetManager::save(Domain domain) {
    const auto set = atomic_.read([&]() -> std::optional<TagSet> {
        auto it = nonAtomicUserSets_.find(domain);
        if (it == nonAtomicUserSets_.end()) return std::nullopt;
        return it->second;
    });
    if (!set) return;
    KitSettings::shared().userDefaults()->set(std::string(userDefaultsKey(domain)),
                                              nlohmann::json(set->toJSON()));
}

void TagSetManager::edit(Domain domain, const std::function<TagSet(TagSet)>& block) {
    safeSyncInMain([&] { postsWillEditTagSets(domain); });
    TagSet current = tagSet(domain);
    // The set isn't held between the read and the write: edits come from the main thread.
    atomic_.write([&] { nonAtomicUserSets_.insert_or_assign(domain, block(std::move(current))); });
    safeSyncInMain([&] { postsDidEditTagSets(domain); });
}

void TagSetManager::insert(Domain domain, const std::vector<TagSet::FlatEntry>& entries, std::size_t index) {
    if (entries.empty()) return;
    edit(domain, [&](TagSet set) {
        auto& list = set.entries();
        if (index > list.size()) fatalError("TagSetManager::insert: index past the end of the tag set");
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(index), entries.begin(), entries.end());
        return set;
    });
}

void TagSetManager::append(Domain domain, const std::vector<TagSet::FlatEntry>& entries) {
    if (entries.empty()) return;
    edit(domain, [&](TagSet set) {
        set.entries().insert(set.entries().end(), entries.begin(), entries.end());
        return set;
    });
}

void TagSetManager::remove(Domain domain, const IndexSet& indexes) {
    if (indexes.isEmpty()) return;
    edit(domain, [&](TagSet set) {
        std::vector<TagSet::FlatEntry> kept;
        for (std::size_t i = 0; i < set.entries().size(); ++i)
            if (!indexes.contains(i)) kept.push_back(std::move(set.entries()[i]));
        return TagSet(std::move(kept));
    });
}

void TagSetManager::replace(Domain domain, const TagSet::FlatEntry& entry, std::size_t index) {
    edit(domain, [&](TagSet set) {
        if (index >= set.entries().size())
            fatalError("TagSetManager::replace: index past the end of the tag set");
        set.entries()[index] = entry;
        return set;
    });
}

void TagSetManager::rename(Domain domain, std::size_t sectionIndex, const std::string& text) {
    edit(domain, [&](TagSet set) {
        if (sectionIndex < set.entries().size() && set.entries()[sectionIndex].isSection())
            set.entries()[sectionIndex] = TagSection(text);
        return set;
    });
}

void TagSetManager::move(Domain domain, const IndexSet& indexes, std::size_t toOffset) {
    if (indexes.isEmpty()) return;
    edit(domain, [&](TagSet set) {
        moveElements(set.entries(), indexes, toOffset);
        return set;
    });
}

void TagSetManager::moveDown(Domain domain, std::size_t index) {
    edit(domain, [&](TagSet set) {
        moveElementDown(set.entries(), index);
        return set;
    });
}

void TagSetManager::moveUp(Domain domain, std::size_t index) {
    edit(domain, [&](TagSet set) {
        moveElementUp(set.entries(), index);
        return set;
    });
}

void TagSetManager::postsWillEditTagSets(Domain domain) {
    post(willEditSetsNotification, domain);
}

void TagSetManager::postsDidEditTagSets(Domain domain) {
    post(didEditSetsNotification, domain);
}

void TagSetManager::post(std::string_view name, Domain domain) {
    NotificationCenter::defaultCenter().post(std::string(name), this, {{std::string(domainKey), domain}});
}

} // namespace corvane
