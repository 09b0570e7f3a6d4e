// `corvane keywords` and `corvane locations`: the user's keyword and location libraries, kept
// beside the user defaults ($XDG_CONFIG_HOME/corvane), listed, edited, imported and exported.
#include "Commands.hpp"
#include "Output.hpp"

#include "corvane/keyword_support/KeywordFile.hpp"
#include "corvane/keyword_support/KeywordManager.hpp"
#include "corvane/keyword_support/ThesaurusReader.hpp"
#include "corvane/keyword_support/ThesaurusWriter.hpp"
#include "corvane/location_support/LocationFile.hpp"
#include "corvane/location_support/LocationManager.hpp"
#include "corvane/value_models/CoordinateParser.hpp"
#include "corvane/value_models/CoordinateWriter.hpp"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iostream>
#include <memory>

namespace corvane::cli {

namespace {

namespace fs = std::filesystem;

struct LibraryOptions {
    std::string file;
    std::string name;
    std::string coordinate;
};

// Thesaurus text goes by its extension (.txt, any case); anything else is a JSON library.
bool isThesaurus(const std::string& file) {
    std::string extension = fs::path(file).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".txt";
}

// One line per keyword, two blanks per level: a header in brackets, synonyms in braces after the
// name, people marked.
void printKeywords(const std::vector<KeywordItemRef>& items, std::size_t depth) {
    for (const auto& item : items) {
        std::cout << std::string(2 * depth, ' ')
                  << (item->isHeader() ? "[" + item->name() + "]" : item->name());
        for (const auto& synonym : item->synonyms())
            std::cout << " {" << synonym << "}";
        if (item->isPerson()) std::cout << " (person)";
        std::cout << '\n';
        printKeywords(item->children(), depth + 1);
    }
}

// Runs `body`; a failure is reported with `what` (a file, or the library) and gives exit code 1.
template <class F> int reportingFailures(const std::string& what, F&& body) {
    try {
        return body();
    } catch (const std::exception& e) {
        // The library's decoding errors already start with the file's name.
        std::string message = readableReason(e);
        if (message.rfind(what + ": ", 0) != 0) message = what + ": " + message;
        std::cerr << "corvane: " << message << '\n';
        return 1;
    }
}

int runKeywords(const std::string& action, const LibraryOptions& options) {
    const auto manager = KeywordManager::shared();
    const int loaded = reportingFailures("the keyword library", [&] {
        manager->loadFromDefaults();
        return 0;
    });
    if (loaded != 0) return loaded;
    if (action == "list") {
        printKeywords(manager->items(), 0);
        std::cout << std::flush;
        return 0;
    }
    return reportingFailures(options.file, [&] {
        if (action == "export") {
            if (isThesaurus(options.file))
                ThesaurusWriter().write(manager->items(), options.file);
            else
                KeywordFile(std::nullopt, manager->items()).exportTo(options.file);
            return 0;
        }
        // Import adds the file's keywords after the library's own.
        auto items = isThesaurus(options.file) ? ThesaurusReader().readAt(options.file)
                                               : KeywordFile::fromJSONURL(options.file).items();
        std::size_t count = 0;
        for (const auto& item : items)
            count += 1 + item->countChildren();
        manager->insertItems(std::move(items), manager->items().size());
        manager->saveToDefaults();
        std::cout << "imported " << count << (count == 1 ? " keyword\n" : " keywords\n");
        return 0;
    });
}

int runLocations(const std::string& action, const LibraryOptions& options) {
    const auto manager = LocationManager::shared();
    const int loaded = reportingFailures("the location library", [&] {
        manager->loadFromDefaults();
        return 0;
    });
    if (loaded != 0) return loaded;
    const auto named = [&] {
        IndexSet indexes;
        for (std::size_t i = 0; i < manager->items().size(); ++i)
            if (manager->items()[i]->name() == options.name) indexes.insert(i);
        return indexes;
    };
    if (action == "list") {
        for (const auto& item : manager->items())
            std::cout << item->name() << '\t' << CoordinateWriter().DDddddd(item->location().coordinate())
                      << '\n';
        std::cout << std::flush;
        return 0;
    }
    if (action == "add") {
        const auto coordinate = CoordinateParser::coordinate(options.coordinate);
        if (!coordinate) {
            std::cerr << "corvane: \"" << options.coordinate << "\" is not a coordinate\n";
            return 1;
        }
        if (!named().isEmpty()) {
            std::cerr << "corvane: a place named \"" << options.name << "\" is already saved\n";
            return 1;
        }
        manager->insertItems({LocationItem::create(options.name, Location(*coordinate))},
                             manager->items().size());
        return reportingFailures("the location library", [&] {
            manager->saveToDefaults();
            return 0;
        });
    }
    if (action == "remove") {
        const IndexSet indexes = named();
        if (indexes.isEmpty()) {
            std::cerr << "corvane: no place named \"" << options.name << "\"\n";
            return 1;
        }
        manager->removeItems(indexes);
        return reportingFailures("the location library", [&] {
            manager->saveToDefaults();
            return 0;
        });
    }
    return reportingFailures(options.file, [&] {
        if (action == "export") {
            LocationFile(std::nullopt, manager->items()).exportTo(options.file);
            return 0;
        }
        auto items = LocationFile::fromJSONURL(options.file).items();
        const std::size_t count = items.size();
        manager->insertItems(std::move(items), manager->items().size());
        manager->saveToDefaults();
        std::cout << "imported " << count << (count == 1 ? " place\n" : " places\n");
        return 0;
    });
}

} // namespace

std::optional<Location> savedLocation(const std::string& name, std::string& error) {
    const auto manager = LocationManager::shared();
    try {
        manager->loadFromDefaults();
    } catch (const std::exception& e) {
        error = std::string("the location library: ") + e.what();
        return std::nullopt;
    }
    for (const auto& item : manager->items())
        if (item->name() == name) return item->location();
    error = "no place named \"" + name + "\" in the location library (see corvane locations list)";
    return std::nullopt;
}

void addLibraryCommands(CLI::App& app, int& exitCode) {
    auto options = std::make_shared<LibraryOptions>();
    const auto command = [&exitCode, options](auto run, std::string action) {
        return [&exitCode, options, run, action] { exitCode = run(action, *options); };
    };

    auto* keywords = app.add_subcommand("keywords", "The user's keyword library");
    keywords->require_subcommand(1);
    keywords->add_subcommand("list", "The keywords as a tree: [header], {synonym}, (person)")
        ->callback(command(runKeywords, "list"));
    auto* keywordImport = keywords->add_subcommand(
        "import",
        "Adds the keywords of a library file (JSON) or of thesaurus text (.txt) after the library's own");
    keywordImport->add_option("FILE", options->file, "FILE.json or FILE.txt")->required();
    keywordImport->callback(command(runKeywords, "import"));
    auto* keywordExport =
        keywords->add_subcommand("export", "Writes the library as JSON, or as thesaurus text to a .txt file");
    keywordExport->add_option("-o,--output", options->file, "FILE.json or FILE.txt")->required();
    keywordExport->callback(command(runKeywords, "export"));

    auto* locations = app.add_subcommand("locations", "The user's saved places");
    locations->require_subcommand(1);
    locations->add_subcommand("list", "Each place's name and coordinate, tab-separated")
        ->callback(command(runLocations, "list"));
    auto* add = locations->add_subcommand("add", "Saves a place at the end of the list");
    add->add_option("NAME", options->name, "A name no saved place has")->required();
    add->add_option("COORDINATE", options->coordinate,
                    "\"48.8566, 2.3522\", \"48°51'24\\\"N 2°21'8\\\"E\", ISO 6709…")
        ->required();
    add->callback(command(runLocations, "add"));
    auto* remove = locations->add_subcommand("remove", "Removes the places of that name");
    remove->add_option("NAME", options->name)->required();
    remove->callback(command(runLocations, "remove"));
    auto* locationImport =
        locations->add_subcommand("import", "Adds the places of a library file after the list");
    locationImport->add_option("FILE", options->file)->required();
    locationImport->callback(command(runLocations, "import"));
    auto* locationExport = locations->add_subcommand("export", "Writes the list as a library file");
    locationExport->add_option("-o,--output", options->file)->required();
    locationExport->callback(command(runLocations, "export"));
}

} // namespace corvane::cli
