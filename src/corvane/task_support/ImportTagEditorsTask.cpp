#include "corvane/task_support/ImportTagEditorsTask.hpp"

#include "corvane/helpers/ConcurrentPerform.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_edition/TaskError.hpp"
#include "corvane/tag_editor/CGTagEditor.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/tag_storages/CGTagStorageReader.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/tag_value/MediaKind.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <unordered_map>

namespace corvane {

std::string_view message(ImportTagEditorsTask::ProcessError error) {
    switch (error) {
    case ImportTagEditorsTask::ProcessError::engineIsNotAvailable:
        return "Engine is not available";
    case ImportTagEditorsTask::ProcessError::fileIsNotSupported:
        return "File is not supported";
    }
    return {};
}

ImportTagEditorsTask::ImportTagEditorsTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<ImportTagEditorsTask> ImportTagEditorsTask::create(Settings settings) {
    return std::make_shared<ImportTagEditorsTask>(std::move(settings));
}

std::vector<std::shared_ptr<TagEditor>> ImportTagEditorsTask::importedEditors() const {
    return atomic().read([&] { return nonAtomicImportedEditors_; });
}

std::map<std::filesystem::path, std::vector<std::string>> ImportTagEditorsTask::readWarnings() const {
    return atomic().read([&] { return nonAtomicReadWarnings_; });
}

std::string ImportTagEditorsTask::title() const {
    return TL("ImportTagEditorsTaskTitle");
}

MediaType::Set ImportTagEditorsTask::supportedTypes() {
    MediaType::Set kinds = MediaType::types(MediaKind::allCases());
    const MediaType::Set supported = KitSettings::shared().supportedFileTypes();
    MediaType::Set result;
    for (const MediaType& type : kinds)
        if (supported.contains(type)) result.insert(type);
    return result;
}

bool ImportTagEditorsTask::canImportEditor(const std::filesystem::path& url) {
    const std::string key = upperPathExtension(url);
    if (key.empty()) return false;
    auto type = MediaType::type(key);
    return type && supportedTypes().contains(*type);
}

bool ImportTagEditorsTask::canReadFile(const std::filesystem::path& url) {
    const std::string key = upperPathExtension(url);
    return !key.empty() && (!MediaType::type(key) || canImportEditor(url));
}

MediaType::Set ImportTagEditorsTask::types() const {
    MediaType::Set result = supportedTypes();
    if (settings_.allowedTypes)
        std::erase_if(result, [&](const MediaType& t) { return !settings_.allowedTypes->contains(t); });
    return result;
}

std::vector<TagStorageSource> ImportTagEditorsTask::sourcesToImport(const MediaType::Set& types) const {
    auto isKept = [&](const std::filesystem::path& url) {
        auto type = MediaType::type(upperPathExtension(url));
        return type && types.contains(*type);
    };
    const bool unfold = settings_.unfoldFolders.value_or(false);
    const bool recursively = settings_.unfoldRecursively.value_or(false);
    const bool readUnlisted = settings_.readUnlistedFormats.value_or(false);
    std::vector<TagStorageSource> result;
    result.reserve(settings_.sources.size());
    for (const TagStorageSource& source : settings_.sources) {
        if (!source.isFolder()) {
            const bool unlisted = readUnlisted && !MediaType::type(upperPathExtension(source.url()));
            if (isKept(source.url()) || unlisted) result.push_back(source);
        } else if (!unfold) {
            result.push_back(source);
        } else {
            for (const auto& url : listFolderFiles(source.url(), recursively))
                if (isKept(url)) result.emplace_back(url, std::nullopt, source.password());
        }
    }
    return result;
}

void ImportTagEditorsTask::internProcess() {
    // ExifTool has precedence, and the two engines never run together.
    if (engineOption().contains(EngineOption::exifTool()))
        importWithExiftool();
    else if (engineOption().contains(EngineOption::coreImage()))
        importWithCoreImage();
    else
        throw TaskError<ProcessError>(ProcessError::engineIsNotAvailable);
    subprocessQueue().waitUntilAllOperationsAreFinished();
    reloadSourceEditors();
}

void ImportTagEditorsTask::importWithExiftool() {
    auto sources = sourcesToImport(types());
    if (sources.empty()) return;
    // One process for the whole batch: its failure leaves the task with that one error.
    readWithExifTool(std::move(sources), settings_.ignoreMinorErrors.value_or(false));
}

void ImportTagEditorsTask::importWithCoreImage() {
#ifdef CORVANE_HAVE_EXIV2
    const MediaType::Set kept = types();
    auto sources = sourcesToImport(kept);
    if (sources.empty()) return;
    const double step = 1.0 / static_cast<double>(sources.size());
    // Up to eight files at a time; a file that can't be read adds its error, and the others go on.
    mapSubprocess(sources, [this, kept, step](const TagStorageSource& source) {
        // Folders and formats the task doesn't keep can't be opened by this engine.
        auto type = MediaType::type(upperPathExtension(source.url()));
        if (source.isFolder() || !type || !kept.contains(*type)) {
            incrementProgress(step);
            throw TaskError<ProcessError>(ProcessError::fileIsNotSupported);
        }
        failable([&] {
            CGTagStorageReader reader(CGTagStorageReader::Settings({source}));
            std::vector<std::shared_ptr<TagEditor>> editors;
            for (auto& [url, storage] : reader.readStorages())
                editors.push_back(CGTagEditor::create(std::move(storage)));
            appendEditors(std::move(editors));
        });
        incrementProgress(step);
    });
#else
    // This build has no image I/O engine (the engine options don't offer it).
    throw TaskError<ProcessError>(ProcessError::engineIsNotAvailable);
#endif
}

void ImportTagEditorsTask::readWithExifTool(std::vector<TagStorageSource> sources, bool ignoreMinorErrors) {
    ETTagStorageReader::Settings readerSettings(std::move(sources));
    readerSettings.setEnableRawValues(true);
    readerSettings.setEnableShortTags(true);
    readerSettings.setDisableComposite(true);
    readerSettings.setIgnoreMinorErrors(ignoreMinorErrors);
    readerSettings.setupDefaultBannedValues();
    // Progress comes from the thread that runs ExifTool; the task is held weakly.
    std::weak_ptr<AbstractTask> weakTask = weak_from_this();
    readerSettings.setOnProgressHandler([weakTask, this](ETTagStorageReader& reader) {
        if (auto task = weakTask.lock()) setProgress(reader.progress());
    });

    ETTagStorageReader reader(std::move(readerSettings));
    TagStorageMap storages = reader.readStorages();
    if (!reader.warnings().empty())
        atomic().write([&] {
            for (const auto& [url, warnings] : reader.warnings()) {
                auto& kept = nonAtomicReadWarnings_[url];
                kept.insert(kept.end(), warnings.begin(), warnings.end());
            }
        });

    // In the map's order: callers sort.
    std::vector<std::shared_ptr<TagEditor>> editors;
    editors.reserve(storages.size());
    for (auto& [url, storage] : storages)
        editors.push_back(ETTagEditor::create(std::move(storage)));
    appendEditors(std::move(editors));
}

void ImportTagEditorsTask::appendEditors(std::vector<std::shared_ptr<TagEditor>> editors) {
    atomic().write([&] {
        nonAtomicImportedEditors_.insert(nonAtomicImportedEditors_.end(),
                                         std::make_move_iterator(editors.begin()),
                                         std::make_move_iterator(editors.end()));
    });
}

void ImportTagEditorsTask::reloadSourceEditors() {
    if (settings_.sourceEditors.empty()) return;
    std::unordered_map<std::filesystem::path, std::shared_ptr<TagEditor>> byURL;
    for (const auto& editor : importedEditors())
        byURL.emplace(editor->source().url(), editor);
    const auto& targets = settings_.sourceEditors;
    EditionManager::Session session;
    concurrentPerform(targets.size(), [&](std::size_t i) {
        auto found = byURL.find(targets[i]->source().url());
        // A source editor without a match stays as it is.
        if (found != byURL.end()) targets[i]->reloadValues(found->second->storage());
    });
}

} // namespace corvane
