#include "corvane/exiftool_wrapper/detail/ETBatchSplit.hpp"

#include <algorithm>
#include <set>

#include "corvane/helpers/FileSystemHelpers.hpp"

namespace corvane::detail {

std::vector<ETInput> splitBatch(const ETInput& input, std::size_t shares) {
    const auto& groups = input.groups();
    std::size_t files = 0;
    std::set<std::filesystem::path> seen;
    for (const auto& group : groups) {
        if (!group.url) continue;
        if (pathExtension(*group.url).empty() || !seen.insert(group.url->lexically_normal()).second)
            return {input};
        ++files;
    }
    shares = std::min(shares, files / minimumFilesPerShare);
    if (shares <= 1) return {input};

    std::vector<ETInput> out(shares);
    std::size_t share = 0, done = 0;
    for (const auto& group : groups) {
        // Share k ends once it holds its part of the files, rounded: files * (k + 1) / shares.
        if (group.url && share + 1 < shares && done >= files * (share + 1) / shares) ++share;
        out[share].addGroup(group);
        if (group.url) ++done;
    }
    for (auto& part : out)
        part.timeLimit = input.timeLimit;
    return out;
}

} // namespace corvane::detail
