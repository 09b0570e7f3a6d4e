// Storages read back through ExifTool, and their values compared whole.

#pragma once

#include "corvane/tag_storages/ETTagStorageReader.hpp"

#include "support/StorageValues.hpp"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace corvane::test {

// The storages of `sources` as an import reads them: ExifTool with the default banned values.
inline ETTagStorageReader::Settings defaultSettings(std::vector<TagStorageSource> sources) {
    ETTagStorageReader::Settings settings(std::move(sources));
    settings.setupDefaultBannedValues();
    return settings;
}

inline TagStorageMap readWithExifTool(std::vector<TagStorageSource> sources) {
    return ETTagStorageReader(defaultSettings(std::move(sources))).readStorages();
}

// Values by "Family:Key"; an absent tag is nullopt.
using Values = std::map<std::string, std::optional<std::string>>;

// The storage's original values of the tags `expected` names, for EXPECT_EQ(valuesOf(s, expected), expected).
inline Values valuesOf(const TagStorage& storage, const Values& expected) {
    Values actual;
    for (const auto& [raw, value] : expected)
        actual[raw] = originalValue(storage, raw);
    return actual;
}

} // namespace corvane::test
