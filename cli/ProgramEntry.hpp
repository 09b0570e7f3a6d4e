#pragma once

// What the `corvane` launcher (cli/launcher/main.cpp) and the program it loads (corvane-program.so)
// share: the program's entry point, the ExifTool the launcher may have started for it, and which
// commands that is done for. Nothing here may need the library: the launcher doesn't load it.

#include <string_view>
#include <sys/types.h>

namespace corvane::cli {

// An ExifTool started by the launcher with "-stay_open True -@ -" as `executable`: `input` is the
// launcher's end of the socket that is its standard input, `output` and `error` the read ends of the
// pipes of its standard output and error.
struct PrestartedExifTool {
    pid_t pid;
    int input, output, error;
    const char* executable;
};

// The program's entry point, exported by corvane-program.so as "corvane_program_main": the
// command line, and the ExifTool started for it (or null). Gives the exit code.
using ProgramEntry = int (*)(int argc, char** argv, const PrestartedExifTool* prestarted);
inline constexpr const char* programEntryName = "corvane_program_main";

// Whether the command runs ExifTool on its files as soon as they are listed: `read` and `set`,
// unless the in-process engine was chosen or only the command's help is asked for.
inline bool commandRunsExifTool(int argc, const char* const* argv) {
    using namespace std::string_view_literals;
    bool imageIO = false;
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        // The program's options come before the command.
        if (word == "--engine" && i + 1 < argc) {
            imageIO = argv[++i] == "image-io"sv;
        } else if (word.starts_with("--engine=")) {
            imageIO = word == "--engine=image-io";
        } else if (!word.starts_with('-')) {
            if (imageIO || (word != "read" && word != "set")) return false;
            for (int k = i + 1; k < argc && argv[k] != "--"sv; ++k)
                if (argv[k] == "-h"sv || argv[k] == "--help"sv) return false;
            return true;
        }
    }
    return false;
}

} // namespace corvane::cli
