#include "corvane/tag_table/TagSetTable.hpp"

namespace corvane {

static_assert(GenericTable<TagSetTable>);

std::shared_ptr<TagSetTable> TagSetTable::create(Request request) {
    std::shared_ptr<TagSetTable> table(new TagSetTable(std::move(request)));
    table->tagSetManagerDidEditSetsSubcribers_ = NotificationCenter::defaultCenter().subscribe(
        std::string(TagSetManager::didEditSetsNotification),
        [weak = std::weak_ptr<TagSetTable>(table)](const Notification& note) {
            if (auto self = weak.lock()) self->reloadForEditedTagSet(note);
        });
    return table;
}

} // namespace corvane
