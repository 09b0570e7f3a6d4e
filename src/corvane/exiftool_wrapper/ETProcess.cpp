#include "corvane/exiftool_wrapper/ETProcess.hpp"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <poll.h>
#include <random>
#include <string_view>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <unordered_set>

#include "corvane/exiftool_wrapper/detail/ChildProcess.hpp"
#include "corvane/exiftool_wrapper/detail/ETArgumentFile.hpp"
#include "corvane/exiftool_wrapper/detail/ETBatchSplit.hpp"
#include "corvane/exiftool_wrapper/detail/ETRunOutput.hpp"
#include "corvane/exiftool_wrapper/detail/ETStayOpenProcess.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/JSONInput.hpp"
#include "corvane/utilities/KitDebugger.hpp"
#include "corvane/utilities/KitSettings.hpp"

namespace corvane {
namespace {

using Clock = std::chrono::steady_clock;

std::mutex executableMutex;
std::filesystem::path executable = detail::defaultExifTool;

struct ArgumentPlan {
    // Files to remove after the run.
    std::vector<std::filesystem::path> files;
    // argv after the program: "-@ FILE" pairs and arguments that no argfile line can hold.
    std::vector<std::string> vector;
    // Every argument in order, passwords masked.
    std::vector<std::string> logged;

    ~ArgumentPlan() {
        std::error_code ec;
        for (const auto& f : files)
            std::filesystem::remove(f, ec);
    }
};

bool writeWhole(int fd, const std::string& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        const auto n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    return true;
}

bool flushArgfile(ArgumentPlan& plan, std::string& text) {
    if (text.empty()) return true;
    const auto url = temporaryURL("args");
    std::error_code ec;
    std::filesystem::create_directories(url.parent_path(), ec);
    // Private: the file may hold passwords.
    const int fd = ::open(url.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0) return false;
    plan.files.push_back(url);
    const bool ok = writeWhole(fd, text);
    if (::close(fd) != 0 || !ok) return false;
    plan.vector.emplace_back("-@");
    plan.vector.push_back(url.string());
    text.clear();
    return true;
}

// Writes the argument-file texts to private temporary files, read through "-@ FILE".
bool writeArgumentFiles(const detail::ETArgumentFile& file, ArgumentPlan& plan) {
    for (const auto& part : file.parts()) {
        if (part.inVector) {
            plan.vector.push_back(part.text);
            continue;
        }
        std::string text = part.text;
        if (!flushArgfile(plan, text)) return false;
    }
    plan.logged = file.logged();
    return true;
}

} // namespace

// ---- ETProcess -------------------------------------------------------------------------------

ETProcess::ETProcess() = default;
ETProcess::~ETProcess() = default;

std::filesystem::path ETProcess::executableURL() {
    std::lock_guard lock(executableMutex);
    return executable;
}

void ETProcess::setExecutableURL(const std::filesystem::path& url) {
    std::lock_guard lock(executableMutex);
    executable = url;
}

std::chrono::milliseconds ETProcess::defaultTimeLimit(std::size_t fileCount, std::size_t folderCount) {
    using namespace std::chrono;
    return duration_cast<milliseconds>(minutes(10) + seconds(2) * fileCount + minutes(10) * folderCount);
}

ETOutput ETProcess::output() const {
    std::lock_guard lock(stateMutex_);
    return output_;
}

void ETProcess::publish(const ETOutput& state) {
    std::lock_guard lock(stateMutex_);
    output_ = state;
}

void ETProcess::cancel() {
    if (running_.load()) cancelRequested_.store(true);
}

void ETProcess::stopAllRuns() {
    detail::stopAllChildren().store(true);
}

ETOutput ETProcess::run(const ETInput& input) {
    ETProcess process;
    return process.execute(input);
}

ETOutput ETProcess::runOnSharedPool(const ETInput& input) {
    ETProcess process;
    process.setPool(ETProcessPool::shared());
    return process.execute(input);
}

void ETProcess::setPool(std::shared_ptr<ETProcessPool> pool) {
    std::lock_guard lock(stateMutex_);
    pool_ = std::move(pool);
}

std::shared_ptr<ETProcessPool> ETProcess::pool() const {
    std::lock_guard lock(stateMutex_);
    return pool_;
}

void ETProcess::executeOnPool(ETProcessPool& pool, const detail::ETArgumentFile& lines,
                              detail::ETRunState& run, std::chrono::steady_clock::time_point deadline,
                              ETOutput& state, const std::function<void(double)>& setProgress) {
    int startError = 0;
    auto process = pool.acquire(startError);
    if (!process) {
        state.processError_ = startError == ENOENT || startError == EACCES ? ETOutputError::executableNotFound
                                                                           : ETOutputError::launchFailed;
        return;
    }
    // A process that stays open answers the run's end with "{ready<N>}"; one that won't take
    // another run is told to stop staying open, and the last command's marker ends its output.
    const bool keep = pool.keepsProcesses() || morePiecesFollow_;
    const auto id = std::to_string(++process->runs);
    std::string request;
    for (const auto& part : lines.parts())
        request += part.text;
    request += keep ? "-execute" + id + "\n" : "-stay_open\nFalse\n";
    const std::string ready = "{ready" + id + "}\n";

    auto stopRequested = [this] { return cancelRequested_.load() || detail::stopAllChildren().load(); };
    // Reads what is there; false once the stream has ended (the process died).
    auto drain = [](int fd, auto&& append) {
        char buffer[65536];
        for (;;) {
            const auto n = ::read(fd, buffer, sizeof buffer);
            if (n > 0) {
                append(std::string_view(buffer, static_cast<std::size_t>(n)));
                continue;
            }
            if (n < 0 && errno == EINTR) continue;
            return n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK);
        }
    };
    auto readOut = [&] {
        return drain(process->out, [&](std::string_view data) { run.out.text.append(data); });
    };
    auto readErr = [&] { return drain(process->err, [&](std::string_view data) { run.err.append(data); }); };
    auto endsWithLine = [](const std::string& text, const std::string& line) {
        return text.ends_with(line) &&
               (text.size() == line.size() || text[text.size() - line.size() - 1] == '\n');
    };
    auto endsWithLastMarker = [&run](std::string_view text) {
        if (!text.ends_with('\n')) return false;
        text.remove_suffix(1);
        // rfind gives npos, and npos + 1 is 0, when the marker is the only line.
        const auto k = run.markerIndex(text.substr(text.rfind('\n') + 1));
        return k && *k + 1 == run.commands.size();
    };
    auto answeredNow = [&] {
        return keep ? endsWithLine(run.out.text, ready) : endsWithLastMarker(run.out.text);
    };
    // The last command's marker ends its standard error, after the answer has ended its output.
    auto errorStreamEnded = [&] { return endsWithLastMarker(run.err.text); };

