#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <type_traits>
#include <unordered_set>
#include <utility>
#include <vector>

namespace corvane {

/// Runs body(0) ... body(iterations - 1) in parallel on the calling thread and the
/// library's worker threads (one per further core, started once and kept), and
/// returns when all have run. Iterations run in no particular order; a body may
/// itself call concurrentPerform. If bodies throw, the first exception is
/// rethrown after all iterations have ended.
void concurrentPerform(std::size_t iterations, const std::function<void(std::size_t)>& body);

/// The results of transform over `input`, computed in parallel, in input order.
template <class T, class F>
auto parallelMap(const std::vector<T>& input, F&& transform)
    -> std::vector<std::invoke_result_t<F&, const T&>> {
    using R = std::invoke_result_t<F&, const T&>;
    std::vector<std::optional<R>> slots(input.size());
    concurrentPerform(input.size(), [&](std::size_t i) { slots[i].emplace(transform(input[i])); });
    std::vector<R> result;
    result.reserve(input.size());
    for (auto& slot : slots)
        result.push_back(std::move(*slot));
    return result;
}

/// parallelMap that drops the absent results of a transform yielding std::optional.
template <class T, class F>
auto parallelCompactMap(const std::vector<T>& input, F&& transform)
    -> std::vector<typename std::invoke_result_t<F&, const T&>::value_type> {
    using R = typename std::invoke_result_t<F&, const T&>::value_type;
    std::vector<std::optional<R>> slots(input.size());
    concurrentPerform(input.size(), [&](std::size_t i) { slots[i] = transform(input[i]); });
    std::vector<R> result;
    result.reserve(input.size());
    for (auto& slot : slots)
        if (slot) result.push_back(std::move(*slot));
    return result;
}

/// parallelMap gathered into a set (std::set, or std::unordered_set via Set).
template <template <class...> class Set = std::set, class T, class F>
auto parallelMapToSet(const std::vector<T>& input, F&& transform) -> Set<std::invoke_result_t<F&, const T&>> {
    auto values = parallelMap(input, std::forward<F>(transform));
    return Set<std::invoke_result_t<F&, const T&>>(std::make_move_iterator(values.begin()),
                                                   std::make_move_iterator(values.end()));
}

} // namespace corvane
