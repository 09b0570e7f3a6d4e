#include "corvane/exiftool_wrapper/ETProcessPool.hpp"

#include <algorithm>
#include <future>

#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/exiftool_wrapper/detail/ETStayOpenProcess.hpp"

namespace corvane {

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

std::unique_ptr<detail::ETStayOpenProcess> ETProcessPool::startOnPoolThread(int& error) {
    std::packaged_task<std::unique_ptr<detail::ETStayOpenProcess>()> task(
        [&error] { return detail::ETStayOpenProcess::start(ETProcess::executableURL(), error); });
    auto result = task.get_future();
    {
        std::lock_guard lock(tasksMutex_);
        tasks_.emplace_back([&task] { task(); });
    }
    tasksChanged_.notify_all();
    return result.get();
}

std::unique_ptr<detail::ETStayOpenProcess> ETProcessPool::acquire(int& error) {
    std::unique_lock lock(mutex_);
    for (;;) {
        released_.wait(lock, [this] { return !idle_.empty() || count_ < size_; });
        while (!idle_.empty()) {
            auto process = std::move(idle_.back());
            idle_.pop_back();
            // Ended while idle (killed, or the machine ran short of memory): replaced below.
            if (process->isAlive() && process->runs < maxRunsPerProcess) {
                busy_.push_back(process->pid);
                return process;
            }
            --count_;
            lock.unlock();
            process.reset();
            lock.lock();
        }
        if (count_ < size_) break;
    }
    ++count_;
    lock.unlock();
    auto process = startOnPoolThread(error);
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
