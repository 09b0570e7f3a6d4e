#include "corvane/utilities/Date.hpp"

#include <chrono>
#include <cmath>
#include <ctime>

namespace corvane {

Date Date::now() {
    using namespace std::chrono;
    auto us = duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
    return Date(static_cast<double>(us) / 1e6);
}

std::string Date::description() const {
    std::time_t t = static_cast<std::time_t>(std::floor(seconds_));
    std::tm tm{};
    gmtime_r(&t, &tm);
    char buf[64];
    std::strftime(buf, sizeof buf, "%Y-%m-%d %H:%M:%S +0000", &tm);
    return buf;
}

} // namespace corvane
