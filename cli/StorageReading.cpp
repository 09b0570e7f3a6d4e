#include "StorageReading.hpp"

#include "corvane/tag_storages/ETTagStorageReader.hpp"

#include <filesystem>
#include <iostream>

namespace corvane::cli {

namespace fs = std::filesystem;

std::vector<TagStorage> readStorages(const std::vector<std::string>& paths, int& exitCode) {
    std::vector<TagStorageSource> sources;
    for (const auto& p : paths) {
        // ExifTool fails a whole run on a missing file: leave such files out first.
        std::error_code ec;
        if (!fs::exists(p, ec)) {
            std::cerr << "corvane: " << p << ": no such file\n";
            exitCode = 1;
            continue;
        }
        sources.emplace_back(fs::absolute(p));
    }
    if (sources.empty()) return {};
    ETTagStorageReader::Settings settings(sources);
    settings.setupDefaultBannedValues();
    settings.setIgnoreMinorErrors(true);
    ETTagStorageReader reader(settings);
    TagStorageMap map = reader.readStorages();
    std::vector<TagStorage> storages;
    for (const auto& source : sources) {
        auto it = map.find(source.url());
        if (it == map.end()) {
            std::cerr << "corvane: " << source.url().string() << ": could not be read\n";
            exitCode = 1;
            continue;
        }
        storages.push_back(it->second);
    }
    return storages;
}

} // namespace corvane::cli
