#include "corvane/exiftool_wrapper/detail/ETStayOpenProcess.hpp"

#include <cerrno>
#include <fcntl.h>
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
