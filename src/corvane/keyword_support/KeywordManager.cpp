#include "corvane/keyword_support/KeywordManager.hpp"

#include "corvane/keyword_support/KeywordFile.hpp"

namespace corvane {

const std::shared_ptr<KeywordManager>& KeywordManager::shared() {
    static const std::shared_ptr<KeywordManager> instance = create();
    return instance;
}

std::shared_ptr<KeywordManager> KeywordManager::create() {
    return std::shared_ptr<KeywordManager>(new KeywordManager());
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

std::vector<KeywordItemRef> KeywordManager::decodeItems(const std::string& bytes, const std::string& source) {
    return KeywordFile::fromJSONData(bytes, source).items();
}

std::string KeywordManager::encodeItems(const std::vector<KeywordItemRef>& items) {
    return KeywordFile(std::nullopt, items).jsonData();
}

} // namespace corvane
