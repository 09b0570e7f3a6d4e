#pragma once

#include "corvane/comparison/TagComparatorGroupEntry.hpp"
#include "corvane/comparison/TagComparatorGroupKey.hpp"

#include <concepts>
#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvane {

/// The predicate of a comparison filter; it may throw, and its error reaches the caller.
using TagComparatorPredicate = std::function<bool(const std::string&)>;

/// A comparison part that can be narrowed to the rows whose texts satisfy a predicate.
template <class T>
concept TagComparatorSearchable = requires(const T& t, const TagComparatorPredicate& predicate) {
    { t.filter(predicate) } -> std::same_as<T>;
};

/// The rows of one family in a comparison, in display order. Immutable; iterating gives the
/// entries in order.
class TagComparatorGroup {
public:
    /// A group of these entries, in display order.
    TagComparatorGroup(TagComparatorGroupName name, std::vector<TagComparatorGroupEntry> entries);

    /// The family's name; the keys in display order.
    ///@{
    const TagComparatorGroupName& name() const { return name_; }
    const std::vector<TagComparatorGroupKey>& orderedKeys() const { return orderedKeys_; }
    ///@}
    /// Number of values per entry: that of the first entry, 0 without entries.
    std::ptrdiff_t multiValuesCount() const { return multiValuesCount_; }
    /// Whether there is no entry; the number of entries.
    ///@{
    bool isEmpty() const { return entries_.empty(); }
    std::size_t size() const { return entries_.size(); }
    ///@}

    /// The entries, in order, and their iteration.
    ///@{
    const std::vector<TagComparatorGroupEntry>& entries() const { return entries_; }
    auto begin() const { return entries_.begin(); }
    auto end() const { return entries_.end(); }
    ///@}

    /// std::out_of_range past the end.
    const TagComparatorGroupEntry& entry(std::size_t index) const { return entries_.at(index); }
    /// Throws std::out_of_range past the end.
    const TagComparatorGroupKey& key(std::size_t index) const { return orderedKeys_.at(index); }
    /// nullptr for a key the group doesn't hold.
    const TagComparatorGroupEntry* entry(const TagComparatorGroupKey& key) const;
    /// The value texts of the entry at `index`, an absent one as the empty text.
    std::vector<std::string> strings(std::size_t index) const { return entry(index).strings(); }
    /// Whether the values of the entry at `index` differ between files.
    bool isShared(std::size_t index) const { return entry(index).isShared(); }
    /// False for a key the group doesn't hold.
    bool isShared(const TagComparatorGroupKey& key) const;

    /// Only the entries whose values differ.
    TagComparatorGroup keepingOnlySharedEntries() const;
    /// The entries whose key's `localizedNameText()`, or one of whose present values, satisfies
    /// `predicate`, tried in that order and no further than the first success.
    TagComparatorGroup filter(const TagComparatorPredicate& predicate) const;

private:
    TagComparatorGroupName name_;
    std::vector<TagComparatorGroupEntry> entries_;
    std::vector<TagComparatorGroupKey> orderedKeys_;
    std::unordered_map<TagComparatorGroupKey, std::size_t> indexByKey_;
    std::ptrdiff_t multiValuesCount_ = 0;
};

static_assert(TagComparatorSearchable<TagComparatorGroup>);

} // namespace corvane
