#pragma once

#include <cstddef>
#include <initializer_list>
#include <set>
#include <vector>

namespace corvane {

/// A sorted set of distinct indices into an array: what list edits carry to their observers
/// ("rows 2 to 4 were inserted"), and what a removal takes.
class IndexSet {
public:
    /// Iterates the indices in ascending order.
    using const_iterator = std::set<std::size_t>::const_iterator;

    IndexSet() = default;
    /// These indices, duplicates merged.
    ///@{
    IndexSet(std::initializer_list<std::size_t> indices) : indices_(indices) {}
    template <class It> IndexSet(It first, It last) : indices_(first, last) {}
    ///@}

    /// The indices from `first` up to, not including, `last`.
    static IndexSet range(std::size_t first, std::size_t last);

    /// Add one index; add `first` up to, not including, `last`.
    ///@{
    void insert(std::size_t index) { indices_.insert(index); }
    void insertRange(std::size_t first, std::size_t last);
    ///@}
    /// Whether the index is in the set; how many indices; whether there is none.
    ///@{
    bool contains(std::size_t index) const { return indices_.contains(index); }
    std::size_t count() const { return indices_.size(); }
    bool isEmpty() const { return indices_.empty(); }
    ///@}

    /// The indices in ascending order.
    ///@{
    const_iterator begin() const { return indices_.begin(); }
    const_iterator end() const { return indices_.end(); }
    ///@}

    /// Removes the elements at these indices from `array`, keeping the order of the others.
    /// Indices past the end are ignored.
    template <class T> void removeFrom(std::vector<T>& array) const {
        std::size_t kept = 0;
        for (std::size_t i = 0; i < array.size(); ++i)
            if (!contains(i)) {
                if (kept != i) array[kept] = std::move(array[i]);
                ++kept;
            }
        array.resize(kept);
    }

    friend bool operator==(const IndexSet&, const IndexSet&) = default;

private:
    std::set<std::size_t> indices_;
};

} // namespace corvane
