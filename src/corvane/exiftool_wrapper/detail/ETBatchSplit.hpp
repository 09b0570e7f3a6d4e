#pragma once

// Cutting one large ExifTool run into pieces for several processes of a pool, and putting their
// outcomes back together as if one process had done the whole run.

#include <cstddef>
#include <vector>

#include "corvane/exiftool_wrapper/ETInput.hpp"

namespace corvane::detail {

// Fewer files than this per process don't pay for the extra process and the merging.
inline constexpr std::size_t minimumFilesPerShare = 20;
// The smallest piece a process takes at a time. A command of a process that stays open costs
// ExifTool about 0.3 ms, a JPEG about 6 ms: pieces this small at the end have the processes end
// within a dozen milliseconds of each other (with pieces of eight files, up to 50 ms apart).
inline constexpr std::size_t minimumFilesPerPiece = 2;

// How a large run is shared: `processes` processes take the pieces in order, each the next one
// as soon as it is done with its last.
struct BatchSplit {
    std::size_t processes = 1;
    std::vector<ETInput> pieces;
};

// The input's groups cut into contiguous pieces, in order, with the input's time limit and no
// handlers, for at most `processes` processes and at least `minimumFilesPerShare` files each. The
// pieces shrink as the batch goes (each a share of the files left), so that the processes end
// about together however much the files cost to read: a fixed share each would leave a processor
// idle while the process given the slower files goes on. Commands that import a file of records
// ("-json=FILE") are cut into one piece per process instead, as ExifTool reads the whole file for
// each command. A single piece (the input itself) for one process when the input is too small, or
// when it can't be run in parts safely: when a target is a folder (ExifTool may find there the
// files of other groups), or when two groups name the same file (two processes would then change
// it at once).
BatchSplit splitBatch(const ETInput& input, std::size_t processes);

} // namespace corvane::detail
