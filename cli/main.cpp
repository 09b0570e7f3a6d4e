#include "Commands.hpp"
#include "StorageReading.hpp"

#include "corvane/Version.hpp"
#include "corvane/exiftool_wrapper/ETProcess.hpp"

#include <csignal>

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

namespace {

volatile std::sig_atomic_t stopSignal = 0;

// SIGINT or SIGTERM: every ExifTool run stops (and cleans up after itself), the command ends with
// what it has, removes its files, and the program exits 130.
void onStopSignal(int signal) {
    stopSignal = signal;
    corvane::ETProcess::stopAllRuns();
}

void handleStopSignals() {
    struct sigaction action {};
    action.sa_handler = onStopSignal;
    sigemptyset(&action.sa_mask);
    for (int signal : {SIGINT, SIGTERM})
        ::sigaction(signal, &action, nullptr);
}

} // namespace

int main(int argc, char** argv) {
    handleStopSignals();
    CLI::App app{"corvane: read, compare and edit the metadata of media files"};
    app.require_subcommand(0, 1);
    app.set_version_flag("--version", std::string("corvane ") + CORVANE_VERSION);
    int exitCode = 0;
    app.add_option_function<std::string>(
           "--engine", [](const std::string& engine) { corvane::cli::chooseEngine(engine); },
           "Engine of the commands that read and write files, given before the command: exiftool (every "
           "format) or image-io (in process: common image formats, the tags that have an image I/O name)")
        ->check(CLI::IsMember({"exiftool", "image-io"}));
    corvane::cli::addCatalogueCommands(app, exitCode);
    corvane::cli::addFileCommands(app, exitCode);
    corvane::cli::addExchangeCommands(app, exitCode);
    corvane::cli::addPresetCommands(app, exitCode);
    corvane::cli::addTableCommands(app, exitCode);
    corvane::cli::addLibraryCommands(app, exitCode);
    corvane::cli::addPhotoLibraryCommands(app, exitCode);
    try {
        // CLI11 wants the arguments in reverse order.
        std::vector<std::string> arguments(argv + 1, argv + argc);
        corvane::cli::takePathsAfterMark(arguments);
        std::reverse(arguments.begin(), arguments.end());
        app.parse(arguments);
    } catch (const CLI::ParseError& e) {
        return app.exit(e);
    } catch (const std::exception& e) {
        std::cerr << "corvane: " << e.what() << "\n";
        return 1;
    }
    if (app.get_subcommands().empty()) {
        std::cout << app.help();
    }
    if (stopSignal) return 130;
    return exitCode;
}
