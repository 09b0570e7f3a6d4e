// `corvane read` and `corvane set`: the tags of files, read and edited through the import and save
// tasks.
#include "Commands.hpp"
#include "EditorSaving.hpp"
#include "StorageReading.hpp"
#include "TagSelection.hpp"
#include "ValueChecks.hpp"

#include "corvane/converters/ArrayValueConverter.hpp"
#include "corvane/converters/DynamicValue.hpp"
#include "corvane/converters/detail/ConverterText.hpp"
#include "corvane/csv_support/CSVWriter.hpp"
#include "corvane/csv_support/OutputStream.hpp"
#include "corvane/helpers/ConcurrentPerform.hpp"
#include "corvane/helpers/WhiteSpace.hpp"
#include "corvane/preset_support/TagEditorPresets.hpp"
#include "corvane/preset_support/UseCustomValueSettings.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_editor/TagEditorEditions.hpp"
#include "corvane/tag_editor/detail/PrettyText.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/tag_value/TagNameMapping.hpp"
#include "corvane/tag_value/TagValueChecker.hpp"
#include "corvane/tag_value/TypedTagValue.hpp"
#include "corvane/tag_value/detail/NumberText.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "corvane/value_models/DateEdition.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
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

struct ReadOptions {
    std::vector<std::string> paths;
    std::vector<std::string> tags;
    bool json = false;
    bool csv = false;
    bool raw = false;
    bool recursive = false;
};

// One file's rows: its selected tags with their text, readable or raw.
struct FileRows {
    std::string path;
    std::vector<std::pair<TagName, std::string>> rows;
};

// A text of the form of a JSON number ("-12", "0.5"; not "1.", "01" or "1e3") as the number that
// the JSON parser reads from it. The text stays a text otherwise.
std::optional<nlohmann::ordered_json> plainJSONNumber(std::string_view text) {
    std::size_t at = text.starts_with('-') ? 1 : 0;
    const auto digits = [&] {
        const std::size_t from = at;
        while (at < text.size() && text[at] >= '0' && text[at] <= '9')
            ++at;
        return at - from;
    };
    const std::size_t whole = digits();
    if (whole == 0 || (whole > 1 && text[at - whole] == '0')) return std::nullopt;
    bool decimal = false;
    if (at < text.size() && text[at] == '.') {
        ++at;
        if (digits() == 0) return std::nullopt;
        decimal = true;
    }
    if (at != text.size()) return std::nullopt;
    const char* first = text.data();
    const char* last = text.data() + text.size();
    // Whole numbers as integers, unless too large for one; the others as the nearest double.
    if (!decimal) {
        if (text.front() == '-') {
            std::int64_t value = 0;
            if (const auto [end, ec] = std::from_chars(first, last, value); ec == std::errc() && end == last)
                return nlohmann::ordered_json(value);
        } else {
            std::uint64_t value = 0;
            if (const auto [end, ec] = std::from_chars(first, last, value); ec == std::errc() && end == last)
                return nlohmann::ordered_json(value);
        }
    }
    double value = 0;
    if (const auto [end, ec] = std::from_chars(first, last, value); ec == std::errc() && end == last)
        return nlohmann::ordered_json(value);
    // Beyond a double's range: as the parser reads it.
    const auto number = nlohmann::ordered_json::parse(text, nullptr, false);
    if (number.is_number()) return number;
    return std::nullopt;
}

// The value of a row in the JSON output: numbers as numbers and lists as arrays, as the tag's
// converter gives them; a readable text that is a plain number (a real without trailing zeros) as a
// number too. Nothing for a text printed as it stands.
std::optional<nlohmann::ordered_json> jsonValue(const TagName& name, const std::string& text, bool raw) {
    const TagItem* item = name.item();
    if (!item) return std::nullopt;
    // Numbers the converter would misread ("100 0" in a single-number tag) are printed as they stand.
    if (item->isInSequence() || raw) {
        const auto read = detail::wholeJSONValue(*item, text);
        if (!read) return std::nullopt;
        nlohmann::ordered_json value = toJson(*read);
        if (item->isInSequence() && !raw && value.is_array())
            for (auto& element : value)
                if (element.is_string() || element.is_number())
                    for (const auto& choice : item->choices())
                        if (choice.value ==
                            (element.is_string() ? element.get<std::string>() : element.dump()))
                            element = choice.title;
        if (value.is_null() || (value.is_string() && value.get_ref<const std::string&>() == text))
            return std::nullopt;
        return value;
    }
    if (!detail::convertsWholly(*item, text)) return std::nullopt;
    if (item->type().isNumber()) return plainJSONNumber(text);
    return std::nullopt;
}

