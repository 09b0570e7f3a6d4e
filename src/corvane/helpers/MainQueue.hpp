#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <future>
#include <mutex>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>

namespace corvane {

/// The serial queue of the application's main thread. The library never runs a
/// thread of its own for it: the host drains it from its main thread, either from
/// its GUI event loop (woken through the wake hook whenever work is posted) or,
/// in tools and tests, with drain() / drainFor() / runUntil().
///
/// The main thread is the thread registered with registerCurrentThreadAsMain(),
/// or else the first thread that drains the queue. Draining from any other thread
/// afterwards is a programming error (std::logic_error).
///
/// Jobs run in the order they were posted. An exception escaping a job leaves
/// drain() and reaches the host; the jobs behind it stay queued.
class MainQueue {
public:
    /// A job run on the main thread; the clock of the time limits.
    ///@{
    using Job = std::function<void()>;
    using Clock = std::chrono::steady_clock;
    ///@}

    /// The queue the library posts to; lives as long as the process.
    static MainQueue& shared();

    MainQueue() = default;
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;

    /// Schedules the job; always asynchronous, also when called on the main thread.
    void async(Job job);

    /// Runs jobs until the queue is empty, including jobs posted meanwhile.
    /// Returns the number of jobs run.
    std::size_t drain();
    /// Runs jobs as they come, waiting for new ones, until `timeout` has elapsed.
    std::size_t drainFor(Clock::duration timeout);
    /// Runs jobs as they come until `predicate` holds or `timeout` has elapsed.
    /// The predicate is evaluated on the draining thread between jobs.
    bool runUntil(const std::function<bool()>& predicate, Clock::duration timeout);

    /// Called on the posting thread, outside any lock, after each post, so that
    /// a GUI event loop can schedule a drain on its own thread.
    void setWakeHook(std::function<void()> hook);

    /// Make the calling thread, or the given thread, the main thread: the only one that may drain.
    /// Call it at launch, before any work is posted from other threads.
    ///@{
    void registerCurrentThreadAsMain();
    void setMainThread(std::thread::id id);
    ///@}
    /// The main thread, once one is known; whether the calling thread is it.
    ///@{
    std::optional<std::thread::id> mainThread() const;
    bool isMainThread() const;
    ///@}

    /// The number of jobs waiting.
    std::size_t pendingCount() const;

private:
    std::optional<Job> takeJob(std::unique_lock<std::mutex>& lock, std::optional<Clock::time_point> until);
    void claimDrainingThread();

    mutable std::mutex mutex_;
    std::condition_variable available_;
    std::deque<Job> jobs_;
    std::function<void()> wakeHook_;
    std::optional<std::thread::id> mainThread_;
};

/// Schedules `job` on the main queue, asynchronously, always.
void mainAsync(std::function<void()> job);

/// True on the thread that drains the main queue.
bool isMainThread();

/// Runs `fn` at once when called on the main thread; otherwise posts it to the
/// main queue and blocks until it has run there. Its result or exception is
/// handed back to the caller. Must not be called from a background thread that
/// the main thread is itself waiting for.
template <class F> auto safeSyncInMain(F&& fn) -> std::invoke_result_t<F&> {
    using R = std::invoke_result_t<F&>;
    if (MainQueue::shared().isMainThread()) return fn();
    std::packaged_task<R()> task(std::ref(fn));
    auto result = task.get_future();
    MainQueue::shared().async([&task] { task(); });
    return result.get();
}

} // namespace corvane
