#include "corvane/helpers/Operation.hpp"

namespace corvane {

void Operation::setCompletionBlock(std::function<void()> completion) {
    std::lock_guard lock(mutex_);
    completion_ = std::move(completion);
}

void Operation::waitUntilFinished() {
    std::unique_lock lock(mutex_);
    finished_.wait(lock, [this] { return state_.load() == State::finished; });
}

void Operation::start() {
    auto expected = State::ready;
    if (!isCancelled()) {
        if (!state_.compare_exchange_strong(expected, State::executing)) return;
        main();
    } else if (state_.load() != State::ready) {
        return;
    }
    finish();
}

void Operation::main() {
    if (block_) block_();
}

void Operation::finish() {
    std::function<void()> completion;
    {
        std::lock_guard lock(mutex_);
        if (state_.load() == State::finished) return;
        state_.store(State::finished);
        completion = std::move(completion_);
        completion_ = nullptr;
    }
    finished_.notify_all();
    if (completion) completion();
}

} // namespace corvane