// An array of one object a file, in the layout of a two-space indented dump of the whole array,
// written a record at a time: one document of every file would cost as much as the rest of the
// command's own work, each key added to an ordered object being compared with those before it.
void printJSON(std::vector<FileRows> files, bool raw) {
    // Text that isn't valid UTF-8 is replaced rather than failing the whole output.
    auto dump = [](const nlohmann::ordered_json& value) {
        return value.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    };
    // Most keys and texts are printable ASCII with nothing to escape, and are written as they
    // stand, as the dump would write them, without a document made for each.
    const auto plain = [](std::string_view value) {
        return std::all_of(value.begin(), value.end(),
                           [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; });
    };
    auto appendString = [&](std::string& text, const std::string& value) {
        if (plain(value)) {
            text += '"';
            text += value;
            text += '"';
        } else {
            text += dump(value);
        }
    };
    auto appendKey = [&](std::string& text, const TagName& name) {
        const auto& stream = name.stream().rawValue();
        const auto& key = name.key().rawValue();
        if (!plain(stream) || !plain(key)) return appendString(text, name.rawValue());
        text += '"';
        text += stream;
        text += ':';
        text += key;
        text += '"';
    };
    if (files.empty()) {
        std::cout << "[]\n";
        return;
    }
    // A row's place in its record, and the value it prints: its text as it stands, or the JSON
    // value made from it.
    struct Entry {
        const TagName* name;
        const std::string* text;
        std::optional<nlohmann::ordered_json> value;
    };
    struct NameHash {
        std::size_t operator()(const TagName* name) const { return name->hash(); }
    };
    struct SameName {
        bool operator()(const TagName* a, const TagName* b) const { return *a == *b; }
    };
    // The records are made side by side, and printed in order. A file's rows are freed with the
    // making of its record, not all at the end on one processor.
    std::vector<std::string> records(files.size());
    concurrentPerform(files.size(), [&](std::size_t i) {
        const FileRows file = std::move(files[i]);
        // As in an ordered object: a key keeps its first place and its last value.
        std::vector<Entry> entries;
        std::unordered_map<const TagName*, std::size_t, NameHash, SameName> position;
        entries.reserve(file.rows.size());
        for (const auto& [name, row] : file.rows) {
            Entry entry{&name, &row, jsonValue(name, row, raw)};
            if (const auto [at, added] = position.emplace(&name, entries.size()); added)
                entries.push_back(std::move(entry));
            else
                entries[at->second] = {entries[at->second].name, &row, std::move(entry.value)};
        }
        std::string text = "  {\n    \"SourceFile\": ";
        appendString(text, file.path);
        for (const auto& entry : entries) {
            text += ",\n    ";
            appendKey(text, *entry.name);
            text += ": ";
            if (!entry.value) {
                appendString(text, *entry.text);
                continue;
            }
            if (entry.value->is_string()) {
                appendString(text, entry.value->get_ref<const std::string&>());
                continue;
            }
            // A list's own lines go four spaces further in, to the record's depth.
            for (const char c : dump(*entry.value)) {
                text += c;
                if (c == '\n') text += "    ";
            }
        }
        text += "\n  }";
        records[i] = std::move(text);
    });
    std::cout << "[\n";
    for (std::size_t i = 0; i < records.size(); ++i)
        std::cout << records[i] << (i + 1 < records.size() ? ",\n" : "\n");
    std::cout << "]\n";
}

// One row a file, one column a tag (in the order the tags first appear), "SourceFile" first.
void printCSV(const std::vector<FileRows>& files) {
    std::vector<TagName> columns;
    std::set<TagName> seen;
    for (const auto& file : files)
        for (const auto& row : file.rows)
            if (seen.insert(row.first).second) columns.push_back(row.first);
    auto stream = OutputStream::toMemory();
    {
        CSVWriter writer(stream);
        std::vector<std::string> header{"SourceFile"};
        for (const TagName& name : columns)
            header.push_back(name.rawValue());
        writer.writeRow(header);
        for (const auto& file : files) {
            std::map<TagName, std::string> values;
            for (const auto& [name, text] : file.rows)
                values.emplace(name, text);
            std::vector<std::string> row{file.path};
            for (const TagName& name : columns) {
                const auto it = values.find(name);
                row.push_back(it == values.end() ? std::string() : it->second);
            }
            writer.writeRow(row);
        }
    }
    stream->close();
    std::cout << stream->data();
    if (!stream->data().empty() && stream->data().back() != '\n') std::cout << '\n';
}

