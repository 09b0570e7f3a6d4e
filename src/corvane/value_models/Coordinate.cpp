#include "corvane/value_models/Coordinate.hpp"

#include <charconv>
#include <cmath>
#include <cstdlib>

namespace corvane {

namespace {

// The shortest text that reads back to the same double: plain decimals with at
// least one fractional digit ("40.0") for magnitudes from 1e-4 up to 1e16, and
// the exponent form ("1e-05", "1e+16") beyond.
std::string shortestText(double v) {
    if (std::isnan(v)) return "nan";
    if (std::isinf(v)) return v < 0 ? "-inf" : "inf";
    char buf[64];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::scientific);
    std::string sci(buf, end);
    const size_t e = sci.find('e');
    const int exponent = std::atoi(sci.c_str() + e + 1);
    if (v != 0 && (exponent < -4 || exponent >= 16)) {
        std::string mantissa = sci.substr(0, e);
        const char sign = exponent < 0 ? '-' : '+';
        const int absExp = std::abs(exponent);
        return mantissa + "e" + sign + (absExp < 10 ? "0" : "") + std::to_string(absExp);
    }
    auto [fend, fec] = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::fixed);
    std::string fixed(buf, fend);
    if (fixed.find('.') == std::string::npos) fixed += ".0";
    return fixed;
}

} // namespace

const Coordinate& Coordinate::zero() {
    static const Coordinate z(0.0, 0.0);
    return z;
}

std::string Coordinate::description() const {
    return shortestText(latitude_.value()) + ", " + shortestText(longitude_.value());
}

} // namespace corvane
