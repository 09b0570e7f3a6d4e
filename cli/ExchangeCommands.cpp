// `corvane compare` and `corvane sidecar`: moving and checking metadata across files.
#include "Commands.hpp"
#include "StorageReading.hpp"

#include "corvane/comparison/TagComparatorExporter.hpp"
#include "corvane/comparison/TagComparatorSource.hpp"
#include "corvane/comparison/TagComparatorTable.hpp"
#include "corvane/sidecar_support/SidecarReader.hpp"
#include "corvane/sidecar_support/SidecarWriter.hpp"
#include "corvane/tag_storages/ETTagStorageWriter.hpp"
#include "corvane/tag_value/TagValueChecker.hpp"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

namespace corvane::cli {

namespace fs = std::filesystem;

namespace {

int compare(const std::vector<std::string>& paths, const std::string& formatName, const std::string& output,
            bool onlyDifferent, const std::string& search) {
    int exitCode = 0;
    std::string extension =
        formatName.empty() && !output.empty() ? fs::path(output).extension().string() : formatName;
    if (!extension.empty() && extension[0] == '.') extension.erase(0, 1);
    if (extension.empty()) extension = "txt";
    auto format = TagComparatorExporter::formatFromPathExtension(extension);
    if (!format) {
        std::cerr << "corvane: unknown comparison format \"" << extension << "\" (txt, rtf or csv)\n";
        return 2;
    }
    auto storages = readStorages(paths, exitCode);
    TagComparatorTable table = TagComparatorTable::fromStorages(storages);
    if (onlyDifferent) table = table.keepingOnlySharedEntries();
    if (!search.empty()) {
        TagComparatorSource source;
        source.setSourceTable(std::move(table));
        source.setSearch(search);
        table = *source.displayedTable();
    }
    TagComparatorExporter exporter(table);
    if (output.empty()) {
        std::cout << exporter.exportedString(*format);
    } else {
        exporter.exportTo(*format, output);
    }
    return exitCode;
}

// Beside the file (its extension replaced) or in `folder` under the file's base name.
fs::path sidecarPath(const fs::path& file, const std::string& type, const std::string& folder) {
    if (folder.empty()) return fs::path(file).replace_extension(type);
    return fs::path(folder) / (file.stem().string() + "." + type);
}

int exportSidecars(const std::vector<std::string>& paths, const std::string& type,
                   const std::string& folder) {
    int exitCode = 0;
    if (!folder.empty()) fs::create_directories(folder);
    for (const TagStorage& storage : readStorages(paths, exitCode)) {
        fs::path target = sidecarPath(storage.source().url(), type, folder);
        try {
            SidecarWriter::writeSidecar(storage, target);
            std::cout << target.string() << "\n";
        } catch (const std::exception& e) {
            std::cerr << "corvane: " << target.string() << ": " << e.what() << "\n";
            exitCode = 1;
        }
    }
    return exitCode;
}

int importSidecar(const std::string& sidecar, const std::vector<std::string>& paths) {
    int exitCode = 0;
    const SidecarReader::Values values = SidecarReader::readSidecar(sidecar);
    std::vector<TagStorage> edited;
    for (TagStorage storage : readStorages(paths, exitCode)) {
        std::vector<TagName> refusedNames;
        const auto changes = SidecarReader::changesTo(storage, values, &refusedNames);
        // A value the tag can't hold refuses the whole file: nothing of it is written.
        const std::vector<std::string> invalid = TagValueChecker::errors(changes);
        for (const std::string& error : invalid)
            std::cerr << "corvane: " << storage.source().url().string() << ": " << sidecar << ": " << error
                      << "\n";
        if (!invalid.empty()) {
            exitCode = 1;
            continue;
        }
        std::vector<std::pair<TagName, std::string>> sorted(changes.begin(), changes.end());
        std::sort(sorted.begin(), sorted.end());
        for (const auto& [name, value] : sorted)
            storage.setValue(value, name);
        const std::size_t refused = refusedNames.size();
        if (refused) {
            std::cerr << "corvane: " << storage.source().url().string() << ": " << refused
                      << " tag(s) of the sidecar cannot be written in this file\n";
        }
        if (storage.isEdited()) edited.push_back(std::move(storage));
    }
    if (edited.empty()) return exitCode;
    try {
        ETTagStorageWriter::Settings settings(edited);
        settings.setIgnoreMinorErrors(true);
        ETTagStorageWriter writer(settings);
        writer.write();
    } catch (const std::exception& e) {
        std::cerr << "corvane: " << e.what() << "\n";
        exitCode = 1;
    }
    return exitCode;
}

} // namespace

void addExchangeCommands(CLI::App& app, int& exitCode) {
    struct CompareOptions {
        std::vector<std::string> paths;
        std::string format, output, search;
        bool onlyDifferent = false;
    };
    auto cmp = std::make_shared<CompareOptions>();
    auto* compareCmd = app.add_subcommand("compare", "Compare the tags of files, side by side");
    compareCmd->add_option("--format", cmp->format, "txt, rtf or csv (default: from --output, else txt)")
        ->check(CLI::IsMember({"txt", "rtf", "csv"}));
    compareCmd->add_option("--output", cmp->output, "Write the comparison to this file");
    compareCmd->add_flag("--only-different", cmp->onlyDifferent, "Only the tags whose values differ");
    compareCmd->add_option("--search", cmp->search,
                           "Only rows matching this text (case and accents ignored)");
    compareCmd->add_option("PATH", cmp->paths, "Files to compare")->required();
    compareCmd->callback([cmp, &exitCode] {
        exitCode = compare(cmp->paths, cmp->format, cmp->output, cmp->onlyDifferent, cmp->search);
    });

    auto* sidecarCmd = app.add_subcommand("sidecar", "Export or import JSON and CSV sidecar files");
    sidecarCmd->require_subcommand(1);

    struct ExportOptions {
        std::vector<std::string> paths;
        std::string type, folder;
    };
    auto exp = std::make_shared<ExportOptions>();
    auto* exportCmd = sidecarCmd->add_subcommand("export", "Write each file's tags to a sidecar");
    exportCmd->add_option("--type", exp->type, "json or csv")
        ->required()
        ->check(CLI::IsMember({"json", "csv"}));
    exportCmd->add_option("--output", exp->folder, "Folder for the sidecars (default: beside each file)");
    exportCmd->add_option("PATH", exp->paths, "Files")->required();
    exportCmd->callback([exp, &exitCode] { exitCode = exportSidecars(exp->paths, exp->type, exp->folder); });

    struct ImportOptions {
        std::string sidecar;
        std::vector<std::string> paths;
    };
    auto imp = std::make_shared<ImportOptions>();
    auto* importCmd = sidecarCmd->add_subcommand("import", "Set a sidecar's values on files and save them");
    importCmd->add_option("SIDECAR", imp->sidecar, "A .json or .csv sidecar")
        ->required()
        ->check(CLI::ExistingFile);
    importCmd->add_option("PATH", imp->paths, "Files")->required();
    importCmd->callback([imp, &exitCode] { exitCode = importSidecar(imp->sidecar, imp->paths); });
}

} // namespace corvane::cli
