#include "Commands.hpp"
#include "Output.hpp"
#include "StorageReading.hpp"

#include "corvane/Version.hpp"
#include "corvane/exiftool_wrapper/ETProcess.hpp"

#include <csignal>

#include <algorithm>
#include <cstdint>
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

// Called by the `corvane` launcher once it has loaded this program (see ProgramEntry.hpp).
extern "C" __attribute__((visibility("default"))) int
corvane_program_main(int argc, char** argv, const corvane::cli::PrestartedExifTool* prestarted) {
    using namespace corvane::cli;
    handleStopSignals();
    prestartExifToolForCommand(argc, argv, prestarted);
    CLI::App app{"corvane: read, compare and edit the metadata of media files"};
    app.require_subcommand(0, 1);
    app.set_version_flag("--version", std::string("corvane ") + CORVANE_VERSION);
    int exitCode = exitSuccess;
    app.add_option_function<std::string>(
           "--engine", [](const std::string& engine) { chooseEngine(engine); },
           "Engine of the commands that read and write files, given before the command: exiftool (every "
           "format) or image-io (in process: common image formats, the tags that have an image I/O name)")
        ->check(CLI::IsMember({"exiftool", "image-io"}));
    app.add_flag_function(
        "-q,--quiet", [](std::int64_t) { setQuiet(true); },
        "Don't show ExifTool's warnings nor the files passed over, given before the command (errors still "
        "show)");

    // `corvane help [COMMAND...]`: the help of the program or of a command, exit 0.
    auto* help =
        app.add_subcommand("help", "Print the help of the program, or of a command: corvane help read");
    auto helpPath = std::make_shared<std::vector<std::string>>();
    help->add_option("COMMAND", *helpPath, "A command, and a subcommand of it");
    help->callback([&app, helpPath, &exitCode] {
        const CLI::App* command = &app;
        for (const std::string& name : *helpPath) {
            const CLI::App* sub = nullptr;
            for (const CLI::App* candidate : command->get_subcommands([](const CLI::App*) { return true; }))
                if (candidate->get_name() == name) sub = candidate;
            if (!sub) throw UsageError("no command \"" + name + "\" (see corvane help)");
            command = sub;
        }
        std::cout << command->help();
        exitCode = exitSuccess;
    });

    addCatalogueCommands(app, exitCode);
    addFileCommands(app, exitCode);
    addExchangeCommands(app, exitCode);
    addSidecarCommands(app, exitCode);
    addTableExchangeCommands(app, exitCode);
    addPresetCommands(app, exitCode);
    addTableCommands(app, exitCode);
    addLibraryCommands(app, exitCode);
    addPhotosScriptCommands(app, exitCode);
    addCleanCommands(app, exitCode);
    addGeotagCommands(app, exitCode);
    addImageCommands(app, exitCode);
    addPhotoLibraryCommands(app, exitCode);
    addCompletionCommands(app, exitCode);
    try {
        // CLI11 wants the arguments in reverse order.
        std::vector<std::string> arguments(argv + 1, argv + argc);
        takePathsAfterMark(arguments);
        std::reverse(arguments.begin(), arguments.end());
        app.parse(arguments);
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForAllHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForVersion& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        // CLI11's own exit codes (105-109...) mean nothing to a shell: every parse error is a
        // usage error.
        std::cerr << "corvane: " << e.what() << "\n";
        std::cerr << "Run with --help for more information.\n";
        return exitUsage;
    } catch (const UsageError& e) {
        std::cerr << "corvane: " << e.what() << "\n";
        return exitUsage;
    } catch (const std::exception& e) {
        std::cerr << "corvane: " << readableReason(e) << "\n";
        return exitFileFailed;
    }
    if (app.get_subcommands().empty()) {
        std::cout << app.help();
    }
    if (stopSignal) return exitInterrupted;
    return exitCode;
}
