#include "corvane/task_support/ExportCSVTableTask.hpp"

#include "corvane/csv_support/CSVWriter.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/tag_edition/TaskError.hpp"
#include "corvane/task_support/ImportCSVTableTask.hpp"
#include "corvane/task_support/detail/SidecarNames.hpp"
#include "corvane/utilities/FileError.hpp"
#include "corvane/utilities/KitToolbox.hpp"

namespace corvane {

namespace fs = std::filesystem;

std::string_view message(ExportCSVTableTask::ProcessError error) {
    switch (error) {
    case ExportCSVTableTask::ProcessError::engineIsNotAvailable:
        return "Engine is not available";
    case ExportCSVTableTask::ProcessError::destinationIsMissing:
        return "Destination is missing";
    case ExportCSVTableTask::ProcessError::streamIsMissing:
        return "Stream is missing";
    case ExportCSVTableTask::ProcessError::tableTypeIsUnknown:
        return "Table type is unknown";
    }
    return {};
}

ExportCSVTableTask::ExportCSVTableTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<ExportCSVTableTask> ExportCSVTableTask::create(Settings settings) {
    return std::make_shared<ExportCSVTableTask>(std::move(settings));
}

std::string ExportCSVTableTask::title() const {
    return TL("ExportCSVTableTaskTitle");
}

std::vector<const TagItem*> ExportCSVTableTask::columns() const {
    std::vector<const TagItem*> columns{&TagItem::itemFileFileName(), &TagItem::itemFileFilePath()};
    for (const TagItem* item : settings_.tagItems) {
        if (!item) continue;
        const bool known = std::any_of(columns.begin(), columns.end(),
                                       [&](const TagItem* column) { return column->name() == item->name(); });
        if (!known) columns.push_back(item);
    }
    return columns;
}

void ExportCSVTableTask::internProcess() {
    if (!settings_.destinationURL) throw TaskError<ProcessError>(ProcessError::destinationIsMissing);
    const fs::path destination = *settings_.destinationURL;
    if (upperPathExtension(destination) != MediaType::typeCSV().format())
        throw TaskError<ProcessError>(ProcessError::tableTypeIsUnknown);

    // Written beside the destination and renamed over it once complete: a failed export leaves
    // any earlier table as it was.
    const fs::path scratch = detail::scratchURLBeside(destination);
    auto stream = OutputStream::toFile(scratch);
    stream->open();
    if (stream->status() != OutputStream::Status::open)
        throw TaskError<ProcessError>(ProcessError::streamIsMissing);

    const auto items = columns();
    try {
        CSVWriter writer(stream);
        std::vector<std::string> row;
        for (const TagItem* item : items)
            row.push_back(item->name().rawValue());
        writer.writeRow(row);
        const double step =
            settings_.editors.empty() ? 1.0 : 1.0 / static_cast<double>(settings_.editors.size());
        for (const auto& editor : settings_.editors) {
            const TagStorage storage = editor->storage();
            const fs::path url = storage.source().url();
            row.assign({url.filename().string(), url.string()});
            for (std::size_t i = 2; i < items.size(); ++i) {
                auto value = storage.currentValue(items[i]->name());
                row.push_back(value ? *value : std::string(ImportCSVTableTask::noDataCell));
            }
            writer.writeRow(row);
            incrementProgress(step);
        }
        stream->close();
        if (stream->status() == OutputStream::Status::error)
            throw FileError(scratch, "The table could not be written", stream->streamError());
        fs::rename(scratch, destination);
    } catch (...) {
        std::error_code error;
        fs::remove(scratch, error);
        throw;
    }
    setProgress(1);
}

} // namespace corvane
