// Storages built in memory for the comparison tests.

#pragma once

#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/tag_value/TagName.hpp"

#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace corvane::test {

inline TagName name(std::string_view raw) {
    return *TagName::fromRawValue(raw);
}

// A storage of the file at `path` whose tags were read as `tags`.
inline TagStorage storageWith(std::string_view path,
                              std::initializer_list<std::pair<std::string_view, std::string>> tags) {
    TagStorage storage{TagStorageSource(std::filesystem::path(path))};
    for (const auto& [raw, value] : tags)
        storage.setOriginalValue(value, name(raw));
    return storage;
}

} // namespace corvane::test
