#pragma once

#include "corvane/helpers/NoteSubscriber.hpp"
#include "corvane/tag_table/ExtendedGenericTable.hpp"
#include "corvane/tag_table/TagSetTableContent.hpp"

#include <memory>
#include <string_view>

namespace corvane {

/// The model of the editor in which a user arranges a tag set: the sections and tags of a domain's
/// user set, without file values. Works as `ExtendedGenericTable` says, with the notifications
/// "TagSetTableWillReloadNotification" and "TagSetTableDidReloadNotification"; every edit of the
/// domain's set (`TagSetManager::didEditSetsNotification`) rebuilds it and drops the selection.
///
/// Row indexes are not indexes into `TagSet::entries()` when sections are hidden or a filter is
/// set; a caller that edits through `TagSetManager` maps them back itself.
///
/// **Notifications are posted on the main queue's thread, which the host drains** (see
/// `ExtendedGenericTable` and `MainQueue`).
class TagSetTable : public ExtendedGenericTable<TagSetTable, TagSetTableContent, TagSetTableReloadType> {
public:
    /// The types a view works with: the request, the content, what a reload changed, a row.
    ///@{
    using Request = TagSetTableRequest;
    using Content = TagSetTableContent;
    using ReloadType = TagSetTableReloadType;
    using Entry = TagSetTableEntry;
    ///@}

    /// Posted before and after each reload that changes something, on the main queue's thread, with
    /// the reload type under `reloadTypeKey`.
    ///@{
    static constexpr std::string_view willReloadNotification = "TagSetTableWillReloadNotification";
    static constexpr std::string_view didReloadNotification = "TagSetTableDidReloadNotification";
    ///@}

    /// Computes the first content on the calling thread, then starts observing. Posts nothing.
    static std::shared_ptr<TagSetTable> create(Request request);

private:
    explicit TagSetTable(Request request) : ExtendedGenericTable(std::move(request)) {}

    NoteSubscriber tagSetManagerDidEditSetsSubcribers_;
};

} // namespace corvane