    std::size_t sent = 0;
    bool died = false, answered = false;
    std::optional<ETOutputError> killedFor;
    std::optional<Clock::time_point> errorGrace;
    for (;;) {
        if (stopRequested()) {
            killedFor = ETOutputError::cancelled;
            break;
        }
        const auto now = Clock::now();
        if (now >= deadline) {
            killedFor = ETOutputError::timedOut;
            break;
        }
        if (answered && (errorStreamEnded() || now >= *errorGrace)) break;
        pollfd fds[3] = {{process->out, POLLIN, 0}, {process->err, POLLIN, 0}, {process->in, POLLOUT, 0}};
        const nfds_t count = sent < request.size() ? 3 : 2;
        const auto wait = std::min<long long>(
            100, std::chrono::duration_cast<std::chrono::milliseconds>(deadline - now).count() + 1);
        if (::poll(fds, count, static_cast<int>(wait)) < 0 && errno != EINTR) {
            died = true;
            break;
        }
        if (count == 3 && (fds[2].revents & (POLLOUT | POLLERR | POLLHUP))) {
            const auto n = ::send(process->in, request.data() + sent, request.size() - sent,
                                  MSG_NOSIGNAL | MSG_DONTWAIT);
            if (n > 0)
                sent += static_cast<std::size_t>(n);
            else if (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) {
                died = true;
                break;
            }
        }
        bool ended = false;
        if (fds[0].revents & (POLLIN | POLLHUP | POLLERR)) ended = !readOut();
        if (fds[1].revents & (POLLIN | POLLHUP | POLLERR)) ended = !readErr() || ended;
        // Once a stream has ended, what is left in the other is read too: the process has gone.
        if (ended) {
            readOut();
            readErr();
        }
        const bool movedOut = run.scan(run.out);
        const bool movedErr = run.scan(run.err);
        if (movedOut || movedErr) setProgress(run.fraction());
        if (!answered && answeredNow()) {
            answered = true;
            // ExifTool flushed its standard error before answering: what is left is in the pipe.
            errorGrace = Clock::now() + std::chrono::milliseconds(500);
        }
        // A process told to end after the run ends its streams once it has answered.
        if (ended) {
            died = !answered;
            break;
        }
    }

