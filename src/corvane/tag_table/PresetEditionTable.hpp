#pragma once

#include "corvane/helpers/NoteSubscriber.hpp"
#include "corvane/tag_table/ExtendedGenericTable.hpp"
#include "corvane/tag_table/PresetEditionTableContent.hpp"

#include <memory>
#include <mutex>
#include <string_view>

namespace corvane {

/// The model of the list of a preset's entries. Works as `ExtendedGenericTable` says, with the
/// notifications "PresetTableWillReloadNotification" and "PresetTableDidReloadNotification"; every
/// change of the request's preset's entries (`PresetItem::didChangeEntriesNotification`) reloads
/// it in full.
///
/// **Notifications are posted on the main queue's thread, which the host drains** (see
/// `ExtendedGenericTable` and `MainQueue`).
class PresetEditionTable : public ExtendedGenericTable<PresetEditionTable, PresetEditionTableContent,
                                                       PresetEditionTableReloadType> {
public:
    /// The types a view works with: the request, the content, what a reload changed, a row, a row's
    /// value.
    ///@{
    using Request = PresetEditionTableRequest;
    using Content = PresetEditionTableContent;
    using ReloadType = PresetEditionTableReloadType;
    using Entry = PresetEditionEntry;
    using RowValue = PresetEditionRow;
    ///@}

    /// Posted before and after each reload that changes something, on the main queue's thread, with
    /// the reload type under `reloadTypeKey`.
    ///@{
    static constexpr std::string_view willReloadNotification = "PresetTableWillReloadNotification";
    static constexpr std::string_view didReloadNotification = "PresetTableDidReloadNotification";
    ///@}

    /// Computes the first content on the calling thread, then starts observing. Posts nothing.
    static std::shared_ptr<PresetEditionTable> create(Request request);

private:
    friend class ExtendedGenericTable<PresetEditionTable, PresetEditionTableContent,
                                      PresetEditionTableReloadType>;
    explicit PresetEditionTable(Request request) : ExtendedGenericTable(std::move(request)) {}

    /// Follows the preset of the stored request: observes its entries, and no other preset's.
    void didStoreRequest();
    void presetDidChangeEntries(const Notification& note);

    std::mutex subscriberMutex_;
    const PresetItem* observedPreset_ = nullptr;
    std::optional<NoteSubscriber> presetDidChangeEntriesSubscriber_;
};

} // namespace corvane
