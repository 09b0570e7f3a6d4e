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
    using TableRequest = Request;
    using TableEntry = Entry;

    const Request& request() const { return request_; }
    const TagSet& tagSet() const { return *tagSet_; }
    const std::vector<Entry>& entries() const { return entries_; }
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
    BasicTableContent(Request request, TagSet tagSet)
        : request_(std::move(request)), tagSet_(std::make_shared<const TagSet>(std::move(tagSet))) {}

    /// The requested rows that exist and hold values; then the derived content's dependents.
    void reloadSelection() {
        selection_ = selectableIndexes(request_.selection, entries_, &Derived::isValueRow);
        static_cast<Derived*>(this)->selectionDidChange();
    }
    void selectionDidChange() {}

    Request request_;
    std::shared_ptr<const TagSet> tagSet_; // never changes: shared by the copies of a content
    std::vector<Entry> entries_;
    IndexSet selection_;
};

} // namespace corvane
