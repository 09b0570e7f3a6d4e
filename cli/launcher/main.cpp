// The `corvane` program as started: a launcher that starts the ExifTool a command will run on, then
// loads the program itself (corvane-program.so) and hands it the process.
//
// ExifTool is a Perl program that takes some 80 ms to start, and a command that reads or writes
// files waits for it. The program proper links the library and through it ICU, exiv2 and more, whose
// loading and relocation take a few milliseconds before the program's first line runs; this
// launcher links none of them, so that Perl's start-up begins at once and that loading runs beside
// it, on another processor. The process keeps its id throughout, and the ExifTool stays its child,
// started on the thread that runs the program.
#include "../ProgramEntry.hpp"

#include "corvane/exiftool_wrapper/detail/ETStayOpenProcess.hpp"

#include <dlfcn.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <system_error>

#ifndef CORVANE_PROGRAM_FROM_BINDIR
#error "CORVANE_PROGRAM_FROM_BINDIR must name the installed program relative to the launcher's folder"
#endif

namespace {

namespace fs = std::filesystem;

// Beside the launcher in a build folder, under the library folder once installed.
fs::path programPath() {
    std::error_code error;
    const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
    const fs::path beside = folder / "corvane-program.so";
    if (::access(beside.c_str(), R_OK) == 0) return beside;
    return (folder / CORVANE_PROGRAM_FROM_BINDIR).lexically_normal();
}

} // namespace

int main(int argc, char** argv) {
    using namespace corvane::cli;
    // The program's ExifTool unless it is told otherwise: a process started for another program
    // than the one the program runs is stopped when it is handed over.
    const char* exifTool = corvane::detail::defaultExifTool;
    PrestartedExifTool started{};
    const PrestartedExifTool* prestarted = nullptr;
    if (commandRunsExifTool(argc, argv)) {
        int error = 0;
        // When it can't be started, the program tries again and reports why.
        if (auto process = corvane::detail::ETStayOpenProcess::start(exifTool, error)) {
            started = {process->pid, process->in, process->out, process->err, exifTool};
            prestarted = &started;
            // Handed over: this copy neither stops the process nor closes its streams.
            process->pid = -1;
            process->in = process->out = process->err = -1;
        }
    }
    const fs::path path = programPath();
    void* program = ::dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (!program) {
        std::fprintf(stderr, "corvane: can't load the program: %s\n", ::dlerror());
        return 1;
    }
    const auto entry = reinterpret_cast<ProgramEntry>(::dlsym(program, programEntryName));
    if (!entry) {
        std::fprintf(stderr, "corvane: %s has no entry point: %s\n", path.c_str(), ::dlerror());
        return 1;
    }
    return entry(argc, argv, prestarted);
}
