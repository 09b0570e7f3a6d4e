#include "corvane/helpers/MainQueue.hpp"

#include <stdexcept>

namespace corvane {

MainQueue& MainQueue::shared() {
    // Never destroyed: threads of never-destroyed queues (the task manager's) may still post
    // while the process exits.
    static auto* queue = new MainQueue();
    return *queue;
}

void MainQueue::async(Job job) {
    std::function<void()> hook;
    {
        std::lock_guard lock(mutex_);
        jobs_.push_back(std::move(job));
        hook = wakeHook_;
    }
    available_.notify_all();
    if (hook) hook();
}

void MainQueue::claimDrainingThread() {
    const auto self = std::this_thread::get_id();
    std::lock_guard lock(mutex_);
    if (!mainThread_)
        mainThread_ = self;
    else if (*mainThread_ != self)
        throw std::logic_error("MainQueue drained from a thread that isn't the main thread");
}

std::optional<MainQueue::Job> MainQueue::takeJob(std::unique_lock<std::mutex>& lock,
                                                 std::optional<Clock::time_point> until) {
    if (until) available_.wait_until(lock, *until, [this] { return !jobs_.empty(); });
    if (jobs_.empty()) return std::nullopt;
    Job job = std::move(jobs_.front());
    jobs_.pop_front();
    return job;
}

std::size_t MainQueue::drain() {
    claimDrainingThread();
    std::size_t count = 0;
    for (;;) {
        std::optional<Job> job;
        {
            std::unique_lock lock(mutex_);
            job = takeJob(lock, std::nullopt);
        }
        if (!job) return count;
        (*job)();
        ++count;
    }
}

std::size_t MainQueue::drainFor(Clock::duration timeout) {
    claimDrainingThread();
    const auto deadline = Clock::now() + timeout;
    std::size_t count = 0;
    for (;;) {
        std::optional<Job> job;
        {
            std::unique_lock lock(mutex_);
            job = takeJob(lock, deadline);
        }
        if (!job) {
            if (Clock::now() >= deadline) return count;
            continue;
        }
        (*job)();
        ++count;
    }
}

bool MainQueue::runUntil(const std::function<bool()>& predicate, Clock::duration timeout) {
    claimDrainingThread();
    const auto deadline = Clock::now() + timeout;
    for (;;) {
        if (predicate()) return true;
        // Wake up now and then even without work, since the predicate may depend
        // on state changed by other threads without posting anything.
        const auto slice = std::min(deadline, Clock::now() + std::chrono::milliseconds(5));
        std::optional<Job> job;
        {
            std::unique_lock lock(mutex_);
            job = takeJob(lock, slice);
        }
        if (job)
            (*job)();
        else if (Clock::now() >= deadline)
            return predicate();
    }
}

void MainQueue::setWakeHook(std::function<void()> hook) {
    std::lock_guard lock(mutex_);
    wakeHook_ = std::move(hook);
}

void MainQueue::registerCurrentThreadAsMain() {
    setMainThread(std::this_thread::get_id());
}

void MainQueue::setMainThread(std::thread::id id) {
    std::lock_guard lock(mutex_);
    mainThread_ = id;
}

std::optional<std::thread::id> MainQueue::mainThread() const {
    std::lock_guard lock(mutex_);
    return mainThread_;
}

bool MainQueue::isMainThread() const {
    std::lock_guard lock(mutex_);
    return mainThread_ && *mainThread_ == std::this_thread::get_id();
}

std::size_t MainQueue::pendingCount() const {
    std::lock_guard lock(mutex_);
    return jobs_.size();
}

void mainAsync(std::function<void()> job) {
    MainQueue::shared().async(std::move(job));
}

bool isMainThread() {
    return MainQueue::shared().isMainThread();
}

} // namespace corvane
