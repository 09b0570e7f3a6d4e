#include "corvane/exiftool_wrapper/detail/ETBatchSplit.hpp"

#include <algorithm>
#include <set>

#include "corvane/exiftool_wrapper/detail/ETArgumentFile.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"

namespace corvane::detail {

BatchSplit splitBatch(const ETInput& input, std::size_t processes) {
    const auto& groups = input.groups();
    std::size_t files = 0;
    std::set<std::filesystem::path> seen;
    bool importsRecords = false;
    for (const auto& group : groups) {
        importsRecords = importsRecords || importsRecordsPerTarget(group.arguments);
        if (!group.url) continue;
        if (pathExtension(*group.url).empty() || !seen.insert(group.url->lexically_normal()).second)
            return {1, {input}};
        ++files;
    }
    processes = std::min(processes, files / minimumFilesPerShare);
    if (processes <= 1) return {1, {input}};

    BatchSplit split{processes, {}};
    auto startPiece = [&] {
        split.pieces.emplace_back();
        split.pieces.back().timeLimit = input.timeLimit;
    };
    startPiece();
    std::size_t left = files, size = 0;
    bool holdsFile = false;
    for (const auto& group : groups) {
        if (group.url && holdsFile && size == 0) {
            startPiece();
            holdsFile = false;
        }
        // A piece holds half of what each process would take of the files left when it starts,
        // so the last pieces are small. Groups without a file stay with the piece they follow.
        // A command that imports a file of records reads all of it: such a run takes one piece
        // per process.
        if (group.url && !holdsFile) {
            // Rounded up, so that the last piece ends with the last file.
            const std::size_t parts = importsRecords ? processes + 1 - split.pieces.size() : 2 * processes;
            size = (left + parts - 1) / parts;
            if (!importsRecords) size = std::max(size, minimumFilesPerPiece);
            holdsFile = true;
        }
        split.pieces.back().addGroup(group);
        if (group.url) {
            --left;
            --size;
        }
    }
    return split;
}

} // namespace corvane::detail
