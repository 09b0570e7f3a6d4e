#pragma once

#include "corvane/helpers/IndexSet.hpp"
#include "corvane/tag_set/TagSet.hpp"
#include "corvane/tag_table/GenericTableContent.hpp"

#include <memory>
#include <utility>
#include <vector>

namespace corvane {

/// The parts that the library's table contents share (see `GenericTableContent`): the request, the
/// tag set used, the rows, the selection that exists among them, and the copies for another
/// selection. `Derived` builds its rows in its constructor, then calls `reloadSelection()`; it
/// gives `static bool isValueRow(const Entry&)` (the rows a selection may hold) and may hide
/// `selectionDidChange()` to recompute what depends on the selection.
template <class Derived, class Request, class Entry> class BasicTableContent {
public:
    using TableRequest = Request; ///< what the table asks for
    using TableEntry = Entry;     ///< one row

    /// The request the rows were built for.
    const Request& request() const { return request_; }
    /// The tag set that chose the tags shown.
    const TagSet& tagSet() const { return *tagSet_; }
    /// The rows, in display order.
    const std::vector<Entry>& entries() const { return entries_; }
    /// The requested rows that exist and can be selected.
    const IndexSet& selection() const { return selection_; }

    /// A copy for `request`, which differs from `request()` at most in its selection: the rows are
    /// kept, the selection and what depends on it computed anew.
    Derived reselected(const Request& request) const {
        Derived content = static_cast<const Derived&>(*this);
        content.request_ = request;
        content.reloadSelection();
        return content;
    }
    /// A copy whose request asks for `selection`.
    Derived with(const IndexSet& selection) const {
        Request request = request_;
        request.selection = selection;
        return reselected(request);
    }

protected:
    /// Keeps the request and the tag set; `Derived` then fills `entries_`.
    BasicTableContent(Request request, TagSet tagSet)
        : request_(std::move(request)), tagSet_(std::make_shared<const TagSet>(std::move(tagSet))) {}

    /// The requested rows that exist and hold values; then the derived content's dependents.
    void reloadSelection() {
        selection_ = selectableIndexes(request_.selection, entries_, &Derived::isValueRow);
        static_cast<Derived*>(this)->selectionDidChange();
    }
    /// Called after the selection changed; `Derived` hides it to recompute what depends on it.
    void selectionDidChange() {}

    /// The fields behind the accessors above, filled by `Derived`.
    Request request_; ///< see `request()`
    /// See `tagSet()`; it never changes, so the copies of a content share it.
    std::shared_ptr<const TagSet> tagSet_;
    std::vector<Entry> entries_; ///< see `entries()`
    IndexSet selection_;         ///< see `selection()`
};

} // namespace corvane
