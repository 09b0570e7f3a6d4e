#include "StorageReading.hpp"

#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/exiftool_wrapper/ETProcessPool.hpp"
#include "corvane/helpers/ConcurrentPerform.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/MainQueue.hpp"
#include "corvane/tag_edition/TaskManager.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/tag_storages/CGTagStorageReader.hpp"
#include "corvane/tag_storages/CGTagStorageWriter.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/tag_storages/ETTagStorageWriter.hpp"
#include "corvane/tag_value/MediaType.hpp"
#include "corvane/task_support/ImportTagEditorsTask.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <functional>
#include <iostream>
#include <mutex>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace corvane::cli {

namespace fs = std::filesystem;

std::string pathKey(const fs::path& path) {
    std::error_code ec;
    fs::path canonical = fs::weakly_canonical(fs::absolute(path, ec), ec);
    return (ec ? fs::absolute(path).lexically_normal() : canonical).string();
}

void chooseEngine(const std::string& engine) {
    const EngineOption option = engine == "image-io" ? EngineOption::coreImage() : EngineOption::exifTool();
    if (!KitSettings::availableEngineOption().contains(option))
        throw CLI::ValidationError("--engine", engine + " is not available in this build");
    KitSettings::shared().setEngineOption(option);
}

void runTask(const std::shared_ptr<AbstractTask>& task, const std::string& label, Reporter& reporter,
             std::size_t fileCount) {
    MainQueue& main = MainQueue::shared();
    if (!main.mainThread()) main.registerCurrentThreadAsMain();
    const auto start = Reporter::Clock::now();
    TaskManager::shared().add(task);
    auto ended = [&] {
        auto status = task->status();
        return status == AbstractTask::Status::completed || status == AbstractTask::Status::cancelled;
    };
    while (!main.runUntil(ended, std::chrono::milliseconds(100)))
        reporter.progress(label, task->progress(), start, fileCount);
    main.drain();
    reporter.clearProgress();
}

// The error is reported for each file that ExifTool names in a failed run's reports, or once for
// the run when it names none.
std::set<std::string> reportTaskErrors(const AbstractTask& task, Reporter& reporter) {
    std::set<std::string> failedFiles;
    for (const auto& error : task.errors()) {
        try {
            std::rethrow_exception(error);
        } catch (const ETTagStorageWriter::FileWriteException& e) {
            reporter.fileError(e.url(), e.reason());
            failedFiles.insert(pathKey(e.url()));
        } catch (const ETOutputException& e) {
            bool named = false;
            for (const auto& fileError : e.fileErrors()) {
                if (!fileError.path) continue;
                reporter.fileError(*fileError.path, fileError.text);
                failedFiles.insert(pathKey(*fileError.path));
                named = true;
            }
            if (!named) reporter.error(e.details());
        } catch (const CGTagStorageReader::ReadException& e) {
            reporter.fileError(e.url(), e.what());
            failedFiles.insert(pathKey(e.url()));
        } catch (const CGTagStorageWriter::WriteException& e) {
            reporter.fileError(e.url(), e.what());
            failedFiles.insert(pathKey(e.url()));
        } catch (const std::exception& e) {
            reporter.error(e.what());
        }
    }
    return failedFiles;
}

