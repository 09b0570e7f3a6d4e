#pragma once

#include <CLI/CLI.hpp>

namespace corvane::cli {

// Each group of commands adds its subcommands to the application; the
// callbacks set the process exit code through the returned reference.
void addCatalogueCommands(CLI::App& app, int& exitCode);
// `read` and `set`: the tags of files, read and edited through the import and save tasks.
void addFileCommands(CLI::App& app, int& exitCode);
// `compare` and `sidecar`: comparison of files and sidecar export and import.
void addExchangeCommands(CLI::App& app, int& exitCode);

} // namespace corvane::cli
