#include "corvane/exiftool_wrapper/detail/ProgramRun.hpp"

#include "corvane/exiftool_wrapper/detail/ChildProcess.hpp"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace corvane::detail {

namespace {

struct Pipe {
    int read = -1;
    int write = -1;
    Pipe() {
        int fds[2];
        if (::pipe2(fds, O_CLOEXEC) == 0) {
            read = fds[0];
            write = fds[1];
        }
    }
    ~Pipe() {
        closeWrite();
        if (read >= 0) ::close(read);
    }
    void closeWrite() {
        if (write >= 0) ::close(write);
        write = -1;
    }
};

// Reads what the descriptor holds now; false once it has reached its end.
bool drain(int fd, std::string& text) {
    char buffer[65536];
    const auto n = ::read(fd, buffer, sizeof buffer);
    if (n > 0) text.append(buffer, static_cast<std::size_t>(n));
    return n > 0 || (n < 0 && errno == EINTR);
}

} // namespace

ProgramRun runProgram(const std::vector<std::string>& arguments, std::chrono::milliseconds timeLimit) {
    using Clock = std::chrono::steady_clock;
    ProgramRun run;
    Pipe out, err;
    if (out.read < 0 || err.read < 0) {
        run.launchError = errno;
        return run;
    }
    const pid_t pid = spawnChild(arguments, out.write, err.write, run.launchError);
    out.closeWrite();
    err.closeWrite();
    if (pid < 0) return run;

    const auto deadline = Clock::now() + timeLimit;
    bool outOpen = true, errOpen = true;
    while (outOpen || errOpen) {
        if (stopAllChildren().load() || Clock::now() >= deadline) {
            run.timedOut = true;
            stopChild(pid, stopGrace);
            return run;
        }
        pollfd fds[2] = {{outOpen ? out.read : -1, POLLIN, 0}, {errOpen ? err.read : -1, POLLIN, 0}};
        if (::poll(fds, 2, 100) < 0 && errno != EINTR) break;
        if (fds[0].revents) outOpen = drain(out.read, run.standardOutput);
        if (fds[1].revents) errOpen = drain(err.read, run.standardError);
    }
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status)) run.exitStatus = WEXITSTATUS(status);
    return run;
}

} // namespace corvane::detail
