// `corvane read` and `corvane set`: the tags of files, read and edited through the import and save
// tasks.
#include "Commands.hpp"

#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/MainQueue.hpp"
#include "corvane/preset_support/TagEditorPresets.hpp"
#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_edition/TaskManager.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_editor/TagEditorEditions.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/tag_value/TypedTagValue.hpp"
#include "corvane/task_support/ImportTagEditorsTask.hpp"
#include "corvane/task_support/SaveTagEditorsTask.hpp"
#include "corvane/value_models/CoordinateParser.hpp"
#include "corvane/value_models/DateEdition.hpp"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvane::cli {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using EditorList = std::vector<std::shared_ptr<TagEditor>>;

// The path key under which files are matched between arguments, editors and ExifTool's reports.
std::string pathKey(const fs::path& path) {
    std::error_code ec;
    fs::path canonical = fs::weakly_canonical(fs::absolute(path, ec), ec);
    return (ec ? fs::absolute(path).lexically_normal() : canonical).string();
}

// Errors are counted, and printed on standard error one a line, with the file they concern.
class Reporter {
public:
    void error(const std::string& text) {
        clearProgress();
        std::cerr << "corvane: " << text << '\n';
        ++errorCount_;
    }
    void fileError(const fs::path& path, const std::string& text) { error(path.string() + ": " + text); }
    std::size_t errorCount() const { return errorCount_; }

    // A progress line on a terminal, shown only once a batch has run for a moment.
    void progress(const std::string& label, double fraction, Clock::time_point start) {
        if (!isTerminal_ || Clock::now() - start < std::chrono::milliseconds(400)) return;
        const int percent = static_cast<int>(std::clamp(fraction, 0.0, 1.0) * 100);
        std::cerr << '\r' << label << ' ' << percent << "%  " << std::flush;
        shown_ = true;
    }
    void clearProgress() {
        if (!shown_) return;
        std::cerr << "\r\033[K" << std::flush;
        shown_ = false;
    }

private:
    bool isTerminal_ = isatty(STDERR_FILENO) == 1;
    bool shown_ = false;
    std::size_t errorCount_ = 0;
};

// Runs the task through the task manager and drains the main queue on this thread until it has
// ended, showing its progress.
void runTask(const std::shared_ptr<AbstractTask>& task, const std::string& label, Reporter& reporter) {
    MainQueue& main = MainQueue::shared();
    if (!main.mainThread()) main.registerCurrentThreadAsMain();
    const auto start = Clock::now();
    TaskManager::shared().add(task);
    auto ended = [&] {
        auto status = task->status();
        return status == AbstractTask::Status::completed || status == AbstractTask::Status::cancelled;
    };
    while (!main.runUntil(ended, std::chrono::milliseconds(100)))
        reporter.progress(label, task->progress(), start);
    main.drain();
    reporter.clearProgress();
}

// The files named by ExifTool in a failed run's reports; the error is reported for each, or once
// for the run when it names none.
std::set<std::string> reportTaskErrors(const AbstractTask& task, Reporter& reporter) {
    std::set<std::string> failedFiles;
    for (const auto& error : task.errors()) {
        try {
            std::rethrow_exception(error);
        } catch (const ETOutputException& e) {
            bool named = false;
            for (const auto& fileError : e.fileErrors()) {
                if (!fileError.path) continue;
                reporter.fileError(*fileError.path, fileError.text);
                failedFiles.insert(pathKey(*fileError.path));
                named = true;
            }
            if (!named) reporter.error(e.details());
        } catch (const std::exception& e) {
            reporter.error(e.what());
        }
    }
    return failedFiles;
}

// The files of a folder whose name has a dot: such a folder counts as a file for the engines, so
// its supported files are listed here, in name order, hidden ones left out.
std::vector<fs::path> listDottedFolder(const fs::path& folder, bool recursively) {
    std::vector<fs::path> files;
    std::error_code ec;
    std::vector<fs::path> entries;
    for (const auto& entry : fs::directory_iterator(folder, ec))
        if (entry.path().filename().string().rfind('.', 0) != 0) entries.push_back(entry.path());
    std::sort(entries.begin(), entries.end());
    for (const auto& entry : entries) {
        if (fs::is_directory(entry, ec)) {
            if (!recursively) continue;
            auto inner =
                pathExtension(entry).empty() ? listFolderFiles(entry, true) : listDottedFolder(entry, true);
            files.insert(files.end(), inner.begin(), inner.end());
        } else if (ImportTagEditorsTask::canImportEditor(entry)) {
            files.push_back(entry);
        }
    }
    return files;
}

