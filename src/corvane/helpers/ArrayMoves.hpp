#pragma once

#include "corvane/helpers/IndexSet.hpp"

#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace corvane {

// Reordering of list rows as views ask for it: a dragged selection dropped between two rows, or one
// row nudged up or down. Shared by the list managers (tag sets, keywords, locations, profiles) so
// that each one moves rows with the same meaning.

/// Moves the elements at `fromOffsets` so that they end up, in their original order, before the
/// element that stood at `toOffset` (or at the end when `toOffset` is the count). `toOffset` counts
/// positions in the array before the move, so dropping a row onto its own place changes nothing.
/// Offsets past the end are ignored; a `toOffset` past the end counts as the end.
template <class T>
void moveElements(std::vector<T>& array, const IndexSet& fromOffsets, std::size_t toOffset) {
    if (toOffset > array.size()) toOffset = array.size();
    std::vector<T> moved;
    std::vector<T> kept;
    std::size_t insertion = 0; // where the moved block goes among the kept elements
    for (std::size_t i = 0; i < array.size(); ++i) {
        if (i == toOffset) insertion = kept.size();
        if (fromOffsets.contains(i))
            moved.push_back(std::move(array[i]));
        else
            kept.push_back(std::move(array[i]));
    }
    if (toOffset == array.size()) insertion = kept.size();
    kept.insert(kept.begin() + static_cast<std::ptrdiff_t>(insertion), std::make_move_iterator(moved.begin()),
                std::make_move_iterator(moved.end()));
    array = std::move(kept);
}

/// Swaps the element at `index` with the one before it; nothing when there is none.
template <class T> void moveElementUp(std::vector<T>& array, std::size_t index) {
    if (index == 0 || index >= array.size()) return;
    std::swap(array[index - 1], array[index]);
}

/// Swaps the element at `index` with the one after it; nothing when there is none.
template <class T> void moveElementDown(std::vector<T>& array, std::size_t index) {
    if (index + 1 >= array.size()) return;
    std::swap(array[index], array[index + 1]);
}

} // namespace corvane
