#pragma once

#include "corvane/helpers/AtomicPropertyQueue.hpp"
#include "corvane/helpers/Notification.hpp"
#include "corvane/tag_edition/HistoryEdition.hpp"

#include <cstddef>
#include <memory>
#include <string_view>

namespace corvane {

class TagEditor;

/// The process-wide collector of change events. Editors register every tag that changed; the
/// manager gathers them into a `HistoryEdition` and hands the batch to the views by notification,
/// once per outermost session, so that a table refreshes once for a hundred edits. It keeps no old
/// values: it is no undo stack.
///
/// Sessions nest and are shared by all threads: the count goes up with every `beginSession()` and
/// the batch is flushed when the last open session ends. A long batch is also flushed whenever it
/// passes `registrationLimit` registrations, without ending the session.
///
/// The three notifications are posted on the main queue (`AtomicPropertyQueue::mainAsync`), with
/// the manager as object, in the order their events happened: begin, any number of flushes, the
/// last flush, end. They are scheduled from inside the manager's exclusive pass, which is what
/// keeps that order across threads.
///
/// The host drains the main queue (`MainQueue::shared().drain()` in a tool, the event loop woken by
/// `MainQueue::setWakeHook` in an application); a view sees no edit before it does.
class EditionManager {
public:
    /// Posted when the outermost session opens; no user info.
    static constexpr std::string_view didBeginSessionNotification =
        "EditionManagerDidBeginSessionNotification";
    /// User info: the flushed `HistoryEdition` under `historyEditionKey`.
    static constexpr std::string_view didFlushHistoryNotification =
        "EditionManagerDidFlushHistoryNotification";
    /// Posted when the outermost session has ended, after its last flush; no user info.
    static constexpr std::string_view didEndSessionNotification = "EditionManagerDidEndSessionNotification";
    /// The user-info key of the flushed history.
    static constexpr std::string_view historyEditionKey = "HistoryEdition";

    /// A registration past this many since the last flush flushes the history.
    static constexpr std::size_t registrationLimit = 100;

    /// The manager every editor reports to; lives as long as the process.
    static EditionManager& shared();

    virtual ~EditionManager() = default;
    EditionManager(const EditionManager&) = delete;
    EditionManager& operator=(const EditionManager&) = delete;

    /// True while at least one session is open, on any thread.
    bool isInSession() const;
    /// Always in pairs; sessions nest. Ending a session that isn't open stops the process.
    void beginSession();
    /// Closes the innermost session; the last one to close flushes the history.
    void endSession();
    /// Records that this tag of this editor changed. Allowed out of session too: the entry then
    /// waits for the next flush.
    void registerTag(const std::shared_ptr<TagEditor>& editor, const TagName& tagName);

    /// The history carried by a flush notification; nullptr for any other notification. Valid as
    /// long as the notification.
    static const HistoryEdition* history(const Notification& note);

    /// Opens a session for the lifetime of the object.
    class Session {
    public:
        /// Begins a session of `manager`; the destructor ends it.
        explicit Session(EditionManager& manager = EditionManager::shared()) : manager_(manager) {
            manager_.beginSession();
        }
        ~Session() { manager_.endSession(); }
        Session(const Session&) = delete;
        Session& operator=(const Session&) = delete;

    private:
        EditionManager& manager_;
    };

protected:
    EditionManager() = default;

private:
    /// Posts `didFlushHistoryNotification`; runs on the main queue.
    virtual void informsDidFlushHistory(HistoryEdition history);

    /// Takes the history out and schedules its notification. Inside the exclusive pass.
    void nonAtomicFlush();
    void post(std::string_view name);

    AtomicPropertyQueue atomic_;
    std::size_t nonAtomicRegistrationCount_ = 0;
    std::size_t nonAtomicSessionCount_ = 0;
    HistoryEdition nonAtomicHistory_;
};

} // namespace corvane
