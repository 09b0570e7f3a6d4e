#include "corvane/tag_storages/ETTagStorageWriter.hpp"

#include "corvane/converters/ArrayValueConverter.hpp"
#include "corvane/exiftool_wrapper/ETInput.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/tag_storages/FinderResources.hpp"
#include "corvane/tag_storages/detail/WritableValue.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/utilities/FileError.hpp"
#include "corvane/utilities/KitDebugger.hpp"
#include "corvane/utilities/KitSettings.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <random>

namespace corvane {

namespace {

namespace fs = std::filesystem;

// ExifTool's import decodes a text of this form as base64 data.
constexpr std::string_view base64Prefix = "base64:";

std::string base64(std::string_view bytes) {
    static constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t n = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t chunk = 0;
        for (std::size_t k = 0; k < 3; ++k)
            chunk = chunk << 8 | (k < n ? static_cast<unsigned char>(bytes[i + k]) : 0u);
        for (std::size_t k = 0; k < 4; ++k)
            out += k <= n ? digits[(chunk >> (18 - 6 * k)) & 0x3F] : '=';
    }
    return out;
}

// A text that ExifTool's import would take for base64 data travels as base64 of itself, so that
// it arrives as typed.
std::string importText(std::string text) {
    if (!text.starts_with(base64Prefix)) return text;
    return std::string(base64Prefix) + base64(text);
}

// A fresh deletion marker: a random token that no value of a write can know beforehand.
std::string makeDeletionMarker() {
    std::random_device device;
    std::uniform_int_distribution<unsigned long long> dist;
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "corvane-delete-%016llx%016llx", dist(device), dist(device));
    return buffer;
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n\v\f") == std::string_view::npos;
}

// The lines of a report file of ExifTool ("-efile"), each a path as ExifTool was given it.
std::vector<fs::path> reportedPaths(const fs::path& url) {
    std::vector<fs::path> paths;
    std::error_code error;
    if (!fs::exists(url, error)) return paths;
    const std::string text = readFileBytes(url);
    std::size_t start = 0;
    while (start < text.size()) {
        auto end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        if (end > start) paths.push_back(fs::path(text.substr(start, end - start)).lexically_normal());
        start = end + 1;
    }
    return paths;
}

// Whether `path` is the target, or a file inside a folder target.
bool concerns(const fs::path& path, const fs::path& target, bool isFolder) {
    const fs::path normal = path.lexically_normal();
    if (normal == target) return true;
    if (!isFolder) return false;
    const auto relative = normal.lexically_relative(target);
    return !relative.empty() && *relative.begin() != "..";
}

// The reason of a failure that ExifTool printed without its "Error:" form ("Error opening PATH for
// writing"): its line that names the file.
std::string unreportedReason(const ETOutput& output, const fs::path& target) {
    const std::string text = output.joinUnknownErrors().value_or(std::string());
    const std::string name = target.string();
    std::size_t start = 0;
    while (start < text.size()) {
        auto end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        const std::string_view line(text.data() + start, end - start);
        if (line.find(name) != std::string_view::npos) return std::string(line);
        start = end + 1;
    }
    return "ExifTool reported an error";
}

// ExifTool doesn't split a text given to a list tag in an import file: "a,b" would become one
// keyword. A list therefore goes as an array of its elements, each in its canonical form.
std::optional<nlohmann::ordered_json> listElements(const TagItem& item, const std::string& text,
                                                   const std::string& deletionMarker) {
    if (!item.isList()) return std::nullopt;
    const auto* arrayConverter = dynamic_cast<const ArrayValueConverter*>(item.converter().get());
    if (!arrayConverter) return std::nullopt;
    const DynamicValue native = arrayConverter->nativeValueFromStringValue(text);
    const DynamicArray* elements = native.arrayValue();
    if (!elements) return std::nullopt;
    auto array = nlohmann::ordered_json::array();
    for (const auto& element : *elements)
        if (auto string = arrayConverter->valueConverter()->stringValueFromNativeValue(element))
            array.push_back(importText(std::move(*string)));
    if (array.empty()) return nlohmann::ordered_json(deletionMarker);
    return array;
}

// A JSON string of the bytes as they stand: quotes, backslashes and control characters escaped,
// every other byte kept, also one that isn't UTF-8.
std::string rawJSONString(const std::string& bytes) {
    std::string text = "\"";
    for (const char c : bytes) {
        if (c == '"' || c == '\\') {
            text += '\\';
            text += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
            text += escaped;
        } else {
            text += c;
        }
    }
    return text + '"';
}

