#pragma once

#include "corvane/helpers/IndexSet.hpp"
#include "corvane/tag_edition/HistoryEdition.hpp"
#include "corvane/tag_set/TagSet.hpp"
#include "corvane/tag_table/BasicTableContent.hpp"
#include "corvane/tag_table/TagValueRow.hpp"
#include "corvane/tag_table/TagValueSet.hpp"
#include "corvane/tag_table/TagValueTableRequest.hpp"

#include <vector>

namespace corvane {

/// What a `TagValueTable` shows (its `Content`): for a request, the tag set of its domain, one row
/// per tag that passes the filter (with its section heading before it when sections are shown and
/// some row of the section survives), the selection that exists among those rows, and the merged
/// value set of that selection. Immutable once handed out by the table.
class TagValueTableContent
    : public BasicTableContent<TagValueTableContent, TagValueTableRequest, TagValueEntry> {
public:
    /// Computes everything, synchronously: tag set (read once from `TagSetManager::shared()`),
    /// rows (in parallel), selection, value set.
    explicit TagValueTableContent(const TagValueTableRequest& request);

    /// The merged state of the selected rows.
    const TagValueSet& valueSet() const { return valueSet_; }
    /// The value rows; headings can't be selected.
    static bool isValueRow(const TagValueEntry& entry) { return std::holds_alternative<TagValueRow>(entry); }

    /// The merged value set of the value rows at these indexes, over the request's editors.
    TagValueSet values(const IndexSet& indexes) const;
    /// The rows under the first heading with this text, up to the next heading; empty without it.
    IndexSet indexes(const TagSection& section) const;
    /// The tag names of the value rows at these indexes, in index order.
    std::vector<TagName> names(const IndexSet& indexes) const;

    /// Updates the value rows whose tag the history lists for one of the request's editors, and
    /// gives their indexes. Only the editors the history lists for a row's tag are read again; the
    /// others' readings are kept from when the row was built. The filter isn't applied again: row
    /// count and order stay, so a view may redraw just those rows; a row that no longer passes
    /// stays until the next full reload.
    IndexSet reloadValues(const HistoryEdition& history);
    /// Computes the value set of the selection again.
    void reloadValueSet() { valueSet_ = values(selection_); }

private:
    friend class BasicTableContent<TagValueTableContent, TagValueTableRequest, TagValueEntry>;
    void reloadEntries();
    void selectionDidChange() { reloadValueSet(); }
    /// Sets the row's object value through the request's `convert`, if any.
    void convert(TagValueRow& row) const;

    TagValueSet valueSet_;
};

} // namespace corvane
