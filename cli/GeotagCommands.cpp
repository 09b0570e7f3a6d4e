// `corvane geotag` and `corvane gps`: positions of files from a track log, out to GPX or KML, and
// read back fast.
#include "Commands.hpp"
#include "StorageReading.hpp"

#include "corvane/exiftool_wrapper/ETCoordinateReader.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/task_support/FolderExportGeotagTask.hpp"
#include "corvane/task_support/FolderImportGeotagTask.hpp"

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>

namespace corvane::cli {

namespace fs = std::filesystem;

namespace {

// An editor of the folder, not read: the tasks hand the folder to ExifTool. Nothing, with the
// folder reported, when it is none.
std::shared_ptr<ETTagEditor> folderEditor(const std::string& folder, bool recursive, Reporter& reporter) {
    std::error_code error;
    if (!fs::is_directory(folder, error)) {
        reporter.fileError(folder, "Not a folder");
        return nullptr;
    }
    TagStorage storage{TagStorageSource(folder)};
    storage.setRecurseSubfolders(recursive);
    return ETTagEditor::create(std::move(storage));
}

int importGeotags(const std::string& track, const std::string& sync, const std::string& folder,
                  bool recursive) {
    Reporter reporter;
    FolderImportGeotagTask::Settings settings;
    settings.editor = folderEditor(folder, recursive, reporter);
    if (!settings.editor) return 1;
    settings.geotagFileURL = fs::path(track);
    if (!sync.empty()) settings.geoSyncString = sync;
    auto task = FolderImportGeotagTask::create(std::move(settings));
    runTask(task, "Geotagging", reporter);
    reportTaskErrors(*task, reporter);
    return reporter.errorCount() ? 1 : 0;
}

int exportGeotags(const std::string& format, const std::string& output, const std::string& folder,
                  bool recursive) {
    Reporter reporter;
    FolderExportGeotagTask::Settings settings;
    settings.editor = folderEditor(folder, recursive, reporter);
    if (!settings.editor) return 1;
    settings.outputURL = fs::path(output);
    settings.format =
        format == "kml" ? FolderExportGeotagTask::Format::kml : FolderExportGeotagTask::Format::gpx;
    auto task = FolderExportGeotagTask::create(std::move(settings));
    runTask(task, "Exporting", reporter);
    reportTaskErrors(*task, reporter);
    return reporter.errorCount() ? 1 : 0;
}

int printPositions(const std::vector<std::string>& paths) {
    Reporter reporter;
    ETCoordinateReader reader;
    std::vector<std::string> files;
    for (const auto& path : paths) {
        std::error_code error;
        if (!fs::is_regular_file(path, error)) {
            reporter.fileError(path, fs::exists(path, error) ? "Not a file" : "No such file");
            continue;
        }
        files.push_back(path);
        reader.storageSources.emplace_back(path);
    }
    if (!files.empty()) {
        try {
            const auto coordinates = reader.read();
            for (std::size_t k = 0; k < files.size(); ++k) {
                char text[64] = "-\t-";
                if (const auto& c = coordinates[k])
                    std::snprintf(text, sizeof text, "%+.6f\t%+.6f", c->latitude().value(),
                                  c->longitude().value());
                std::cout << files[k] << "\t" << text << "\n";
            }
        } catch (const std::exception& e) {
            reporter.error(e.what());
        }
    }
    return reporter.errorCount() ? 1 : 0;
}

} // namespace

void addGeotagCommands(CLI::App& app, int& exitCode) {
    auto* geotag =
        app.add_subcommand("geotag", "Set positions from a track log, or export positions as GPX or KML");
    geotag->require_subcommand(1);

    struct ImportOptions {
        std::string track, sync, folder;
        bool recursive = false;
    };
    auto imp = std::make_shared<ImportOptions>();
    auto* importCmd = geotag->add_subcommand(
        "import",
        "Set the GPS tags of a folder's files from a track log, at each file's DateTimeOriginal in the "
        "local time zone (TZ); files keep their modification dates");
    importCmd->add_option("--track", imp->track, "The track log: GPX, NMEA, KML, IGC, TCX...")
        ->required()
        ->check(CLI::ExistingFile);
    importCmd->add_option("--sync", imp->sync,
                          "The camera clock's shift, as +0:01:00 when it was a minute behind");
    importCmd->add_flag("--recursive,-r", imp->recursive, "Also the files of subfolders");
    importCmd->add_option("FOLDER", imp->folder, "The folder of the files")->required();
    importCmd->callback(
        [imp, &exitCode] { exitCode = importGeotags(imp->track, imp->sync, imp->folder, imp->recursive); });

    struct ExportOptions {
        std::string format = "gpx", output, folder;
        bool recursive = false;
    };
    auto exp = std::make_shared<ExportOptions>();
    auto* exportCmd = geotag->add_subcommand(
        "export", "Write the positions of a folder's files as a GPX track or KML placemarks, in time order");
    exportCmd->add_option("--format", exp->format, "gpx (default) or kml")
        ->check(CLI::IsMember({"gpx", "kml"}));
    exportCmd->add_option("-o,--output", exp->output, "The file to write")->required();
    exportCmd->add_flag("--recursive,-r", exp->recursive, "Also the files of subfolders");
    exportCmd->add_option("FOLDER", exp->folder, "The folder of the files")->required();
    exportCmd->callback([exp, &exitCode] {
        exitCode = exportGeotags(exp->format, exp->output, exp->folder, exp->recursive);
    });

    auto paths = std::make_shared<std::vector<std::string>>();
    auto* gps = app.add_subcommand("gps", "Print each file's position, \"PATH<TAB>LATITUDE<TAB>LONGITUDE\" "
                                          "in signed degrees (- - without one)");
    gps->add_option("PATH", *paths, "Files")->required();
    gps->callback([paths, &exitCode] { exitCode = printPositions(*paths); });
}

} // namespace corvane::cli
