#include "corvane/helpers/ConcurrentPerform.hpp"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>

namespace corvane {

void concurrentPerform(std::size_t iterations, const std::function<void(std::size_t)>& body) {
    if (iterations == 0) return;
    const std::size_t cores = std::max(1u, std::thread::hardware_concurrency());
    const std::size_t threads = std::min(iterations, cores);
    if (threads == 1) {
        for (std::size_t i = 0; i < iterations; ++i)
            body(i);
        return;
    }

    // Iterations are handed out one by one from a shared counter, so uneven
    // bodies balance across threads.
    std::atomic<std::size_t> next{0};
    std::exception_ptr firstError;
    std::mutex errorMutex;
    auto run = [&] {
        for (std::size_t i; (i = next.fetch_add(1, std::memory_order_relaxed)) < iterations;) {
            try {
                body(i);
            } catch (...) {
                std::lock_guard lock(errorMutex);
                if (!firstError) firstError = std::current_exception();
            }
        }
    };
    std::vector<std::thread> helpers;
    helpers.reserve(threads - 1);
    for (std::size_t t = 1; t < threads; ++t)
        helpers.emplace_back(run);
    run();
    for (auto& h : helpers)
        h.join();
    if (firstError) std::rethrow_exception(firstError);
}

} // namespace corvane
