#include "corvane/photos_scripting/PhotosScriptRunner.hpp"

#include "corvane/exiftool_wrapper/detail/ChildProcess.hpp"
#include "corvane/helpers/WhiteSpace.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace corvane {

namespace {

using Clock = std::chrono::steady_clock;

std::mutex sharedMutex;

std::optional<PhotosScriptRunner>& sharedRunner() {
    // Chosen once: the script host where it is installed.
    static std::optional<PhotosScriptRunner> runner = [] {
        std::optional<PhotosScriptRunner> found;
        const std::filesystem::path host(PhotosScriptRunner::defaultExecutable);
        if (::access(host.c_str(), X_OK) == 0) found.emplace(host);
        return found;
    }();
    return runner;
}

PhotosScriptRunner::ErrorInfo messageOnly(const std::string& message) {
    return {{std::string(PhotosScriptRunner::errorMessageKey), message},
            {std::string(PhotosScriptRunner::errorBriefMessageKey), message}};
}

// The host reports a failed script as one line on standard error,
// "<source>:<start>:<end>: execution error: <message> (<number>)" (or "script error" for a script
// it couldn't compile). Anything else it wrote is passed on as the message.
PhotosScriptRunner::ErrorInfo errorInfo(const std::string& errorText, int exitStatus) {
    std::string text(trimAsciiWhiteSpace(errorText));
    // The last line carries the error; earlier ones are warnings.
    if (auto newline = text.rfind('\n'); newline != std::string::npos) text = text.substr(newline + 1);
    if (text.empty()) return messageOnly("The script host ended with status " + std::to_string(exitStatus));

    std::string range;
    std::string message = text;
    for (std::string_view marker : {": execution error: ", ": script error: "}) {
        const auto at = text.find(marker);
        if (at == std::string::npos) continue;
        message = text.substr(at + marker.size());
        // "<source>:<start>:<end>" before the marker: keep the two numbers.
        const std::string place = text.substr(0, at);
        const auto end = place.rfind(':');
        const auto start =
            end == std::string::npos || end == 0 ? std::string::npos : place.rfind(':', end - 1);
        if (start != std::string::npos) range = place.substr(start + 1);
        break;
    }
    std::string number;
    if (message.size() > 3 && message.back() == ')') {
        const auto open = message.rfind(" (");
        if (open != std::string::npos) {
            const std::string inside = message.substr(open + 2, message.size() - open - 3);
            const bool numeric = !inside.empty() &&
                                 inside.find_first_not_of("-0123456789") == std::string::npos &&
                                 inside.find('-', 1) == std::string::npos && inside != "-";
            if (numeric) {
                number = inside;
                message.erase(open);
            }
        }
    }
    auto info = messageOnly(message);
    if (!number.empty()) info[std::string(PhotosScriptRunner::errorNumberKey)] = number;
    if (!range.empty()) info[std::string(PhotosScriptRunner::errorRangeKey)] = range;
    return info;
}

void closeFd(int& fd) {
    if (fd >= 0) ::close(fd);
    fd = -1;
}

} // namespace

std::optional<PhotosScriptRunner> PhotosScriptRunner::shared() {
    std::lock_guard lock(sharedMutex);
    return sharedRunner();
}

void PhotosScriptRunner::setShared(std::optional<PhotosScriptRunner> runner) {
    std::lock_guard lock(sharedMutex);
    sharedRunner() = std::move(runner);
}