// The sources that the path arguments name: files of a supported format and folders, which the
// import unfolds. Missing files and unsupported formats are reported.
std::vector<TagStorageSource> collectSources(const std::vector<std::string>& paths, bool recursive,
                                             Reporter& reporter) {
    std::vector<TagStorageSource> sources;
    std::set<std::string> seen;
    auto add = [&](const fs::path& path) {
        if (seen.insert(pathKey(path)).second) sources.emplace_back(fs::absolute(path).lexically_normal());
    };
    for (const std::string& text : paths) {
        const fs::path path(text);
        std::error_code ec;
        const auto status = fs::status(path, ec);
        if (!fs::exists(status)) {
            reporter.fileError(path, "No such file or directory");
        } else if (fs::is_directory(status)) {
            if (pathExtension(path).empty()) {
                add(path);
            } else {
                for (const auto& file : listDottedFolder(path, recursive))
                    add(file);
            }
        } else if (!ImportTagEditorsTask::canImportEditor(path)) {
            reporter.fileError(path, "File format is not supported");
        } else {
            add(path);
        }
    }
    return sources;
}

// Reads the sources into editors, sorted by path. A file that ExifTool can't read fails the whole
// read; its error is reported and the others are read again without it.
EditorList importEditors(std::vector<TagStorageSource> sources, bool recursive, Reporter& reporter) {
    EditorList editors;
    while (!sources.empty()) {
        ImportTagEditorsTask::Settings settings(sources);
        settings.ignoreMinorErrors = false;
        settings.unfoldFolders = true;
        settings.unfoldRecursively = recursive;
        // Copied, not moved: GCC 12 warns, wrongly, that a moved-from empty format set may be
        // read uninitialised (optimised sanitizer builds).
        auto task = ImportTagEditorsTask::create(settings);
        runTask(task, "Reading", reporter);
        auto failed = reportTaskErrors(*task, reporter);
        if (task->errors().empty()) {
            editors = task->importedEditors();
            break;
        }
        // Try again without the files that failed, if ExifTool named any of the sources.
        const auto before = sources.size();
        std::erase_if(sources, [&](const TagStorageSource& s) { return failed.contains(pathKey(s.url())); });
        if (sources.size() == before || failed.empty()) {
            // Files found in folders: the folders' other files go through one by one.
            std::vector<TagStorageSource> files;
            for (const auto& source : sources) {
                if (!source.isFolder()) continue;
                for (const auto& url : listFolderFiles(source.url(), recursive))
                    if (ImportTagEditorsTask::canImportEditor(url) && !failed.contains(pathKey(url)))
                        files.emplace_back(url, std::nullopt, source.password());
            }
            if (failed.empty() || files.empty()) break;
            std::erase_if(sources, [](const TagStorageSource& s) { return s.isFolder(); });
            sources.insert(sources.end(), files.begin(), files.end());
        }
    }
    std::sort(editors.begin(), editors.end(),
              [](const auto& a, const auto& b) { return a->source().url() < b->source().url(); });
    return editors;
}

// Control characters of a value shown on one line.
std::string escapedValue(const std::string& value) {
    std::string result;
    result.reserve(value.size());
    for (char c : value) {
        switch (c) {
        case '\n':
            result += "\\n";
            break;
        case '\r':
            result += "\\r";
            break;
        case '\t':
            result += "\\t";
            break;
        case '\\':
            result += "\\\\";
            break;
        default:
            result += c;
        }
    }
    return result;
}

int runRead(const std::vector<std::string>& paths, bool json, bool recursive) {
    Reporter reporter;
    auto sources = collectSources(paths, recursive, reporter);
    auto editors = importEditors(std::move(sources), recursive, reporter);
    if (json) {
        nlohmann::ordered_json root = nlohmann::ordered_json::object();
        for (const auto& editor : editors) {
            const TagStorage storage = editor->storage();
            nlohmann::ordered_json tags = nlohmann::ordered_json::object();
            for (const TagName& name : storage.currentTagNames())
                if (auto value = storage.currentValue(name)) tags[name.rawValue()] = *value;
            root[storage.source().url().string()] = std::move(tags);
        }
        // Text that isn't valid UTF-8 is replaced rather than failing the whole output.
        std::cout << root.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
    } else {
        for (const auto& editor : editors) {
            const TagStorage storage = editor->storage();
            std::cout << "======== " << storage.source().url().string() << '\n';
            for (const TagName& name : storage.currentTagNames())
                if (auto value = storage.currentValue(name))
                    std::cout << name.rawValue() << '\t' << escapedValue(*value) << '\n';
        }
    }
    std::cout << std::flush;
    return reporter.errorCount() ? 1 : 0;
}

