#pragma once

#include "corvane/preset_support/PresetItemEntry.hpp"

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

namespace corvane::cli {

// Each group of commands adds its subcommands to the application; the
// callbacks set the process exit code through the returned reference.
void addCatalogueCommands(CLI::App& app, int& exitCode);
// `read` and `set`: the tags of files, read and edited through the import and save tasks.
void addFileCommands(CLI::App& app, int& exitCode);
// For `set`: everything after the first "--" is a path, whatever it looks like ("-all=.jpg",
// "XMP:Rights=x.jpg"). Those arguments, and the mark, are taken out of `arguments` before the
// parser sees them, and kept for the command.
void takePathsAfterMark(std::vector<std::string>& arguments);

// `compare` and `sidecar`: comparison of files and sidecar export and import.
void addExchangeCommands(CLI::App& app, int& exitCode);

// `preset list` and `preset make`: preset libraries on disk.
void addPresetCommands(CLI::App& app, int& exitCode);

// `show`: the merged rows of a tag value table over files; `tagset`: the user's tag sets.
void addTableCommands(CLI::App& app, int& exitCode);

// `keywords` and `locations`: the user's keyword and location libraries.
void addLibraryCommands(CLI::App& app, int& exitCode);

// `library list|add|set`: a photo library kept as a folder tree; `doctor`: what this installation
// has (ExifTool, AtomicParsley, exiv2), the photo library and the sandbox's access.
void addPhotoLibraryCommands(CLI::App& app, int& exitCode);

// The entries of the preset named `name` in the library `file`, or of its only preset when `name`
// is empty; nothing, with the reason in `error`, when there is no such single preset.
std::optional<std::vector<PresetItemEntry>> presetEntries(const std::string& file, const std::string& name,
                                                          std::string& error);

} // namespace corvane::cli
