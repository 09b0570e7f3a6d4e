#include "Commands.hpp"

#include "corvane/Version.hpp"

#include <iostream>

int main(int argc, char** argv) {
    CLI::App app{"corvane: read, compare and edit the metadata of media files"};
    app.require_subcommand(0, 1);
    app.set_version_flag("--version", std::string("corvane ") + CORVANE_VERSION);
    int exitCode = 0;
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
