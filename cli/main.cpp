#include "Commands.hpp"
#include "StorageReading.hpp"

#include <iostream>

int main(int argc, char** argv) {
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
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return app.exit(e);
    } catch (const std::exception& e) {
        std::cerr << "corvane: " << e.what() << "\n";
        return 1;
    }
    if (app.get_subcommands().empty()) {
        std::cout << app.help();
    }
    return exitCode;
}