std::optional<PhotosScriptRunner::ErrorInfo>
PhotosScriptRunner::run(std::string_view script, std::chrono::milliseconds extraTime) const {
    // Standard input is a socket, so that a host that ends without reading it makes the write
    // fail instead of raising SIGPIPE in this process.
    int inPair[2] = {-1, -1}, outPipe[2] = {-1, -1}, errPipe[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, inPair) != 0 ||
        ::pipe2(outPipe, O_CLOEXEC) != 0 || ::pipe2(errPipe, O_CLOEXEC) != 0) {
        const int error = errno;
        for (int* fd : {&inPair[0], &inPair[1], &outPipe[0], &outPipe[1], &errPipe[0], &errPipe[1]})
            closeFd(*fd);
        return messageOnly("The script host could not be started: " + std::string(std::strerror(error)));
    }
    int spawnError = 0;
    const pid_t pid =
        detail::spawnChild({executable_.string()}, inPair[1], outPipe[1], errPipe[1], spawnError);
    closeFd(inPair[1]);
    closeFd(outPipe[1]);
    closeFd(errPipe[1]);
    if (pid < 0) {
        closeFd(inPair[0]);
        closeFd(outPipe[0]);
        closeFd(errPipe[0]);
        return messageOnly("The script host could not be started: " + executable_.string() + ": " +
                           std::strerror(spawnError));
    }

    int in = inPair[0], out = outPipe[0], err = errPipe[0];
    for (int fd : {in, out, err})
        ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
    std::size_t written = 0;
    if (script.empty()) ::shutdown(in, SHUT_WR);
    std::string errorText;
    const auto deadline = Clock::now() + timeLimit_ + extraTime;
    bool stopped = false;

    // Feeds the script and drains both outputs until the host has closed them (its end), the
    // deadline, or a stop of the whole program.
    while (out >= 0 || err >= 0) {
        const auto now = Clock::now();
        if (now >= deadline || detail::stopAllChildren().load()) {
            stopped = true;
            break;
        }
        pollfd fds[3];
        nfds_t count = 0;
        if (in >= 0 && written < script.size()) fds[count++] = {in, POLLOUT, 0};
        if (out >= 0) fds[count++] = {out, POLLIN, 0};
        if (err >= 0) fds[count++] = {err, POLLIN, 0};
        const auto wait = std::min<long long>(
            100, std::chrono::duration_cast<std::chrono::milliseconds>(deadline - now).count() + 1);
        if (::poll(fds, count, static_cast<int>(wait)) < 0 && errno != EINTR) break;
        for (nfds_t i = 0; i < count; ++i) {
            if (!fds[i].revents) continue;
            if (fds[i].fd == in) {
                const auto n = ::send(in, script.data() + written, script.size() - written, MSG_NOSIGNAL);
                if (n > 0) written += static_cast<std::size_t>(n);
                if (n < 0 && errno != EAGAIN && errno != EINTR)
                    closeFd(in); // the host stopped reading
                else if (written == script.size())
                    ::shutdown(in, SHUT_WR);
                continue;
            }
            char buffer[8192];
            const auto n = ::read(fds[i].fd, buffer, sizeof buffer);
            if (n > 0) {
                // The host's standard output (a result it prints) is of no use here.
                if (fds[i].fd == err) errorText.append(buffer, static_cast<std::size_t>(n));
            } else if (n == 0 || (errno != EAGAIN && errno != EINTR)) {
                closeFd(fds[i].fd == out ? out : err);
            }
        }
    }

    int status = 0;
    if (!stopped) {
        // Both outputs ended: the host is exiting, within the same deadline.
        for (;;) {
            const auto r = ::waitpid(pid, &status, WNOHANG);
            if (r == pid) break;
            if ((r < 0 && errno != EINTR) || Clock::now() >= deadline || detail::stopAllChildren().load()) {
                stopped = true;
                break;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
    if (stopped) status = detail::stopChild(pid, std::chrono::milliseconds(500));
    closeFd(in);
    closeFd(out);
    closeFd(err);

    if (stopped) {
        if (detail::stopAllChildren().load()) return messageOnly("The script was stopped");
        return messageOnly("The script did not end within " +
                           std::to_string((timeLimit_ + extraTime).count() / 1000) + " seconds");
    }
    if (WIFSIGNALED(status))
        return messageOnly("The script host ended with signal " + std::to_string(WTERMSIG(status)));
    const int exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    if (exitStatus == 0) return std::nullopt;
    return errorInfo(errorText, exitStatus);
}

} // namespace corvane
