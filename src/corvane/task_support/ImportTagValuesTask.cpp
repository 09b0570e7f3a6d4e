#include "corvane/task_support/ImportTagValuesTask.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/sidecar_support/CSVSidecarReader.hpp"
#include "corvane/sidecar_support/JSONSidecarReader.hpp"
#include "corvane/tag_edition/TaskError.hpp"
#include "corvane/tag_editor/TagEditorArrayEditions.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/tag_value/MediaKind.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagValueChecker.hpp"
#include "corvane/utilities/Error.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <mutex>

namespace corvane {

std::string_view message(ImportTagValuesTask::ProcessError error) {
    switch (error) {
    case ImportTagValuesTask::ProcessError::engineIsNotAvailable:
        return "Engine is not available";
    case ImportTagValuesTask::ProcessError::sourceURLIsMissing:
        return "Sidecar URL is missing";
    case ImportTagValuesTask::ProcessError::sourceTypeIsUnknown:
        return "Source type is uknown";
    }
    return {};
}

ImportTagValuesTask::ImportTagValuesTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<ImportTagValuesTask> ImportTagValuesTask::create(Settings settings) {
    return std::make_shared<ImportTagValuesTask>(std::move(settings));
}

std::string ImportTagValuesTask::title() const {
    return TL("ImportTagValuesTaskTitle");
}

MediaType::Set ImportTagValuesTask::supportedSourceTypes() {
    MediaType::Set types{MediaType::typeCSV(), MediaType::typeJSON()};
    if (KitSettings::shared().engineOption().contains(EngineOption::exifTool()))
        types.merge(MediaType::types(MediaKind::allCases()));
    return types;
}

bool ImportTagValuesTask::canImportSource(const std::filesystem::path& url) {
    auto type = MediaType::type(upperPathExtension(url));
    return type && supportedSourceTypes().contains(*type);
}

const std::unordered_set<TagName>& ImportTagValuesTask::imageDescriptionTagNames() {
    static const std::unordered_set<TagName> names = [] {
        static constexpr std::string_view keys[] = {"Make",
                                                    "Model",
                                                    "Orientation",
                                                    "ImageWidth",
                                                    "ImageHeight",
                                                    "ExifImageWidth",
                                                    "ExifImageHeight",
                                                    "BitsPerSample",
                                                    "Compression",
                                                    "CompressedBitsPerPixel",
                                                    "PhotometricInterpretation",
                                                    "SamplesPerPixel",
                                                    "PlanarConfiguration",
                                                    "StripOffsets",
                                                    "StripByteCounts",
                                                    "RowsPerStrip",
                                                    "TileWidth",
                                                    "TileLength",
                                                    "TileOffsets",
                                                    "TileByteCounts",
                                                    "ThumbnailOffset",
                                                    "ThumbnailLength",
                                                    "ThumbnailImage",
                                                    "PreviewImage",
                                                    "YCbCrSubSampling",
                                                    "YCbCrPositioning",
                                                    "XResolution",
                                                    "YResolution",
                                                    "ResolutionUnit",
                                                    "SubfileType",
                                                    "ColorSpace"};
        std::unordered_set<TagName> result;
        for (const TagStream& stream :
             {TagStream::streamEXIF, TagStream::streamXMP, TagStream::streamQuickTime})
            for (std::string_view key : keys)
                if (const TagItem* item = TagItem::find(stream.rawValue(), key)) result.insert(item->name());
        return result;
    }();
    return names;
}

const std::unordered_set<TagStream>& ImportTagValuesTask::imageDescriptionTagStreams() {
    static const std::unordered_set<TagStream> streams = [] {
        std::unordered_set<TagStream> result(TagStream::makerStreams().begin(),
                                             TagStream::makerStreams().end());
        result.insert(TagStream::streamMakerNotes);
        result.insert(TagStream::streamICC_Profile);
        result.insert(TagStream::streamFile);
        return result;
    }();
    return streams;
}

void ImportTagValuesTask::internProcess() {
    if (!settings_.source) throw TaskError<ProcessError>(ProcessError::sourceURLIsMissing);
    const TagStorageSource& source = *settings_.source;
    auto type = MediaType::type(upperPathExtension(source.url()));
    if (!type || !supportedSourceTypes().contains(*type))
        throw TaskError<ProcessError>(ProcessError::sourceTypeIsUnknown);
    // A CSV or JSON file is a sidecar of this library's own: ExifTool would read it as a text
    // document, not as tags.
    if (type->is(MediaType::typeCSV()) || type->is(MediaType::typeJSON()))
        importTagValuesWithReader(source, *type);
    else
        importTagValuesWithExifTool(source);
}

void ImportTagValuesTask::importTagValuesWithExifTool(const TagStorageSource& source) {
    if (!engineOption().contains(EngineOption::exifTool()))
        throw TaskError<ProcessError>(ProcessError::engineIsNotAvailable);
    ETTagStorageReader::Settings readerSettings({source});
    readerSettings.setEnableRawValues(true);
    readerSettings.setEnableShortTags(true);
    readerSettings.setDisableComposite(true);
    readerSettings.setIgnoreMinorErrors(true);
    readerSettings.setupDefaultBannedValues();
    ETTagStorageReader reader(std::move(readerSettings));
    TagStorageMap storages;
    failable([&] { storages = reader.readStorages(); });
    auto found = storages.find(source.url());
    if (found != storages.end()) applyValues(filtered(found->second.originalValues()));
    setProgress(1);
}

void ImportTagValuesTask::importTagValuesWithReader(const TagStorageSource& source, const MediaType& type) {
    std::unique_ptr<SidecarReader> reader;
    if (type.is(MediaType::typeCSV()))
        reader = std::make_unique<CSVSidecarReader>();
    else
        reader = std::make_unique<JSONSidecarReader>();
    Values values;
    failable([&] { values = reader->readContentsOf(source.url()); });
    if (!values.empty()) applyValues(filtered(std::move(values)));
    setProgress(1);
}

ImportTagValuesTask::Values ImportTagValuesTask::filtered(Values values) const {
    std::erase_if(values, [&](const auto& entry) {
        return settings_.excludedTagNames.contains(entry.first) ||
               settings_.excludedTagStreams.contains(entry.first.stream());
    });
    return values;
}

void ImportTagValuesTask::applyValues(const Values& values) {
    if (values.empty()) return;
    std::mutex refusedMutex;
    std::vector<std::string> refused;
    TagEditorArrayEditions(settings_.editors).editConcurrently([&](TagEditor& editor) {
        const auto changes = SidecarReader::changesTo(editor.storage(), values);
        // A value its tag can't hold refuses the whole file: nothing of the source reaches it.
        const auto invalid = TagValueChecker::errors(changes);
        if (!invalid.empty()) {
            std::string text = editor.source().url().string() + ": ";
            for (std::size_t i = 0; i < invalid.size(); ++i)
                text += (i ? "; " : "") + invalid[i];
            std::lock_guard lock(refusedMutex);
            refused.push_back(std::move(text));
            return;
        }
        for (const auto& [name, value] : changes)
            editor.setValue(value, name);
    });
    for (const auto& text : refused)
        failable([&] { throw Error(text); });
}

} // namespace corvane
