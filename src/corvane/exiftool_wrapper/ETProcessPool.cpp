#include "corvane/exiftool_wrapper/ETProcessPool.hpp"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <sys/wait.h>
#include <unistd.h>

#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/exiftool_wrapper/detail/ChildProcess.hpp"
#include "corvane/exiftool_wrapper/detail/ETBatchSplit.hpp"
#include "corvane/exiftool_wrapper/detail/ETStayOpenProcess.hpp"
#include "corvane/utilities/KitSettings.hpp"

namespace corvane {

namespace {

// Time an idle process gets to answer its check.
constexpr std::chrono::milliseconds healthCheckLimit{2000};

// Set as the library's pool goes at the end of the program, when nothing is left to run.
std::atomic<bool> programIsEnding{false};

// The library's pool, and the process that made it: a forked child can't use its parent's pool
// (the thread that starts and owns the processes isn't there).
struct SharedPool {
    std::mutex mutex;
    std::shared_ptr<ETProcessPool> pool;
    pid_t owner = 0;

    // Left to the parent's processes in a forked child: destroying it would wait for a thread that
    // the child doesn't have.
    void abandonForeign() {
        if (pool && owner != ::getpid()) new std::shared_ptr<ETProcessPool>(std::move(pool));
        pool.reset();
    }
    // At the end of the program the pool goes, and its processes stop.
    ~SharedPool() {
        programIsEnding = true;
        abandonForeign();
    }
};

SharedPool& sharedPool() {
    static SharedPool shared;
    return shared;
}

} // namespace

std::shared_ptr<ETProcessPool> ETProcessPool::shared() {
    const std::size_t size = KitSettings::shared().exifToolProcessCount();
    auto& shared = sharedPool();
    std::lock_guard lock(shared.mutex);
    if (shared.owner != ::getpid()) shared.abandonForeign();
    if (size == 0) {
        shared.pool.reset();
    } else if (!shared.pool || shared.pool->size() != size) {
        shared.pool = std::make_shared<ETProcessPool>(size);
        shared.owner = ::getpid();
    }
    return shared.pool;
}

std::chrono::milliseconds ETProcessPool::idleCheckAfter() const {
    std::lock_guard lock(mutex_);
    return idleCheckAfter_;
}

void ETProcessPool::setIdleCheckAfter(std::chrono::milliseconds interval) {
    std::lock_guard lock(mutex_);
    idleCheckAfter_ = interval;
}

std::string ETProcessPool::startKey() {
    std::string key = ETProcess::executableURL().string();
    // A bare name is looked up in PATH.
    if (key.find('/') == std::string::npos) {
        const char* path = std::getenv("PATH");
        key += '\0';
        key += path ? path : "";
    }
    std::error_code error;
    key += '\0';
    key += std::filesystem::current_path(error).string();
    const char* zone = std::getenv("TZ");
    key += '\0';
    key += zone ? zone : "-";
    return key;
}

ETProcessPool::ETProcessPool(std::size_t size) : size_(std::max<std::size_t>(size, 1)) {}

ETProcessPool::~ETProcessPool() {
    {
        std::lock_guard lock(tasksMutex_);
        ending_ = true;
    }
    tasksChanged_.notify_all();
    // The thread ends once it has started what was asked of it.
    if (thread_.joinable()) thread_.join();
    std::vector<std::unique_ptr<detail::ETStayOpenProcess>> processes;
    {
        std::lock_guard lock(mutex_);
        processes = std::move(stopped_);
        for (auto& process : idle_)
            processes.push_back(std::move(process));
        for (auto& started : starting_)
            if (auto process = started.get()) processes.push_back(std::move(process));
        starting_.clear();
    }
    // None of them is running a command: with no file open for writing and no temporary file to
    // remove, each is killed outright rather than asked to stop, which spares the program ExifTool's
    // own clean-up at its exit. All are killed before any is waited for: they end side by side.
    for (const auto& process : processes)
        if (process->isAlive()) detail::killChild(process->pid);
    // A killed process runs no more of its code, but the system takes a millisecond or two to free
    // its memory. A host that goes on running waits for that, so as to keep no zombie; a program
    // that is ending doesn't, and leaves its killed children to init.
    for (const auto& process : processes)
        if (!process->reaped && process->pid > 0) {
            while (!programIsEnding && ::waitpid(process->pid, nullptr, 0) < 0 && errno == EINTR) {
            }
            process->reaped = true;
        }
    processes.clear();
}

void ETProcessPool::killLocked(std::unique_ptr<detail::ETStayOpenProcess> process) {
    // Those killed before that have ended are waited for now.
    std::erase_if(stopped_, [](const auto& stopped) { return !stopped->isAlive(); });
    if (process->isAlive()) detail::killChild(process->pid);
    stopped_.push_back(std::move(process));
}

void ETProcessPool::stopIdleProcesses() {
    std::lock_guard lock(mutex_);
    for (auto& process : idle_)
        killLocked(std::move(process));
    count_ -= idle_.size();
    idle_.clear();
    released_.notify_all();
}

std::size_t ETProcessPool::defaultSize() {
    return std::max(1u, std::thread::hardware_concurrency());
}

std::vector<pid_t> ETProcessPool::processIDs() const {
    std::lock_guard lock(mutex_);
    std::vector<pid_t> ids = busy_;
    for (const auto& p : idle_)
        ids.push_back(p->pid);
    return ids;
}

void ETProcessPool::threadLoop() {
    std::unique_lock lock(tasksMutex_);
    for (;;) {
        tasksChanged_.wait(lock, [this] { return ending_ || !tasks_.empty(); });
        if (tasks_.empty()) return;
        auto task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        task();
        lock.lock();
    }
}

std::future<std::unique_ptr<detail::ETStayOpenProcess>>
ETProcessPool::startProcess(const std::string& key, std::shared_ptr<int> error) {
    auto task =
        std::make_shared<std::packaged_task<std::unique_ptr<detail::ETStayOpenProcess>()>>([key, error] {
            auto process = detail::ETStayOpenProcess::start(ETProcess::executableURL(), *error);
            if (process) process->startKey = key;
            return process;
        });
    auto result = task->get_future();
    if (::gettid() == ::getpid()) {
        (*task)();
        return result;
    }
    {
        std::lock_guard lock(tasksMutex_);
        tasks_.emplace_back([task] { (*task)(); });
        // Made at the first start it is asked for: a program whose main thread starts every
        // process has none to make, nor to wait for at its end.
        if (!thread_.joinable()) thread_ = std::thread([this] { threadLoop(); });
    }
    tasksChanged_.notify_all();
    return result;
}

void ETProcessPool::prestart(std::size_t files) {
    const std::size_t shares = std::max<std::size_t>(
        1,
        std::min({size_, KitSettings::shared().exifToolBatchSplit(), files / detail::minimumFilesPerShare}));
    const std::string key = startKey();
    std::lock_guard lock(mutex_);
    while (count_ < shares) {
        ++count_;
        starting_.push_back(startProcess(key, std::make_shared<int>(0)));
    }
    released_.notify_all();
}

bool ETProcessPool::adoptStartedProcess(pid_t pid, int input, int output, int error,
                                        const std::string& executable) {
    auto process = std::make_unique<detail::ETStayOpenProcess>();
    process->pid = pid;
    process->in = input;
    process->out = output;
    process->err = error;
    process->startKey = startKey();
    {
        std::lock_guard lock(mutex_);
        if (count_ < size_ && executable == ETProcess::executableURL().string()) {
            ++count_;
            idle_.push_back(std::move(process));
            released_.notify_all();
            return true;
        }
    }
    return false; // `process` stops it
}

std::unique_ptr<detail::ETStayOpenProcess> ETProcessPool::acquire(int& error) {
    const std::string key = startKey();
    std::unique_lock lock(mutex_);
    // Gives up a process that can't take the run.
    auto drop = [&](std::unique_ptr<detail::ETStayOpenProcess> process) {
        const pid_t pid = process ? process->pid : -1;
        process.reset();
        lock.lock();
        if (pid > 0) busy_.erase(std::remove(busy_.begin(), busy_.end(), pid), busy_.end());
        --count_;
        released_.notify_one();
    };
    for (;;) {
        released_.wait(lock, [this] { return !idle_.empty() || !starting_.empty() || count_ < size_; });
        if (idle_.empty() && !starting_.empty()) {
            // A process on its way is nearer than a new one.
            auto started = std::move(starting_.front());
            starting_.pop_front();
            lock.unlock();
            auto process = started.get();
            if (process && process->startKey == key) {
                lock.lock();
                busy_.push_back(process->pid);
                return process;
            }
            drop(std::move(process));
            continue;
        }
        if (idle_.empty()) break;
        // The most recently used first: the others may stay idle long enough to be checked.
        auto process = std::move(idle_.back());
        idle_.pop_back();
        busy_.push_back(process->pid);
        const auto checkAfter = idleCheckAfter_;
        lock.unlock();
        // Ended while idle (killed, or the machine ran short of memory), stopped or stuck, worn,
        // or started for other runs: replaced.
        bool usable = process->startKey == key && process->runs < maxRunsPerProcess && process->isAlive();
        if (usable && std::chrono::steady_clock::now() - process->idleSince >= checkAfter)
            usable = process->answers(healthCheckLimit);
        if (usable) return process;
        drop(std::move(process));
    }
    ++count_;
    lock.unlock();
    auto startError = std::make_shared<int>(0);
    auto process = startProcess(key, startError).get();
    lock.lock();
    if (!process) {
        error = *startError;
        --count_;
        released_.notify_one();
        return nullptr;
    }
    busy_.push_back(process->pid);
    return process;
}

void ETProcessPool::retire(std::unique_ptr<detail::ETStayOpenProcess> process) {
    std::lock_guard lock(mutex_);
    busy_.erase(std::remove(busy_.begin(), busy_.end(), process->pid), busy_.end());
    killLocked(std::move(process));
    --count_;
    released_.notify_one();
}

void ETProcessPool::release(std::unique_ptr<detail::ETStayOpenProcess> process, bool reusable) {
    std::unique_lock lock(mutex_);
    busy_.erase(std::remove(busy_.begin(), busy_.end(), process->pid), busy_.end());
    if (reusable && process->isAlive()) {
        process->idleSince = std::chrono::steady_clock::now();
        idle_.push_back(std::move(process));
    } else {
        --count_;
        lock.unlock();
        process.reset();
        lock.lock();
    }
    released_.notify_one();
}

} // namespace corvane
