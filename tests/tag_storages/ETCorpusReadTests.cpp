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
#include <sstream>

namespace corvane {
namespace {

namespace fs = std::filesystem;

struct CorpusFile {
    fs::path path;
    std::string type;
    bool readsCleanly = true;
};

// The first file of each format (by ExifTool's extension) from INDEX.tsv, whose columns are
// named on its first line.
std::vector<CorpusFile> onePerFormat(const fs::path& root) {
    std::ifstream index(root / "INDEX.tsv");
    std::string line;
    if (!std::getline(index, line)) return {};
    auto split = [](const std::string& text) {
        std::vector<std::string> cells;
        std::stringstream stream(text);
        std::string cell;
        while (std::getline(stream, cell, '\t'))
            cells.push_back(cell);
        if (!text.empty() && text.back() == '\t') cells.emplace_back();
        return cells;
    };
    const auto header = split(line);
    auto column = [&](std::string_view name) {
        return static_cast<std::size_t>(std::find(header.begin(), header.end(), name) - header.begin());
    };
    const std::size_t dest = column("dest"), ext = column("ft_ext"), error = column("error");
    std::map<std::string, CorpusFile> byType;
    while (std::getline(index, line)) {
        const auto cells = split(line);
        if (cells.size() <= std::max(dest, ext) || cells[ext].empty()) continue;
        const fs::path path = root / cells[dest];
        if (!fs::exists(path) || byType.contains(cells[ext])) continue;
        const bool clean = error >= cells.size() || cells[error].empty();
        byType.emplace(cells[ext], CorpusFile{path, cells[ext], clean});
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
