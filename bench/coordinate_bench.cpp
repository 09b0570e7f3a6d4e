// Parses 100,000 coordinate strings written in every notation of the writer,
// plus hand-typed shapes, and prints the total time of one full pass before
// the per-string Google Benchmark figures.
#include "corvane/value_models/CoordinateParser.hpp"
#include "corvane/value_models/CoordinateWriter.hpp"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

using namespace corvane;

namespace {

constexpr size_t kCount = 100000;

std::vector<std::string> makeInputs() {
    std::mt19937 rng(42);
    std::uniform_real_distribution<double> latitude(-89.9, 89.9);
    std::uniform_real_distribution<double> longitude(-179.9, 179.9);
    const CoordinateWriter w;
    std::vector<std::string> inputs;
    inputs.reserve(kCount);
    for (size_t i = 0; inputs.size() < kCount; ++i) {
        const Coordinate c(latitude(rng), longitude(rng));
        switch (i % 10) {
        case 0:
            inputs.push_back(w.iso6709(c));
            break;
        case 1:
            inputs.push_back(w.DDddddd(c));
            break;
        case 2:
            inputs.push_back(w.preDDddddd(c));
            break;
        case 3:
            inputs.push_back(w.postDDddddd(c));
            break;
        case 4:
            inputs.push_back(w.preDDMMmmm(c));
            break;
        case 5:
            inputs.push_back(w.postDDMMmmm(c));
            break;
        case 6:
            inputs.push_back(w.preDDMMSSs(c));
            break;
        case 7:
            inputs.push_back(w.postDDMMSSs(c));
            break;
        case 8:
            inputs.push_back(c.description() + " near the old harbour");
            break;
        default:
            inputs.push_back("not a position " + std::to_string(i));
            break;
        }
    }
    return inputs;
}

const std::vector<std::string>& inputs() {
    static const std::vector<std::string> all = makeInputs();
    return all;
}

void BM_CoordinateFromMixedStrings(benchmark::State& state) {
    const auto& all = inputs();
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CoordinateParser::coordinate(all[i]));
        if (++i == all.size()) i = 0;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_CoordinateFromMixedStrings);

void BM_LatitudeFromDecimalString(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(CoordinateParser::latitude("45,5 N"));
}
BENCHMARK(BM_LatitudeFromDecimalString);

} // namespace

int main(int argc, char** argv) {
    const auto& all = inputs();
    CoordinateParser::coordinate(all.front()); // compiles the patterns
    const auto start = std::chrono::steady_clock::now();
    size_t parsed = 0;
    for (const auto& s : all)
        parsed += CoordinateParser::coordinate(s).has_value();
    const double ms =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    std::printf("Parsed %zu of %zu coordinate strings in %.1f ms (%.2f us per string)\n", parsed, all.size(),
                ms, ms * 1000.0 / static_cast<double>(all.size()));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