// The text of an import file. ExifTool finds a record's file by the bytes of "SourceFile", and
// keeps the bytes of a JSON string as they stand, so a file name that isn't valid UTF-8 (a Latin-1
// name) goes in as its raw bytes, which the JSON library refuses to write: such a name stands in
// its record as a numbered mark until the text is made, then the mark is replaced.
std::string importFileText(nlohmann::ordered_json records) {
    std::vector<std::pair<std::string, std::string>> rawNames; // mark in the text, raw name
    for (auto& record : records) {
        const auto it = record.find("SourceFile");
        if (it == record.end() || !it->is_string()) continue;
        try {
            (void)it->dump();
            continue;
        } catch (const nlohmann::json::exception&) {
        }
        const std::string mark = "\x01" + std::to_string(rawNames.size());
        rawNames.emplace_back("\"SourceFile\": " + nlohmann::json(mark).dump(),
                              "\"SourceFile\": " + rawJSONString(it->get<std::string>()));
        *it = mark;
    }
    std::string text = records.dump(4);
    for (const auto& [mark, raw] : rawNames)
        if (const auto at = text.find(mark); at != std::string::npos) text.replace(at, mark.size(), raw);
    return text;
}

} // namespace

static_assert(TagStorageWriterType<ETTagStorageWriter>);

// --- Settings

ETTagStorageWriter::Settings::Settings(std::vector<TagStorage> storages) : storages_(std::move(storages)) {}

// --- Errors

std::string_view message(ETTagStorageWriter::WriteError error) {
    switch (error) {
    case ETTagStorageWriter::WriteError::copySourceImageFailed:
        return "Copy of source failed";
    case ETTagStorageWriter::WriteError::jsonEncodingFailed:
        return "JSON encoding failed";
    case ETTagStorageWriter::WriteError::jsonFileCreationFailed:
        return "JSON file creation failed";
    case ETTagStorageWriter::WriteError::sourceFileIsMissing:
        return "Source file is missing";
    case ETTagStorageWriter::WriteError::outputIsMissing:
        return "Output is missing";
    }
    return "Output is missing";
}

ETTagStorageWriter::FileWriteException::FileWriteException(fs::path url, std::string reason)
    : Error(url.string() + ": " + reason), url_(std::move(url)), reason_(std::move(reason)) {}

// Where ExifTool lists the files it failed to write ("-efile") and those it left unchanged
// ("-efile2"); it makes them itself, they are removed after the run.
struct ETTagStorageWriter::ReportFiles {
    fs::path failed = temporaryURL("txt");
    fs::path unchanged = temporaryURL("txt");

    ~ReportFiles() {
        std::error_code error;
        fs::remove(failed, error);
        fs::remove(unchanged, error);
    }
};

// --- Writer

ETTagStorageWriter::ETTagStorageWriter(Settings settings)
    : settings_(std::move(settings)), deletionMarker_(makeDeletionMarker()) {
    // The library's running ExifTool processes, unless the application switched them off.
    process_.setPool(ETProcessPool::shared());
}

double ETTagStorageWriter::progress() const {
    // The process keeps the figure apart from its output, so reading it copies nothing.
    return process_.progress();
}

void ETTagStorageWriter::write() {
    if (const auto& handler = settings_.onStartHandler()) handler(*this);
    if (const auto& handler = settings_.onProgressHandler()) handler(*this);
    writeStorages(settings_.storages());
    if (const auto& handler = settings_.onProgressHandler()) handler(*this);
    if (const auto& handler = settings_.onEndHandler()) handler(*this);
}

fs::path ETTagStorageWriter::targetURL(const TagStorage& storage) {
    return storage.isAsset() ? storage.temporaryURL() : storage.source().url();
}

std::vector<std::vector<const TagStorage*>>
ETTagStorageWriter::splitStorages(const std::vector<TagStorage>& storages) {
    std::vector<std::vector<const TagStorage*>> batches(1);
    for (const auto& storage : storages)
        if (!pathExtension(storage.source().url()).empty()) batches.front().push_back(&storage);
    for (const auto& storage : storages)
        if (pathExtension(storage.source().url()).empty()) batches.push_back({&storage});
    return batches;
}

