#pragma once

#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_value/TagName.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace corvane::detail {

// What one table row's merged value is made of: each editor's reading of the tag (which of the
// distinct values it holds, whether it is edited, whether it can be edited), and per distinct value
// the number of editors holding it. An edit of a few editors then updates the row in time
// proportional to those editors, instead of reading all of them again.
//
// Everything is kept in flat arrays, so that a table of thousands of editors builds and frees its
// tallies with a handful of allocations per row.
//
// Rows are copied from one table content to the next and share their tally. It holds each editor's
// latest reading, whichever copy asked for it, so a copy that reads some editors again merges
// every editor's newest known state; readings are taken under the tally's lock, so that copies may
// do so from several threads.
class ValueTally {
public:
    using Editors = std::vector<TagEditorRef>;
    using Values = std::vector<std::string>;

    // The merged state after a reading.
    struct Merged {
        std::shared_ptr<const Values> values; // distinct, ascending
        bool isEdited = false;
        bool canBeEdited = true;
    };

    // Reads the tag from every editor.
    ValueTally(const Editors& editors, const TagName& name);
    ValueTally(const ValueTally&) = delete;
    ValueTally& operator=(const ValueTally&) = delete;

    Merged merged() const;

    // Reads again the editors at `positions` (indexes into the `editors` the tally was built from,
    // each at most once), replacing their earlier readings. Many are read on several threads.
    Merged reread(const Editors& editors, std::span<const std::size_t> positions, const TagName& name);

private:
    void addFlags(std::size_t position, std::uint8_t flags);
    // Makes the list of values anew: without the values no editor holds any more, with the values
    // of `newcomers` (editor positions with values not in the list), and every editor's index
    // updated.
    void renumber(std::vector<std::pair<std::size_t, std::string>> newcomers);
    Merged mergedUnlocked() const;

    mutable std::mutex mutex_;
    std::shared_ptr<const Values> values_; // distinct, ascending
    std::vector<std::uint32_t> counts_;    // per distinct value: the editors holding it
    std::vector<std::uint32_t> held_;      // per editor position: the index of its value
    std::vector<std::uint8_t> flags_;      // per editor position
    std::size_t editedCount_ = 0;
    std::size_t lockedCount_ = 0;
};

} // namespace corvane::detail