int runRead(const ReadOptions& options) {
    prestartExifTool(options.paths);
    Reporter reporter;
    std::vector<TagSelector> selectors;
    for (const std::string& text : options.tags) {
        std::string error;
        if (auto selector = TagSelector::resolve(text, false, error))
            selectors.push_back(std::move(*selector));
        else
            reporter.usageError(error);
    }
    if (reporter.errorCount()) return reporter.exitCode();

    auto sources = collectSources(options.paths, options.recursive, reporter);
    FileWarnings warnings;
    lastExifToolRunsFollow();
    auto editors = importEditors(std::move(sources), options.recursive, reporter, &warnings);
    stopExifToolProcesses();
    // ExifTool's warnings about a file, on standard error, after what was printed before them.
    auto showWarnings = [&](const std::string& path) {
        const auto it = warnings.find(path);
        if (it == warnings.end()) return;
        std::cout << std::flush;
        for (const std::string& warning : it->second)
            reporter.warning(it->first, warning);
    };
    // Each file's values are made readable on its own: side by side, on every processor. Its editor
    // is let go there: freed after the output, on one processor, a read of 1,000 files took 20 ms
    // more to end.
    std::vector<FileRows> files(editors.size());
    concurrentPerform(editors.size(), [&](std::size_t i) {
        const auto editor = std::move(editors[i]);
        FileRows& file = files[i];
        file.path = editor->source().url().string();
        const TagEditorEditions editions(*editor);
        for (const TagName& name : selectedNames(selectors, editor->currentTagNames())) {
            auto value = options.raw ? editor->currentValue(name) : editions.prettyValue(name, name);
            if (!value && !options.raw) value = editor->currentValue(name);
            if (value) file.rows.push_back({name, *value});
        }
    });
    if (options.json || options.csv) {
        for (const auto& file : files)
            showWarnings(file.path);
        if (options.json)
            printJSON(std::move(files), options.raw);
        else
            printCSV(files);
    } else {
        for (const auto& file : files) {
            showWarnings(file.path);
            std::cout << "======== " << file.path << '\n';
            for (const auto& [name, value] : file.rows)
                std::cout << name.rawValue() << '\t' << escapedValue(value) << '\n';
        }
    }
    std::cout << std::flush;
    return reporter.exitCode();
}

// One TAG=VALUE edit. A bare name stands for the tag of the first family that each file can
// write, so it keeps one checked value per candidate.
struct Assignment {
    std::vector<std::pair<TagName, std::string>> candidates; // value empty: clear the tag
    std::string text;                                        // as given
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
    std::optional<std::string> savedLocation;
    std::optional<std::string> rotate;
    std::optional<std::string> flip;
    std::optional<std::string> preset;
    std::string presetName;
    std::optional<std::string> listSeparator;
    bool dryRun = false;
    bool preserveModificationDate = false;
};

// The value given for a tag of several values split on the user's list separator, in the tag's own
// list form: elements joined by its separator, one that holds that separator quoted ("Smith, John"
// stays one keyword). Blank elements are left out. The text as given for a tag of one value.
std::string withListSeparator(const TagItem& item, const std::string& text, const std::string& separator) {
    const auto converter = item.converter();
    const auto* array = dynamic_cast<const ArrayValueConverter*>(converter.get());
    if (!array) return text;
    std::string joined;
    for (const std::string& piece : detail::converter_text::split(text, separator)) {
        const auto element = trimAsciiBlanks(piece);
        if (element.empty()) continue;
        if (!joined.empty()) joined += array->separator();
        joined += detail::converter_text::listElementText(element, array->separator());
    }
    return joined;
}

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

// "file: TAG: old → new" for each edit of the files, in readable form; "(none)" for no value.
void printChanges(const EditorList& edited) {
    for (const auto& editor : edited) {
        const TagStorage storage = editor->storage();
        std::map<TagName, std::string> changes(storage.writtenValues().begin(),
                                               storage.writtenValues().end());
        for (const auto& [name, written] : changes) {
            const TagItem* item = name.item();
            auto shown = [&](const std::optional<std::string>& value) -> std::string {
                if (!value || value->empty()) return "(none)";
                auto pretty = item ? detail::prettyText(*item, value) : value;
                return escapedValue(pretty ? *pretty : *value);
            };
            std::cout << storage.source().url().string() << ": " << name.rawValue() << ": "
                      << shown(storage.originalValue(name)) << " \u2192 " << shown(written) << '\n';
        }
    }
}

