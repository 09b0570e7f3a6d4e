#include "corvane/exiftool_wrapper/detail/ETStayOpenProcess.hpp"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "corvane/exiftool_wrapper/detail/ChildProcess.hpp"

namespace corvane::detail {

ETStayOpenProcess::~ETStayOpenProcess() {
    stop();
}

std::unique_ptr<ETStayOpenProcess> ETStayOpenProcess::start(const std::filesystem::path& executable,
                                                            int& error) {
    int inPair[2], outPipe[2], errPipe[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, inPair) != 0) {
        error = errno;
        return nullptr;
    }
    if (::pipe2(outPipe, O_CLOEXEC) != 0) {
        error = errno;
        ::close(inPair[0]);
        ::close(inPair[1]);
        return nullptr;
    }
    if (::pipe2(errPipe, O_CLOEXEC) != 0) {
        error = errno;
        for (int fd : {inPair[0], inPair[1], outPipe[0], outPipe[1]})
            ::close(fd);
        return nullptr;
    }
    const pid_t pid = spawnChild({executable.string(), "-stay_open", "True", "-@", "-"}, inPair[1],
                                 outPipe[1], errPipe[1], error);
    for (int fd : {inPair[1], outPipe[1], errPipe[1]})
        ::close(fd);
    if (pid < 0) {
        for (int fd : {inPair[0], outPipe[0], errPipe[0]})
            ::close(fd);
        return nullptr;
    }
    auto process = std::make_unique<ETStayOpenProcess>();
    process->pid = pid;
    process->in = inPair[0];
    process->out = outPipe[0];
    process->err = errPipe[0];
    // ExifTool reads nothing from us but arguments.
    ::shutdown(process->in, SHUT_RD);
    for (int fd : {process->in, process->out, process->err})
        ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
    return process;
}

bool ETStayOpenProcess::isAlive() {
    if (pid < 0 || reaped) return false;
    int status;
    const pid_t r = ::waitpid(pid, &status, WNOHANG);
    if (r == 0) return true;
    reaped = r == pid;
    return false;
}

bool ETStayOpenProcess::answers(std::chrono::milliseconds limit) {
    if (!isAlive()) return false;
    const auto id = std::to_string(++runs);
    const std::string request = "-ver\n-execute" + id + "\n";
    const std::string ready = "{ready" + id + "}\n";
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::size_t sent = 0;
    std::string answer;
    char buffer[4096];
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) return false;
        pollfd fds[3] = {{out, POLLIN, 0}, {err, POLLIN, 0}, {in, POLLOUT, 0}};
        if (::poll(fds, sent < request.size() ? 3 : 2, static_cast<int>(left.count())) < 0 && errno != EINTR)
            return false;
        if (sent < request.size() && (fds[2].revents & (POLLOUT | POLLERR | POLLHUP))) {
            const auto n =
                ::send(in, request.data() + sent, request.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
            if (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) return false;
            if (n > 0) sent += static_cast<std::size_t>(n);
        }
        // Standard error stays empty for "-ver"; whatever is there is dropped with the check.
        for (int k = 0; k < 2; ++k) {
            if (!(fds[k].revents & (POLLIN | POLLHUP | POLLERR))) continue;
            for (;;) {
                const auto n = ::read(fds[k].fd, buffer, sizeof buffer);
                if (n > 0) {
                    if (k == 0) answer.append(buffer, static_cast<std::size_t>(n));
                    continue;
                }
                if (n < 0 && errno == EINTR) continue;
                if (n == 0 || (errno != EAGAIN && errno != EWOULDBLOCK)) return false;
                break;
            }
        }
        if (answer.ends_with(ready)) return true;
    }
}

void ETStayOpenProcess::stop() {
    if (pid > 0 && !reaped) stopChild(pid, stopGrace);
    reaped = true;
    for (int* fd : {&in, &out, &err})
        if (*fd >= 0) {
            ::close(*fd);
            *fd = -1;
        }
}

} // namespace corvane::detail