struct Assignment {
    TagName name;
    std::string value; // empty: clear the tag
    std::string text;  // as given
};

// TAG=VALUE where TAG is a name of the form Family:Key (or a bare word, to report it).
bool looksLikeAssignment(const std::string& text) {
    auto equal = text.find('=');
    if (equal == std::string::npos || equal == 0) return false;
    const std::string name = text.substr(0, equal);
    std::size_t colons = 0;
    for (char c : name) {
        if (c == ':') {
            ++colons;
            continue;
        }
        const bool word = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                          c == '_' || c == '-';
        if (!word) return false;
    }
    return colons <= 1 && name.front() != ':' && name.back() != ':';
}

struct SetOptions {
    std::vector<std::string> assignments;
    std::vector<std::string> paths;
    bool recursive = false;
    std::optional<std::string> shiftDates;
    std::optional<std::string> location;
    std::optional<std::string> rotate;
    std::optional<std::string> flip;
    std::optional<std::string> preset;
    std::string presetName;
};

// The date tags a date edition applies to: those of the metadata families (file system dates
// are left to the system) that the file holds and that can be edited.
std::vector<TagName> editableDateTags(const TagEditor& editor) {
    std::vector<TagName> names;
    for (const TagName& name : editor.currentTagNames()) {
        const TagItem* item = name.item();
        if (!item || !item->type().isDateTimeOrPartial()) continue;
        if (name.stream() == TagStream::streamFile) continue;
        if (editor.canEditValue(name)) names.push_back(name);
    }
    return names;
}

int runSet(const SetOptions& options) {
    Reporter reporter;

    std::vector<Assignment> assignments;
    for (const std::string& argument : options.assignments) {
        const auto equal = argument.find('=');
        const std::string nameText = argument.substr(0, equal);
        const std::string value = argument.substr(equal + 1);
        auto name = TagName::fromRawValue(nameText);
        const TagItem* item = name ? name->item() : nullptr;
        if (!item) {
            reporter.error("unknown tag \"" + nameText +
                           "\" (tags are named Family:Key, see `corvane tags`)");
        } else if (!item->isWritable()) {
            reporter.error("tag \"" + nameText + "\" is not editable");
        } else if (!value.empty() && !item->nativeValueFromStringValue(value)) {
            reporter.error("\"" + value + "\" is not a valid value for " + nameText);
        } else {
            assignments.push_back({item->name(), value, argument});
        }
    }
    const std::vector<std::string>& paths = options.paths;

    std::optional<DateEdition> dateEdition;
    if (options.shiftDates) {
        dateEdition = DateEdition::fromDescription(options.shiftDates);
        if (!dateEdition) dateEdition = DateEdition::fromDescription("SHIFT(" + *options.shiftDates + ")");
        if (!dateEdition)
            reporter.error("\"" + *options.shiftDates + "\" is not a date edition (e.g. \"hh: 2\")");
    }
    std::optional<TypedTagValue<Coordinate>> coordinate;
    if (options.location) {
        if (options.location->find_first_not_of(" \t") == std::string::npos) {
            coordinate = TypedTagValue<Coordinate>::clear();
        } else if (auto parsed = CoordinateParser::coordinate(*options.location)) {
            coordinate = TypedTagValue<Coordinate>::value(*parsed);
        } else {
            reporter.error("\"" + *options.location + "\" is not a coordinate");
        }
    }
    std::optional<std::vector<PresetItemEntry>> preset;
    if (options.preset) {
        std::string error;
        preset = presetEntries(*options.preset, options.presetName, error);
        if (!preset) reporter.error(error);
    } else if (!options.presetName.empty()) {
        reporter.error("--preset-name needs --preset");
    }
    if (reporter.errorCount()) return 2;
    if (assignments.empty() && !dateEdition && !coordinate && !options.rotate && !options.flip && !preset) {
        reporter.error("nothing to set: give TAG=VALUE or an edit option");
        return 2;
    }
    if (paths.empty()) {
        reporter.error("no file given");
        return 2;
    }

    auto sources = collectSources(paths, options.recursive, reporter);
    auto editors = importEditors(std::move(sources), options.recursive, reporter);

    EditorList edited;
    {
        // One session: the edits of the batch make one change event.
        EditionManager::Session session;
        for (const auto& editor : editors) {
            const fs::path path = editor->source().url();
            for (const Assignment& assignment : assignments) {
                if (!editor->canEditValue(assignment.name)) {
                    reporter.fileError(path, assignment.name.rawValue() + " can't be written in this file");
                    continue;
                }
                editor->setValue(assignment.value.empty() ? TagValueClear : std::optional(assignment.value),
                                 assignment.name);
            }
            if (preset) TagEditorPresets(*editor).apply(*preset);
            TagEditorEditions editions(*editor);
            if (dateEdition) editions.editDate(*dateEdition, editableDateTags(*editor));
            if (coordinate) editions.setGPSCoordinate(*coordinate);
            if (options.rotate) {
                if (*options.rotate == "left")
                    editions.rotateLeftOrientation();
                else
                    editions.rotateRightOrientation();
            }
            if (options.flip) {
                if (*options.flip == "horizontal")
                    editions.horizontalFlipOrientation();
                else
                    editions.verticalFlipOrientation();
            }
            if (editor->isEdited()) edited.push_back(editor);
        }
    }

    std::set<std::string> failed;
    if (!edited.empty()) {
        auto task = SaveTagEditorsTask::create(SaveTagEditorsTask::Settings(edited));
        runTask(task, "Writing", reporter);
        failed = reportTaskErrors(*task, reporter);
        if (!task->errors().empty() && failed.empty()) edited.clear(); // the run failed as a whole
    }
    std::size_t updated = 0;
    for (const auto& editor : edited)
        if (!failed.contains(pathKey(editor->source().url()))) ++updated;
    std::cout << updated << (updated == 1 ? " file" : " files") << " updated, " << editors.size() - updated
              << " unchanged\n";
    return reporter.errorCount() ? 1 : 0;
}

} // namespace

