#pragma once

#include "corvane/helpers/Operation.hpp"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace corvane {

/// Runs operations on threads of its own, in the order added, at most
/// maxConcurrentOperationCount at a time. Threads are made when work arrives,
/// never more than the width, and end after a while without work.
///
/// Destroying the queue waits for the operations already added, unless it is
/// destroyed from one of its own operations, in which case the remaining work
/// goes on and the threads end by themselves.
///
/// An exception escaping an operation ends the process, as it would on any
/// std::thread: operations handle their own failures.
class OperationQueue {
public:
    static constexpr int defaultMaxConcurrentOperationCount = -1; ///< as many as the machine has cores

    /// A queue running at most `maxConcurrentOperationCount` operations at once (-1: one per core;
    /// 1: a serial queue).
    explicit OperationQueue(std::string name = {},
                            int maxConcurrentOperationCount = defaultMaxConcurrentOperationCount);
    ~OperationQueue();
    OperationQueue(const OperationQueue&) = delete;
    OperationQueue& operator=(const OperationQueue&) = delete;

    /// The name, for logs and thread names.
    ///@{
    std::string name() const;
    void setName(std::string name);
    ///@}

    /// How many operations may run at once (-1: one per core).
    ///@{
    int maxConcurrentOperationCount() const;
    void setMaxConcurrentOperationCount(int count);
    ///@}

    /// Adds an operation not yet in any queue (std::invalid_argument otherwise).
    void addOperation(const OperationRef& operation);
    /// Adds an operation that runs `block`, and gives it.
    OperationRef addOperation(std::function<void()> block);

    /// Cancels every operation of the queue. Those not yet begun finish without
    /// running; running ones see isCancelled() and are left to end by themselves.
    void cancelAllOperations();

    /// Blocks until every operation added so far has finished. Must not be
    /// called from an operation of this queue (std::logic_error).
    void waitUntilAllOperationsAreFinished();

    /// While suspended, no further operation begins; running ones go on.
    bool isSuspended() const;
    void setSuspended(bool suspended); ///< see `isSuspended`

    /// Operations added and not yet finished, in order of adding.
    std::vector<OperationRef> operations() const;
    std::size_t operationCount() const; ///< the number of `operations()`

    /// True on a thread of this queue while it runs one of its operations.
    bool isCurrentQueue() const;

    struct State;

private:
    std::shared_ptr<State> state_;
};

} // namespace corvane
