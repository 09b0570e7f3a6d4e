#pragma once

#include "corvane/helpers/NoteSubscriber.hpp"
#include "corvane/tag_table/ExtendedGenericTable.hpp"
#include "corvane/tag_table/TagValueTableContent.hpp"
#include "corvane/tag_table/TagValueTableReloadType.hpp"

#include <memory>
#include <string_view>

namespace corvane {

/// The model of the main tag list: for some open editors and the tag set of a domain, one row per
/// tag, each merging that tag's values across the editors (`MultiValuedString`), marked when edited.
///
/// A view creates the table with a request, reads `content()`, and calls `reload(request)` when it
/// wants other editors, another filter or another selection; it redraws on the notifications:
/// "TagValueTableWillReloadNotification" and "TagValueTableDidReloadNotification", with the
/// `ReloadType` under "ReloadType" (see `TagValueTableReloadType`). The table follows by itself:
/// - an edit of its domain's tag set (`TagSetManager::didEditSetsNotification`): a full reload,
///   which drops the selection (`latestRequest()` keeps it);
/// - a flush of the edition history (`EditionManager::didFlushHistoryNotification`) that touches one
///   of its editors: only the rows of the touched tags are rebuilt, off the main thread, and the
///   did-notification names them (`ReloadType::values`). The filter isn't applied again then.
/// The table edits nothing itself: views edit through the editors of the rows or of `valueSet()`.
///
/// **Notifications are posted on the main queue's thread, which the host drains** (see
/// `ExtendedGenericTable`, and `MainQueue`): an application from its event loop, a tool with
/// `MainQueue::shared().runUntil(...)`. Reloads wait for that thread to run their observers.
class TagValueTable
    : public ExtendedGenericTable<TagValueTable, TagValueTableContent, TagValueTableReloadType> {
public:
    /// The types a view works with: the request, the content, what a reload changed, a row, a row's
    /// value, the value sets, the filter.
    ///@{
    using Request = TagValueTableRequest;
    using Content = TagValueTableContent;
    using ReloadType = TagValueTableReloadType;
    using Entry = TagValueEntry;
    using RowValue = TagValueRow;
    using ValueSet = TagValueSet;
    using Filter = TagValueFilter;
    ///@}

    /// Posted before and after each reload that changes something, on the main queue's thread, with
    /// the reload type under `reloadTypeKey`.
    ///@{
    static constexpr std::string_view willReloadNotification = "TagValueTableWillReloadNotification";
    static constexpr std::string_view didReloadNotification = "TagValueTableDidReloadNotification";
    ///@}

    /// Computes the first content on the calling thread, then starts observing. Posts nothing.
    static std::shared_ptr<TagValueTable> create(Request request);

private:
    friend class ExtendedGenericTable<TagValueTable, TagValueTableContent, TagValueTableReloadType>;
    explicit TagValueTable(Request request) : ExtendedGenericTable(std::move(request)) {}

    void historyDidFlush(const Notification& note);
    /// The operation of a partial reload.
    void reloadValues(const HistoryEdition& history);

    NoteSubscriber tagSetManagerDidEditSetsSubcriber_;
    NoteSubscriber editionManagerDidFlushHistorySubcriber_;
};

} // namespace corvane
