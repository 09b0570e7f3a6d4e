#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

namespace corvane {

namespace detail {
struct ETStayOpenProcess;
}

/// ExifTool processes kept running between runs, so that a run doesn't pay ExifTool's start-up
/// (a Perl start, some 70 ms; more when the writing modules load).
///
/// An `ETProcess` given a pool (`ETProcess::setPool`) sends each run to an idle process of the pool,
/// starting one when none is idle and fewer than `size()` run; with all of them busy, the run waits
/// for one. Each run is one ExifTool command sequence ended by a numbered "-execute"; ExifTool starts
/// every command with fresh options, so nothing a run asks for (overwriting in place, recursion,
/// extensions, passwords, API settings) reaches the next. A process that dies is replaced at its
/// next use (the run under way when it died fails with `abnormalTermination`); one that timed out,
/// was cancelled or answered out of turn is stopped and replaced; every process is replaced after
/// `maxRunsPerProcess` runs, which bounds what a long-lived Perl process may accumulate. A process
/// that stayed idle for `idleCheckAfter()` must answer a command that does nothing before it takes
/// a run, else it is replaced (a stopped or stuck process is alive but would stall the run). A
/// process started for another program, working folder or time zone than the run's is replaced too.
///
/// The processes are started by a thread of the pool, or by the program's main thread, and stop when
/// it ends: when the pool is destroyed, and when this process ends, however it ends (they get SIGINT
/// as their parent-death signal). Thread-safe.
class ETProcessPool {
public:
    /// A pool of at most `size` processes (at least 1); none is started before its first run.
    explicit ETProcessPool(std::size_t size = defaultSize());
    ~ETProcessPool();
    ETProcessPool(const ETProcessPool&) = delete;
    ETProcessPool& operator=(const ETProcessPool&) = delete;

    /// The number of processors of the machine.
    static std::size_t defaultSize();
    /// Runs after which a process is replaced by a fresh one.
    static constexpr int maxRunsPerProcess = 1000;

    /// The pool the library's ExifTool readers and writers use, sized by
    /// `KitSettings::exifToolProcessCount()`; none when that is 0. A new size makes a new pool;
    /// the previous one ends when its last run has let go of it. The pool lives until the program
    /// ends, and its processes with it (a forked child starts a pool of its own).
    static std::shared_ptr<ETProcessPool> shared();

    /// The number of processes.
    std::size_t size() const { return size_; }
    /// How long a process may stay idle before it is checked at its next use: 30 s by default.
    ///@{
    std::chrono::milliseconds idleCheckAfter() const;
    void setIdleCheckAfter(std::chrono::milliseconds interval);
    ///@}
    /// The process ids of the pool's ExifTool processes, idle or busy.
    std::vector<pid_t> processIDs() const;

    /// Starts in the background the processes that a run of `files` files will take (as many as
    /// its batch is split across, see `KitSettings::exifToolBatchSplit()`: at least one, at most
    /// `size()`), counting those already there, so that ExifTool's start-up overlaps the caller's
    /// own preparation instead of following it. A run takes a process being started before it
    /// would start another. Returns at once.
    void prestart(std::size_t files = 1);

    /// Takes as one of its processes an ExifTool that the caller started as `executable` with
    /// "-stay_open True -@ -", on the program's main thread, in this working folder and time zone:
    /// `input` is the caller's end of the socket that is its standard input, `output` and `error`
    /// the read ends of the pipes of its standard output and error. The `corvane` program starts its
    /// ExifTool so before it loads the library, and Perl's start-up overlaps that load. The pool owns
    /// the process and its streams from then on: when it is full, or would start another program, it
    /// stops the process and returns false.
    bool adoptStartedProcess(pid_t pid, int input, int output, int error, const std::string& executable);

    /// Stops the idle processes at once, without waiting for them to end (they are waited for
    /// later, at the latest when the pool goes); runs after this start new ones. For a caller that
    /// has done its last run: the processes then end while it finishes its own work, instead of
    /// after it.
    void stopIdleProcesses();

    /// Whether a process stays open for another run once its run is over: true by default. A
    /// caller whose next runs are its last (a command-line program, say) sets it to false: each
    /// ExifTool is then told with the run's arguments to stop staying open, and ends after the run
    /// instead of getting ready for a command it won't get, which costs ExifTool a few
    /// milliseconds of loading before it answers. A process that has ended its run this way is
    /// killed and replaced by a fresh one for any later run.
    ///@{
    bool keepsProcesses() const { return keepsProcesses_.load(); }
    void setKeepsProcesses(bool keeps) { keepsProcesses_.store(keeps); }
    ///@}

private:
    friend class ETProcess;
    /// An idle, running process, started if needed; none (with `error` set) when it can't be
    /// started. Blocks while `size()` processes are busy.
    std::unique_ptr<detail::ETStayOpenProcess> acquire(int& error);
    /// What a process must have been started with to take a run of this thread: the program, the
    /// working folder and the time zone.
    static std::string startKey();
    /// Gives a process back after a run: kept when `reusable`, else stopped.
    void release(std::unique_ptr<detail::ETStayOpenProcess> process, bool reusable);
    /// Gives up a process that has answered the last run it was told it would take: killed at once,
    /// its command being done, and waited for later, like the processes `stopIdleProcesses` stops.
    void retire(std::unique_ptr<detail::ETStayOpenProcess> process);
    /// Kills a process that runs no command, without waiting for it: it is waited for at a later
    /// kill, or when the pool goes. Called with `mutex_` held.
    void killLocked(std::unique_ptr<detail::ETStayOpenProcess> process);

    /// Starts a process on the pool's thread, or at once when called on the program's main thread:
    /// a process stops when the thread that started it ends, and the main thread lasts as long as
    /// the program. The main thread of a command-line program so spares itself a thread's wake-up
    /// before the start that its run waits for.
    std::future<std::unique_ptr<detail::ETStayOpenProcess>> startProcess(const std::string& key,
                                                                         std::shared_ptr<int> error);
    void threadLoop();

    const std::size_t size_;
    mutable std::mutex mutex_;
    std::condition_variable released_;
    std::vector<std::unique_ptr<detail::ETStayOpenProcess>> idle_;
    std::vector<pid_t> busy_;
    // Processes being started by `prestart`, not yet taken by a run.
    std::deque<std::future<std::unique_ptr<detail::ETStayOpenProcess>>> starting_;
    // Processes stopped by `stopIdleProcesses`, not yet waited for.
    std::vector<std::unique_ptr<detail::ETStayOpenProcess>> stopped_;
    // Every process of the pool: idle, busy or being started.
    std::size_t count_ = 0;
    std::chrono::milliseconds idleCheckAfter_{30000};
    std::atomic<bool> keepsProcesses_{true};

    /// The thread that starts the processes that other threads than the main one need, so that they
    /// live as long as the pool and not only as long as the thread of the run that needed them. Made
    /// at the first start asked of it.
    std::mutex tasksMutex_;
    std::condition_variable tasksChanged_;
    std::deque<std::function<void()>> tasks_;
    bool ending_ = false;
    std::thread thread_;
};

} // namespace corvane
