// Reads one camera file per format of the shared corpus in one batch: nothing may fail, and every
// file that ExifTool reads without error gets a storage. Skips when the corpus is absent.

#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "support/Corpus.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <map>

namespace corvane {
namespace {

namespace fs = std::filesystem;

struct CorpusFile {
    fs::path path;
    std::string type;
    bool readsCleanly = true;
};

// The first file of each format (by ExifTool's extension) of the corpus index.
std::vector<CorpusFile> onePerFormat(const fs::path& root) {
    std::map<std::string, CorpusFile> byType;
    for (auto& entry : test::corpusIndex(root)) {
        const std::string& type = entry["ft_ext"];
        const fs::path path = root / entry["dest"];
        if (type.empty() || byType.contains(type) || !fs::exists(path)) continue;
        byType.emplace(type, CorpusFile{path, type, entry["error"].empty()});
    }
    std::vector<CorpusFile> files;
    for (auto& [type, file] : byType)
        files.push_back(std::move(file));
    return files;
}

TEST(ETCorpusRead, OneFilePerFormatReadsInOneBatch) {
    const fs::path root = test::corpusFolder();
    if (!fs::exists(root / "INDEX.tsv")) GTEST_SKIP() << "no corpus at " << root;
    const auto files = onePerFormat(root);
    if (files.empty()) GTEST_SKIP() << "the corpus index lists no file that exists";

    std::vector<TagStorageSource> sources;
    for (const auto& file : files)
        sources.emplace_back(file.path);
    ETTagStorageReader::Settings settings(sources);
    settings.setupDefaultBannedValues();
    settings.setIgnoreMinorErrors(true);
    ETTagStorageReader reader(settings);

    const auto start = std::chrono::steady_clock::now();
    TagStorageMap storages;
    ASSERT_NO_THROW(storages = reader.readStorages());
    const auto read = std::chrono::steady_clock::now();

    std::size_t values = 0;
    for (const auto& file : files) {
        const auto it = storages.find(file.path);
        if (!file.readsCleanly) continue;
        ASSERT_NE(it, storages.end()) << file.type << ": " << file.path;
        const TagStorage& storage = it->second;
        EXPECT_TRUE(storage.originalStreams().contains(TagStream::streamFile)) << file.path;
        EXPECT_EQ(storage.originalValues().at(TagItem::itemFileFileName().name()),
                  file.path.filename().string());
        values += storage.originalValues().size();
    }

    // Decoding must not show next to ExifTool's own time.
    const std::string data = reader.process().output().data();
    const auto decodeStart = std::chrono::steady_clock::now();
    const auto decoded = reader.parseExifToolOutput(data, sources);
    const auto decodeEnd = std::chrono::steady_clock::now();
    EXPECT_EQ(decoded.size(), storages.size());
    const auto ms = [](auto d) { return std::chrono::duration<double, std::milli>(d).count(); };
    std::cout << "[corpus] " << files.size() << " formats, " << storages.size() << " storages, " << values
              << " values, " << data.size() << " bytes of JSON; read " << ms(read - start) << " ms, decode "
              << ms(decodeEnd - decodeStart) << " ms\n";
    EXPECT_LT(ms(decodeEnd - decodeStart), ms(read - start) / 5);
}

} // namespace
} // namespace corvane
