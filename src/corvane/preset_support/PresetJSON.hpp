#pragma once

#include "corvane/tag_value/TagName.hpp"

#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {

// Shared pieces of the presets' JSON form.

/// The JSON texts of a preset setting's enumeration: one row per case, in case order.
template <class E, std::size_t N> using PresetEnumTable = std::array<std::pair<E, std::string_view>, N>;

/// The JSON text of `value` in `table`.
template <class E, std::size_t N>
std::string_view presetEnumText(const PresetEnumTable<E, N>& table, E value) {
    for (const auto& [c, text] : table)
        if (c == value) return text;
    return {};
}

/// The case written as `text` (exact, case-sensitive); any other text is a decoding error.
template <class E, std::size_t N>
E presetEnumFromText(const PresetEnumTable<E, N>& table, std::string_view text, std::string_view what) {
    for (const auto& [c, t] : table)
        if (t == text) return c;
    throw std::invalid_argument("Unknown " + std::string(what) + " \"" + std::string(text) + "\"");
}

/// A tag name written as its raw value ("EXIF:Artist"); anything else is a decoding error.
inline TagName decodedTagName(const nlohmann::ordered_json& j) {
    const auto text = j.get<std::string>();
    auto name = TagName::fromRawValue(text);
    if (!name) throw std::invalid_argument("Not a tag name: \"" + text + "\"");
    return std::move(*name);
}

} // namespace corvane
