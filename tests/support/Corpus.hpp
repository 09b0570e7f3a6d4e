#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace corvane::test {

// The shared camera corpus: $CORVANE_CORPUS (ctest sets it), else ../shared/corpus beside the
// source tree. The folder may be absent; tests over it skip with a message then.
std::filesystem::path corpusFolder();

// One line of the corpus's INDEX.tsv: each cell under the name of its column ("dest" is the path
// under the corpus folder, "ft_ext" ExifTool's extension, "error" and "warning" what ExifTool said).
using CorpusEntry = std::map<std::string, std::string>;

// The lines of INDEX.tsv in the folder, in order; empty when there is none. Header-only, so that
// the benchmarks can use it too.
inline std::vector<CorpusEntry> corpusIndex(const std::filesystem::path& root) {
    std::ifstream index(root / "INDEX.tsv");
    auto split = [](const std::string& text) {
        std::vector<std::string> cells;
        std::stringstream stream(text);
        for (std::string cell; std::getline(stream, cell, '\t');)
            cells.push_back(cell);
        if (!text.empty() && text.back() == '\t') cells.emplace_back();
        return cells;
    };
    std::string line;
    if (!std::getline(index, line)) return {};
    const auto header = split(line);
    std::vector<CorpusEntry> entries;
    while (std::getline(index, line)) {
        const auto cells = split(line);
        CorpusEntry entry;
        for (std::size_t i = 0; i < std::min(cells.size(), header.size()); ++i)
            entry.emplace(header[i], cells[i]);
        entries.push_back(std::move(entry));
    }
    return entries;
}

} // namespace corvane::test
