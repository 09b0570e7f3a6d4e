#include "corvane/tag_table/detail/ValueTally.hpp"

#include "corvane/helpers/ConcurrentPerform.hpp"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <unordered_map>

namespace corvane::detail {

namespace {

enum Flag : std::uint8_t { edited = 1, locked = 2 };

// One editor's reading of the tag; a missing value counts as the empty text.
struct Reading {
    std::string value;
    std::uint8_t flags = 0;
};

Reading read(const TagEditor& editor, const TagName& name) {
    Reading reading{editor.currentValue(name).value_or(std::string())};
    if (editor.isValueEdited(name)) reading.flags |= edited;
    if (!editor.canEditValue(name)) reading.flags |= locked;
    return reading;
}

// Editors per thread below which reading on several threads costs more than it saves.
constexpr std::size_t editorsPerSlice = 512;

// The readings of `count` editors, the i-th being `editors[position(i)]`; with `split` and enough
// of them, on up to 16 threads.
template <class Position>
std::vector<Reading> readAll(const ValueTally::Editors& editors, std::size_t count, Position&& position,
                             const TagName& name, bool split) {
    std::vector<Reading> readings(count);
    const std::size_t slices = split ? std::min<std::size_t>(16, count / editorsPerSlice) : 0;
    if (slices < 2) {
        for (std::size_t i = 0; i < count; ++i)
            readings[i] = read(*editors.at(position(i)), name);
        return readings;
    }
    concurrentPerform(slices, [&](std::size_t slice) {
        for (std::size_t i = count * slice / slices, last = count * (slice + 1) / slices; i < last; ++i)
            readings[i] = read(*editors.at(position(i)), name);
    });
    return readings;
}

} // namespace

ValueTally::ValueTally(const Editors& editors, const TagName& name)
    : held_(editors.size()), flags_(editors.size()) {
    // Rows are built in parallel already: one thread per row.
    auto readings = readAll(
        editors, editors.size(), [](std::size_t i) { return i; }, name, false);
    // Distinct values numbered in order of first appearance (neighbours often share one), then
    // sorted and renumbered.
    std::unordered_map<std::string_view, std::uint32_t> numbers;
    std::vector<std::string_view> distinct;
    for (std::size_t i = 0; i < readings.size(); ++i) {
        addFlags(i, readings[i].flags);
        if (i > 0 && readings[i].value == readings[i - 1].value) {
            held_[i] = held_[i - 1];
            continue;
        }
        const auto [found, isNew] =
            numbers.try_emplace(readings[i].value, static_cast<std::uint32_t>(distinct.size()));
        if (isNew) distinct.push_back(readings[i].value);
        held_[i] = found->second;
    }
    std::vector<std::uint32_t> order(distinct.size());
    std::iota(order.begin(), order.end(), 0u);
    std::sort(order.begin(), order.end(),
              [&](std::uint32_t a, std::uint32_t b) { return distinct[a] < distinct[b]; });
    std::vector<std::uint32_t> rank(distinct.size());
    Values values;
    values.reserve(distinct.size());
    for (std::uint32_t k = 0; k < order.size(); ++k) {
        rank[order[k]] = k;
        values.emplace_back(distinct[order[k]]);
    }
    counts_.assign(distinct.size(), 0);
    for (auto& index : held_)
        ++counts_[index = rank[index]];
    values_ = std::make_shared<const Values>(std::move(values));
}

void ValueTally::addFlags(std::size_t position, std::uint8_t flags) {
    flags_[position] = flags;
    editedCount_ += (flags & edited) ? 1 : 0;
    lockedCount_ += (flags & locked) ? 1 : 0;
}

ValueTally::Merged ValueTally::merged() const {
    std::lock_guard lock(mutex_);
    return mergedUnlocked();
}

ValueTally::Merged ValueTally::mergedUnlocked() const {
    return {values_, editedCount_ > 0, lockedCount_ == 0};
}

ValueTally::Merged ValueTally::reread(const Editors& editors, std::span<const std::size_t> positions,
                                      const TagName& name) {
    // Read under the lock, so that of two copies rereading at once the later reading stays; and
    // before anything changes, so that a failing read leaves the tally whole.
    std::lock_guard lock(mutex_);
    auto readings = readAll(
        editors, positions.size(), [&](std::size_t i) { return positions[i]; }, name, true);
    std::vector<std::uint32_t> before(positions.size());
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const std::size_t position = positions[i];
        --counts_[before[i] = held_.at(position)];
        editedCount_ -= (flags_[position] & edited) ? 1 : 0;
        lockedCount_ -= (flags_[position] & locked) ? 1 : 0;
    }
    std::vector<std::pair<std::size_t, std::string>> newcomers;
    const Values& values = *values_;
    for (std::size_t i = 0; i < positions.size(); ++i) {
        addFlags(positions[i], readings[i].flags);
        const auto found = std::lower_bound(values.begin(), values.end(), readings[i].value);
        if (found != values.end() && *found == readings[i].value) {
            ++counts_[held_[positions[i]] = static_cast<std::uint32_t>(found - values.begin())];
        } else {
            newcomers.emplace_back(positions[i], std::move(readings[i].value));
        }
    }
    const bool someGone =
        std::any_of(before.begin(), before.end(), [&](std::uint32_t i) { return counts_[i] == 0; });
    if (someGone || !newcomers.empty()) renumber(std::move(newcomers));
    return mergedUnlocked();
}

void ValueTally::renumber(std::vector<std::pair<std::size_t, std::string>> newcomers) {
    std::sort(newcomers.begin(), newcomers.end(),
              [](const auto& a, const auto& b) { return a.second < b.second; });
    const Values& old = *values_;
    Values values;
    std::vector<std::uint32_t> counts;
    values.reserve(old.size() + newcomers.size());
    counts.reserve(old.size() + newcomers.size());
    std::vector<std::uint32_t> newcomerIndexes(newcomers.size());
    std::size_t next = 0;
    // Appends the newcomers' values that sort before `bound` (all of them without one), once each.
    const auto appendNewcomers = [&](const std::string* bound) {
        for (; next < newcomers.size() && (!bound || newcomers[next].second < *bound); ++next) {
            if (values.empty() || values.back() != newcomers[next].second) {
                values.push_back(newcomers[next].second);
                counts.push_back(0);
            }
            ++counts.back();
            newcomerIndexes[next] = static_cast<std::uint32_t>(values.size() - 1);
        }
    };
    std::vector<std::uint32_t> renumbered(old.size());
    for (std::size_t i = 0; i < old.size(); ++i) {
        appendNewcomers(&old[i]);
        if (counts_[i] == 0) continue;
        renumbered[i] = static_cast<std::uint32_t>(values.size());
        values.push_back(old[i]);
        counts.push_back(counts_[i]);
    }
    appendNewcomers(nullptr);
    // A newcomer's old index may be of a value gone: it is set right after.
    for (auto& index : held_)
        index = renumbered[index];
    for (std::size_t i = 0; i < newcomers.size(); ++i)
        held_[newcomers[i].first] = newcomerIndexes[i];
    counts_ = std::move(counts);
    values_ = std::make_shared<const Values>(std::move(values));
}

} // namespace corvane::detail