namespace {

// The note for a file of a folder whose format isn't read.
constexpr const char* skippedFormatNote = "skipped: File format is not supported";

// The import's answers about file types, with its supported types worked out once for a whole
// list of paths: the import works them out again at each question, which costs a thousand-file
// command a good part of its own time.
class FileTypes {
public:
    // ImportTagEditorsTask::canImportEditor: a type the import reads.
    bool canImportEditor(const fs::path& url) const {
        const auto type = MediaType::type(upperPathExtension(url));
        return type && supported().contains(*type);
    }
    // ImportTagEditorsTask::canReadFile: a type the import reads, or one it doesn't know.
    bool canReadFile(const fs::path& url) const {
        const std::string key = upperPathExtension(url);
        if (key.empty()) return false;
        const auto type = MediaType::type(key);
        return !type || supported().contains(*type);
    }

private:
    // Made at the first question: the set of some 300 formats costs more than the rest of a
    // command's look at its files, and a list of files without folders asks none after the read.
    const MediaType::Set& supported() const {
        if (!supported_) supported_ = ImportTagEditorsTask::supportedTypes();
        return *supported_;
    }
    mutable std::optional<MediaType::Set> supported_;
};

// The files of a folder whose name has a dot: such a folder counts as a file for the engines, so
// its supported files are listed here, in name order, hidden ones left out.
std::vector<fs::path> listDottedFolder(const fs::path& folder, bool recursively, const FileTypes& types,
                                       Reporter& reporter) {
    std::vector<fs::path> files;
    std::error_code ec;
    std::vector<fs::path> entries;
    for (const auto& entry : fs::directory_iterator(folder, ec))
        if (entry.path().filename().string().rfind('.', 0) != 0) entries.push_back(entry.path());
    std::sort(entries.begin(), entries.end());
    for (const auto& entry : entries) {
        if (fs::is_directory(entry, ec)) {
            if (!recursively) continue;
            auto inner = pathExtension(entry).empty() ? listFolderFiles(entry, true)
                                                      : listDottedFolder(entry, true, types, reporter);
            files.insert(files.end(), inner.begin(), inner.end());
        } else if (types.canImportEditor(entry)) {
            files.push_back(entry);
        } else {
            reporter.fileNote(entry, skippedFormatNote);
        }
    }
    return files;
}

void prestartProcesses(std::size_t files) {
    if (files == 0 || !KitSettings::shared().engineOption().contains(EngineOption::exifTool())) return;
    if (const auto pool = ETProcessPool::shared()) pool->prestart(files);
}

} // namespace

void prestartExifTool(const std::vector<std::string>& paths) {
    prestartProcesses(paths.size());
}

void prestartExifToolForCommand(int argc, const char* const* argv, const PrestartedExifTool* prestarted) {
    if (prestarted) {
        if (const auto pool = ETProcessPool::shared())
            pool->adoptStartedProcess(prestarted->pid, prestarted->input, prestarted->output,
                                      prestarted->error, prestarted->executable);
    }
    if (commandRunsExifTool(argc, argv)) prestartProcesses(1);
}

void stopExifToolProcesses() {
    if (!KitSettings::shared().engineOption().contains(EngineOption::exifTool())) return;
    if (const auto pool = ETProcessPool::shared()) pool->stopIdleProcesses();
}

void lastExifToolRunsFollow() {
    if (!KitSettings::shared().engineOption().contains(EngineOption::exifTool())) return;
    if (const auto pool = ETProcessPool::shared()) pool->setKeepsProcesses(false);
}

std::vector<TagStorageSource> collectSources(const std::vector<std::string>& paths, bool recursive,
                                             Reporter& reporter) {
    std::vector<TagStorageSource> sources;
    std::set<std::string> seen;
    const FileTypes types;
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
                for (const auto& file : listDottedFolder(path, recursive, types, reporter))
                    add(file);
            }
        } else if (!types.canReadFile(path)) {
            reporter.fileError(path, "File format is not supported");
        } else {
            add(path);
        }
    }
    return sources;
}

namespace {

// The import's ExifTool read of files, for some tags only: what a command that changes those tags
// alone needs, at a part of the cost of reading every tag. Its editors are ExifTool's, as the
// import's; its errors are those of the one ExifTool run.
class TagsReadTask final : public AbstractTask {
public:
    TagsReadTask(std::vector<TagStorageSource> sources, std::vector<std::string> tags, bool ignoreMinorErrors)
        : sources_(std::move(sources)), tags_(std::move(tags)), ignoreMinorErrors_(ignoreMinorErrors) {}

    Priority priority() const override { return Priority::reading; }
    bool isProgressIndeterminate() const override { return false; }
    std::string title() const override { return TL("ImportTagEditorsTaskTitle"); }

