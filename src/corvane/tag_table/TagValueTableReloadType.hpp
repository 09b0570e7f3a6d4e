#pragma once

#include "corvane/helpers/IndexSet.hpp"

#include <optional>

namespace corvane {

/// What one reload of a `TagValueTable` changed (its `ReloadType`), under "ReloadType" in both
/// notifications:
/// - `values`: some rows were rebuilt in place after an edit; no index set in the will-notification,
///   the rebuilt row indexes in the did-notification. Row count and order are unchanged;
/// - `entries`: every row may have changed;
/// - `selection`: only the selection and the value set changed.
///
/// Both notifications are posted on the main queue's thread: the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
class TagValueTableReloadType {
public:
    /// See the class comment.
    enum class Kind { values, entries, selection };

    /// A reload of every row; of the selection only.
    ///@{
    static const TagValueTableReloadType entries;
    static const TagValueTableReloadType selection;
    ///@}
    /// A reload of some rows in place; `indexes` are given in the did-notification only.
    static TagValueTableReloadType values(std::optional<IndexSet> indexes) {
        return TagValueTableReloadType(Kind::values, std::move(indexes));
    }

    /// Which of the three.
    Kind kind() const { return kind_; }
    /// The rebuilt rows of a `values` did-notification; nothing otherwise.
    const std::optional<IndexSet>& indexes() const { return indexes_; }

    friend bool operator==(const TagValueTableReloadType&, const TagValueTableReloadType&) = default;

private:
    TagValueTableReloadType(Kind kind, std::optional<IndexSet> indexes)
        : kind_(kind), indexes_(std::move(indexes)) {}

    Kind kind_;
    std::optional<IndexSet> indexes_;
};

inline const TagValueTableReloadType TagValueTableReloadType::entries{Kind::entries, std::nullopt};
inline const TagValueTableReloadType TagValueTableReloadType::selection{Kind::selection, std::nullopt};

} // namespace corvane
