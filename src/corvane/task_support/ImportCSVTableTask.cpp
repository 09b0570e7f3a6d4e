#include "corvane/task_support/ImportCSVTableTask.hpp"

#include "corvane/csv_support/CSVReader.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/tag_edition/TaskError.hpp"
#include "corvane/tag_editor/TagEditorArrayEditions.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/utilities/Error.hpp"
#include "corvane/utilities/FileError.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <unordered_map>

namespace corvane {

namespace fs = std::filesystem;

std::string_view message(ImportCSVTableTask::ProcessError error) {
    switch (error) {
    case ImportCSVTableTask::ProcessError::engineIsNotAvailable:
        return "Engine is not available";
    case ImportCSVTableTask::ProcessError::sourceIsMissing:
        return "Source is missing";
    case ImportCSVTableTask::ProcessError::tableTypeIsUnknown:
        return "Table type is uknown";
    case ImportCSVTableTask::ProcessError::inputStreamIsMissing:
        return "Input stream is missing";
    case ImportCSVTableTask::ProcessError::nameTagIsMissing:
        return "Name tag is missing";
    case ImportCSVTableTask::ProcessError::pathTagIsMissing:
        return "Path tag is missing";
    }
    return {};
}

ImportCSVTableTask::ImportCSVTableTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<ImportCSVTableTask> ImportCSVTableTask::create(Settings settings) {
    return std::make_shared<ImportCSVTableTask>(std::move(settings));
}

std::string ImportCSVTableTask::title() const {
    return TL("ImportCSVTableTaskTitle");
}

void ImportCSVTableTask::internProcess() {
    if (!settings_.sourceURL) throw TaskError<ProcessError>(ProcessError::sourceIsMissing);
    const fs::path source = *settings_.sourceURL;
    if (upperPathExtension(source) != MediaType::typeCSV().format())
        throw TaskError<ProcessError>(ProcessError::tableTypeIsUnknown);

    std::optional<CSVReader<EnumeratedCSVView>> reader;
    try {
        reader =
            CSVReader<EnumeratedCSVView>::fromFile(source, std::nullopt, TextEncoding::utf8(), true, true);
    } catch (const FileError&) {
        throw TaskError<ProcessError>(ProcessError::inputStreamIsMissing);
    }
    const EnumeratedCSVView& table = reader->content();

    // The columns that name catalogue tags; the others are ignored.
    std::vector<std::pair<std::size_t, TagName>> tagColumns;
    std::optional<std::size_t> nameColumn, pathColumn;
    for (std::size_t i = 0; i < table.header().size(); ++i) {
        auto name = TagName::fromRawValue(table.header()[i]);
        if (!name || !TagItem::find(*name)) continue;
        if (*name == TagItem::itemFileFileName().name())
            nameColumn = i;
        else if (*name == TagItem::itemFileFilePath().name())
            pathColumn = i;
        else
            tagColumns.emplace_back(i, *name);
    }
    if (!nameColumn) throw TaskError<ProcessError>(ProcessError::nameTagIsMissing);
    if (!pathColumn) throw TaskError<ProcessError>(ProcessError::pathTagIsMissing);

    using Values = std::vector<std::pair<TagName, std::string>>;
    std::unordered_map<fs::path, Values> rows;
    for (std::size_t r = 0; r < table.rows().size(); ++r) {
        const auto& row = table.rows()[r];
        auto cell = [&](std::size_t i) { return i < row.size() ? row[i] : std::string(noDataCell); };
        const fs::path url = fs::path(cell(*pathColumn)).lexically_normal();
        if (url.empty() || url.filename().string() != cell(*nameColumn)) {
            // Row 1 is the header.
            failable([&] {
                throw Error(source.string() + ": row " + std::to_string(r + 2) + ": the name \"" +
                            cell(*nameColumn) + "\" is not the file of the path \"" + cell(*pathColumn) +
                            "\"");
            });
            continue;
        }
        Values values;
        for (const auto& [index, name] : tagColumns) {
            std::string value = cell(index);
            if (value != noDataCell) values.emplace_back(name, std::move(value));
        }
        rows[url] = std::move(values);
    }

    TagEditorArrayEditions(settings_.editors).editConcurrently([&](TagEditor& editor) {
        auto found = rows.find(editor.source().url().lexically_normal());
        if (found == rows.end()) return;
        for (const auto& [name, value] : found->second)
            editor.setValue(value, name);
    });
    setProgress(1);
}

} // namespace corvane