void ETTagStorageWriter::writeStorages(const std::vector<TagStorage>& storages) {
    outcomes_.clear();
    if (storages.empty()) return;
    const ReportFiles reports;
    std::vector<bool> sentToExifTool(storages.size(), false);

    ETInput input;
    // The run is synchronous within this call, so the writer outlives every callback.
    input.onProgressHandler = [this](ETProcess&) {
        if (const auto& handler = settings_.onProgressHandler()) handler(*this);
    };
    input.onEndHandler = [](ETProcess& process) { process.debugProcessOutputIfEnabled(); };

    std::vector<fs::path> jsonFiles;
    auto removeJSONFiles = [&jsonFiles] {
        std::error_code error;
        for (const auto& url : jsonFiles)
            fs::remove(url, error);
    };

    // A storage holding a value that would reach its file as "inf" or as another number than the
    // one typed isn't written at all: its outcome is a failure naming the tag.
    std::vector<std::string> refusals(storages.size());
    for (std::size_t i = 0; i < storages.size(); ++i)
        refusals[i] = detail::unwritableStorageReason(storages[i]).value_or(std::string());
    auto collect = [&] {
        collectOutcomes(storages, sentToExifTool, reports);
        for (std::size_t i = 0; i < storages.size(); ++i) {
            if (refusals[i].empty()) continue;
            outcomes_[i].status = FileOutcome::Status::failed;
            outcomes_[i].reason = refusals[i];
        }
    };

    for (const auto& batch : splitStorages(storages)) {
        auto records = nlohmann::ordered_json::array();
        std::vector<const TagStorage*> written;
        for (const TagStorage* storage : batch) {
            if (!refusals[static_cast<std::size_t>(storage - storages.data())].empty()) continue;
            if (auto record = importRecord(*storage)) {
                records.push_back(std::move(*record));
                written.push_back(storage);
                sentToExifTool[static_cast<std::size_t>(storage - storages.data())] = true;
            }
        }
        if (written.empty()) continue;

        auto& debugger = KitDebugger::shared();
        debugger.log([&] {
            std::string line = "-XMP:XMPToolkit=" + KitSettings::shared().xmpToolkit();
            // Appended, not " " + ...: GCC 12 flags that with a false overlap warning in release builds.
            for (const TagStorage* storage : written)
                line.append(" ").append(targetURL(*storage).string());
            return line;
        });
        debugger.log([&] {
            return "JSON values " + records.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
        });

        // A failure here ends the write before ExifTool is started; import files already made stay.
        const fs::path jsonURL = createJSONFile(records);
        jsonFiles.push_back(jsonURL);
        addArgs(input, jsonURL, reports, written);
    }

    if (!input.isEmpty()) {
        try {
            const ETOutput output = process_.execute(input);
            collect();
            output.throwIfErrors();
        } catch (...) {
            removeJSONFiles();
            throw;
        }
    } else {
        collect();
    }

    for (std::size_t i = 0; i < storages.size(); ++i) {
        const TagStorage& storage = storages[i];
        if (!refusals[i].empty()) continue;
        const FinderResources resources = storage.prepareFinderResourcesValues();
        if (resources.isEmpty()) continue;
        for (const auto& url : storage.listWriterFileURLs()) {
            // Finder resources are a convenience: failing to store them doesn't fail a save.
            try {
                resources.write(url);
            } catch (const std::exception&) {
            }
        }
    }

    removeJSONFiles();
}

std::optional<nlohmann::ordered_json> ETTagStorageWriter::importRecord(const TagStorage& storage) const {
    const fs::path target = targetURL(storage);
    nlohmann::ordered_json values = nlohmann::ordered_json::object();
    // "*" makes the record apply to every file of the folder that the group names.
    values["SourceFile"] = pathExtension(target).empty() ? std::string("*") : target.string();
    fillTagValues(storage, values);
    if (values.size() < 2) return std::nullopt;
    updateIPTCCharSet(storage, values);
    updateIPTCDigest(storage, values);
    updateXMPToolkit(values);
    return values;
}

nlohmann::ordered_json ETTagStorageWriter::importEntry(const TagItem& item, const std::string& string) const {
    const DynamicValue value = item.converter()->exifToolValueFromStringValue(string);
    if (const std::string* text = value.stringValue()) {
        if (isBlank(*text)) return deletionMarker_;
        if (auto list = listElements(item, *text, deletionMarker_)) return std::move(*list);
        return importText(*text);
    }
    if (value.isNothing()) return isBlank(string) ? deletionMarker_ : importText(string);
    return toJson(value);
}