int runSet(const SetOptions& options) {
    prestartExifTool(options.paths);
    Reporter reporter;

    std::vector<Assignment> assignments;
    for (const std::string& argument : options.assignments) {
        const auto equal = argument.find('=');
        const std::string nameText = argument.substr(0, equal);
        const std::string given = argument.substr(equal + 1);
        std::string error;
        const auto selector = TagSelector::resolve(nameText, true, error);
        if (!selector) {
            reporter.error(error);
            continue;
        }
        Assignment assignment{{}, argument};
        for (const TagItem* item : selector->candidates()) {
            const std::string value =
                options.listSeparator ? withListSeparator(*item, given, *options.listSeparator) : given;
            if (!item->isWritable()) {
                error = "tag \"" + nameText + "\" is not editable";
            } else if (value.empty()) {
                assignment.candidates.emplace_back(item->name(), value);
            } else if (const auto checked = TagValueChecker::check(*item, value); !checked.isValid()) {
                error = checked.error;
            } else {
                assignment.candidates.emplace_back(item->name(), checked.text);
            }
        }
        if (assignment.candidates.empty())
            reporter.error(error.empty() ? "\"" + nameText + "\" names no tag that can be set" : error);
        else
            assignments.push_back(std::move(assignment));
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
    std::string placeError;
    const auto place =
        options.savedLocation ? savedLocation(*options.savedLocation, placeError) : std::nullopt;
    if (options.savedLocation && !place) reporter.error(placeError);
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
    if (assignments.empty() && !dateEdition && !coordinate && !place && !options.rotate && !options.flip &&
        !preset) {
        reporter.error("nothing to set: give TAG=VALUE or an edit option");
        return 2;
    }
    if (paths.empty()) {
        reporter.error("no file given");
        return 2;
    }

    // Edits of named tags alone need only those tags' values as the files hold them, and what the
    // writer consults beside them: the IPTC values and character set (a file without one gets its
    // IPTC written again as UTF-8) and the IPTC digest. The other edits look at more tags of the
    // file (dates, coordinates, orientation, a preset's tags): every tag is read for them.
    std::optional<std::vector<std::string>> tags;
    if (!preset && !dateEdition && !coordinate && !place && !options.rotate && !options.flip) {
        std::vector<std::string> names;
        bool named = true;
        for (const Assignment& assignment : assignments)
            for (const auto& candidate : assignment.candidates) {
                // The families that ExifTool names as the catalogue does; file properties, for
                // one, come from the file system as well.
                const TagStream stream = candidate.first.stream();
                named = named && (stream == TagStream::streamEXIF || stream == TagStream::streamIPTC ||
                                  stream == TagStream::streamXMP);
                names.push_back(candidate.first.rawValue());
            }
        if (named) {
            names.push_back("IPTC:all");
            names.push_back(TagItem::itemIPTCCodedCharacterSet().name().rawValue());
            names.push_back(TagItem::itemPhotoshopIPTCDigest().name().rawValue());
            tags = std::move(names);
        }
    }
    // Edits giving EXIF tags a value, in JPEG files: ExifTool's read of a file costs about what its
    // write does, so the values they replace are read in process instead, where that engine reads
    // those tags (its vocabulary maps them). A file goes to ExifTool's read after all when one of
    // its edits would change nothing by those values, or its tag can't be edited by what was found
    // there: what a save leaves alone is decided on ExifTool's values, never on the other engine's.
    const bool inProcess =
        tags && !options.dryRun && KitSettings::shared().engineOption().contains(EngineOption::exifTool()) &&
        std::all_of(assignments.begin(), assignments.end(), [](const Assignment& assignment) {
            const auto& [name, value] = assignment.candidates.front();
            return name.stream() == TagStream::streamEXIF && !value.empty() &&
                   TagNameMapping::cgName(name).has_value();
        });
    auto sources = collectSources(paths, options.recursive, reporter);
    EditorList editors;
    if (inProcess) {
        // The folders' files are read as files, for the same tags.
        sources = unfoldFolders(sources, options.recursive, reporter);
        for (auto& editor : importJPEGEditorsInProcess(sources)) {
            const bool changesEach =
                std::all_of(assignments.begin(), assignments.end(), [&](const Assignment& assignment) {
                    const auto& [name, value] = assignment.candidates.front();
                    return editor->canEditValue(name) && editor->originalValue(name) != value;
                });
            if (changesEach)
                editors.push_back(std::move(editor));
            else
                sources.push_back(editor->source());
        }
    }
    for (auto& editor :
         importEditors(std::move(sources), options.recursive, reporter, nullptr, tags ? &*tags : nullptr))
        editors.push_back(std::move(editor));
    sortByPath(editors);

    EditorList edited;
    {
        // One session: the edits of the batch make one change event.
        EditionManager::Session session;
        for (const auto& editor : editors) {
            const fs::path path = editor->source().url();
            for (const Assignment& assignment : assignments) {
                const auto target = std::find_if(
                    assignment.candidates.begin(), assignment.candidates.end(),
                    [&](const auto& candidate) { return editor->canEditValue(candidate.first); });
                if (target == assignment.candidates.end()) {
                    reporter.fileError(path, assignment.candidates.front().first.rawValue() +
                                                 " can't be written in this file");
                    continue;
                }
                editor->setValue(target->second.empty() ? TagValueClear : std::optional(target->second),
                                 target->first);
            }
            if (preset) TagEditorPresets(*editor).apply(*preset);
            TagEditorEditions editions(*editor);
            if (dateEdition) editions.editDate(*dateEdition, editableDateTags(*editor));
            if (coordinate) editions.setGPSCoordinate(*coordinate);
            if (place) editions.setLocation(TypedTagValue<Location>::value(*place));
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

    if (options.dryRun) {
        printChanges(edited);
        std::cout << edited.size() << (edited.size() == 1 ? " file" : " files") << " would be updated, "
                  << editors.size() - edited.size() << " unchanged (dry run: nothing written)\n";
        return reporter.exitCode();
    }

    SaveOptions saving;
    saving.preserveModificationDates = options.preserveModificationDate;
    saving.namesUnchangedFiles = true;
    if (coordinate && coordinate->isValue())
        saving.lineWhenWritten = "position " + positionText(coordinate->get());
    lastExifToolRunsFollow();
    saveEditedEditors(editors, reporter, saving);
    stopExifToolProcesses();
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
    auto* read = app.add_subcommand(
        "read", "Print the tags of files, readable (choice titles, exposure times as fractions): per file a "
                "header, then Family:Key<TAB>value");
    auto readOptions = std::make_shared<ReadOptions>();
    read->add_option("-t,--tag", readOptions->tags,
                     "Only this tag (repeatable): Family:Key, Key (the preferred family the file has: EXIF, "
                     "IPTC, XMP, QuickTime), Family:* or *:Key; case-insensitive")
        ->allow_extra_args(false);
    read->add_flag("-n,--raw", readOptions->raw, "Values as stored (numbers for choices, reals in full)");
    auto* json =
        read->add_flag("--json", readOptions->json,
                       "A JSON array of one object a file: \"SourceFile\", then \"Family:Key\": value "
                       "(numbers as numbers, lists as arrays)");
    read->add_flag("--csv", readOptions->csv, "CSV: a header row (SourceFile, then the tags), one row a file")
        ->excludes(json);
    read->add_flag("-r,--recursive", readOptions->recursive, "Read the files of subfolders too");
    read->add_option("PATH", readOptions->paths, "Files and folders")->required();
    read->callback([readOptions, &exitCode] { exitCode = runRead(*readOptions); });

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
    set->add_option("--saved-location", setOptions->savedLocation,
                    "A place of the user's location library (corvane locations), written like --location "
                    "with its address")
        ->excludes("--location");
    set->add_option("--rotate", setOptions->rotate, "Turn the orientation")
        ->check(CLI::IsMember({"left", "right"}));
    set->add_option("--flip", setOptions->flip, "Mirror the orientation")
        ->check(CLI::IsMember({"horizontal", "vertical"}));
    set->add_option("--preset", setOptions->preset,
                    "Apply a preset of this library (.json) after the TAG=VALUE edits")
        ->check(CLI::ExistingFile);
    set->add_option(
           "--list-separator", setOptions->listSeparator,
           "Split the VALUE of a list tag (keywords, subjects, ...) on this text instead of \",\", so "
           "that an item can hold a comma: --list-separator ';' XMP:Subject='Smith, John;Paris' "
           "gives two items. Without it, an item that holds a comma is written in double quotes: "
           "XMP:Subject='\"Smith, John\",Paris'")
        ->check([](const std::string& text) {
            return text.empty() ? std::string("the list separator can't be empty") : std::string();
        });
    set->add_flag("--dry-run", setOptions->dryRun,
                  "Print each change as \"file: TAG: old \u2192 new\" and write nothing");
    set->add_flag("-P,--preserve-mtime", setOptions->preserveModificationDate,
                  "Keep each file's modification date as it was");
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
