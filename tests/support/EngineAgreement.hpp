// The two reading engines side by side on the same files: which tags both read, and where their
// values differ. Header-only, shared by the engine tests and the engine benchmark.
#pragma once

#include "corvane/tag_storages/CGTagStorageReader.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "support/Corpus.hpp"

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace corvane::test {

// One tag that both engines read with different values.
struct EngineDisagreement {
    std::filesystem::path file;
    TagName tag;
    std::string exifTool;
    std::string imageIO;
};

struct EngineAgreement {
    std::size_t compared = 0;
    std::vector<EngineDisagreement> disagreements;
    // Tags with an image I/O name that ExifTool read and the in-process engine didn't, by tag.
    std::map<TagName, std::size_t> missed;
    // Files the in-process engine couldn't open, with its error.
    std::vector<std::pair<std::filesystem::path, std::string>> unreadable;

    double ratio() const {
        return compared ? 1.0 - static_cast<double>(disagreements.size()) / static_cast<double>(compared)
                        : 1.0;
    }
};

// The files of the corpus's INDEX.tsv whose first path component is one of `folders` ("jpeg",
// "tiff"), in index order; with `cleanOnly`, only those ExifTool reads without error or warning.
inline std::vector<std::filesystem::path>
corpusFiles(const std::filesystem::path& root, const std::vector<std::string>& folders, bool cleanOnly) {
    std::vector<std::filesystem::path> files;
    for (auto& entry : corpusIndex(root)) {
        const std::string& dest = entry["dest"];
        const std::string folder = dest.substr(0, dest.find('/'));
        if (std::find(folders.begin(), folders.end(), folder) == folders.end()) continue;
        if (cleanOnly && !(entry["error"].empty() && entry["warning"].empty())) continue;
        if (std::filesystem::exists(root / dest)) files.push_back(root / dest);
    }
    return files;
}

// A value in its canonical form, so that "1.5" and "1.50000000" count as the same number.
inline std::string canonical(const TagName& tag, const std::string& value) {
    const TagItem* item = TagItem::find(tag);
    if (!item) return value;
    return item->converter()->stringValueFromStringValue(value).value_or(value);
}

// Reads the files with both engines (ExifTool in one batch, as an import does) and compares every
// tag that both read, File family aside (both take it from the file system).
inline EngineAgreement compareEngines(const std::vector<std::filesystem::path>& files) {
    std::vector<TagStorageSource> sources;
    for (const auto& file : files)
        sources.emplace_back(file);
    ETTagStorageReader::Settings settings(sources);
    settings.setEnableRawValues(true);
    settings.setEnableShortTags(true);
    settings.setDisableComposite(true);
    settings.setIgnoreMinorErrors(true);
    settings.setupDefaultBannedValues();
    const TagStorageMap exifTool = ETTagStorageReader(settings).readStorages();

    EngineAgreement agreement;
    const CGTagStorageReader imageIO{CGTagStorageReader::Settings()};
    for (const auto& source : sources) {
        auto et = exifTool.find(source.url());
        if (et == exifTool.end()) continue;
        TagStorage cg(source);
        try {
            cg = imageIO.read(source);
        } catch (const std::exception& e) {
            agreement.unreadable.emplace_back(source.url(), e.what());
            continue;
        }
        for (const auto& [tag, value] : cg.originalValues()) {
            if (tag.stream() == TagStream::streamFile) continue;
            auto other = et->second.originalValues().find(tag);
            if (other == et->second.originalValues().end()) continue;
            ++agreement.compared;
            if (canonical(tag, value) != canonical(tag, other->second))
                agreement.disagreements.push_back({source.url(), tag, other->second, value});
        }
        for (const auto& [tag, value] : et->second.originalValues())
            if (tag.stream() != TagStream::streamFile && tag.cgName() && !cg.originalValues().contains(tag))
                ++agreement.missed[tag];
    }
    return agreement;
}

} // namespace corvane::test
