#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "corvane/exiftool_wrapper/ETInput.hpp"
#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/exiftool_wrapper/ETProcessPool.hpp"

namespace corvane {

namespace detail {
class ETArgumentFile;
struct BatchSplit;
struct ETRunState;
} // namespace detail

/// Runs the ExifTool program, one process per `ETInput`, whatever the number of files; or, given a
/// pool (`setPool`), one command sequence per `ETInput` on one of the pool's persistent processes.
///
/// Arguments travel in an argument file ("-@"), never through a shell; an argument that such a file
/// can't hold as a plain line goes as an escaped C-string line, or straight in the process's argument
/// vector. Targets are passed so that ExifTool can't take them for options. Standard output and error
/// are drained while ExifTool runs, so a large output never stalls it; progress follows ExifTool's
/// "-progress" reports (their window-title form for commands that print JSON, which keeps ExifTool's
/// output buffered). A run that doesn't end within its time limit, or is cancelled, is stopped with
/// SIGINT (ExifTool then removes its temporary file) and killed only if it doesn't end within a
/// grace period; ExifTool also stops when the thread that started it dies. A pooled run sends the same
/// lines through the process's standard input, ended by a numbered "-execute"; its outcome is the same
/// as a run of its own (the exit status comes from "${status}" in the command markers). A pooled run
/// whose arguments can't all be lines runs on a process of its own.
///
/// On a pool, a large input is split across several of its processes (as many as
/// `KitSettings::exifToolBatchSplit()` allows, and the pool has): the groups are cut into
/// contiguous pieces that shrink towards the end, each process takes the next piece when done with
/// its last (so they end together even when some files cost more than others), and the outputs
/// are merged as if one process had run the input (the data in the groups' order, the errors with
/// their files, progress over all the files).
///
/// One instance runs one input at a time (a second `execute` waits for the first); `output()`,
/// `progress()` and `cancel()` may be called from any thread.
class ETProcess {
public:
    ETProcess();
    ~ETProcess();
    ETProcess(const ETProcess&) = delete;
    ETProcess& operator=(const ETProcess&) = delete;

    /// Runs the input and blocks until ExifTool has ended (or was killed), or, on a pool, answered.
    /// The input's handlers are called on this thread. Never throws for a failed run: see
    /// ETOutput::throwIfErrors().
    ETOutput execute(const ETInput& input);
    /// The last run's output, or the state so far while a run is under way.
    ETOutput output() const;
    /// Share of the run done, 0 to 1, readable from any thread; whether a run is under way.
    ///@{
    double progress() const { return progress_.load(std::memory_order_relaxed); }
    bool isRunning() const { return running_.load(); }
    ///@}
    /// Stops the run under way, if any (SIGINT, then SIGKILL after a grace period); its output then
    /// fails with `cancelled`.
    void cancel();
    /// Stops every run of the process the same way and lets no new one start: for a program that
    /// is asked to end (SIGINT, SIGTERM). Async-signal-safe.
    static void stopAllRuns();

    /// Writes the run's arguments, unknown errors and output to the debug log, when it is on.
    void debugProcessOutputIfEnabled() const;

    /// The pool of persistent processes that runs this instance's inputs; none (the default) starts
    /// a process per run. Set while no run is under way.
    void setPool(std::shared_ptr<ETProcessPool> pool);
    std::shared_ptr<ETProcessPool> pool() const; ///< see `setPool`

    /// One-shot form: a new process, one run, its output.
    static ETOutput run(const ETInput& input);
    /// The same on the library's shared pool (`ETProcessPool::shared()`), or on a new process when
    /// the application switched the pool off: a host that cleans, geotags or exports file after file
    /// pays one ExifTool start, not one per run.
    static ETOutput runOnSharedPool(const ETInput& input);

    /// The ExifTool program: "exiftool" looked up in PATH unless set.
    ///@{
    static std::filesystem::path executableURL();
    static void setExecutableURL(const std::filesystem::path& url);
    ///@}

    /// 10 minutes, plus 2 seconds per file and 10 minutes per folder of the run.
    static std::chrono::milliseconds defaultTimeLimit(std::size_t fileCount, std::size_t folderCount);

private:
    void publish(const ETOutput& state);
    ETOutput executePieces(detail::BatchSplit& split, const std::shared_ptr<ETProcessPool>& pool,
                           ETOutput& state, const std::function<void(double)>& setProgress,
                           const std::function<ETOutput()>& finish);
    void executeOnPool(ETProcessPool& pool, const detail::ETArgumentFile& lines, detail::ETRunState& run,
                       std::chrono::steady_clock::time_point deadline, ETOutput& state,
                       const std::function<void(double)>& setProgress);

    mutable std::mutex stateMutex_;
    ETOutput output_;
    std::mutex runMutex_;
    std::atomic<double> progress_{0};
    std::atomic<bool> running_{false};
    std::atomic<bool> cancelRequested_{false};
    std::shared_ptr<ETProcessPool> pool_;
    /// False for the processes that run the pieces of a split input.
    bool splits_ = true;
    /// True for a piece of a split input that other pieces follow: its process is kept for them
    /// even when the pool doesn't keep its processes after their runs.
    bool morePiecesFollow_ = false;
};

} // namespace corvane