    if (killedFor) {
        // ExifTool removes its temporary file on SIGINT; the process is replaced. It goes on until
        // it takes the signal, and what it printed until it ended is read: a file it finished after
        // the last read shows as started, where it would otherwise count as not written.
        detail::stopChild(process->pid, detail::stopGrace);
        process->reaped = true;
        readOut();
        readErr();
        run.scan(run.out);
        run.scan(run.err);
        state.processError_ = killedFor;
    } else if (died) {
        state.processError_ = ETOutputError::abnormalTermination;
    } else {
        if (keep) run.out.text.erase(run.out.text.size() - ready.size());
        state.exitStatus_ = run.exitStatus(run.out.text);
    }
    if (!keep && answered && !killedFor) {
        pool.retire(std::move(process));
        return;
    }
    // Standard error that didn't end with the run's last marker may still carry some of this run:
    // the next run would take it for its own, so the process goes.
    pool.release(std::move(process), answered && !killedFor && !died && errorStreamEnded());
}

ETOutput ETProcess::execute(const ETInput& input) {
    std::lock_guard runLock(runMutex_);
    cancelRequested_.store(false);
    running_.store(true);
    progress_.store(0);

    detail::ETRunState run;
    run.commands = detail::planCommands(input);
    run.setToken(detail::randomToken());
    std::size_t fileCount = 0, folderCount = 0;
    for (const auto& c : run.commands) {
        run.progress.push_back({0, static_cast<double>(std::max<std::size_t>(c.targets.size(), 1)), false});
        folderCount += c.folderTargets.size();
        fileCount += c.targets.size() - c.folderTargets.size();
    }

    ETOutput state;
    publish(state);
    if (input.onStartHandler) input.onStartHandler(*this);

    auto setProgress = [&](double p) {
        if (p == progress_.load()) return;
        progress_.store(p);
        state.progress_ = p;
        {
            std::lock_guard lock(stateMutex_);
            output_.progress_ = p;
        }
        if (input.onProgressHandler) input.onProgressHandler(*this);
    };
    auto finish = [&]() -> ETOutput {
        state.finished_ = true;
        publish(state);
        running_.store(false);
        if (input.onEndHandler) input.onEndHandler(*this);
        return state;
    };

    auto stopRequested = [this] { return cancelRequested_.load() || detail::stopAllChildren().load(); };
    // The process is ending: nothing new starts.
    if (detail::stopAllChildren().load()) {
        state.processError_ = ETOutputError::cancelled;
        return finish();
    }
    // Nothing to do: ExifTool isn't started.
    if (run.commands.empty()) {
        setProgress(1);
        return finish();
    }

    // What the streams said, once the run has ended.
    auto conclude = [&]() -> ETOutput {
        run.err.flush();
        std::vector<std::string> started;
        const auto outChunks = detail::splitAtMarkers(run.out.text, run, true, &started);
        state.startedFiles_.assign(started.begin(), started.end());
        if (state.processError_ && !started.empty()) state.unfinishedFiles_ = {started.back()};
        const auto errChunks = detail::splitAtMarkers(run.err.text, run, false);
        state.data_ = detail::joinOutputs(outChunks);
        for (const auto& c : errChunks)
            state.errorText_ += c;
        for (std::size_t k = 0; k < run.commands.size(); ++k) {
            detail::parseErrorText(errChunks[k], run.commands[k], state.messages_, state.unknownLines_);
            detail::collectJSONMessages(outChunks[k], run.commands[k], state.messages_, state.excusedErrors_);
        }
        if (!state.processError_) setProgress(1);
        return finish();
    };

    const auto limit = input.timeLimit ? *input.timeLimit : defaultTimeLimit(fileCount, folderCount);
    if (auto pool = this->pool()) {
        if (splits_) {
            auto split =
                detail::splitBatch(input, std::min(pool->size(), KitSettings::shared().exifToolBatchSplit()));
            if (split.pieces.size() > 1) {
                if (!input.timeLimit)
                    for (auto& piece : split.pieces)
                        piece.timeLimit = limit;
                return executePieces(split, pool, state, setProgress, finish);
            }
        }
        // A persistent process reads its arguments from one stream: a run with an argument that no
        // line can hold goes to a process of its own.
        detail::ETArgumentFile lines;
        run.stayOpen = true;
        detail::addRunArguments(lines, run.commands, [&run](std::size_t k) { return run.statusMarker(k); });
        if (lines.fitsInLines()) {
            state.arguments_ = lines.logged();
            publish(state);
            executeOnPool(*pool, lines, run, Clock::now() + limit, state, setProgress);
            return conclude();
        }
        run.stayOpen = false;
    }

    ArgumentPlan plan;
    detail::ETArgumentFile arguments;
    detail::addRunArguments(arguments, run.commands, [&run](std::size_t k) { return run.marker(k); });
    if (!writeArgumentFiles(arguments, plan)) {
        state.processError_ = ETOutputError::argumentFileCreationFailed;
        return finish();
    }
    state.arguments_ = plan.logged;
    publish(state);

    int outPipe[2], errPipe[2];
    if (::pipe2(outPipe, O_CLOEXEC) != 0) {
        state.processError_ = ETOutputError::launchFailed;
        return finish();
    }
    if (::pipe2(errPipe, O_CLOEXEC) != 0) {
        ::close(outPipe[0]);
        ::close(outPipe[1]);
        state.processError_ = ETOutputError::launchFailed;
        return finish();
    }

    std::vector<std::string> argv;
    argv.push_back(executableURL().string());
    argv.insert(argv.end(), plan.vector.begin(), plan.vector.end());
    int spawnError = 0;
    const pid_t pid = detail::spawnChild(argv, outPipe[1], errPipe[1], spawnError);
    ::close(outPipe[1]);
    ::close(errPipe[1]);
    if (pid < 0) {
        ::close(outPipe[0]);
        ::close(errPipe[0]);
        state.processError_ = spawnError == ENOENT || spawnError == EACCES ? ETOutputError::executableNotFound
                                                                           : ETOutputError::launchFailed;
        return finish();
    }

    run.out.fd = outPipe[0];
    run.err.fd = errPipe[0];
    for (int fd : {run.out.fd, run.err.fd})
        ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);

    const auto deadline = Clock::now() + limit;
    std::optional<ETOutputError> killedFor;

    // Reads what is there; false once the stream has ended.
    auto drain = [&run](detail::ETRunState::Stream& s) {
        char buffer[65536];
        for (;;) {
            const auto n = ::read(s.fd, buffer, sizeof buffer);
            if (n > 0) {
                // Only standard error carries title reports; standard output may be binary data.
                if (&s == &run.err)
                    s.append(std::string_view(buffer, static_cast<std::size_t>(n)));
                else
                    s.text.append(buffer, static_cast<std::size_t>(n));
                continue;
            }
            if (n < 0 && errno == EINTR) continue;
            if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return true;
            ::close(s.fd);
            s.fd = -1;
            return false;
        }
    };
    auto pump = [&](Clock::time_point until) {
        while (run.out.fd >= 0 || run.err.fd >= 0) {
            const auto now = Clock::now();
            if (now >= until) return false;
            pollfd fds[2];
            nfds_t count = 0;
            for (auto* s : {&run.out, &run.err})
                if (s->fd >= 0) fds[count++] = {s->fd, POLLIN, 0};
            const auto wait = std::min<long long>(
                100, std::chrono::duration_cast<std::chrono::milliseconds>(until - now).count() + 1);
            const int ready = ::poll(fds, count, static_cast<int>(wait));
            if (ready < 0 && errno != EINTR) return false;
            for (nfds_t i = 0; i < count && ready > 0; ++i) {
                if (!(fds[i].revents & (POLLIN | POLLHUP | POLLERR))) continue;
                auto& s = fds[i].fd == run.out.fd ? run.out : run.err;
                drain(s);
            }
            const bool movedOut = run.scan(run.out);
            const bool movedErr = run.scan(run.err);
            if (movedOut || movedErr) setProgress(run.fraction());
            if (stopRequested()) return false;
        }
        return true;
    };

    int status = 0;
    bool reaped = false;
    if (pump(deadline)) {
        // Both streams ended: ExifTool is exiting. It still gets its deadline to do so.
        while (!reaped) {
            const auto r = ::waitpid(pid, &status, WNOHANG);
            if (r == pid || (r < 0 && errno != EINTR)) {
                reaped = r == pid;
                break;
            }
            if (stopRequested() || Clock::now() >= deadline) break;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
    if (!reaped) {
        killedFor = stopRequested() ? ETOutputError::cancelled : ETOutputError::timedOut;
        // ExifTool removes its temporary file on SIGINT; only one that doesn't end is killed.
        status = detail::stopChild(pid, detail::stopGrace);
        // Keep what was written before the end; a child that kept the pipes open gets a moment only.
        pump(Clock::now() + std::chrono::seconds(1));
        for (auto* s : {&run.out, &run.err})
            if (s->fd >= 0) {
                ::close(s->fd);
                s->fd = -1;
            }
    }

    if (killedFor)
        state.processError_ = killedFor;
    else if (WIFEXITED(status))
        state.exitStatus_ = WEXITSTATUS(status);
    else
        state.processError_ = ETOutputError::abnormalTermination;

    return conclude();
}

ETOutput ETProcess::executePieces(detail::BatchSplit& split, const std::shared_ptr<ETProcessPool>& pool,
                                  ETOutput& state, const std::function<void(double)>& setProgress,
                                  const std::function<ETOutput()>& finish) {
    auto& pieces = split.pieces;
    // A process of the pool at work: its run, and the files of the piece it runs. Each piece has a
    // run of its own, whose progress starts from naught.
    struct Worker {
        std::unique_ptr<ETProcess> process;
        double files = 0;
    };
    std::vector<Worker> workers(split.processes);
    std::vector<ETOutput> outputs(pieces.size());
    std::vector<char> ran(pieces.size(), 0);
    std::vector<double> pieceFiles;
    std::mutex mutex;
    std::condition_variable changed;
    std::size_t next = 0, ended = 0;
    bool moved = false;
    double files = 0, filesDone = 0;
    for (auto& input : pieces) {
        pieceFiles.push_back(0);
        for (const auto& group : input.groups())
            pieceFiles.back() += group.url ? 1 : 0;
        files += pieceFiles.back();
        input.onProgressHandler = [&](ETProcess&) {
            std::lock_guard lock(mutex);
            moved = true;
            changed.notify_one();
        };
    }
    state.arguments_.clear();
    publish(state);

    auto stopping = [this] { return cancelRequested_.load() || detail::stopAllChildren().load(); };
    // Each process runs on a thread of its own and takes the next piece when done with its last;
    // this thread reports progress and passes a cancel on.
    std::vector<std::thread> threads;
    for (auto& worker : workers)
        threads.emplace_back([&, w = &worker] {
            std::unique_lock lock(mutex);
            while (next < pieces.size() && !stopping()) {
                const auto k = next++;
                auto process = std::make_unique<ETProcess>();
                process->setPool(pool);
                process->splits_ = false;
                process->morePiecesFollow_ = next < pieces.size();
                w->process = std::move(process);
                w->files = pieceFiles[k];
                ETProcess& run = *w->process;
                lock.unlock();
                auto output = run.execute(pieces[k]);
                lock.lock();
                outputs[k] = std::move(output);
                ran[k] = 1;
                filesDone += pieceFiles[k];
                w->files = 0;
                moved = true;
                changed.notify_one();
            }
            ++ended;
            changed.notify_one();
        });
    {
        std::unique_lock lock(mutex);
        while (ended < workers.size()) {
            changed.wait_for(lock, std::chrono::milliseconds(100));
            // A piece not yet under way misses a cancel: it is passed on until every process ended.
            if (stopping())
                for (auto& worker : workers)
                    if (worker.process) worker.process->cancel();
            if (!moved) continue;
            moved = false;
            double done = filesDone;
            for (const auto& worker : workers)
                if (worker.process) done += worker.files * worker.process->progress();
            lock.unlock();
            setProgress(done / files);
            lock.lock();
        }
    }
    for (auto& thread : threads)
        thread.join();

    // One output, as one process would have given it.
    std::vector<std::string> data;
    for (std::size_t k = 0; k < pieces.size(); ++k) {
        if (!ran[k]) {
            // Cancelled before this piece started.
            if (!state.processError_) state.processError_ = ETOutputError::cancelled;
            continue;
        }
        auto& o = outputs[k];
        data.push_back(std::move(o.data_));
        state.errorText_ += o.errorText_;
        state.messages_.insert(state.messages_.end(), o.messages_.begin(), o.messages_.end());
        state.excusedErrors_.insert(state.excusedErrors_.end(), o.excusedErrors_.begin(),
                                    o.excusedErrors_.end());
        state.unknownLines_.insert(state.unknownLines_.end(), o.unknownLines_.begin(), o.unknownLines_.end());
        state.arguments_.insert(state.arguments_.end(), o.arguments_.begin(), o.arguments_.end());
        state.startedFiles_.insert(state.startedFiles_.end(), o.startedFiles_.begin(), o.startedFiles_.end());
        state.unfinishedFiles_.insert(state.unfinishedFiles_.end(), o.unfinishedFiles_.begin(),
                                      o.unfinishedFiles_.end());
        if (o.processError_ && !state.processError_) state.processError_ = o.processError_;
        // ExifTool's status of a run: that of its last command that didn't succeed.
        if (o.exitStatus_ && (!state.exitStatus_ || *o.exitStatus_ != 0)) state.exitStatus_ = o.exitStatus_;
    }
    state.data_ = detail::joinOutputs(data);
    if (state.processError_)
        state.exitStatus_.reset();
    else
        setProgress(1);
    return finish();
}

void ETProcess::debugProcessOutputIfEnabled() const {
    auto& debugger = KitDebugger::shared();
    if (!debugger.isLogEnabled()) return;
    const auto state = output();
    debugger.logExifTool(KitDebugger::Traffic::arguments, [&] {
        std::string line;
        for (const auto& a : state.arguments()) {
            if (!line.empty()) line += ' ';
            line += a;
        }
        return line;
    });
    debugger.logExifTool(KitDebugger::Traffic::error,
                         [&] { return "Error: " + state.joinUnknownErrors().value_or(std::string()); });
    debugger.logExifTool(KitDebugger::Traffic::output, [&] { return "Output: " + state.data(); });
}

} // namespace corvane