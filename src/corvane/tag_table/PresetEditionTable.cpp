#include "corvane/tag_table/PresetEditionTable.hpp"

namespace corvane {

static_assert(GenericTable<PresetEditionTable>);

std::shared_ptr<PresetEditionTable> PresetEditionTable::create(Request request) {
    std::shared_ptr<PresetEditionTable> table(new PresetEditionTable(std::move(request)));
    table->didStoreRequest();
    return table;
}

void PresetEditionTable::didStoreRequest() {
    const PresetItemRef preset = latestRequest().presetItem;
    std::lock_guard lock(subscriberMutex_);
    if (preset.get() == observedPreset_) return;
    // Ended outside the table's guard: ending waits for a running handler, which takes the guard.
    presetDidChangeEntriesSubscriber_.reset();
    observedPreset_ = preset.get();
    if (!preset) return;
    presetDidChangeEntriesSubscriber_ = NotificationCenter::defaultCenter().subscribe(
        std::string(PresetItem::didChangeEntriesNotification), preset.get(),
        [weak = weak_from_this()](const Notification& note) {
            if (auto self = weak.lock()) self->presetDidChangeEntries(note);
        });
}

void PresetEditionTable::presetDidChangeEntries(const Notification& note) {
    atomic().write([&] {
        if (note.sender() != nonAtomicRequest().presetItem.get()) return;
        addFullReloadToQueue(nonAtomicRequest());
    });
}

} // namespace corvane
