#pragma once

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/tag_edition/AbstractTask.hpp"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::testing {

// The failures of the test tasks.
enum class TestTaskError { stepFailed, workFailed };

inline std::string_view message(TestTaskError error) {
    return error == TestTaskError::stepFailed ? "Step failed" : "Work failed";
}

// A task whose work is a block, with the protected tools of the base opened for the block.
class BlockTask : public AbstractTask {
public:
    using Work = std::function<void(BlockTask&)>;

    explicit BlockTask(Work work, Priority priority = Priority::writing)
        : work_(std::move(work)), priority_(priority) {}

    static std::shared_ptr<BlockTask> make(Work work, Priority priority = Priority::writing) {
        return std::make_shared<BlockTask>(std::move(work), priority);
    }

    Priority priority() const override { return priority_; }
    std::string title() const override { return "Test Task"; }

    using AbstractTask::addSubprocess;
    using AbstractTask::failable;
    using AbstractTask::incrementProgress;
    using AbstractTask::mapSubprocess;
    using AbstractTask::setProgress;

protected:
    void internProcess() override { work_(*this); }

private:
    Work work_;
    Priority priority_;
};

// A gate that threads wait on until the test opens it.
class Gate {
public:
    void open() {
        {
            std::lock_guard lock(mutex_);
            open_ = true;
        }
        changed_.notify_all();
    }
    // False if the gate didn't open in time.
    bool wait(std::chrono::milliseconds timeout = std::chrono::seconds(10)) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, timeout, [&] { return open_; });
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool open_ = false;
};

// Records, in order, the notifications with the given names sent by one sender. Handlers run on
// the main queue, drained by the test; `offMain` counts those that didn't.
class NoteRecorder {
public:
    NoteRecorder(const std::vector<std::string_view>& names, const void* sender) {
        for (auto name : names)
            subscribers_.push_back(NotificationCenter::defaultCenter().subscribe(
                std::string(name), sender, [this](const Notification& note) {
                    if (!MainQueue::shared().isMainThread()) ++offMain;
                    notes.push_back(note);
                }));
    }

    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& note : notes)
            result.push_back(note.name());
        return result;
    }

    std::vector<Notification> notes;
    int offMain = 0;

private:
    std::vector<NoteSubscriber> subscribers_;
};

// Runs what the main queue holds, including what is posted meanwhile.
inline void drainMainQueue() {
    MainQueue::shared().drain();
}

} // namespace corvane::testing
