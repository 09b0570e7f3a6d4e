#pragma once

#include "corvane/helpers/IndexSet.hpp"
#include "corvane/helpers/Notification.hpp"
#include "corvane/preset_support/PresetContainer.hpp"
#include "corvane/preset_support/PresetItem.hpp"

#include <nlohmann/json_fwd.hpp>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

/// A named group of presets in the library. Equal only to itself (see EquatableObject); lives in a
/// std::shared_ptr made by `create`. Observers learn of every change through the notifications
/// below.
///
/// Observers run on the posting thread, for this library the host's main thread. Work the library
/// schedules for that thread waits until the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
class PresetGroup : public PresetContainer<PresetGroup, PresetItemRef> {
public:
    /// Presets inserted: `indexes` are their places in the new list.
    struct InsertPresets {
        IndexSet indexes; ///< rows, in ascending order
        friend bool operator==(const InsertPresets&, const InsertPresets&) = default;
    };
    /// Rows removed: `indexes` were their places in the old list.
    struct RemovePresets {
        IndexSet indexes; ///< rows, in ascending order
        friend bool operator==(const RemovePresets&, const RemovePresets&) = default;
    };
    /// The whole list changed: reload every row.
    struct ReloadPresets {
        friend bool operator==(const ReloadPresets&, const ReloadPresets&) = default;
    };
    /// What a didChangePresets notification says changed (a list edition, not a preset's
    /// `PresetEdition` of a tag).
    using PresetEdition = std::variant<InsertPresets, RemovePresets, ReloadPresets>;

    /// Posted on a new name or detail; on a change of the presets, with the edition under
    /// `presetEditionKey`.
    ///@{
    static constexpr std::string_view didChangeInfoNotification = "PresetGroupDidChangeInfoNotification";
    static constexpr std::string_view didChangePresetsNotification =
        "PresetGroupDidChangePresetsNotification";
    static constexpr std::string_view presetEditionKey = "PresetEdition";
    ///@}
    /// The edition carried by a didChangePresets notification; nothing for any other one.
    static std::optional<PresetEdition> presetEdition(const Notification& note) { return listEdition(note); }

    /// A group of these presets, in order.
    static std::shared_ptr<PresetGroup> create(std::string name, std::string detail,
                                               std::vector<PresetItemRef> presets);
    /// An empty name and detail, no presets.
    static std::shared_ptr<PresetGroup> create();
    /// Reads {"name", "detail", "presets"}; all three keys are required. Throws as
    /// PresetItem::fromJSON does.
    static std::shared_ptr<PresetGroup> fromJSON(const nlohmann::ordered_json& j);
    /// The JSON form `fromJSON` reads.
    nlohmann::ordered_json toJSON() const;

    /// The presets in order; replacing them posts a `ReloadPresets` edition when they change.
    ///@{
    const std::vector<PresetItemRef>& presets() const { return elements(); }
    void setPresets(std::vector<PresetItemRef> presets) { setElements(std::move(presets)); }
    ///@}
    /// Changes the presets in place, then stores them as `setPresets` does.
    template <class F> void modifyPresets(F&& change) {
        auto presets = elements();
        change(presets);
        setPresets(std::move(presets));
    }
    /// Inserts before `index` (at most the count); posts an `InsertPresets` edition.
    void insertPresets(std::vector<PresetItemRef> presets, std::size_t index) {
        insertElements(std::move(presets), index);
    }
    /// Removes the presets at `indexes`; posts a `RemovePresets` edition.
    void removePresets(const IndexSet& indexes) { removeElements(indexes); }

private:
    friend class PresetContainer<PresetGroup, PresetItemRef>;
    using ListEdition = PresetEdition;
    using Insert = InsertPresets;
    using Remove = RemovePresets;
    using Reload = ReloadPresets;
    static constexpr std::string_view didChangeListNotification = didChangePresetsNotification;
    static constexpr std::string_view listEditionKey = presetEditionKey;

    PresetGroup(std::string name, std::string detail, std::vector<PresetItemRef> presets)
        : PresetContainer(std::move(name), std::move(detail), std::move(presets)) {}

    void informsDidChangePresets(PresetEdition edition) { informsDidChange(std::move(edition)); }
};

/// The shared handle every group lives in.
using PresetGroupRef = std::shared_ptr<PresetGroup>;

} // namespace corvane
