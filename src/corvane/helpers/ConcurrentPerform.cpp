#include "corvane/helpers/ConcurrentPerform.hpp"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>

namespace corvane {
namespace {

// One parallel loop: iterations are handed out one by one from a shared counter, so uneven bodies
// balance across threads. The caller always takes part, so a loop ends even when every worker is
// busy elsewhere (a body that runs a loop of its own, for one). The loop lives on the caller's stack:
// the caller returns only once no worker holds it, so nothing of the loop outlives the call.
struct Loop {
    Loop(std::size_t iterations, const std::function<void(std::size_t)>& body)
        : iterations(iterations), body(body) {}

    // Runs iterations until none is left.
    void take() {
        for (std::size_t i; (i = next.fetch_add(1, std::memory_order_relaxed)) < iterations;) {
            try {
                body(i);
            } catch (...) {
                std::lock_guard lock(mutex);
                if (!firstError) firstError = std::current_exception();
            }
        }
    }

    // A worker's share: whatever is left when it comes. The last touch of the loop is under its
    // lock, so the caller, woken by it, may end the loop at once.
    void helpOut() {
        take();
        std::lock_guard lock(mutex);
        if (--outstanding == 0) helpersDone.notify_all();
    }

    const std::size_t iterations;
    const std::function<void(std::size_t)>& body;
    std::atomic<std::size_t> next{0};
    std::mutex mutex;
    std::condition_variable helpersDone;
    std::size_t outstanding = 0; // queue entries of this loop not yet withdrawn or done
    std::exception_ptr firstError;
};

// Worker threads kept for the life of the process, one per core beyond the caller's: a loop costs a
// queue entry instead of starting and joining threads, which for a short loop is most of its time.
// The workers are never stopped (the process ends them), so no static destructor waits for them.
class Workers {
public:
    static Workers& shared() {
        static Workers* workers = new Workers(std::max(1u, std::thread::hardware_concurrency()) - 1);
        return *workers;
    }

    std::size_t count() const { return count_; }

    // Runs the loop on the calling thread and on up to `helpers` workers, and returns when every
    // iteration has run and no worker holds the loop any more.
    void run(Loop& loop, std::size_t helpers) {
        loop.outstanding = helpers;
        {
            std::lock_guard lock(mutex_);
            queue_.insert(queue_.end(), helpers, &loop);
        }
        if (helpers == 1)
            ready_.notify_one();
        else
            ready_.notify_all();
        loop.take();
        // Entries no worker has picked up yet are withdrawn: every iteration has been claimed.
        std::size_t withdrawn;
        {
            std::lock_guard lock(mutex_);
            const auto kept = std::remove(queue_.begin(), queue_.end(), &loop);
            withdrawn = static_cast<std::size_t>(queue_.end() - kept);
            queue_.erase(kept, queue_.end());
        }
        std::unique_lock lock(loop.mutex);
        loop.outstanding -= withdrawn;
        loop.helpersDone.wait(lock, [&] { return loop.outstanding == 0; });
        if (loop.firstError) std::rethrow_exception(loop.firstError);
    }

private:
    explicit Workers(std::size_t count) : count_(count) {
        for (std::size_t i = 0; i < count; ++i)
            std::thread([this] { work(); }).detach();
    }

    [[noreturn]] void work() {
        for (;;) {
            Loop* loop;
            {
                std::unique_lock lock(mutex_);
                ready_.wait(lock, [&] { return !queue_.empty(); });
                loop = queue_.front();
                queue_.pop_front();
            }
            loop->helpOut();
        }
    }

    const std::size_t count_;
    std::mutex mutex_;
    std::condition_variable ready_;
    std::deque<Loop*> queue_;
};

} // namespace

void concurrentPerform(std::size_t iterations, const std::function<void(std::size_t)>& body) {
    if (iterations == 0) return;
    // One iteration runs here, without starting the workers for it.
    if (iterations == 1) {
        body(0);
        return;
    }
    Workers& workers = Workers::shared();
    const std::size_t helpers = std::min(iterations - 1, workers.count());
    if (helpers == 0) {
        for (std::size_t i = 0; i < iterations; ++i)
            body(i);
        return;
    }
    Loop loop(iterations, body);
    workers.run(loop, helpers);
}

} // namespace corvane