    EditorList importedEditors() const {
        std::lock_guard lock(mutex_);
        return editors_;
    }
    FileWarnings readWarnings() const {
        std::lock_guard lock(mutex_);
        return warnings_;
    }

protected:
    void internProcess() override {
        // The import's settings, and the tags.
        ETTagStorageReader::Settings settings(sources_);
        settings.setEnableRawValues(true);
        settings.setEnableShortTags(true);
        settings.setDisableComposite(true);
        settings.setIgnoreMinorErrors(ignoreMinorErrors_);
        settings.setupDefaultBannedValues();
        settings.setRequestedTags(tags_);
        // The run is synchronous within this call: the task outlives the callbacks.
        settings.setOnProgressHandler([this](ETTagStorageReader& reader) { setProgress(reader.progress()); });
        ETTagStorageReader reader(std::move(settings));
        TagStorageMap storages = reader.readStorages();
        EditorList editors;
        editors.reserve(storages.size());
        for (auto& [url, storage] : storages)
            editors.push_back(ETTagEditor::create(std::move(storage)));
        std::lock_guard lock(mutex_);
        editors_ = std::move(editors);
        warnings_ = reader.warnings();
    }

private:
    const std::vector<TagStorageSource> sources_;
    const std::vector<std::string> tags_;
    const bool ignoreMinorErrors_;
    mutable std::mutex mutex_;
    EditorList editors_;
    FileWarnings warnings_;
};

// Reports each file of the request that no editor shows and no error named.
void reportUnshownFiles(const std::vector<TagStorageSource>& requested, const EditorList& editors,
                        bool recursive, const std::set<std::string>& reported, Reporter& reporter) {
    // A file is read under the path it was given: those are matched as they stand. Resolving a path
    // asks the file system about each of its folders, which took 12 ms after a read of 1,000
    // files; only a path not matched that way is resolved, with the editors' paths.
    std::unordered_set<std::string> shownAsGiven;
    for (const auto& editor : editors)
        shownAsGiven.insert(editor->source().url().native());
    std::optional<std::set<std::string>> shown;
    auto check = [&](const fs::path& url) {
        if (shownAsGiven.contains(url.native())) return;
        if (!shown) {
            shown.emplace();
            for (const auto& editor : editors)
                shown->insert(pathKey(editor->source().url()));
        }
        const std::string key = pathKey(url);
        if (!shown->contains(key) && !reported.contains(key)) reporter.fileError(url, "was not read");
    };
    const FileTypes types;
    for (const auto& source : requested) {
        if (!source.isFolder()) {
            check(source.url());
            continue;
        }
        for (const auto& url : listFolderFiles(source.url(), recursive)) {
            if (types.canImportEditor(url))
                check(url);
            else
                reporter.fileNote(url, skippedFormatNote);
        }
    }
}

} // namespace

EditorList importEditors(std::vector<TagStorageSource> sources, bool recursive, Reporter& reporter,
                         FileWarnings* warnings, const std::vector<std::string>* tags) {
    const std::vector<TagStorageSource> requested = sources;
    std::set<std::string> reported;
    EditorList editors;
    // Folders are unfolded by the import, and the in-process engine reads every tag.
    const bool someTags =
        tags && KitSettings::shared().engineOption().contains(EngineOption::exifTool()) &&
        std::none_of(sources.begin(), sources.end(), [](const TagStorageSource& s) { return s.isFolder(); });
    while (!sources.empty()) {
        std::shared_ptr<AbstractTask> task;
        std::function<EditorList()> importedEditors;
        std::function<FileWarnings()> readWarnings;
        if (someTags) {
            auto read = std::make_shared<TagsReadTask>(sources, *tags, false);
            importedEditors = [read] { return read->importedEditors(); };
            readWarnings = [read] { return read->readWarnings(); };
            task = read;
        } else {
            ImportTagEditorsTask::Settings settings(sources);
            settings.ignoreMinorErrors = false;
            settings.unfoldFolders = true;
            settings.unfoldRecursively = recursive;
            settings.readUnlistedFormats = true;
            // Copied, not moved: GCC 12 warns, wrongly, that a moved-from empty format set may be
            // read uninitialised (optimised sanitizer builds).
            auto import = ImportTagEditorsTask::create(settings);
            importedEditors = [import] { return import->importedEditors(); };
            readWarnings = [import] { return import->readWarnings(); };
            task = import;
        }
        const bool onlyFiles = std::none_of(sources.begin(), sources.end(),
                                            [](const TagStorageSource& s) { return s.isFolder(); });
        runTask(task, "Reading", reporter, onlyFiles ? sources.size() : 0);
        auto failed = reportTaskErrors(*task, reporter);
        // A run that failed read nothing: the warnings are those of the run that read the files.
        if (warnings && task->errors().empty()) *warnings = readWarnings();
        reported.insert(failed.begin(), failed.end());
        // The in-process engine reads file by file: its errors cost only their own files.
        if (task->errors().empty() || !task->engineOption().contains(EngineOption::exifTool())) {
            editors = importedEditors();
            break;
        }
        // Try again without the files that failed, if ExifTool named any of the sources.
        const auto before = sources.size();
        std::erase_if(sources, [&](const TagStorageSource& s) { return failed.contains(pathKey(s.url())); });
        if (sources.size() == before || failed.empty()) {
            // Files found in folders: the folders' other files go through one by one.
            const FileTypes types;
            std::vector<TagStorageSource> files;
            for (const auto& source : sources) {
                if (!source.isFolder()) continue;
                for (const auto& url : listFolderFiles(source.url(), recursive))
                    if (types.canImportEditor(url) && !failed.contains(pathKey(url)))
                        files.emplace_back(url, std::nullopt, source.password());
            }
            if (failed.empty() || files.empty()) break;
            std::erase_if(sources, [](const TagStorageSource& s) { return s.isFolder(); });
            sources.insert(sources.end(), files.begin(), files.end());
        }
    }
    reportUnshownFiles(requested, editors, recursive, reported, reporter);
    sortByPath(editors);
    return editors;
}

