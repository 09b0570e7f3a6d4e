#pragma once

#include "Output.hpp"
#include "ProgramEntry.hpp"

#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/tag_storages/TagStorageSource.hpp"

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace corvane::cli {

using EditorList = std::vector<std::shared_ptr<TagEditor>>;
// ExifTool's warnings about files that it read all the same, per file.
using FileWarnings = std::map<std::filesystem::path, std::vector<std::string>>;

// The path key under which files are matched between arguments, editors and ExifTool's reports.
std::string pathKey(const std::filesystem::path& path);

// Makes every later read and save go through one engine, "exiftool" or "image-io" (the in-process
// engine); throws CLI::ValidationError when this build doesn't offer it.
void chooseEngine(const std::string& engine);

// Runs the task through the task manager and drains the main queue on this thread until it has
// ended, showing its progress ("LABEL N/M files" when `fileCount` is given).
void runTask(const std::shared_ptr<AbstractTask>& task, const std::string& label, Reporter& reporter,
             std::size_t fileCount = 0);

// Reports the task's errors; gives the path keys of the files that ExifTool named in them.
std::set<std::string> reportTaskErrors(const AbstractTask& task, Reporter& reporter);

// Starts the ExifTool processes that reading `paths` will take while the command still checks its
// arguments and collects its files, when the engine is ExifTool: the Perl start-up, the longest
// part of a small command, then runs beside that work instead of after it.
void prestartExifTool(const std::vector<std::string>& paths);
// Gives the pool the ExifTool that the launcher started for the command (`prestarted`, when not
// null), else starts one before the command line is even parsed, when the command is one that reads
// or writes files through ExifTool (`read`, `set`) and isn't asked for its help: the program's own
// set-up then runs beside Perl's start-up too. The command's `prestartExifTool` adds more processes
// for a large batch.
void prestartExifToolForCommand(int argc, const char* const* argv, const PrestartedExifTool* prestarted);
// Stops the idle ExifTool processes, for a command past its last ExifTool run: they end while the
// command prints, instead of delaying the program's exit.
void stopExifToolProcesses();
// For a command whose next ExifTool runs are its last: each process ends after its run instead of
// getting ready for another.
void lastExifToolRunsFollow();

// The sources that the path arguments name, in their order: files of a supported format and
// folders, which the import unfolds. Missing files and unsupported formats are reported.
std::vector<TagStorageSource> collectSources(const std::vector<std::string>& paths, bool recursive,
                                             Reporter& reporter);

// Reads the sources into editors, sorted by path. A file that ExifTool can't read fails the whole
// read; its error is reported and the others are read again without it. Every file given or found
// in a folder is shown or reported: a folder's files of a format not read are noted, a file that
// gives no editor without an error of its own is reported as not read. With `warnings`, ExifTool's
// warnings about the files read are kept there, for the caller to show beside each file.
// With `tags` (ExifTool's names, "EXIF:Artist", "IPTC:all"), the files (not folders) are read for
// those tags only: the editors then hold only those values.
EditorList importEditors(std::vector<TagStorageSource> sources, bool recursive, Reporter& reporter,
                         FileWarnings* warnings = nullptr, const std::vector<std::string>* tags = nullptr);

// The sources with each folder replaced by its files of a format read (of its subfolders too with
// `recursive`), as the import unfolds it; its other files are noted as skipped, as the import notes
// them.
std::vector<TagStorageSource> unfoldFolders(const std::vector<TagStorageSource>& sources, bool recursive,
                                            Reporter& reporter);
// Sorts editors by the paths of their files.
void sortByPath(EditorList& editors);
// Reads the JPEG files among `sources` with the in-process engine, into ExifTool editors: their
// values as found come from the in-process engine, at a small part of the cost of an ExifTool run,
// and their save goes through ExifTool as any other. The files read are taken out of `sources`;
// the others, and those the engine couldn't read, stay. Nothing is read when this build has no
// in-process engine. Meant for edits whose outcome can be checked against the values it gives.
EditorList importJPEGEditorsInProcess(std::vector<TagStorageSource>& sources);
// The storages of the files that `paths` name (a folder gives its own files, in name order), in
// the order of the arguments. Missing, unsupported and unreadable files are reported on standard
// error, set `exitCode` to 1, and are left out.
std::vector<TagStorage> readStorages(const std::vector<std::string>& paths, int& exitCode);

} // namespace corvane::cli
