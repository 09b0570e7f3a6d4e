// `corvane read` and `corvane set`: the tags of files, read and edited through the import and save
// tasks.
#include "Commands.hpp"
#include "StorageReading.hpp"
#include "ValueChecks.hpp"

#include "corvane/preset_support/TagEditorPresets.hpp"
#include "corvane/preset_support/UseCustomValueSettings.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_editor/TagEditorEditions.hpp"
#include "corvane/tag_storages/ETTagStorageWriter.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/tag_value/TagValueChecker.hpp"
#include "corvane/tag_value/TypedTagValue.hpp"
#include "corvane/task_support/SaveTagEditorsTask.hpp"
#include "corvane/value_models/DateEdition.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace corvane::cli {

namespace {

namespace fs = std::filesystem;

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
    std::vector<std::string> arguments;
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

constexpr const char* dateEditionSyntax =
    "give fields as KEY: NUMBER with keys YY MM DD hh mm ss, e.g. \"hh: 2\", \"SHIFT(DD: -1)\", "
    "\"UPDATE(YY: 2021)\", \"SELECT(YY: 2021 MM: 5 DD: 1)\", or RESTORE(), REMOVE()";

// A select, update or shift without any field can't be what the user meant: SELECT() sets every
// date to 0001:01:01, the others change nothing.
bool changesNoField(const DateEdition& edition) {
    const DateValues* values = edition.values();
    return values && values->isEmpty();
}

// The date editions of a preset that change no field, as "TAG: TEXT".
std::vector<std::string> emptyPresetDateEditions(const std::vector<PresetItemEntry>& entries) {
    std::vector<std::string> found;
    for (const auto& entry : entries) {
        const TagItem* item = entry.tagName().item();
        const auto* custom = entry.edition().getIf<UseCustomValueSettings>();
        if (!item || !custom || !item->type().isDateTimeOrPartial()) continue;
        const auto edition = DateEdition::fromDescription(custom->value);
        if (!edition || changesNoField(*edition))
            found.push_back(entry.tagName().rawValue() + ": \"" + custom->value + "\"");
    }
    return found;
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
        } else if (value.empty()) {
            assignments.push_back({item->name(), value, argument});
        } else if (const auto checked = TagValueChecker::check(*item, value); !checked.isValid()) {
            reporter.error(checked.error);
        } else {
            assignments.push_back({item->name(), checked.text, argument});
        }
    }
    const std::vector<std::string>& paths = options.paths;

    std::optional<DateEdition> dateEdition;
    if (options.shiftDates) {
        dateEdition = DateEdition::fromDescription(options.shiftDates);
        if (!dateEdition) dateEdition = DateEdition::fromDescription("SHIFT(" + *options.shiftDates + ")");
        if (!dateEdition || changesNoField(*dateEdition)) {
            reporter.error("\"" + *options.shiftDates + "\" is not a date edition: " + dateEditionSyntax);
            dateEdition.reset();
        }
    }
    std::optional<TypedTagValue<Coordinate>> coordinate;
    if (options.location) {
        if (options.location->find_first_not_of(" \t") == std::string::npos) {
            coordinate = TypedTagValue<Coordinate>::clear();
        } else {
            auto checked = checkedPosition(*options.location);
            if (const auto* position = std::get_if<Coordinate>(&checked))
                coordinate = TypedTagValue<Coordinate>::value(*position);
            else
                reporter.error(std::get<std::string>(checked));
        }
    }
    std::optional<std::vector<PresetItemEntry>> preset;
    if (options.preset) {
        std::string error;
        preset = presetEntries(*options.preset, options.presetName, error);
        if (!preset) reporter.error(error);
        for (const auto& text : preset ? emptyPresetDateEditions(*preset) : std::vector<std::string>())
            reporter.error(*options.preset + ": the date edition " + text +
                           " changes no field: " + dateEditionSyntax);
        for (const auto& text :
             preset ? TagEditorPresets::invalidValues(*preset) : std::vector<std::string>())
            reporter.error(*options.preset + ": " + text);
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

    // Each file counts as ExifTool reported it: written, left unchanged, failed, or not known when
    // the run was stopped. A failed file is never counted as unchanged.
    std::size_t updated = 0, unchanged = editors.size() - edited.size(), failedCount = 0, unknown = 0;
    if (!edited.empty()) {
        auto task = SaveTagEditorsTask::create(SaveTagEditorsTask::Settings(edited));
        runTask(task, "Writing", reporter);
        const std::set<std::string> failed = reportTaskErrors(*task, reporter);
        std::map<std::string, ETTagStorageWriter::FileOutcome> outcomes;
        for (auto& outcome : task->fileOutcomes())
            outcomes.emplace(pathKey(outcome.url), std::move(outcome));
        using Status = ETTagStorageWriter::FileOutcome::Status;
        for (const auto& editor : edited) {
            const fs::path path = editor->source().url();
            const auto it = outcomes.find(pathKey(path));
            const Status status = failed.contains(pathKey(path)) ? Status::failed
                                  : it != outcomes.end()         ? it->second.status
                                                                 : Status::unknown;
            switch (status) {
            case Status::written:
                ++updated;
                break;
            case Status::unchanged:
                ++unchanged;
                std::cout << path.string() << ": nothing to change\n";
                break;
            case Status::failed:
                ++failedCount;
                break;
            case Status::unknown:
                ++unknown;
                reporter.fileError(path, "not known whether written (" +
                                             (it != outcomes.end() ? it->second.reason : "the save failed") +
                                             ")");
                break;
            }
        }
    }
    if (coordinate && updated && coordinate->isValue())
        std::cout << "position " << positionText(coordinate->get()) << '\n';
    std::cout << updated << (updated == 1 ? " file" : " files") << " updated, " << unchanged << " unchanged";
    if (failedCount) std::cout << ", " << failedCount << " failed";
    if (unknown) std::cout << ", " << unknown << " not known";
    std::cout << '\n';
    return reporter.errorCount() ? 1 : 0;
}

