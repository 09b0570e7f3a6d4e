#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/types.h>

namespace corvane::detail {

// The program run as ExifTool unless another is set (`ETProcess::setExecutableURL`): looked up in
// PATH. The `corvane` launcher, which starts one before the library is loaded, starts this one.
inline constexpr const char* defaultExifTool = "exiftool";

// One ExifTool that stays open ("-stay_open True -@ -"): it reads the arguments of command after
// command on its standard input and answers each "-execute<N>" with "{ready<N>}" on standard output.
// Standard input is a socket, so that writing to a process that died fails with EPIPE instead of
// raising SIGPIPE; the output streams are non-blocking. Destroying it stops the process.
struct ETStayOpenProcess {
    pid_t pid = -1;
    // The process has ended and was waited for.
    bool reaped = false;
    int in = -1, out = -1, err = -1;
    // Runs executed so far: the next run is numbered runs + 1.
    int runs = 0;
    // What the process was started with: a run that would start another program, in another
    // folder (relative paths) or time zone, doesn't use it.
    std::string startKey;
    // When it was last given back idle.
    std::chrono::steady_clock::time_point idleSince = std::chrono::steady_clock::now();

    ETStayOpenProcess() = default;
    ETStayOpenProcess(const ETStayOpenProcess&) = delete;
    ETStayOpenProcess& operator=(const ETStayOpenProcess&) = delete;
    ~ETStayOpenProcess();

    // Starts `executable`; none with `error` set to the errno of the failure. The caller's thread
    // must outlive the process (its death stops the process).
    static std::unique_ptr<ETStayOpenProcess> start(const std::filesystem::path& executable, int& error);

    // Whether the process is still running (reaps it if it ended).
    bool isAlive();
    // Whether it answers a command that does nothing ("-ver") within `limit`: a process that is
    // alive may still be stopped or stuck. Counts as a run.
    bool answers(std::chrono::milliseconds limit);
    // SIGINT, then SIGKILL after a grace period; closes the streams.
    void stop();
};

} // namespace corvane::detail
