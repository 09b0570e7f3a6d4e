#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace corvane::detail {

// The outcome of one run of an external program other than ExifTool (AtomicParsley).
struct ProgramRun {
    // The errno of a failed start (ENOENT: no such program); 0 when it started.
    int launchError = 0;
    bool timedOut = false;
    // The exit status when the program ended by itself.
    std::optional<int> exitStatus;
    std::string standardOutput;
    std::string standardError;

    bool succeeded() const { return launchError == 0 && !timedOut && exitStatus == 0; }
};

// Runs `arguments[0]` with the other arguments, without a shell, standard input from /dev/null, and
// reads its two outputs while it runs. A program still running after `timeLimit` (or when the process
// is asked to stop) is stopped as ExifTool is: SIGINT, then SIGKILL after a grace period.
ProgramRun runProgram(const std::vector<std::string>& arguments, std::chrono::milliseconds timeLimit);

} // namespace corvane::detail
