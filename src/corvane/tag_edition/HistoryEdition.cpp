#include "corvane/tag_edition/HistoryEdition.hpp"

#include <algorithm>

namespace corvane {

namespace {

// An edit touches few editors of a view that may hold thousands: going through the edited ones
// and finding each in the list (pointer comparisons) costs less than a hash look-up per listed one.
template <class Values, class F>
void forEachListedEdition(const Values& values, const std::vector<std::shared_ptr<TagEditor>>& editors,
                          F&& f) {
    if (values.size() < editors.size()) {
        for (const auto& [editor, names] : values)
            if (std::find(editors.begin(), editors.end(), editor) != editors.end())
                if (!f(names)) return;
        return;
    }
    for (const auto& editor : editors)
        if (auto found = values.find(editor); found != values.end())
            if (!f(found->second)) return;
}

} // namespace

void HistoryEdition::registerTag(const std::shared_ptr<TagEditor>& editor, const TagName& tagName) {
    values_[editor].insert(tagName);
}

bool HistoryEdition::hasEditions(const std::vector<std::shared_ptr<TagEditor>>& editors) const {
    bool found = false;
    forEachListedEdition(values_, editors, [&](const TagNames&) { return !(found = true); });
    return found;
}

bool HistoryEdition::hasEditions(const std::vector<std::shared_ptr<TagEditor>>& editors,
                                 const std::vector<TagName>& tagNames) const {
    if (values_.empty() || tagNames.empty()) return false;
    bool found = false;
    forEachListedEdition(values_, editors, [&](const TagNames& names) {
        found = std::any_of(tagNames.begin(), tagNames.end(),
                            [&](const TagName& name) { return names.contains(name); });
        return !found;
    });
    return found;
}

bool HistoryEdition::hasLocationEditions(const std::vector<std::shared_ptr<TagEditor>>& editors) const {
    return hasEditions(editors, TagName::locationTagNames());
}

HistoryEdition::TagNames
HistoryEdition::tagNames(const std::vector<std::shared_ptr<TagEditor>>& editors) const {
    TagNames names;
    forEachListedEdition(values_, editors, [&](const TagNames& edited) {
        names.insert(edited.begin(), edited.end());
        return true;
    });
    return names;
}

const HistoryEdition::TagNames* HistoryEdition::tagNamesOf(const std::shared_ptr<TagEditor>& editor) const {
    auto found = values_.find(editor);
    return found == values_.end() ? nullptr : &found->second;
}

} // namespace corvane
