#include "corvane/keyword_support/KeywordManager.hpp"

#include "corvane/helpers/DefaultsData.hpp"
#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/keyword_support/KeywordFile.hpp"

#include <cassert>

namespace corvane {

std::optional<KeywordManager::ItemEdition> KeywordManager::itemEdition(const Notification& note) {
    if (note.name() != didChangeItemsNotification) return std::nullopt;
    if (auto edition = note.userInfoValue<ItemEdition>(std::string(itemEditionKey))) return *edition;
    return std::nullopt;
}

const std::shared_ptr<KeywordManager>& KeywordManager::shared() {
    static const std::shared_ptr<KeywordManager> instance = create();
    return instance;
}

std::shared_ptr<KeywordManager> KeywordManager::create() {
    return std::shared_ptr<KeywordManager>(new KeywordManager());
}

void KeywordManager::setItems(std::vector<KeywordItemRef> items) {
    if (items == items_) return;
    items_ = std::move(items);
    informsDidChangeItems(ReloadItems{});
}

void KeywordManager::setSelectedItem(KeywordItemRef item) {
    if (item == selectedItem_) return;
    selectedItem_ = std::move(item);
    informsDidChangeItems(ReloadSelection{});
}

void KeywordManager::insertItems(std::vector<KeywordItemRef> items, std::size_t index) {
    assert(index <= items_.size());
    const std::size_t count = items.size();
    items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(index), std::make_move_iterator(items.begin()),
                  std::make_move_iterator(items.end()));
    informsDidChangeItems(InsertItems{IndexSet::range(index, index + count)});
}

void KeywordManager::removeItems(const IndexSet& indexes) {
    if (indexes.isEmpty()) return;
    indexes.removeFrom(items_);
    informsDidChangeItems(RemoveItems{indexes});
}

void KeywordManager::removeItem(const KeywordItemRef& item) {
    IndexSet found;
    const auto roots = items_;
    for (std::size_t i = 0; i < roots.size(); ++i) {
        if (roots[i] == item)
            found.insert(i);
        else
            roots[i]->removeChild(item);
    }
    removeItems(found);
}

void KeywordManager::transformItems(const std::function<void(const KeywordItemRef&)>& visit) {
    const auto roots = items_;
    for (const auto& root : roots) {
        visit(root);
        root->transformChildren(visit);
    }
}

std::size_t KeywordManager::countItemsAndChildren() const {
    std::size_t count = 0;
    for (const auto& root : items_)
        count += 1 + root->countChildren();
    return count;
}

void KeywordManager::informsDidChangeItems(ItemEdition edition) {
    NotificationCenter::defaultCenter().post(
        Notification(std::string(didChangeItemsNotification), shared_from_this(),
                     {{std::string(itemEditionKey), std::move(edition)}}));
}

void KeywordManager::loadFromDefaults() {
    const auto stored = readDefaultsData(std::string(keywordsUserDefaultsKey));
    if (!stored) return;
    setItems(KeywordFile::fromJSONData(stored->bytes, stored->source).items());
}

void KeywordManager::saveToDefaults() const {
    writeDefaultsData(std::string(keywordsUserDefaultsKey), KeywordFile(std::nullopt, items_).jsonData());
}

} // namespace corvane
