// `corvane table export|import`: the tags of many files in one CSV table, for a spreadsheet, and
// the edited table applied back to the files.
#include "Commands.hpp"
#include "EditorSaving.hpp"
#include "StorageReading.hpp"

#include "corvane/tag_set/TagSet.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/task_support/ExportCSVTableTask.hpp"
#include "corvane/task_support/ImportCSVTableTask.hpp"

#include <iostream>
#include <memory>
#include <sstream>

namespace corvane::cli {

namespace fs = std::filesystem;

namespace {

struct ExportOptions {
    std::string output, tags, tagSet;
    bool force = false, recursive = false;
    std::vector<std::string> paths;
};

// The columns: the tags given, else the tag set's tags in name order (the images set by default).
std::optional<std::vector<const TagItem*>> columnItems(const ExportOptions& options, Reporter& reporter) {
    std::vector<const TagItem*> items;
    if (!options.tags.empty()) {
        std::stringstream list(options.tags);
        std::string text;
        while (std::getline(list, text, ',')) {
            if (text.empty()) continue;
            auto name = TagName::fromRawValue(text);
            const TagItem* item = name ? TagItem::find(*name) : nullptr;
            if (!item) {
                reporter.error("--tags: \"" + text + "\" is no tag of the catalogue (FAMILY:KEY)");
                return std::nullopt;
            }
            items.push_back(item);
        }
    }
    if (!options.tagSet.empty() || options.tags.empty()) {
        const auto& set =
            options.tagSet == "videos" ? TagSet::popularVideoTagItems() : TagSet::popularImageTagItems();
        items.insert(items.end(), set.begin(), set.end());
    }
    return items;
}

int exportTable(const ExportOptions& options) {
    Reporter reporter;
    const fs::path table = fs::absolute(options.output);
    if (!options.force && fs::exists(table)) {
        reporter.fileError(table, "exists already (--force replaces it)");
        return 1;
    }
    auto items = columnItems(options, reporter);
    if (!items) return 2;
    auto editors = importEditors(collectSources(options.paths, options.recursive, reporter),
                                 options.recursive, reporter);
    std::erase_if(editors, [](const auto& editor) { return editor->isFolder(); });
    auto task = ExportCSVTableTask::create(ExportCSVTableTask::Settings(editors, *items, table));
    runTask(task, "Exporting", reporter);
    for (const auto& error : task->errors())
        reporter.fileError(table, AbstractTask::errorDescription(error));
    if (task->errors().empty())
        std::cout << table.string() << ": " << editors.size() << (editors.size() == 1 ? " row" : " rows")
                  << '\n';
    return reporter.errorCount() ? 1 : 0;
}

struct ImportOptions {
    std::string table;
    bool recursive = false;
    std::vector<std::string> paths;
};

int importTable(const ImportOptions& options) {
    Reporter reporter;
    const fs::path table = fs::absolute(options.table);
    if (!fs::exists(table)) {
        reporter.fileError(table, "no such file");
        return 1;
    }
    auto editors = importEditors(collectSources(options.paths, options.recursive, reporter),
                                 options.recursive, reporter);
    std::erase_if(editors, [](const auto& editor) { return editor->isFolder(); });
    auto task = ImportCSVTableTask::create(ImportCSVTableTask::Settings(editors, table));
    runTask(task, "Reading " + table.filename().string(), reporter);
    for (const auto& error : task->errors()) {
        const std::string text = AbstractTask::errorDescription(error);
        // The row errors name the table themselves.
        if (text.starts_with(table.string()))
            reporter.error(text);
        else
            reporter.fileError(table, text);
    }
    // A table the task refused changes nothing; otherwise what it set is saved.
    if (!task->errors().empty() &&
        std::none_of(editors.begin(), editors.end(), [](const auto& editor) { return editor->isEdited(); }))
        return 1;
    saveEditedEditors(editors, reporter);
    return reporter.errorCount() ? 1 : 0;
}

} // namespace

void addTableExchangeCommands(CLI::App& app, int& exitCode) {
    auto* tableCmd = app.add_subcommand("table", "Many files' tags in one CSV table: export, edit, import");
    tableCmd->require_subcommand(1);

    auto exp = std::make_shared<ExportOptions>();
    auto* exportCmd = tableCmd->add_subcommand(
        "export", "Write one row per file: File:FileName, File:FilePath, then one column per tag");
    exportCmd->add_option("-o,--output", exp->output, "The table, a .csv file")->required();
    exportCmd->add_option("--tags", exp->tags, "Columns as FAMILY:KEY,... (default: the images tag set)");
    exportCmd->add_option("--tagset", exp->tagSet, "The tags of a built-in set: images or videos")
        ->check(CLI::IsMember({"images", "videos"}));
    exportCmd->add_flag("--force", exp->force, "Replace a table that exists");
    exportCmd->add_flag("-r,--recursive", exp->recursive, "Go into subfolders");
    exportCmd->add_option("PATH", exp->paths, "Files and folders")->required();
    exportCmd->callback([exp, &exitCode] { exitCode = exportTable(*exp); });

    auto imp = std::make_shared<ImportOptions>();
    auto* importCmd = tableCmd->add_subcommand(
        "import", "Apply a table's rows to the files its path column names, then save them "
                  "(-NoData- leaves a tag, an empty cell clears it)");
    importCmd->add_option("TABLE", imp->table, "A .csv table as export writes it")->required();
    importCmd->add_flag("-r,--recursive", imp->recursive, "Go into subfolders");
    importCmd->add_option("PATH", imp->paths, "Files and folders the table may name")->required();
    importCmd->callback([imp, &exitCode] { exitCode = importTable(*imp); });
}

} // namespace corvane::cli
