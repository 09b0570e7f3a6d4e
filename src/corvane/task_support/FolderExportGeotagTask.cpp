#include "corvane/task_support/FolderExportGeotagTask.hpp"

#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/task_support/detail/GeotagFormatFiles.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <exception>

namespace corvane {

namespace fs = std::filesystem;

std::string_view message(FolderExportGeotagTask::ProcessError error) {
    using E = FolderExportGeotagTask::ProcessError;
    switch (error) {
    case E::editorIsNotAFolder:
        return "Editor is not a folder";
    case E::engineIsNotAvailable:
        return "Engine is not available";
    case E::formatFileIsMissing:
        return "Format file is missing";
    case E::outputURLIsMissing:
        return "Output URL is missing";
    }
    return {};
}

std::string FolderExportGeotagTask::rawValue(Format format) {
    return format == Format::gpx ? "GPX" : "KML";
}

std::optional<FolderExportGeotagTask::Format> FolderExportGeotagTask::format(std::string_view rawValue) {
    if (rawValue == "GPX") return Format::gpx;
    if (rawValue == "KML") return Format::kml;
    return std::nullopt;
}

std::string FolderExportGeotagTask::formatFile(Format format) {
    const auto text = detail::geotagFormatFile(format == Format::gpx ? "gpx" : "kml");
    if (text.empty()) throw TaskError<ProcessError>(ProcessError::formatFileIsMissing);
    return std::string(text);
}

std::string FolderExportGeotagTask::emptyDocument(Format format) {
    std::string document;
    const auto text = formatFile(format);
    std::string_view rest = text;
    while (!rest.empty()) {
        const auto end = rest.find('\n');
        const auto line = rest.substr(0, end);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        for (std::string_view mark : {"#[HEAD]", "#[TAIL]"})
            if (line.starts_with(mark)) document.append(line.substr(mark.size())).append("\n");
    }
    return document;
}

FolderExportGeotagTask::FolderExportGeotagTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<FolderExportGeotagTask> FolderExportGeotagTask::create(Settings settings) {
    return std::make_shared<FolderExportGeotagTask>(std::move(settings));
}

std::string FolderExportGeotagTask::title() const {
    return TL("FolderExportGeotagTaskTitle");
}

namespace {

// The print format's private copy for ExifTool, removed when the export ends.
struct FormatFileCopy {
    fs::path url = temporaryURL("fmt");
    explicit FormatFileCopy(const std::string& text) { writeFileAtomically(url, text, 0600); }
    ~FormatFileCopy() {
        std::error_code error;
        fs::remove(url, error);
    }
};

} // namespace

void FolderExportGeotagTask::internProcess() {
    if (!engineOption().contains(EngineOption::exifTool()))
        throw TaskError<ProcessError>(ProcessError::engineIsNotAvailable);
    if (!settings_.editor || !settings_.editor->isFolder())
        throw TaskError<ProcessError>(ProcessError::editorIsNotAFolder);
    if (!settings_.outputURL) throw TaskError<ProcessError>(ProcessError::outputURLIsMissing);
    const FormatFileCopy formatCopy(formatFile(settings_.format));

    const auto storage = settings_.editor->storage();
    ETInput input;
    input.addArguments(std::vector{storage}, [&](const TagStorage& folder, ETInput::ArgumentsMaker& maker) {
        maker.ignoreMinorErrors = settings_.ignoreMinorErrors.value_or(true);
        maker.recurseSubfolders = folder.recurseSubfolders().value_or(false);
        maker.filePathFilter = folder.filePathFilter();
        maker.password = folder.source().password();
        // A track goes in time order: GPS time first, the time the picture was taken for the others.
        maker.arguments = {"-fileOrder",       "GPSDateTime", "-fileOrder",
                           "DateTimeOriginal", "-p",          formatCopy.url.string()};
        maker.url = folder.source().url();
        maker.soloRun = true;
    });
    std::weak_ptr<AbstractTask> weakTask = weak_from_this();
    input.onProgressHandler = [weakTask, this](ETProcess& process) {
        if (auto task = weakTask.lock()) setProgress(process.progress());
    };
    const auto output = ETProcess::runOnSharedPool(input);
    std::exception_ptr fileErrors;
    try {
        output.throwIfErrors();
    } catch (const ETOutputException& e) {
        // Past minor errors, a file of the folder that ExifTool couldn't read is left out of the
        // document, and its error joins the task's; a run that failed as a whole writes nothing.
        const bool ignoreMinor = settings_.ignoreMinorErrors.value_or(true);
        if (!ignoreMinor || e.error() != ETOutputError::exifToolErrors || output.data().empty()) throw;
        fileErrors = std::current_exception();
    }
    if (fileErrors) failable([&] { std::rethrow_exception(fileErrors); });
    // ExifTool prints nothing, not even the head, for a folder without files.
    const auto& data = output.data();
    writeFileAtomically(*settings_.outputURL, data.empty() ? emptyDocument(settings_.format) : data);
}

} // namespace corvane
