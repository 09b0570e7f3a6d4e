#pragma once

#include "corvane/preset_support/PresetItemEntry.hpp"
#include "corvane/value_models/Location.hpp"

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

namespace corvane::cli {

// How a command is written (see Output.hpp and StorageReading.hpp):
// - Each group of commands lives in its own cli/<Group>Commands.cpp with an
//   add<Group>Commands(CLI::App&, int& exitCode), declared here and called once in main.cpp.
// - A callback makes one `Reporter` and reports through it: `fileError(path, reason)` (or
//   `fileError(path, line, reason)` for a text input) for a file that failed, `warning(path, text)`
//   for ExifTool's warnings (hidden by -q), `usageError(text)` for a command line that can't be
//   run; then sets `exitCode = reporter.exitCode()`: 0 success, 1 some file failed, 2 usage error.
//   Throwing `UsageError` from a callback does the same as a usage error. main turns SIGINT and
//   SIGTERM into 130 and CLI11's parse errors into 2.
// - A library exception's text goes through `readableReason(e)` and is given with the file it
//   concerns: never a bare parser message.
// - Long work runs through `runTask(task, label, reporter, fileCount)`, which shows
//   "LABEL N/M files" on a terminal only.
// - Results go to standard output, everything else to standard error.

// Each group of commands adds its subcommands to the application; the
// callbacks set the process exit code through the returned reference.
void addCatalogueCommands(CLI::App& app, int& exitCode);
// `read` and `set`: the tags of files, read and edited through the import and save tasks.
void addFileCommands(CLI::App& app, int& exitCode);
// For `set`: everything after the first "--" is a path, whatever it looks like ("-all=.jpg",
// "XMP:Rights=x.jpg"). Those arguments, and the mark, are taken out of `arguments` before the
// parser sees them, and kept for the command.
void takePathsAfterMark(std::vector<std::string>& arguments);

// `compare`: comparison of files.
void addExchangeCommands(CLI::App& app, int& exitCode);

// `sidecar export|import|sync` and `copy-tags`: values between files, sidecars and tags.
void addSidecarCommands(CLI::App& app, int& exitCode);

// `table export|import`: many files' tags in one CSV table, to edit in a spreadsheet.
void addTableExchangeCommands(CLI::App& app, int& exitCode);

// `preset list` and `preset make`: preset libraries on disk.
void addPresetCommands(CLI::App& app, int& exitCode);

// `show`: the merged rows of a tag value table over files; `tagset`: the user's tag sets.
void addTableCommands(CLI::App& app, int& exitCode);

// `keywords` and `locations`: the user's keyword and location libraries.
void addLibraryCommands(CLI::App& app, int& exitCode);
// The place saved as `name` in the user's location library; nothing, with the reason in `error`,
// when there is none or the library can't be read.
std::optional<Location> savedLocation(const std::string& name, std::string& error);

// `photos-script remote` and `photos-script import`: the scripts that drive the Photos application.
void addPhotosScriptCommands(CLI::App& app, int& exitCode);

// `completion bash|zsh` and `manpage`: made from the definition of `app`, whatever it holds.
void addCompletionCommands(CLI::App& app, int& exitCode);

// `clean` (metadata families, the iTunes movie atom) and `fetch` (one tag of many files).
void addCleanCommands(CLI::App& app, int& exitCode);

// `geotag import`, `geotag export` and `gps`: positions from track logs, to GPX and KML, read fast.
void addGeotagCommands(CLI::App& app, int& exitCode);

// `image extract` and `image thumbnail`: embedded images out of files, thumbnails into them.
void addImageCommands(CLI::App& app, int& exitCode);

// `library list|add|set`: a photo library kept as a folder tree; `doctor`: what this installation
// has (ExifTool, AtomicParsley, exiv2), the photo library and the sandbox's access.
void addPhotoLibraryCommands(CLI::App& app, int& exitCode);

// The entries of the preset named `name` in the library `file`, or of its only preset when `name`
// is empty; nothing, with the reason in `error`, when there is no such single preset.
std::optional<std::vector<PresetItemEntry>> presetEntries(const std::string& file, const std::string& name,
                                                          std::string& error);

} // namespace corvane::cli
