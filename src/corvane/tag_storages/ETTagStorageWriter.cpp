#include "corvane/tag_storages/ETTagStorageWriter.hpp"

#include "corvane/converters/ArrayValueConverter.hpp"
#include "corvane/exiftool_wrapper/ETInput.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/tag_storages/FinderResources.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/utilities/KitDebugger.hpp"
#include "corvane/utilities/KitSettings.hpp"

namespace corvane {

namespace {

namespace fs = std::filesystem;

// The value that tells ExifTool (with "-f") to delete a tag.
constexpr const char* deleteMarker = "-";

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n\v\f") == std::string_view::npos;
}

// ExifTool doesn't split a text given to a list tag in an import file: "a,b" would become one
// keyword. A list therefore goes as an array of its elements, each in its canonical form.
std::optional<nlohmann::ordered_json> listElements(const TagItem& item, const std::string& text) {
    if (!item.isList()) return std::nullopt;
    const auto* arrayConverter = dynamic_cast<const ArrayValueConverter*>(item.converter().get());
    if (!arrayConverter) return std::nullopt;
    const DynamicValue native = arrayConverter->nativeValueFromStringValue(text);
    const DynamicArray* elements = native.arrayValue();
    if (!elements) return std::nullopt;
    auto array = nlohmann::ordered_json::array();
    for (const auto& element : *elements)
        if (auto string = arrayConverter->valueConverter()->stringValueFromNativeValue(element))
            array.push_back(std::move(*string));
    if (array.empty()) return nlohmann::ordered_json(deleteMarker);
    return array;
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

// --- Writer

ETTagStorageWriter::ETTagStorageWriter(Settings settings) : settings_(std::move(settings)) {}

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
    if (storages.empty()) return;

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

    for (const auto& batch : splitStorages(storages)) {
        auto records = nlohmann::ordered_json::array();
        std::vector<const TagStorage*> written;
        for (const TagStorage* storage : batch) {
            if (auto record = importRecord(*storage)) {
                records.push_back(std::move(*record));
                written.push_back(storage);
            }
        }
        if (written.empty()) continue;

        auto& debugger = KitDebugger::shared();
        debugger.log([&] {
            std::string line = "-XMP:XMPToolkit=";
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
        addArgs(input, jsonURL, written);
    }

    if (!input.isEmpty()) {
        try {
            const ETOutput output = process_.execute(input);
            output.throwIfErrors();
        } catch (...) {
            removeJSONFiles();
            throw;
        }
    }

    for (const auto& storage : storages) {
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
    return values;
}

void ETTagStorageWriter::fillTagValues(const TagStorage& storage, nlohmann::ordered_json& values) const {
    for (const auto& [tagName, string] : storage.writtenValues()) {
        // File-system properties and Finder resources: written by this system, not by ExifTool.
        if (tagName.stream() == TagStream::streamFile) continue;
        const TagItem* item = TagItem::find(tagName);
        if (!item) continue;

        const DynamicValue value = item->converter()->exifToolValueFromStringValue(string);
        nlohmann::ordered_json entry;
        if (const std::string* text = value.stringValue()) {
            if (isBlank(*text))
                entry = deleteMarker;
            else if (auto list = listElements(*item, *text))
                entry = std::move(*list);
            else
                entry = *text;
        } else if (value.isNothing()) {
            entry = isBlank(string) ? std::string(deleteMarker) : string;
        } else {
            entry = toJson(value);
        }
        values[tagName.makerFamilyFixed().rawValue()] = std::move(entry);
    }
}

void ETTagStorageWriter::updateIPTCCharSet(const TagStorage& storage, nlohmann::ordered_json& values) const {
    if (!settings_.forceIPTCUTF8()) return;
    const TagItem& charset = TagItem::itemIPTCCodedCharacterSet();
    // A file that declares a character set keeps it.
    if (storage.originalValues().contains(charset.name())) return;
    if (storage.hasValues(TagStream::streamIPTC)) values[charset.name().rawValue()] = "UTF8";
}

void ETTagStorageWriter::updateIPTCDigest(const TagStorage& storage, nlohmann::ordered_json& values) const {
    const TagItem& digest = TagItem::itemPhotoshopIPTCDigest();
    const bool hasDigest = storage.originalValues().contains(digest.name());
    if (auto value = settings_.forceIPTCDigest().jsonValue(hasDigest))
        values[digest.name().rawValue()] = *value;
}

fs::path ETTagStorageWriter::createJSONFile(const nlohmann::ordered_json& records) {
    std::string bytes;
    try {
        bytes = records.dump(4);
    } catch (const nlohmann::json::exception&) {
        throw WriteException(WriteError::jsonEncodingFailed);
    }
    const fs::path url = temporaryURL("json");
    std::error_code error;
    fs::create_directories(url.parent_path(), error);
    try {
        // Readable by the owner only: the values may be private.
        writeFileAtomically(url, bytes, 0600);
    } catch (const fs::filesystem_error&) {
        throw WriteException(WriteError::jsonFileCreationFailed);
    }
    return url;
}

void ETTagStorageWriter::addArgs(ETInput& input, const fs::path& jsonURL,
                                 const std::vector<const TagStorage*>& storages) const {
    const std::string toolkit = KitSettings::shared().xmpToolkit();
    input.addArguments(storages, [&](const TagStorage* storage, ETInput::ArgumentsMaker& maker) {
        maker.correction = settings_.enableCorrection();
        maker.ignoreMinorErrors = settings_.ignoreMinorErrors();
        maker.overwriteOriginal = true;
        maker.arguments = {"-G", "-s", "-n", "-f", "-XMP:XMPToolkit=" + toolkit, "-json=" + jsonURL.string()};
        maker.recurseSubfolders = storage->recurseSubfolders().value_or(false);
        maker.filePathFilter = storage->filePathFilter();
        maker.password = storage->source().password();
        maker.url = targetURL(*storage);
        maker.soloRun = true;
    });
}

} // namespace corvane
