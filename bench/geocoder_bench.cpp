// Reverse-geocodes 10,000 random coordinates with the offline GeoNames geocoder. Prints the time of
// the one-off index build and of the whole pass before the per-look-up Google Benchmark figures.
#include "corvane/location_support/GeoNamesGeocoder.hpp"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <random>
#include <vector>

using namespace corvane;

namespace {

constexpr std::size_t kCount = 10000;

std::vector<Coordinate> makeCoordinates() {
    std::mt19937 rng(7);
    // Uniform on the sphere: most points fall at sea, beyond every city's reach.
    std::uniform_real_distribution<double> z(-1.0, 1.0);
    std::uniform_real_distribution<double> longitude(-180.0, 180.0);
    std::vector<Coordinate> coordinates;
    coordinates.reserve(kCount);
    for (std::size_t i = 0; i < kCount; ++i)
        coordinates.emplace_back(std::asin(z(rng)) * 180.0 / M_PI, longitude(rng));
    return coordinates;
}

const std::vector<Coordinate>& coordinates() {
    static const std::vector<Coordinate> all = makeCoordinates();
    return all;
}

void BM_ReverseGeocodeRandom(benchmark::State& state) {
    const GeoNamesGeocoder geocoder;
    const auto& all = coordinates();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(geocoder.reverseGeocode(all[i]));
        i = (i + 1) % all.size();
    }
}
BENCHMARK(BM_ReverseGeocodeRandom);

void BM_ReverseGeocodeUnlimitedReach(benchmark::State& state) {
    const GeoNamesGeocoder geocoder(1e9);
    const auto& all = coordinates();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(geocoder.reverseGeocode(all[i]));
        i = (i + 1) % all.size();
    }
}
BENCHMARK(BM_ReverseGeocodeUnlimitedReach);

} // namespace

int main(int argc, char** argv) {
    using Clock = std::chrono::steady_clock;
    auto ms = [](Clock::duration d) { return std::chrono::duration<double, std::milli>(d).count(); };

    auto start = Clock::now();
    std::size_t cities = GeoNamesGeocoder::prepare();
    std::printf("Index of %zu cities built in %.1f ms\n", cities, ms(Clock::now() - start));
    if (cities == 0) {
        std::printf("No GeoNames database: nothing to measure\n");
        return 0;
    }

    const auto& all = coordinates();
    for (double reach : {GeoNamesGeocoder::defaultMaximumDistance, 1e9}) {
        const GeoNamesGeocoder geocoder(reach);
        std::size_t found = 0;
        start = Clock::now();
        for (const auto& coordinate : all)
            found += geocoder.reverseGeocode(coordinate).has_value();
        std::printf("Reverse-geocoded %zu coordinates in %.1f ms (%zu within %.0f km of a city)\n",
                    all.size(), ms(Clock::now() - start), found, reach / 1000);
    }

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