void addFileCommands(CLI::App& app, int& exitCode) {
    auto* read =
        app.add_subcommand("read", "Print the tags of files: per file a header, then Family:Key<TAB>value");
    struct ReadOptions {
        std::vector<std::string> paths;
        bool json = false;
        bool recursive = false;
    };
    auto readOptions = std::make_shared<ReadOptions>();
    read->add_flag("--json", readOptions->json, "One JSON object: file path to {\"Family:Key\": value}");
    read->add_flag("-r,--recursive", readOptions->recursive, "Read the files of subfolders too");
    read->add_option("PATH", readOptions->paths, "Files and folders")->required();
    read->callback([readOptions, &exitCode] {
        exitCode = runRead(readOptions->paths, readOptions->json, readOptions->recursive);
    });

    auto* set = app.add_subcommand(
        "set", "Edit tags and save: corvane set [options] TAG=VALUE... [--] PATH... (TAG= clears the tag)");
    auto setOptions = std::make_shared<SetOptions>();
    set->add_flag("-r,--recursive", setOptions->recursive, "Edit the files of subfolders too");
    set->add_option(
        "--shift-dates", setOptions->shiftDates,
        "A date edition for the date tags of each file: \"hh: 2\", \"SHIFT(DD: -1)\", \"SELECT(...)\"");
    set->add_option("--location", setOptions->location,
                    "GPS coordinate in any usual notation, written to every family the format allows; "
                    "empty to clear");
    set->add_option("--rotate", setOptions->rotate, "Turn the orientation")
        ->check(CLI::IsMember({"left", "right"}));
    set->add_option("--flip", setOptions->flip, "Mirror the orientation")
        ->check(CLI::IsMember({"horizontal", "vertical"}));
    set->add_option("--preset", setOptions->preset,
                    "Apply a preset of this library (.json) after the TAG=VALUE edits")
        ->check(CLI::ExistingFile);
    set->add_option("--preset-name", setOptions->presetName,
                    "The preset to apply, when the library holds more than one");
    // Leading arguments of the form TAG=VALUE are the edits, the others the files; "--" may stand
    // between them (it only ends the options, so a file named like an edit needs a "./" prefix).
    set->validate_positionals();
    set->add_option("TAG=VALUE", setOptions->assignments, "Edits; an empty VALUE clears the tag")
        ->check(CLI::Validator(
            [](std::string& text) {
                return looksLikeAssignment(text) ? std::string() : std::string("not an edit");
            },
            "TAG=VALUE"));
    set->add_option("PATH", setOptions->paths, "Files and folders")->required();
    set->allow_extras();
    set->callback([set, setOptions, &exitCode] {
        for (const std::string& extra : set->remaining()) {
            if (extra == "--") continue;
            std::cerr << "corvane: unexpected argument \"" << extra << "\"\n";
            exitCode = 2;
            return;
        }
        exitCode = runSet(*setOptions);
    });
}

} // namespace corvane::cli
