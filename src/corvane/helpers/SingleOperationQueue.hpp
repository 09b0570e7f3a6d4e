#pragma once

#include "corvane/helpers/OperationQueue.hpp"

#include <functional>
#include <string>

namespace corvane {

/// An operation queue that runs one operation at a time, strictly in the order
/// added: each operation sees everything its predecessors did. Table models
/// compute their contents on it, so that one reload runs at a time.
///
/// addOperation() keeps every operation. replacePendingOperations() is for work
/// where only the newest request matters: it cancels the operations that have
/// not begun, so the queue holds at most the running one and the new one.
class SingleOperationQueue {
public:
    /// A serial queue of this name.
    explicit SingleOperationQueue(std::string name = "Corvane.SingleOperationQueue");

    /// The serial queue underneath.
    ///@{
    OperationQueue& queue() { return queue_; }
    const OperationQueue& queue() const { return queue_; }
    ///@}

    /// Adds an operation after those queued.
    OperationRef addOperation(std::function<void()> block) { return queue_.addOperation(std::move(block)); }
    /// Cancels the operations not yet begun, then adds one running `block`.
    OperationRef replacePendingOperations(std::function<void()> block);

    /// As the underlying queue does.
    ///@{
    void cancelAllOperations() { queue_.cancelAllOperations(); }
    void waitUntilAllOperationsAreFinished() { queue_.waitUntilAllOperationsAreFinished(); }
    std::size_t operationCount() const { return queue_.operationCount(); }
    ///@}

private:
    OperationQueue queue_;
};

} // namespace corvane
