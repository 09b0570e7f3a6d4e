// `corvane sidecar export|import|sync` and `corvane copy-tags`: moving values between files, their
// sidecars and their own tags, through the library's import, export and sync tasks.
#include "Commands.hpp"
#include "EditorSaving.hpp"
#include "Output.hpp"
#include "StorageReading.hpp"

#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/sidecar_support/SidecarFormat.hpp"
#include "corvane/sidecar_support/SidecarReader.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/task_support/ExportTagValuesTask.hpp"
#include "corvane/task_support/ImportTagEditorsTask.hpp"
#include "corvane/task_support/ImportTagValuesTask.hpp"
#include "corvane/task_support/SyncSidecarFilesTask.hpp"
#include "corvane/task_support/SyncTagValuesTask.hpp"

#include <algorithm>
#include <iostream>
#include <map>
#include <memory>

namespace corvane::cli {

namespace fs = std::filesystem;

namespace {

const std::vector<std::string> exportTypes{"json", "csv", "xmp", "exv", "mie", "exif", "icc", "vrd"};

// --- export

struct ExportOptions {
    std::vector<std::string> paths;
    std::string type, folder;
    bool force = false, recursive = false;
};

int exportSidecars(const ExportOptions& options) {
    Reporter reporter;
    auto editors = importEditors(collectSources(options.paths, options.recursive, reporter),
                                 options.recursive, reporter);
    std::erase_if(editors, [](const auto& editor) { return editor->isFolder(); });
    ExportTagValuesTask::Settings settings;
    settings.sidecarType = options.type;
    if (!options.folder.empty()) settings.destinationURL = fs::absolute(options.folder);
    const auto type = MediaType::type(upperPathExtension(fs::path("x." + options.type)));
    if (!type) return 2;

    // Two files that would write one sidecar are reported, and neither is exported; an existing
    // sidecar is kept unless replacing it was asked.
    std::map<fs::path, EditorList> bySidecar;
    const ExportTagValuesTask naming(settings);
    for (const auto& editor : editors)
        bySidecar[naming.sidecarURL(*editor, *type)].push_back(editor);
    EditorList exported;
    std::vector<fs::path> written;
    for (const auto& editor : editors) {
        const fs::path sidecar = naming.sidecarURL(*editor, *type);
        const EditorList& sharing = bySidecar[sidecar];
        if (sharing.size() > 1) {
            const auto& other = sharing.front() == editor ? sharing[1] : sharing.front();
            reporter.fileError(editor->source().url(), "would write the same sidecar " + sidecar.string() +
                                                           " as " + other->source().url().string());
            continue;
        }
        if (!options.force && fs::exists(sidecar)) {
            reporter.fileError(sidecar, "exists already (--force replaces it)");
            continue;
        }
        exported.push_back(editor);
        written.push_back(sidecar);
    }
    if (!exported.empty()) {
        settings.editors = exported;
        auto task = ExportTagValuesTask::create(std::move(settings));
        runTask(task, "Exporting", reporter);
        const std::set<std::string> failed = reportTaskErrors(*task, reporter);
        for (const auto& sidecar : written)
            if (!failed.contains(pathKey(sidecar)) && fs::exists(sidecar))
                std::cout << sidecar.string() << '\n';
    }
    return reporter.errorCount() ? 1 : 0;
}

// --- import

struct ImportOptions {
    std::string source;
    std::vector<std::string> paths, excludedStreams, excludedTags;
    bool all = false, recursive = false;
};

// The sidecar as given, else the same name with the other case of its extension ("photo.XMP" for
// "photo.xmp"): on this system they are two names.
fs::path existingSource(const fs::path& path) {
    if (fs::exists(path)) return path;
    std::string extension = path.extension().string();
    const bool lower =
        std::any_of(extension.begin(), extension.end(), [](unsigned char c) { return std::islower(c); });
    std::transform(extension.begin(), extension.end(), extension.begin(), [lower](unsigned char c) {
        return static_cast<char>(lower ? std::toupper(c) : std::tolower(c));
    });
    fs::path other = path;
    other.replace_extension(extension);
    return fs::exists(other) ? other : path;
}

int importSidecar(const ImportOptions& options) {
    Reporter reporter;
    const fs::path source = existingSource(options.source);
    if (!fs::exists(source)) {
        reporter.fileError(source, "no such file");
        return 1;
    }
    if (!ImportTagValuesTask::canImportSource(source)) {
        reporter.fileError(source, "not a sidecar or media file that can be read");
        return 2;
    }
    // A sidecar that can't be read is named with its line before any file is touched.
    try {
        SidecarReader::readSidecar(source);
    } catch (const NotASidecarError&) {
        // A media file: ExifTool reads it in the task.
    } catch (const std::exception& e) {
        reporter.error(inputFailure(source, e, "a sidecar"));
        return exitFileFailed;
    }
    std::unordered_set<TagStream> streams{TagStream::streamFile};
    std::unordered_set<TagName> names;
    for (const auto& text : options.excludedStreams)
        streams.insert(TagStream(text));
    for (const auto& text : options.excludedTags) {
        auto name = TagName::fromRawValue(text);
        if (!name || !TagItem::find(*name)) {
            reporter.error("--exclude-tag: \"" + text + "\" is no tag of the catalogue (FAMILY:KEY)");
            return 2;
        }
        names.insert(*name);
    }

    auto editors = importEditors(collectSources(options.paths, options.recursive, reporter),
                                 options.recursive, reporter);
    std::erase_if(editors, [](const auto& editor) { return editor->isFolder(); });
    // A file other than the one the source describes doesn't take what describes the source's own
    // image (its camera, structure and maker notes), unless --all.
    EditorList same, other;
    for (const auto& editor : editors) {
        const bool isSame = editor->source().url().stem() == source.stem();
        (options.all || isSame ? same : other).push_back(editor);
    }
    for (const EditorList* group : {&same, &other}) {
        if (group->empty()) continue;
        ImportTagValuesTask::Settings settings(*group, TagStorageSource(fs::absolute(source)));
        settings.excludedTagNames = names;
        settings.excludedTagStreams = streams;
        if (group == &other) {
            const auto& describing = ImportTagValuesTask::imageDescriptionTagNames();
            settings.excludedTagNames.insert(describing.begin(), describing.end());
            const auto& describingStreams = ImportTagValuesTask::imageDescriptionTagStreams();
            settings.excludedTagStreams.insert(describingStreams.begin(), describingStreams.end());
        }
        auto task = ImportTagValuesTask::create(std::move(settings));
        runTask(task, "Reading " + source.filename().string(), reporter);
        reportTaskErrors(*task, reporter);
    }
    saveEditedEditors(editors, reporter);
    return reporter.errorCount() ? 1 : 0;
}

// --- sync

struct SyncOptions {
    bool importing = false, exporting = false, recursive = false;
    std::string type = "xmp", folder;
    std::vector<std::string> paths;
};

int syncSidecars(const SyncOptions& options) {
    Reporter reporter;
    auto editors = importEditors(collectSources(options.paths, options.recursive, reporter),
                                 options.recursive, reporter);
    std::erase_if(editors, [](const auto& editor) { return editor->isFolder(); });
    if (editors.empty()) return reporter.errorCount() ? 1 : 0;
    SyncSidecarFilesTask::Settings settings(editors, options.importing
                                                         ? SyncSidecarFilesTask::Action::importSidecar
                                                         : SyncSidecarFilesTask::Action::exportSidecar);
    settings.sidecarType = options.type;
    if (!options.folder.empty()) {
        settings.sidecarFolderURL = fs::absolute(options.folder);
        fs::create_directories(*settings.sidecarFolderURL);
    }
    auto task = SyncSidecarFilesTask::create(std::move(settings));
    runTask(task, options.importing ? "Importing sidecars" : "Exporting sidecars", reporter);
    for (const auto& error : task->errors()) {
        try {
            std::rethrow_exception(error);
        } catch (const SyncSidecarFilesTask::MissingSidecarError& e) {
            reporter.fileError(e.url(), "no sidecar " + e.sidecar().string());
        } catch (const ETOutputException& e) {
            bool named = false;
            for (const auto& fileError : e.fileErrors()) {
                if (!fileError.path) continue;
                reporter.fileError(*fileError.path, fileError.text);
                named = true;
            }
            if (!named) reporter.error(e.details());
        } catch (const std::exception& e) {
            reporter.error(e.what());
        }
    }
    if (reporter.errorCount() == 0)
        std::cout << editors.size() << (editors.size() == 1 ? " file" : " files")
                  << (options.importing ? " updated from their sidecars" : " exported to sidecars") << '\n';
    return reporter.errorCount() ? 1 : 0;
}

// --- copy-tags

struct CopyOptions {
    std::vector<std::string> arguments;
    bool recursive = false;
};

int copyTags(const CopyOptions& options) {
    Reporter reporter;
    std::vector<TagSyncPair> pairs;
    std::vector<std::string> paths;
    for (const auto& argument : options.arguments) {
        if (argument.find('>') == std::string::npos) {
            paths.push_back(argument);
            continue;
        }
        auto pair = TagSyncPair::fromText(argument);
        if (!pair || !TagItem::find(pair->from()) || !TagItem::find(pair->to())) {
            reporter.error("\"" + argument + "\" is not FROM>TO with two tags of the catalogue");
            return 2;
        }
        pairs.push_back(*pair);
    }
    if (pairs.empty() || paths.empty()) {
        reporter.error("copy-tags needs at least one FROM>TO and one file or folder");
        return 2;
    }
    // Folders stay folders: ExifTool copies the tags of all their files in one run.
    std::vector<TagStorageSource> sources;
    EditorList folders;
    std::vector<std::string> files;
    for (const auto& path : paths) {
        if (pathExtension(path).empty() && fs::is_directory(path)) {
            TagStorage storage{TagStorageSource(fs::absolute(path))};
            storage.setRecurseSubfolders(options.recursive);
            folders.push_back(TagEditor::create(std::move(storage)));
        } else {
            files.push_back(path);
        }
    }
    EditorList editors;
    if (!files.empty()) editors = importEditors(collectSources(files, false, reporter), false, reporter);
    editors.insert(editors.end(), folders.begin(), folders.end());
    if (editors.empty()) return reporter.errorCount() ? 1 : 0;

    auto task = SyncTagValuesTask::create(SyncTagValuesTask::Settings(editors, pairs));
    runTask(task, "Copying", reporter);
    reportTaskErrors(*task, reporter);
    if (!folders.empty() && task->errors().empty())
        std::cout << folders.size() << (folders.size() == 1 ? " folder" : " folders") << " updated\n";
    EditorList fileEditors;
    for (const auto& editor : editors)
        if (!editor->isFolder()) fileEditors.push_back(editor);
    if (!fileEditors.empty()) saveEditedEditors(fileEditors, reporter);
    return reporter.errorCount() ? 1 : 0;
}

} // namespace

void addSidecarCommands(CLI::App& app, int& exitCode) {
    auto* sidecarCmd = app.add_subcommand("sidecar", "Export, import and sync sidecar files");
    sidecarCmd->require_subcommand(1);

    auto exp = std::make_shared<ExportOptions>();
    auto* exportCmd = sidecarCmd->add_subcommand("export", "Write each file's tags to a sidecar");
    exportCmd->add_option("--type", exp->type, "json, csv, xmp, exv, mie, exif, icc or vrd")
        ->required()
        ->transform(CLI::IsMember(exportTypes, CLI::ignore_case));
    exportCmd->add_option("--output", exp->folder, "Folder for the sidecars (default: beside each file)");
    exportCmd->add_flag("--force", exp->force, "Replace sidecars that exist");
    exportCmd->add_flag("-r,--recursive", exp->recursive, "Go into subfolders");
    exportCmd->add_option("PATH", exp->paths, "Files and folders")->required();
    exportCmd->callback([exp, &exitCode] { exitCode = exportSidecars(*exp); });

    auto imp = std::make_shared<ImportOptions>();
    auto* importCmd = sidecarCmd->add_subcommand(
        "import", "Set the tags of a sidecar or media file on files and save them (File family never taken)");
    importCmd->add_option("SOURCE", imp->source, "A sidecar (.json, .csv, .xmp...) or any media file")
        ->required();
    importCmd->add_option("--exclude-stream", imp->excludedStreams, "A family not to import (repeatable)");
    importCmd->add_option("--exclude-tag", imp->excludedTags, "A FAMILY:KEY tag not to import (repeatable)");
    importCmd->add_flag("--all", imp->all,
                        "Also carry, into another file, what describes the source's own image "
                        "(camera, maker notes, sizes, compression...)");
    importCmd->add_flag("-r,--recursive", imp->recursive, "Go into subfolders");
    importCmd->add_option("PATH", imp->paths, "Files and folders")->required();
    importCmd->callback([imp, &exitCode] { exitCode = importSidecar(*imp); });

    auto sync = std::make_shared<SyncOptions>();
    auto* syncCmd = sidecarCmd->add_subcommand(
        "sync", "Copy whole metadata sets between files and their sidecars with ExifTool");
    auto* importFlag = syncCmd->add_flag("--import", sync->importing, "Sidecar into file");
    auto* exportFlag = syncCmd->add_flag("--export", sync->exporting, "File into a new sidecar");
    importFlag->excludes(exportFlag);
    syncCmd->add_option("--type", sync->type, "Sidecar format (default xmp)")
        ->transform(CLI::IsMember({"xmp", "exv", "mie", "exif", "icc", "vrd"}, CLI::ignore_case));
    syncCmd->add_option("--folder", sync->folder, "Where the sidecars lie (default: beside each file)");
    syncCmd->add_flag("-r,--recursive", sync->recursive, "Go into subfolders");
    syncCmd->add_option("PATH", sync->paths, "Files and folders")->required();
    syncCmd->callback([sync, &exitCode] {
        if (!sync->importing && !sync->exporting) {
            std::cerr << "corvane: sidecar sync: --import or --export is required\n";
            exitCode = 2;
            return;
        }
        exitCode = syncSidecars(*sync);
    });

    auto copy = std::make_shared<CopyOptions>();
    auto* copyCmd = app.add_subcommand(
        "copy-tags", "Copy tags into other tags (EXIF:DateTimeOriginal>XMP:CreateDate) in files and folders");
    copyCmd->add_flag("-r,--recursive", copy->recursive, "Also the files of subfolders of a folder");
    copyCmd->add_option("ARG", copy->arguments, "FROM>TO pairs, then files and folders")->required();
    copyCmd->callback([copy, &exitCode] { exitCode = copyTags(*copy); });
}

} // namespace corvane::cli
