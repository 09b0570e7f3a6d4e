#pragma once

// Starting and stopping the external programs the library runs (ExifTool): in a process group of
// their own, never outliving this process, and stopped so that they can clean up after themselves.

#include <atomic>
#include <chrono>
#include <string>
#include <sys/types.h>
#include <vector>

namespace corvane::detail {

// Starts `arguments[0]` (looked up in PATH when it holds no slash) with the other arguments: standard
// input from /dev/null, standard output and error to `outFd` and `errFd`, default signal handling, a
// process group of its own (a terminal's Ctrl-C doesn't reach it; `stopChild` does), and SIGINT as
// its parent-death signal, so that it stops when the thread that started it ends, even by a crash
// or SIGKILL. Descriptors other than the three are not inherited (everything is opened
// close-on-exec). Gives the process id, or -1 with `error` set to the errno of the failure.
pid_t spawnChild(const std::vector<std::string>& arguments, int outFd, int errFd, int& error);
// The same with standard input from `inFd` (or /dev/null when negative).
pid_t spawnChild(const std::vector<std::string>& arguments, int inFd, int outFd, int errFd, int& error);

// Asks the child's process group to stop with SIGINT, which lets ExifTool remove its temporary file
// and exit; after `grace`, SIGKILL. Reaps the child and gives its wait status.
int stopChild(pid_t pid, std::chrono::milliseconds grace);

// Sends the child's process group SIGINT, and SIGCONT for a stopped child, without waiting: several
// children then end side by side before `stopChild` reaps each.
void askChildToStop(pid_t pid);

// Kills the child's process group with SIGKILL (the child alone when it has left its group),
// without waiting: for a child with nothing to clean up, whose end nobody needs to wait for yet.
void killChild(pid_t pid);

// Time a stopped ExifTool gets to clean up before it is killed.
inline constexpr std::chrono::milliseconds stopGrace{3000};

// Set once the process is asked to end (corvane's SIGINT and SIGTERM handlers): every run under way
// stops, and no new one starts. Async-signal-safe to set.
std::atomic<bool>& stopAllChildren();

} // namespace corvane::detail
