#pragma once

// Cutting one large ExifTool run into shares for several processes of a pool, and putting their
// outcomes back together as if one process had done the whole run.

#include <cstddef>
#include <vector>

#include "corvane/exiftool_wrapper/ETInput.hpp"

namespace corvane::detail {

// Fewer files than this per share don't pay for the extra process and the merging.
inline constexpr std::size_t minimumFilesPerShare = 20;

// The input's groups cut into at most `shares` contiguous inputs holding about the same number of
// files, at least `minimumFilesPerShare` each, with the input's time limit and no handlers. A
// single share (the input itself) when the input is too small, or when it can't be run in parts
// safely: when a target is a folder (ExifTool may find there the files of other groups), or when
// two groups name the same file (two processes would then change it at once).
std::vector<ETInput> splitBatch(const ETInput& input, std::size_t shares);

} // namespace corvane::detail
