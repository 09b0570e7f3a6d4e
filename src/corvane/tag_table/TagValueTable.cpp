#include "corvane/tag_table/TagValueTable.hpp"

#include "corvane/tag_edition/EditionManager.hpp"

#include <algorithm>

namespace corvane {

static_assert(GenericTable<TagValueTable>);

std::shared_ptr<TagValueTable> TagValueTable::create(Request request) {
    std::shared_ptr<TagValueTable> table(new TagValueTable(std::move(request)));
    std::weak_ptr<TagValueTable> weak = table;
    auto& center = NotificationCenter::defaultCenter();
    table->tagSetManagerDidEditSetsSubcriber_ = center.subscribe(
        std::string(TagSetManager::didEditSetsNotification), [weak](const Notification& note) {
            if (auto self = weak.lock()) self->reloadForEditedTagSet(note);
        });
    table->editionManagerDidFlushHistorySubcriber_ = center.subscribe(
        std::string(EditionManager::didFlushHistoryNotification), [weak](const Notification& note) {
            if (auto self = weak.lock()) self->historyDidFlush(note);
        });
    return table;
}

void TagValueTable::historyDidFlush(const Notification& note) {
    const HistoryEdition* history = EditionManager::history(note);
    if (!history) return;
    atomic().write([&] {
        if (!history->hasEditions(nonAtomicRequest().editors())) return;
        addOperation([history = *history](TagValueTable& table) { table.reloadValues(history); });
    });
}

void TagValueTable::reloadValues(const HistoryEdition& history) {
    beginReload(ReloadType::values(std::nullopt));
    auto next = std::make_shared<Content>(*content());
    IndexSet changed = next->reloadValues(history);
    // The value set merges the selected rows' tags: untouched by the edit, it stays as it was.
    if (std::any_of(changed.begin(), changed.end(),
                    [&](std::size_t index) { return next->selection().contains(index); }))
        next->reloadValueSet();
    endReload(std::move(next), ReloadType::values(std::move(changed)));
}

} // namespace corvane
