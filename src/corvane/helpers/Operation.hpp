#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace corvane {

class OperationQueue;

/// One unit of work for an OperationQueue. Lives in a std::shared_ptr; subclass
/// and override main(), or give a block.
///
/// States: ready, then executing, then finished. An operation cancelled before
/// it began goes straight to finished without running main(). Cancelling a
/// running operation only sets isCancelled(), which main() may look at.
/// The completion block runs once, after finishing (also after a cancellation),
/// on the thread that finished the operation.
class Operation : public std::enable_shared_from_this<Operation> {
public:
    Operation() = default;
    /// An operation that runs `block`.
    explicit Operation(std::function<void()> block) : block_(std::move(block)) {}
    virtual ~Operation() = default;
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    /// Whether `cancel()` was called; whether it is running; whether it has ended (run, or skipped
    /// after a cancel).
    ///@{
    bool isCancelled() const { return cancelled_.load(std::memory_order_acquire); }
    bool isExecuting() const { return state_.load(std::memory_order_acquire) == State::executing; }
    bool isFinished() const { return state_.load(std::memory_order_acquire) == State::finished; }
    ///@}

    /// Marks the operation cancelled: one not yet begun won't run its block; a running one goes on.
    void cancel() { cancelled_.store(true, std::memory_order_release); }

    /// Set before the operation is added to a queue.
    void setCompletionBlock(std::function<void()> completion);

    /// Blocks until the operation has finished. Not to be called from the
    /// operation itself.
    void waitUntilFinished();

    /// Runs the operation on the calling thread: main(), unless cancelled.
    /// Does nothing if it has already begun.
    void start();

protected:
    /// The work. The default runs the block given at construction.
    virtual void main();

private:
    friend class OperationQueue;
    enum class State { ready, executing, finished };

    bool markEnqueued() { return !enqueued_.exchange(true); }
    void finish();

    std::function<void()> block_;
    std::function<void()> completion_;
    std::atomic<bool> cancelled_{false};
    std::atomic<bool> enqueued_{false};
    std::atomic<State> state_{State::ready};
    std::mutex mutex_;
    std::condition_variable finished_;
};

/// The shared handle queues hold operations by.
using OperationRef = std::shared_ptr<Operation>;

} // namespace corvane
