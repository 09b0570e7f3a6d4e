#include "corvane/helpers/OperationQueue.hpp"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <list>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace corvane {

namespace {
// How long an idle thread waits for more work before it ends.
constexpr auto idleLinger = std::chrono::seconds(2);

int effectiveWidth(int requested) {
    if (requested > 0) return requested;
    return static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
}
} // namespace

struct OperationQueue::State {
    mutable std::mutex mutex;
    std::condition_variable workAvailable; // workers wait for work
    std::condition_variable allDone;       // waiters wait for the queue to empty
    std::string name;
    int width = 1;
    bool suspended = false;
    bool closing = false;

    std::deque<OperationRef> pending;
    std::vector<OperationRef> running;

    struct Worker {
        std::thread thread;
        bool ended = false;
    };
    std::list<Worker> workers;

    bool isEmpty() const { return pending.empty() && running.empty(); }

    bool canStart() const {
        return !suspended && !pending.empty() && static_cast<int>(running.size()) < width;
    }

    // Joins the threads that have ended; called with the lock held, so the
    // threads being joined must have released it for good.
    void reapEndedWorkers() {
        for (auto it = workers.begin(); it != workers.end();) {
            if (it->ended) {
                if (it->thread.joinable()) it->thread.join();
                it = workers.erase(it);
            } else {
                ++it;
            }
        }
    }

    // Makes a thread if there is work that no idle thread will take.
    void spawnIfNeeded(const std::shared_ptr<State>& self) {
        if (!canStart()) return;
        const int startable =
            std::min(static_cast<int>(pending.size()), width - static_cast<int>(running.size()));
        int live = 0;
        for (const auto& w : workers)
            live += w.ended ? 0 : 1;
        // Live threads not running an operation (idle, or just made) take work
        // first; the total never exceeds the width.
        const int free = live - static_cast<int>(running.size());
        const int toMake = std::min(startable - free, width - live);
        for (int i = 0; i < toMake; ++i) {
            workers.push_back(Worker{});
            auto* record = &workers.back();
            record->thread = std::thread([self, record] { self->work(record); });
        }
        workAvailable.notify_all();
    }

    void work(Worker* record);
};

namespace {
thread_local const OperationQueue::State* currentQueue = nullptr;
}

void OperationQueue::State::work(Worker* record) {
    currentQueue = this;
    std::unique_lock lock(mutex);
    for (;;) {
        if (!canStart()) {
            if (closing && pending.empty()) break;
            const bool woke = workAvailable.wait_for(
                lock, idleLinger, [this] { return canStart() || (closing && pending.empty()); });
            if (!woke) {
                // Idle too long: nobody has to wait for this thread, which detaches itself rather
                // than stay joinable until the queue's next operation reaps it (at the program's end
                // that never comes). Under the same lock as the check, so a closing queue, which
                // joins its threads, never sees it half detached.
                record->thread.detach();
                break;
            }
            continue;
        }
        OperationRef op = std::move(pending.front());
        pending.pop_front();
        running.push_back(op);
        lock.unlock();
        op->start();
        lock.lock();
        running.erase(std::find(running.begin(), running.end(), op));
        if (isEmpty()) allDone.notify_all();
    }
    record->ended = true;
    currentQueue = nullptr;
}

OperationQueue::OperationQueue(std::string name, int maxConcurrentOperationCount)
    : state_(std::make_shared<State>()) {
    state_->name = std::move(name);
    state_->width = effectiveWidth(maxConcurrentOperationCount);
}

OperationQueue::~OperationQueue() {
    std::list<State::Worker> workers;
    {
        std::unique_lock lock(state_->mutex);
        state_->closing = true;
        state_->suspended = false;
        state_->spawnIfNeeded(state_);
        state_->workAvailable.notify_all();
        if (isCurrentQueue()) {
            // Destroyed from its own operation: let the threads finish alone.
            // Their records stay in the list, which the threads share through
            // the state, since each one marks its record when it ends.
            for (auto& w : state_->workers)
                if (w.thread.joinable()) w.thread.detach();
            return;
        }
        state_->allDone.wait(lock, [this] { return state_->isEmpty(); });
        workers.swap(state_->workers);
    }
    state_->workAvailable.notify_all();
    for (auto& w : workers)
        if (w.thread.joinable()) w.thread.join();
}

std::string OperationQueue::name() const {
    std::lock_guard lock(state_->mutex);
    return state_->name;
}

void OperationQueue::setName(std::string name) {
    std::lock_guard lock(state_->mutex);
    state_->name = std::move(name);
}

int OperationQueue::maxConcurrentOperationCount() const {
    std::lock_guard lock(state_->mutex);
    return state_->width;
}

void OperationQueue::setMaxConcurrentOperationCount(int count) {
    std::lock_guard lock(state_->mutex);
    state_->width = effectiveWidth(count);
    state_->spawnIfNeeded(state_);
}

void OperationQueue::addOperation(const OperationRef& operation) {
    if (!operation || !operation->markEnqueued())
        throw std::invalid_argument("operation is already in a queue");
    std::lock_guard lock(state_->mutex);
    state_->reapEndedWorkers();
    state_->pending.push_back(operation);
    state_->spawnIfNeeded(state_);
}

OperationRef OperationQueue::addOperation(std::function<void()> block) {
    auto operation = std::make_shared<Operation>(std::move(block));
    addOperation(operation);
    return operation;
}

void OperationQueue::cancelAllOperations() {
    std::deque<OperationRef> notBegun;
    {
        std::lock_guard lock(state_->mutex);
        notBegun.swap(state_->pending);
        for (auto& op : state_->running)
            op->cancel();
        if (state_->isEmpty()) state_->allDone.notify_all();
    }
    // Finished here rather than by a worker, so their completion blocks run
    // at once and waiters aren't held up by work that will never be done.
    for (auto& op : notBegun) {
        op->cancel();
        op->start();
    }
}

void OperationQueue::waitUntilAllOperationsAreFinished() {
    if (isCurrentQueue())
        throw std::logic_error(
            "waitUntilAllOperationsAreFinished called from an operation of the same queue");
    std::unique_lock lock(state_->mutex);
    state_->allDone.wait(lock, [this] { return state_->isEmpty(); });
}

bool OperationQueue::isSuspended() const {
    std::lock_guard lock(state_->mutex);
    return state_->suspended;
}

void OperationQueue::setSuspended(bool suspended) {
    std::lock_guard lock(state_->mutex);
    state_->suspended = suspended;
    state_->spawnIfNeeded(state_);
}

std::vector<OperationRef> OperationQueue::operations() const {
    std::lock_guard lock(state_->mutex);
    std::vector<OperationRef> all(state_->running.begin(), state_->running.end());
    all.insert(all.end(), state_->pending.begin(), state_->pending.end());
    return all;
}

std::size_t OperationQueue::operationCount() const {
    std::lock_guard lock(state_->mutex);
    return state_->running.size() + state_->pending.size();
}

bool OperationQueue::isCurrentQueue() const {
    return currentQueue == state_.get();
}

} // namespace corvane