void ETTagStorageWriter::fillTagValues(const TagStorage& storage, nlohmann::ordered_json& values) const {
    for (const auto& [tagName, string] : storage.writtenValues()) {
        // File-system properties and Finder resources: written by this system, not by ExifTool.
        if (tagName.stream() == TagStream::streamFile) continue;
        const TagItem* item = TagItem::find(tagName);
        if (!item) continue;
        values[tagName.makerFamilyFixed().rawValue()] = importEntry(*item, string);
    }
}

void ETTagStorageWriter::updateIPTCCharSet(const TagStorage& storage, nlohmann::ordered_json& values) const {
    if (!settings_.forceIPTCUTF8()) return;
    const TagItem& charset = TagItem::itemIPTCCodedCharacterSet();
    // A file that declares a character set keeps it.
    if (storage.originalValues().contains(charset.name())) return;
    const bool writesIPTC =
        std::any_of(storage.writtenValues().begin(), storage.writtenValues().end(), [&](const auto& entry) {
            return entry.first.stream() == TagStream::streamIPTC && !isBlank(entry.second) &&
                   values.contains(entry.first.rawValue());
        });
    if (!writesIPTC) return;
    // Without a declaration, the IPTC text already in the file is Latin (as the reader decoded it);
    // declaring UTF-8 would make those bytes read as UTF-8. Each value is written again with the
    // declaration, in UTF-8; when one can't be written back, the set stays undeclared.
    nlohmann::ordered_json carried = nlohmann::ordered_json::object();
    for (const auto& [tagName, string] : storage.originalValues()) {
        if (tagName.stream() != TagStream::streamIPTC || storage.isValueEdited(tagName)) continue;
        const TagItem* item = TagItem::find(tagName);
        if (!item || !item->isWritable()) return;
        if (isBlank(string)) continue;
        carried[tagName.rawValue()] = importEntry(*item, string);
    }
    for (auto& [key, entry] : carried.items())
        values[key] = std::move(entry);
    values[charset.name().rawValue()] = "UTF8";
}

void ETTagStorageWriter::updateIPTCDigest(const TagStorage& storage, nlohmann::ordered_json& values) const {
    const TagItem& digest = TagItem::itemPhotoshopIPTCDigest();
    const bool hasDigest = storage.originalValues().contains(digest.name());
    if (auto value = settings_.forceIPTCDigest().jsonValue(hasDigest)) {
        values[digest.name().rawValue()] = *value == "-" ? deletionMarker_ : *value;
        return;
    }
    // A digest that the file holds describes its IPTC: when this write changes the IPTC, the
    // digest follows, so that readers don't take the XMP for out of date.
    const bool writesIPTC = std::any_of(values.items().begin(), values.items().end(),
                                        [](const auto& entry) { return entry.key().starts_with("IPTC:"); });
    if (hasDigest && writesIPTC && settings_.forceIPTCDigest() == IPTCDigestUpdate::ignore)
        values[digest.name().rawValue()] = "new";
}

void ETTagStorageWriter::updateXMPToolkit(nlohmann::ordered_json& values) const {
    // The toolkit names the writer of the XMP packet: it is set when this write changes the
    // packet, and only then, so that a save that changes nothing else in a file isn't reported as
    // a change (and a file without XMP doesn't get a packet for it).
    const bool writesXMP = std::any_of(values.items().begin(), values.items().end(), [](const auto& entry) {
        return entry.key().starts_with("XMP:") || entry.key().starts_with("XMP-");
    });
    // A toolkit the user edited is theirs.
    if (!writesXMP || values.contains("XMP:XMPToolkit")) return;
    const std::string toolkit = KitSettings::shared().xmpToolkit();
    values["XMP:XMPToolkit"] = toolkit.empty() ? deletionMarker_ : toolkit;
}

fs::path ETTagStorageWriter::createJSONFile(const nlohmann::ordered_json& records) {
    std::string bytes;
    try {
        bytes = importFileText(records);
    } catch (const nlohmann::json::exception&) {
        throw WriteException(WriteError::jsonEncodingFailed);
    }
    const fs::path url = temporaryURL("json");
    std::error_code error;
    fs::create_directories(url.parent_path(), error);
    try {
        // Readable by the owner only: the values may be private.
        writeFileAtomically(url, bytes, 0600);
    } catch (const FileError&) {
        throw WriteException(WriteError::jsonFileCreationFailed);
    }
    return url;
}