// The paths that followed "--" in a `set` command line.
std::vector<std::string>& pathsAfterMark() {
    static std::vector<std::string> paths;
    return paths;
}

} // namespace

void takePathsAfterMark(std::vector<std::string>& arguments) {
    // The program's own options ("--engine NAME") may come before the command.
    std::size_t command = 0;
    while (command < arguments.size() && arguments[command].starts_with("-"))
        command += arguments[command] == "--engine" ? 2 : 1;
    if (command >= arguments.size() || arguments[command] != "set") return;
    const auto mark =
        std::find(arguments.begin() + static_cast<std::ptrdiff_t>(command), arguments.end(), "--");
    if (mark == arguments.end()) return;
    pathsAfterMark().assign(mark + 1, arguments.end());
    arguments.erase(mark, arguments.end());
}

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
    // Arguments of the form TAG=VALUE are the edits, the others the files; after "--", every
    // argument is a file (see takePathsAfterMark).
    set->add_option("ARGUMENTS", setOptions->arguments,
                    "TAG=VALUE edits (an empty VALUE clears the tag), then files and folders");
    set->allow_extras();
    set->callback([set, setOptions, &exitCode] {
        for (const std::string& extra : set->remaining()) {
            if (extra == "--") continue;
            std::cerr << "corvane: unexpected argument \"" << extra << "\"\n";
            exitCode = 2;
            return;
        }
        for (const std::string& argument : setOptions->arguments)
            (looksLikeAssignment(argument) ? setOptions->assignments : setOptions->paths).push_back(argument);
        auto& trailing = pathsAfterMark();
        setOptions->paths.insert(setOptions->paths.end(), trailing.begin(), trailing.end());
        exitCode = runSet(*setOptions);
    });
}

} // namespace corvane::cli
