#include "corvane/helpers/ConcurrentPerform.hpp"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>

namespace corvane {
namespace {

// One parallel loop: iterations are handed out one by one from a shared counter, so uneven bodies
// balance across threads. The caller always takes part, so a loop ends even when every worker is
// busy elsewhere (a body that runs a loop of its own, for one).
struct Loop {
    Loop(std::size_t iterations, const std::function<void(std::size_t)>& body)
        : iterations(iterations), body(body) {}

    // Runs iterations until none is left. `body` is only touched for an index claimed below
    // `iterations`, and the caller waits for every thread that joined before it returns, so a
    // worker that comes late never sees a body that is gone.
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

    void helpOut() {
        {
            std::lock_guard lock(mutex);
            if (finished) return;
            ++helpers;
        }
        take();
        std::lock_guard lock(mutex);
        if (--helpers == 0) helpersDone.notify_all();
    }

    void finish() {
        take();
        std::unique_lock lock(mutex);
        finished = true;
        helpersDone.wait(lock, [&] { return helpers == 0; });
        if (firstError) std::rethrow_exception(firstError);
    }

    const std::size_t iterations;
    const std::function<void(std::size_t)>& body;
    std::atomic<std::size_t> next{0};
    std::mutex mutex;
    std::condition_variable helpersDone;
    std::size_t helpers = 0;
    bool finished = false;
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

    void post(const std::shared_ptr<Loop>& loop, std::size_t helpers) {
        {
            std::lock_guard lock(mutex_);
            for (std::size_t i = 0; i < helpers; ++i)
                queue_.push_back(loop);
        }
        if (helpers == 1)
            ready_.notify_one();
        else
            ready_.notify_all();
    }

private:
    explicit Workers(std::size_t count) : count_(count) {
        for (std::size_t i = 0; i < count; ++i)
            std::thread([this] { work(); }).detach();
    }

    [[noreturn]] void work() {
        for (;;) {
            std::shared_ptr<Loop> loop;
            {
                std::unique_lock lock(mutex_);
                ready_.wait(lock, [&] { return !queue_.empty(); });
                loop = std::move(queue_.front());
                queue_.pop_front();
            }
            loop->helpOut();
        }
    }

    const std::size_t count_;
    std::mutex mutex_;
    std::condition_variable ready_;
    std::deque<std::shared_ptr<Loop>> queue_;
};

} // namespace

void concurrentPerform(std::size_t iterations, const std::function<void(std::size_t)>& body) {
    if (iterations == 0) return;
    Workers& workers = Workers::shared();
    const std::size_t helpers = std::min(iterations - 1, workers.count());
    if (helpers == 0) {
        for (std::size_t i = 0; i < iterations; ++i)
            body(i);
        return;
    }
    auto loop = std::make_shared<Loop>(iterations, body);
    workers.post(loop, helpers);
    loop->finish();
}

} // namespace corvane
