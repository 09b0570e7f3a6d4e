// Records the edition manager's notifications as they reach the main queue, for tests of both
// the editors and the manager.

#pragma once

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/tag_edition/EditionManager.hpp"

#include <string>
#include <utility>
#include <vector>

namespace corvane::test {

struct EditionEvent {
    enum Kind { begin, flush, end } kind;
    HistoryEdition history; // empty except for a flush
};

// Subscribes to the three notifications of `EditionManager::shared()`. The calling thread becomes
// the main thread; events are recorded there, while `drain()` runs the main queue.
class EditionRecorder {
public:
    EditionRecorder() {
        MainQueue::shared().registerCurrentThreadAsMain();
        MainQueue::shared().drain(); // leftovers of earlier tests
        const void* manager = &EditionManager::shared();
        auto& center = NotificationCenter::defaultCenter();
        subscribers_.push_back(
            center.subscribe(std::string(EditionManager::didBeginSessionNotification), manager,
                             [this](const Notification&) { record(EditionEvent::begin); }));
        subscribers_.push_back(center.subscribe(
            std::string(EditionManager::didFlushHistoryNotification), manager,
            [this](const Notification& note) {
                const HistoryEdition* history = EditionManager::history(note);
                events_.push_back({EditionEvent::flush, history ? *history : HistoryEdition()});
            }));
        subscribers_.push_back(center.subscribe(std::string(EditionManager::didEndSessionNotification),
                                                manager,
                                                [this](const Notification&) { record(EditionEvent::end); }));
    }

    // Runs the main queue and hands over what arrived since the last call.
    std::vector<EditionEvent> drain() {
        MainQueue::shared().drain();
        return std::exchange(events_, {});
    }

    // Events arrived so far, without running the main queue.
    const std::vector<EditionEvent>& pending() const { return events_; }

    // "begin flush end ..." for readable expectations.
    static std::string kinds(const std::vector<EditionEvent>& events) {
        static const char* names[] = {"begin", "flush", "end"};
        std::string text;
        for (const auto& event : events) {
            if (!text.empty()) text += ' ';
            text += names[event.kind];
        }
        return text;
    }

private:
    void record(EditionEvent::Kind kind) { events_.push_back({kind, HistoryEdition()}); }

    std::vector<EditionEvent> events_; // main thread only
    std::vector<NoteSubscriber> subscribers_;
};

} // namespace corvane::test
