// `corvane compare`: the tags of several files side by side.
#include "Commands.hpp"
#include "Output.hpp"
#include "StorageReading.hpp"

#include "corvane/comparison/TagComparatorExporter.hpp"
#include "corvane/comparison/TagComparatorSource.hpp"
#include "corvane/comparison/TagComparatorTable.hpp"

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
}

} // namespace corvane::cli
