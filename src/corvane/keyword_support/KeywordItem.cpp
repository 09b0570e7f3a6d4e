#include "corvane/keyword_support/KeywordItem.hpp"

#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/keyword_support/ThesaurusItem.hpp"

#include <nlohmann/json.hpp>

#include <cassert>

namespace corvane {

using json = nlohmann::ordered_json;

std::optional<KeywordItem::ChildrenEdition> KeywordItem::childrenEdition(const Notification& note) {
    if (note.name() != didChangeChildrenNotification) return std::nullopt;
    if (auto edition = note.userInfoValue<ChildrenEdition>(std::string(childrenEditionKey))) return *edition;
    return std::nullopt;
}

KeywordItemRef KeywordItem::create(std::string name) {
    return KeywordItemRef(new KeywordItem(std::move(name)));
}

KeywordItemRef KeywordItem::create(const ThesaurusItem& thesaurusItem) {
    auto item = create(thesaurusItem.name);
    item->isHeader_ = thesaurusItem.isHeader;
    item->isPerson_ = thesaurusItem.isPerson;
    item->synonyms_ = thesaurusItem.synonyms;
    item->children_.reserve(thesaurusItem.children.size());
    for (const auto& child : thesaurusItem.children)
        item->children_.push_back(create(*child));
    return item;
}

KeywordItemRef KeywordItem::fromJSON(const json& j) {
    auto item = create(j.at("name").get<std::string>());
    item->isHeader_ = j.at("is_header").get<bool>();
    item->isPerson_ = j.at("is_person").get<bool>();
    item->synonyms_ = j.at("synonyms").get<std::vector<std::string>>();
    const auto& children = j.at("children");
    if (!children.is_array()) throw json::type_error::create(302, "the children are not an array", &children);
    item->children_.reserve(children.size());
    for (const auto& child : children)
        item->children_.push_back(fromJSON(child));
    return item;
}

json KeywordItem::toJSON() const {
    json children = json::array();
    for (const auto& child : children_)
        children.push_back(child->toJSON());
    return json{{"name", name_},
                {"is_header", isHeader_},
                {"is_person", isPerson_},
                {"synonyms", synonyms_},
                {"children", std::move(children)}};
}

void KeywordItem::setName(std::string name) {
    if (name == name_) return;
    name_ = std::move(name);
    informsDidChangeInfo();
}

void KeywordItem::setIsHeader(bool isHeader) {
    if (isHeader == isHeader_) return;
    isHeader_ = isHeader;
    informsDidChangeInfo();
}

void KeywordItem::setIsPerson(bool isPerson) {
    if (isPerson == isPerson_) return;
    isPerson_ = isPerson;
    informsDidChangeInfo();
}

void KeywordItem::setSynonyms(std::vector<std::string> synonyms) {
    if (synonyms == synonyms_) return;
    synonyms_ = std::move(synonyms);
    informsDidChangeInfo();
}

void KeywordItem::setChildren(std::vector<KeywordItemRef> children) {
    if (children == children_) return;
    children_ = std::move(children);
    informsDidChangeChildren(ReloadChildren{});
}

void KeywordItem::insertChildren(std::vector<KeywordItemRef> children, std::size_t index) {
    assert(index <= children_.size());
    const std::size_t count = children.size();
    children_.insert(children_.begin() + static_cast<std::ptrdiff_t>(index),
                     std::make_move_iterator(children.begin()), std::make_move_iterator(children.end()));
    informsDidChangeChildren(InsertChildren{IndexSet::range(index, index + count)});
}

void KeywordItem::removeChildren(const IndexSet& indexes) {
    if (indexes.isEmpty()) return;
    indexes.removeFrom(children_);
    informsDidChangeChildren(RemoveChildren{indexes});
}

bool KeywordItem::hasChild(const KeywordItemRef& item) const {
    for (const auto& child : children_)
        if (child == item || child->hasChild(item)) return true;
    return false;
}

void KeywordItem::removeChild(const KeywordItemRef& item) {
    IndexSet found;
    // Copied: a descendant's removal doesn't touch this list, but an observer might.
    const auto children = children_;
    for (std::size_t i = 0; i < children.size(); ++i) {
        if (children[i] == item)
            found.insert(i);
        else
            children[i]->removeChild(item);
    }
    removeChildren(found);
}

void KeywordItem::transformChildren(const std::function<void(const KeywordItemRef&)>& visit) {
    const auto children = children_;
    for (const auto& child : children) {
        visit(child);
        child->transformChildren(visit);
    }
}

std::size_t KeywordItem::countChildren() const {
    std::size_t count = children_.size();
    for (const auto& child : children_)
        count += child->countChildren();
    return count;
}

void KeywordItem::informsDidChangeChildren(ChildrenEdition edition) {
    NotificationCenter::defaultCenter().post(
        Notification(std::string(didChangeChildrenNotification), shared_from_this(),
                     {{std::string(childrenEditionKey), std::move(edition)}}));
}

void KeywordItem::informsDidChangeInfo() {
    NotificationCenter::defaultCenter().post(
        Notification(std::string(didChangeInfoNotification), shared_from_this()));
}

} // namespace corvane
