#include "corvane/tag_edition/HistoryEdition.hpp"

namespace corvane {

void HistoryEdition::registerTag(const std::shared_ptr<TagEditor>& editor, const TagName& tagName) {
    values_[editor].insert(tagName);
}

bool HistoryEdition::hasEditions(const std::vector<std::shared_ptr<TagEditor>>& editors) const {
    if (values_.empty()) return false;
    for (const auto& editor : editors)
        if (values_.contains(editor)) return true;
    return false;
}

bool HistoryEdition::hasEditions(const std::vector<std::shared_ptr<TagEditor>>& editors,
                                 const std::vector<TagName>& tagNames) const {
    if (values_.empty() || tagNames.empty()) return false;
    for (const auto& editor : editors) {
        auto found = values_.find(editor);
        if (found == values_.end()) continue;
        for (const TagName& name : tagNames)
            if (found->second.contains(name)) return true;
    }
    return false;
}

bool HistoryEdition::hasLocationEditions(const std::vector<std::shared_ptr<TagEditor>>& editors) const {
    return hasEditions(editors, TagName::locationTagNames());
}

HistoryEdition::TagNames
HistoryEdition::tagNames(const std::vector<std::shared_ptr<TagEditor>>& editors) const {
    TagNames names;
    for (const auto& editor : editors) {
        auto found = values_.find(editor);
        if (found != values_.end()) names.insert(found->second.begin(), found->second.end());
    }
    return names;
}

const HistoryEdition::TagNames* HistoryEdition::tagNamesOf(const std::shared_ptr<TagEditor>& editor) const {
    auto found = values_.find(editor);
    return found == values_.end() ? nullptr : &found->second;
}

} // namespace corvane
