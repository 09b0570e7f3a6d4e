// Tag names and storage values written the way tests read best: "Family:Key" texts.

#pragma once

#include "corvane/tag_storages/TagStorage.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace corvane::test {

// The tag named "Family:Key"; a name that doesn't parse fails the test.
inline TagName tagName(std::string_view raw) {
    auto name = TagName::fromRawValue(raw);
    EXPECT_TRUE(name.has_value()) << raw;
    return name.value_or(TagName());
}

// The value read from the file for "Family:Key", if any.
inline std::optional<std::string> originalValue(const TagStorage& storage, std::string_view raw) {
    const auto name = TagName::fromRawValue(raw);
    const auto found = name ? storage.originalValues().find(*name) : storage.originalValues().end();
    return found == storage.originalValues().end() ? std::nullopt : std::optional(found->second);
}

// Sets each "Family:Key" to its value as an edit, without the storage's checks.
inline void edit(TagStorage& storage, const std::map<std::string, std::string>& values) {
    for (const auto& [raw, value] : values)
        storage.unsafeSetValue(value, tagName(raw));
}

// A storage of `path` with nothing read and `values` as its edits.
inline TagStorage edited(const std::filesystem::path& path,
                         const std::map<std::string, std::string>& values) {
    TagStorage storage{TagStorageSource(path)};
    edit(storage, values);
    return storage;
}

} // namespace corvane::test