std::vector<TagStorageSource> unfoldFolders(const std::vector<TagStorageSource>& sources, bool recursive,
                                            Reporter& reporter) {
    const FileTypes types;
    std::vector<TagStorageSource> files;
    for (const auto& source : sources) {
        if (!source.isFolder()) {
            files.push_back(source);
            continue;
        }
        for (const auto& url : listFolderFiles(source.url(), recursive)) {
            if (types.canImportEditor(url))
                files.emplace_back(url, std::nullopt, source.password());
            else
                reporter.fileNote(url, skippedFormatNote);
        }
    }
    return files;
}

void sortByPath(EditorList& editors) {
    // Each editor's path is asked for once, not at every comparison.
    std::vector<std::pair<fs::path, std::shared_ptr<TagEditor>>> byPath;
    byPath.reserve(editors.size());
    for (auto& editor : editors)
        byPath.emplace_back(editor->source().url(), std::move(editor));
    std::sort(byPath.begin(), byPath.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t i = 0; i < byPath.size(); ++i)
        editors[i] = std::move(byPath[i].second);
}

EditorList importJPEGEditorsInProcess(std::vector<TagStorageSource>& sources) {
    if (!KitSettings::availableEngineOption().contains(EngineOption::coreImage())) return {};
    std::vector<TagStorageSource> jpegs;
    std::erase_if(sources, [&](const TagStorageSource& source) {
        const auto type = MediaType::type(source.url());
        const bool jpeg = type && (*type == MediaType::typeJPG() || *type == MediaType::typeJPEG() ||
                                   *type == MediaType::typeJPE());
        // A password is ExifTool's business.
        if (source.isFolder() || source.password() || !jpeg) return false;
        jpegs.push_back(source);
        return true;
    });
    auto storages = parallelMap(jpegs, [](const TagStorageSource& source) -> std::optional<TagStorage> {
        try {
            return CGTagStorageReader(CGTagStorageReader::Settings({source})).read(source);
        } catch (const std::exception&) {
            return std::nullopt;
        }
    });
    EditorList editors;
    for (std::size_t i = 0; i < jpegs.size(); ++i) {
        if (storages[i])
            editors.push_back(ETTagEditor::create(std::move(*storages[i])));
        else
            sources.push_back(jpegs[i]);
    }
    return editors;
}

std::vector<TagStorage> readStorages(const std::vector<std::string>& paths, int& exitCode) {
    Reporter reporter;
    const auto sources = collectSources(paths, false, reporter);
    std::unordered_map<std::string, std::size_t> argumentIndex;
    for (std::size_t i = 0; i < sources.size(); ++i)
        argumentIndex.emplace(pathKey(sources[i].url()), i);
    EditorList editors = importEditors(sources, false, reporter);

    // Each file takes the place of the argument that named it, itself or its folder; the import's
    // path order stays within a folder.
    std::vector<std::pair<std::size_t, TagStorage>> ranked;
    ranked.reserve(editors.size());
    for (const auto& editor : editors) {
        std::size_t rank = sources.size();
        for (fs::path p = pathKey(editor->source().url());; p = p.parent_path()) {
            if (auto it = argumentIndex.find(p.string()); it != argumentIndex.end()) {
                rank = it->second;
                break;
            }
            if (p == p.parent_path()) break;
        }
        ranked.emplace_back(rank, editor->storage());
    }
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<TagStorage> storages;
    storages.reserve(ranked.size());
    for (auto& [rank, storage] : ranked)
        storages.push_back(std::move(storage));
    if (reporter.errorCount()) exitCode = 1;
    return storages;
}

} // namespace corvane::cli
