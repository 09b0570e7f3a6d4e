#pragma once

// What the targets share: the input as text, split into the parts a target needs.

#include "corvane/utilities/Error.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace corvane::fuzz {

inline std::string_view text(const uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// The first byte, to choose among a target's variants, and the rest; 0 and the whole input when
// it is empty.
inline std::pair<uint8_t, std::string_view> selectorAndRest(std::string_view input) {
    if (input.empty()) return {0, input};
    return {static_cast<uint8_t>(input.front()), input.substr(1)};
}

// The text before the first line feed and the text after it (empty when there is none).
inline std::pair<std::string_view, std::string_view> firstLineAndRest(std::string_view input) {
    const auto at = input.find('\n');
    if (at == std::string_view::npos) return {input, {}};
    return {input.substr(0, at), input.substr(at + 1)};
}

// A library file read with `File::fromJSONData` and, when it reads, written back; its documented
// errors derive from Error.
template <class File> void readAndWriteBack(std::string_view input) {
    try {
        (void)File::fromJSONData(input).jsonData();
    } catch (const Error&) {
    }
}

} // namespace corvane::fuzz
