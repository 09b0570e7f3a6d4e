#pragma once

#include "corvane/comparison/TagComparatorGroup.hpp"
#include "corvane/comparison/TagComparatorProvider.hpp"

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvane {

class TagStorage;

/// The comparison of several files: one column per file, one group per family, one row per tag.
/// Families come in order of first appearance across the columns, and within a family the tags in
/// order of first appearance; a file without a tag has an empty cell in its row. Immutable;
/// iterating gives the groups in order.
class TagComparatorTable {
public:
    /// A column of the comparison.
    using ProviderRef = std::shared_ptr<const TagComparatorProvider>;

    /// The comparison of these columns; with `hidesStream`, row headings show the key alone,
    /// without its family.
    TagComparatorTable(const std::vector<ProviderRef>& providers, bool hidesStream);
    /// A comparison already laid out: the column titles and the groups.
    TagComparatorTable(std::vector<std::string> titles, std::vector<TagComparatorGroup> groups);

    /// One column per storage, titled with `titles[i]` (the storage's file name when `titles` is
    /// shorter), over the storage's current values.
    static TagComparatorTable fromStorages(const std::vector<TagStorage>& storages, bool hidesStream = false,
                                           const std::vector<std::string>& titles = {});

    /// The column titles, in order; the group names, in order of first appearance; whether there is
    /// no group.
    ///@{
    const std::vector<std::string>& titles() const { return titles_; }
    const std::vector<TagComparatorGroupName>& orderedNames() const { return orderedNames_; }
    bool isEmpty() const { return groups_.empty(); }
    ///@}
    /// Number of value columns.
    std::ptrdiff_t multiValuesCount() const { return multiValuesCount_; }
    /// The number of groups.
    std::size_t size() const { return groups_.size(); }

    /// The groups, in order, and their iteration.
    ///@{
    const std::vector<TagComparatorGroup>& groups() const { return groups_; }
    auto begin() const { return groups_.begin(); }
    auto end() const { return groups_.end(); }
    ///@}

    /// std::out_of_range past the end.
    const TagComparatorGroup& group(std::size_t index) const { return groups_.at(index); }
    /// nullptr for a family the table doesn't show.
    const TagComparatorGroup* group(const TagComparatorGroupName& name) const;

    /// Each group filtered, groups left empty dropped; the titles stay.
    TagComparatorTable filter(const TagComparatorPredicate& predicate) const;
    /// Each group narrowed to its differing rows, groups left empty dropped.
    TagComparatorTable keepingOnlySharedEntries() const;

private:
    void index();

    std::vector<std::string> titles_;
    std::vector<TagComparatorGroup> groups_;
    std::vector<TagComparatorGroupName> orderedNames_;
    std::unordered_map<TagComparatorGroupName, std::size_t> indexedGroups_;
    std::ptrdiff_t multiValuesCount_ = 0;
};

static_assert(TagComparatorSearchable<TagComparatorTable>);

} // namespace corvane
