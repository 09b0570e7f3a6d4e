#include "corvane/helpers/AtomicPropertyQueue.hpp"

#include "corvane/helpers/MainQueue.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace corvane {

namespace {
// Guards whose pass is open on this thread, innermost last.
thread_local std::vector<const AtomicPropertyQueue*> openPasses;
} // namespace

void AtomicPropertyQueue::mainAsync(std::function<void()> execute) {
    corvane::mainAsync(std::move(execute));
}

bool AtomicPropertyQueue::isInPassOnCurrentThread() const {
    return std::find(openPasses.begin(), openPasses.end(), this) != openPasses.end();
}

#ifndef NDEBUG
AtomicPropertyQueue::PassMarker::PassMarker(const AtomicPropertyQueue* owner) : owner_(owner) {
    if (owner->isInPassOnCurrentThread()) {
        std::fprintf(stderr, "Fatal error: re-entrant pass on %.*s\n", static_cast<int>(label.size()),
                     label.data());
        std::abort();
    }
    openPasses.push_back(owner);
}

AtomicPropertyQueue::PassMarker::~PassMarker() {
    auto it = std::find(openPasses.rbegin(), openPasses.rend(), owner_);
    if (it != openPasses.rend()) openPasses.erase(std::next(it).base());
}
#endif

} // namespace corvane
