#include "corvane/exiftool_wrapper/ETProcessPool.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <unistd.h>

#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/exiftool_wrapper/detail/ETStayOpenProcess.hpp"
#include "corvane/utilities/KitSettings.hpp"

namespace corvane {

namespace {

// Time an idle process gets to answer its check.
constexpr std::chrono::milliseconds healthCheckLimit{2000};

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
    ~SharedPool() { abandonForeign(); }
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

ETProcessPool::ETProcessPool(std::size_t size)
    : size_(std::max<std::size_t>(size, 1)), thread_([this] { threadLoop(); }) {}

ETProcessPool::~ETProcessPool() {
    {
        std::lock_guard lock(mutex_);
        idle_.clear(); // stops them
    }
    {
        std::lock_guard lock(tasksMutex_);
        ending_ = true;
    }
    tasksChanged_.notify_all();
    thread_.join();
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

std::unique_ptr<detail::ETStayOpenProcess> ETProcessPool::startOnPoolThread(const std::string& key,
                                                                            int& error) {
    std::packaged_task<std::unique_ptr<detail::ETStayOpenProcess>()> task(
        [&error] { return detail::ETStayOpenProcess::start(ETProcess::executableURL(), error); });
    auto result = task.get_future();
    {
        std::lock_guard lock(tasksMutex_);
        tasks_.emplace_back([&task] { task(); });
    }
    tasksChanged_.notify_all();
    auto process = result.get();
    if (process) process->startKey = key;
    return process;
}

std::unique_ptr<detail::ETStayOpenProcess> ETProcessPool::acquire(int& error) {
    const std::string key = startKey();
    std::unique_lock lock(mutex_);
    for (;;) {
        released_.wait(lock, [this] { return !idle_.empty() || count_ < size_; });
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
        const pid_t pid = process->pid;
        process.reset();
        lock.lock();
        busy_.erase(std::remove(busy_.begin(), busy_.end(), pid), busy_.end());
        --count_;
    }
    ++count_;
    lock.unlock();
    auto process = startOnPoolThread(key, error);
    lock.lock();
    if (!process) {
        --count_;
        released_.notify_one();
        return nullptr;
    }
    busy_.push_back(process->pid);
    return process;
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
