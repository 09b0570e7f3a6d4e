#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagName.hpp"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <ctime>

using namespace corvane;

// The catalogue loads on first use; time that once, in this fresh process,
// before any benchmark touches it.
static const double firstLoadMilliseconds = [] {
    // Wall time and this thread's CPU time: on a busy machine the two differ.
    timespec cpuStart{}, cpuEnd{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &cpuStart);
    auto start = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(TagItem::allCases().size());
    auto end = std::chrono::steady_clock::now();
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &cpuEnd);
    double ms = std::chrono::duration<double, std::milli>(end - start).count();
    double cpuMs = (cpuEnd.tv_sec - cpuStart.tv_sec) * 1e3 + (cpuEnd.tv_nsec - cpuStart.tv_nsec) / 1e6;
    std::printf("First catalogue load: %.2f ms wall, %.2f ms CPU (%zu entries)\n", ms, cpuMs,
                TagItem::allCases().size());
    return ms;
}();

static void BM_TagNameItem(benchmark::State& state) {
    const TagName names[] = {*TagName::fromRawValue("EXIF:Artist"), *TagName::fromRawValue("XMP:Subject"),
                             *TagName::fromRawValue("Nikon:ShutterCount"),
                             *TagName::fromRawValue("QuickTime:NoSuchKey")};
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(names[i++ & 3].item());
}
BENCHMARK(BM_TagNameItem);

static void BM_TagStreamIndex(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(TagStream::streamQuickTime.index());
}
BENCHMARK(BM_TagStreamIndex);

static void BM_CgName(benchmark::State& state) {
    const TagName name = *TagName::fromRawValue("EXIF:ExposureTime");
    for (auto _ : state)
        benchmark::DoNotOptimize(name.cgName());
}
BENCHMARK(BM_CgName);

BENCHMARK_MAIN();
