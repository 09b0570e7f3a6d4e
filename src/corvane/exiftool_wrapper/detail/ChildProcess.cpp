#include "corvane/exiftool_wrapper/detail/ChildProcess.hpp"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace corvane::detail {

namespace {

// The program's path: as given when it holds a slash, else the first executable of PATH.
std::string resolveProgram(const std::string& program) {
    if (program.find('/') != std::string::npos) return program;
    const char* path = std::getenv("PATH");
    std::string list = path ? path : "/usr/local/bin:/usr/bin:/bin";
    std::size_t start = 0;
    while (start <= list.size()) {
        auto end = list.find(':', start);
        if (end == std::string::npos) end = list.size();
        std::string folder = list.substr(start, end - start);
        const std::string candidate = (folder.empty() ? std::string(".") : folder) + "/" + program;
        if (::access(candidate.c_str(), X_OK) == 0) return candidate;
        start = end + 1;
    }
    return {};
}

// In the child, between vfork and exec: only async-signal-safe calls, and nothing written to memory
// but its own stack frame (the parent's memory is shared until the exec).
[[noreturn]] void execChild(const char* program, char* const* argv, int inFd, int outFd, int errFd,
                            pid_t parent, int reportFd) {
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGINT);
    // The parent may have ended before the line above.
    if (::getppid() != parent) ::_exit(127);
    struct sigaction defaults {};
    defaults.sa_handler = SIG_DFL;
    for (int sig = 1; sig < NSIG; ++sig)
        ::sigaction(sig, &defaults, nullptr);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    const int in = inFd >= 0 ? inFd : ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    // dup2 clears close-on-exec on the copies; a descriptor already in place keeps it, so clear it.
    if (in == 0) ::fcntl(0, F_SETFD, 0);
    if (in < 0 || ::dup2(in, 0) < 0 || ::dup2(outFd, 1) < 0 || ::dup2(errFd, 2) < 0) {
        const int error = errno;
        (void)!::write(reportFd, &error, sizeof error);
        ::_exit(127);
    }
    ::execve(program, argv, environ);
    const int error = errno;
    (void)!::write(reportFd, &error, sizeof error);
    ::_exit(127);
}

} // namespace

pid_t spawnChild(const std::vector<std::string>& arguments, int outFd, int errFd, int& error) {
    return spawnChild(arguments, -1, outFd, errFd, error);
}

pid_t spawnChild(const std::vector<std::string>& arguments, int inFd, int outFd, int errFd, int& error) {
    const std::string program = resolveProgram(arguments.at(0));
    if (program.empty()) {
        error = ENOENT;
        return -1;
    }
    std::vector<std::string> texts = arguments;
    std::vector<char*> argv;
    for (auto& text : texts)
        argv.push_back(text.data());
    argv.push_back(nullptr);

    // The child reports a failed exec through this pipe; a successful exec closes it.
    int report[2];
    if (::pipe2(report, O_CLOEXEC) != 0) {
        error = errno;
        return -1;
    }
    const pid_t parent = ::getpid();
    // vfork: the child borrows this thread and its memory until its exec, instead of copying the
    // page tables of a process that maps large libraries and whose other threads go on writing.
    // It starts at once, where fork's child waited for a processor beside those threads. Signals
    // stay blocked until the child has reset their handlers: a handler of ours must not run in it.
    sigset_t all, callerMask;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &callerMask);
    const pid_t pid = ::vfork();
    if (pid == 0) execChild(program.c_str(), argv.data(), inFd, outFd, errFd, parent, report[1]);
    const int forkError = errno;
    ::pthread_sigmask(SIG_SETMASK, &callerMask, nullptr);
    ::close(report[1]);
    if (pid < 0) {
        error = forkError;
        ::close(report[0]);
        return -1;
    }
    // Set from both sides, so that the group exists whichever runs first.
    ::setpgid(pid, pid);
    int childError = 0;
    ssize_t n;
    while ((n = ::read(report[0], &childError, sizeof childError)) < 0 && errno == EINTR) {
    }
    ::close(report[0]);
    if (n == static_cast<ssize_t>(sizeof childError)) {
        int status;
        while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
        }
        error = childError;
        return -1;
    }
    return pid;
}

void askChildToStop(pid_t pid) {
    if (::kill(-pid, SIGINT) != 0) ::kill(pid, SIGINT);
    // A stopped process acts on SIGINT only once it goes on.
    if (::kill(-pid, SIGCONT) != 0) ::kill(pid, SIGCONT);
}

int stopChild(pid_t pid, std::chrono::milliseconds grace) {
    int status = 0;
    askChildToStop(pid);
    const auto deadline = std::chrono::steady_clock::now() + grace;
    while (std::chrono::steady_clock::now() < deadline) {
        // Seen ended but not yet reaped: until it is, its number can't be given to another
        // process, so the group's kill can't reach a stranger.
        siginfo_t info{};
        const int r = ::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT);
        if (r == 0 && info.si_pid == pid) {
            // Whatever the group started goes too.
            ::kill(-pid, SIGKILL);
            while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
            }
            return status;
        }
        if (r < 0 && errno != EINTR) return status;
        // ExifTool ends within a few milliseconds of SIGINT: a fine step doesn't keep the caller
        // waiting long after it has.
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    killChild(pid);
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

void killChild(pid_t pid) {
    if (::kill(-pid, SIGKILL) != 0) ::kill(pid, SIGKILL);
}

std::atomic<bool>& stopAllChildren() {
    static std::atomic<bool> flag{false};
    return flag;
}

} // namespace corvane::detail
