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
        using Kind = EditionEvent::Kind;
        for (const auto& [name, kind] : {std::pair{EditionManager::didBeginSessionNotification, Kind::begin},
                                         std::pair{EditionManager::didFlushHistoryNotification, Kind::flush},
                                         std::pair{EditionManager::didEndSessionNotification, Kind::end}})
            subscribers_.push_back(NotificationCenter::defaultCenter().subscribe(
                std::string(name), &EditionManager::shared(), [this, kind](const Notification& note) {
                    const HistoryEdition* history =
                        kind == Kind::flush ? EditionManager::history(note) : nullptr;
                    events_.push_back({kind, history ? *history : HistoryEdition()});
                }));
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
    std::vector<EditionEvent> events_; // main thread only
    std::vector<NoteSubscriber> subscribers_;
};

} // namespace corvane::test
