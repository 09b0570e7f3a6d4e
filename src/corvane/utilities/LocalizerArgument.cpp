#include "corvane/utilities/LocalizerArgument.hpp"

#include <cstdio>
#include <cstdlib>

namespace corvane {

long long LocalizerArgument::integer() const {
    if (auto i = std::get_if<long long>(&value_)) return *i;
    if (auto d = std::get_if<double>(&value_)) return static_cast<long long>(*d);
    return std::strtoll(std::get<std::string>(value_).c_str(), nullptr, 10);
}

double LocalizerArgument::number() const {
    if (auto i = std::get_if<long long>(&value_)) return static_cast<double>(*i);
    if (auto d = std::get_if<double>(&value_)) return *d;
    return std::strtod(std::get<std::string>(value_).c_str(), nullptr);
}

std::string LocalizerArgument::text() const {
    if (auto s = std::get_if<std::string>(&value_)) return *s;
    if (auto i = std::get_if<long long>(&value_)) return std::to_string(*i);
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%g", std::get<double>(value_));
    return buffer;
}

} // namespace corvane
