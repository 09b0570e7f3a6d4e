#include "corvane/sidecar_support/SidecarFormat.hpp"

#include <cstddef>

namespace corvane {

namespace {

bool equalsIgnoringASCIICase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        auto lower = [](char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; };
        if (lower(a[i]) != lower(b[i])) return false;
    }
    return true;
}

} // namespace

std::optional<SidecarFormat> sidecarFormat(std::string_view pathExtension) {
    if (!pathExtension.empty() && pathExtension.front() == '.') pathExtension.remove_prefix(1);
    if (equalsIgnoringASCIICase(pathExtension, "json")) return SidecarFormat::json;
    if (equalsIgnoringASCIICase(pathExtension, "csv")) return SidecarFormat::csv;
    return std::nullopt;
}

} // namespace corvane
