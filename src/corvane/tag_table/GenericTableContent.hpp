#pragma once

#include "corvane/helpers/IndexSet.hpp"

#include <concepts>
#include <cstddef>
#include <vector>

namespace corvane {

/// What every table's `Content` offers: the rows computed for one request, and the selection that
/// really exists among them. A content is an immutable value once built; a table swaps whole
/// contents in (see `ExtendedGenericTable`).
///
/// - `Content(request)` computes everything for the request, synchronously;
/// - `request()`, `entries()` (the rows, in display order), `selection()`;
/// - `reselected(request)` gives a copy for a request that differs from `request()` only in its
///   selection: the rows are kept, the selection and what depends on it are computed anew;
/// - `with(selection)` is `reselected` with the request's selection replaced, the synchronous way
///   for a view to stay consistent while it waits for the table.
template <class C>
concept GenericTableContent = requires(const C& content, const typename C::TableRequest& request,
                                       const IndexSet& selection) {
    typename C::TableRequest;
    typename C::TableEntry;
    requires std::constructible_from<C, const typename C::TableRequest&>;
    { content.request() } -> std::convertible_to<const typename C::TableRequest&>;
    { content.entries() } -> std::convertible_to<const std::vector<typename C::TableEntry>&>;
    { content.selection() } -> std::convertible_to<const IndexSet&>;
    { content.reselected(request) } -> std::same_as<C>;
    { content.with(selection) } -> std::same_as<C>;
};

/// The selection a content really has: the indexes of `requested` that name an existing row that
/// holds a value (`isValueRow`), not a heading. An index past the end is dropped.
template <class Entry, class IsValueRow>
IndexSet selectableIndexes(const IndexSet& requested, const std::vector<Entry>& entries,
                           IsValueRow&& isValueRow) {
    IndexSet selection;
    for (std::size_t index : requested) {
        if (index >= entries.size()) break;
        if (isValueRow(entries[index])) selection.insert(index);
    }
    return selection;
}

} // namespace corvane
