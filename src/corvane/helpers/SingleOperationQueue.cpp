#include "corvane/helpers/SingleOperationQueue.hpp"

namespace corvane {

SingleOperationQueue::SingleOperationQueue(std::string name) : queue_(std::move(name), 1) {}

OperationRef SingleOperationQueue::replacePendingOperations(std::function<void()> block) {
    // Cancelling pending operations makes them finish without running; the one
    // running (if any) goes on and the new one runs after it.
    for (const auto& op : queue_.operations())
        if (!op->isExecuting()) op->cancel();
    return queue_.addOperation(std::move(block));
}

} // namespace corvane
