#pragma once

#include "corvane/helpers/IndexSet.hpp"
#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/preset_support/EquatableObject.hpp"

#include <cassert>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvane {

/// What a preset and a group of presets have in common: a name, a detail text and an ordered list
/// (a preset's entries, a group's presets) whose every change is announced on the default
/// notification centre, with the object as sender:
/// - a new name or detail posts `Derived::didChangeInfoNotification`;
/// - a new list, an insertion or a removal posts `Derived::didChangeListNotification` with the
///   list edition under `Derived::listEditionKey`: `Derived::Reload`, `Derived::Insert` or
///   `Derived::Remove` (these two with the indices concerned).
/// A change that changes nothing posts nothing. Not locked: the library belongs to the main thread.
///
/// Observers run on the posting thread, for this library the host's main thread. Work the library
/// schedules for that thread waits until the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
template <class Derived, class Element> class PresetContainer : public EquatableObject {
public:
    /// The name shown in the user's list.
    const std::string& name() const { return name_; }
    /// Renames; posts `didChangeInfoNotification` when the name changes.
    void setName(std::string name) {
        if (name == name_) return;
        name_ = std::move(name);
        postInfoChange();
    }
    /// The detail text shown under the name.
    const std::string& detail() const { return detail_; }
    /// Changes the detail text; posts `didChangeInfoNotification` when it changes.
    void setDetail(std::string detail) {
        if (detail == detail_) return;
        detail_ = std::move(detail);
        postInfoChange();
    }

protected:
    /// A container with this name, detail and list; nothing is posted.
    PresetContainer(std::string name, std::string detail, std::vector<Element> elements)
        : name_(std::move(name)), detail_(std::move(detail)), elements_(std::move(elements)) {}

    /// The list, in order.
    const std::vector<Element>& elements() const { return elements_; }

    /// Replaces the list; posts a `Reload` edition when it changes.
    void setElements(std::vector<Element> elements) {
        if (elements == elements_) return;
        elements_ = std::move(elements);
        informsDidChange(typename Derived::Reload{});
    }

    /// Inserts before `index` (at most the count: inserting past the end is a programming error).
    void insertElements(std::vector<Element> elements, std::size_t index) {
        if (elements.empty()) return;
        assert(index <= elements_.size());
        const std::size_t count = elements.size();
        elements_.insert(elements_.begin() + static_cast<std::ptrdiff_t>(index),
                         std::make_move_iterator(elements.begin()), std::make_move_iterator(elements.end()));
        informsDidChange(typename Derived::Insert{IndexSet::range(index, index + count)});
    }

    /// Removes the elements at `indexes` (an empty set does nothing); posts a `Remove` edition.
    void removeElements(const IndexSet& indexes) {
        if (indexes.isEmpty()) return;
        indexes.removeFrom(elements_);
        informsDidChange(typename Derived::Remove{indexes});
    }

    /// Posts `didChangeListNotification` with `edition`.
    template <class D = Derived> void informsDidChange(typename D::ListEdition edition) {
        NotificationCenter::defaultCenter().post(
            Notification(std::string(Derived::didChangeListNotification), self(),
                         {{std::string(Derived::listEditionKey), std::move(edition)}}));
    }

    /// The list edition carried by a notification of this class; nothing for another one.
    template <class D = Derived>
    static std::optional<typename D::ListEdition> listEdition(const Notification& note) {
        if (auto edition = note.userInfoValue<typename D::ListEdition>(std::string(D::listEditionKey)))
            return *edition;
        return std::nullopt;
    }

private:
    std::shared_ptr<Derived> self() { return std::static_pointer_cast<Derived>(shared_from_this()); }

    void postInfoChange() {
        NotificationCenter::defaultCenter().post(
            Notification(std::string(Derived::didChangeInfoNotification), self()));
    }

    std::string name_;
    std::string detail_;
    std::vector<Element> elements_;
};

} // namespace corvane