void ETTagStorageWriter::collectOutcomes(const std::vector<TagStorage>& storages,
                                         const std::vector<bool>& sentToExifTool,
                                         const ReportFiles& reports) {
    const ETOutput output = process_.output();
    const auto failed = reportedPaths(reports.failed);
    const auto unchanged = reportedPaths(reports.unchanged);
    outcomes_.clear();
    for (std::size_t i = 0; i < storages.size(); ++i) {
        const TagStorage& storage = storages[i];
        FileOutcome outcome;
        outcome.url = storage.source().url();
        if (!sentToExifTool[i]) {
            // Only Finder resources, if anything, are written for it.
            const bool finder = !storage.prepareFinderResourcesValues().isEmpty();
            outcome.status = finder ? FileOutcome::Status::written : FileOutcome::Status::unchanged;
            outcomes_.push_back(std::move(outcome));
            continue;
        }
        const fs::path target = targetURL(storage).lexically_normal();
        const bool isFolder = pathExtension(target).empty();
        auto listed = [&](const std::vector<fs::path>& paths) {
            return std::any_of(paths.begin(), paths.end(),
                               [&](const fs::path& path) { return concerns(path, target, isFolder); });
        };
        for (const ETFileMessage& warning : output.warnings())
            if (warning.path && concerns(*warning.path, target, isFolder))
                outcome.warnings.push_back(warning.text);
        const auto errors = output.errors();
        const auto error = std::find_if(errors.begin(), errors.end(), [&](const ETFileMessage& message) {
            return message.path && concerns(*message.path, target, isFolder);
        });
        if (listed(failed) || error != errors.end()) {
            outcome.status = FileOutcome::Status::failed;
            outcome.reason =
                error != errors.end() ? error->text : unreportedReason(output, targetURL(storage));
        } else if (!isFolder && listed(unchanged)) {
            outcome.status = FileOutcome::Status::unchanged;
        } else if (output.processError()) {
            // A stopped run: a file that ExifTool finished is written, one under way unknown, the
            // others not written.
            const auto startedIn = [&](const std::vector<fs::path>& files) {
                return std::any_of(files.begin(), files.end(),
                                   [&](const fs::path& path) { return concerns(path, target, isFolder); });
            };
            outcome.reason = message(*output.processError());
            if (isFolder || !startedIn(output.startedFiles()))
                outcome.status = isFolder ? FileOutcome::Status::unknown : FileOutcome::Status::failed;
            else
                outcome.status = startedIn(output.unfinishedFiles()) ? FileOutcome::Status::unknown
                                                                     : FileOutcome::Status::written;
            if (outcome.status == FileOutcome::Status::written) outcome.reason.clear();
        } else {
            outcome.status = FileOutcome::Status::written;
        }
        outcomes_.push_back(std::move(outcome));
    }
}

void ETTagStorageWriter::addArgs(ETInput& input, const fs::path& jsonURL, const ReportFiles& reports,
                                 const std::vector<const TagStorage*>& storages) const {
    input.addArguments(storages, [&](const TagStorage* storage, ETInput::ArgumentsMaker& maker) {
        maker.correction = settings_.enableCorrection();
        maker.ignoreMinorErrors = settings_.ignoreMinorErrors();
        // In place: the file keeps its inode, extended attributes, owner and permission bits.
        maker.overwriteInPlace = true;
        // With "-f", an imported value equal to MissingTagValue deletes its tag; the marker is a
        // token of this writer, so that every value the user typed (also "-") is written as such.
        maker.arguments = {"-G",
                           "-s",
                           "-n",
                           "-f",
                           "-api",
                           "MissingTagValue=" + deletionMarker_,
                           "-efile",
                           reports.failed.string(),
                           "-efile2",
                           reports.unchanged.string(),
                           "-json=" + jsonURL.string()};
        maker.recurseSubfolders = storage->recurseSubfolders().value_or(false);
        maker.filePathFilter = storage->filePathFilter();
        maker.password = storage->source().password();
        maker.url = targetURL(*storage);
        maker.soloRun = true;
    });
}

} // namespace corvane
