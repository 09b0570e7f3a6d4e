// `corvane show`: the rows of a tag value table over files, as a view would show them; and
// `corvane tagset`: the user's tag sets kept in the user defaults.
//
// The tables post their notifications on the main queue and wait for it: a GUI drains it from its
// event loop, this tool drains it on its own main thread (`drainUntilIdle`) after each change it
// asks of a table.
#include "Commands.hpp"
#include "Output.hpp"
#include "StorageReading.hpp"

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_set/TagSetFile.hpp"
#include "corvane/tag_set/TagSetManager.hpp"
#include "corvane/tag_table/TagValueTable.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include <nlohmann/json.hpp>

#include <chrono>
#include <iostream>
#include <memory>

namespace corvane::cli {

namespace {

using Domain = TagSetManager::Domain;
constexpr auto reloadTimeout = std::chrono::minutes(5);

// A value as a JSON string: quoted, so an empty value and white space stay visible.
std::string quotedValue(const std::string& value) {
    return nlohmann::json(value).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

// The application's domain holds the images set unless the user arranged another; the
// photo-library extension's too, since a photo library holds images.
void registerDefaults() {
    auto& manager = TagSetManager::shared();
    for (Domain domain : TagSetManager::allDomains)
        manager.registerDefault(domain, TagSet::forImages());
}

std::optional<Domain> domainNamed(const std::string& name) {
    if (name == "application") return Domain::application;
    if (name == "photos-extension") return Domain::photosExtension;
    return std::nullopt;
}

// --- show

struct ShowOptions {
    std::string tagSet;
    bool sections = false;
    bool edited = false;
    std::string filter;
    std::string value;
    bool recursive = false;
    std::vector<std::string> assignments;
    std::vector<std::string> paths;
};

// The set the table shows: a built-in one, a file, or the user's own (with the images set as its
// default). It is put in the application's domain for this run only, never saved.
void loadTagSet(const std::string& choice) {
    auto& manager = TagSetManager::shared();
    if (choice.empty()) {
        manager.reload(Domain::application);
        return;
    }
    TagSet set;
    if (choice == "images")
        set = TagSet::forImages();
    else if (choice == "videos")
        set = TagSet::forVideos();
    else
        set = TagSetFile::fromJSONURL(choice).tagSet();
    manager.edit(Domain::application, [&](TagSet) { return set; });
}

void printRow(const TagValueRow& row) {
    std::cout << (row.isEdited() ? "* " : "") << row.tagItem().name().rawValue();
    const MultiValuedString& value = row.string();
    if (const std::string* single = value.singleValue()) {
        std::cout << '\t' << quotedValue(*single);
    } else if (const auto* values = value.multipleValues()) {
        std::cout << "\t<" << values->size() << " values>";
        for (const auto& distinct : *values)
            std::cout << '\t' << quotedValue(distinct);
    }
    std::cout << '\n';
}

// Edits in memory (nothing is saved): the table rebuilds the touched rows when the edition
// manager flushes its history on the main queue.
bool applyAssignments(const ShowOptions& options, const EditorList& editors, Reporter& reporter) {
    std::vector<std::pair<TagName, std::string>> edits;
    for (const auto& text : options.assignments) {
        const auto equal = text.find('=');
        const auto name =
            equal == std::string::npos ? std::nullopt : TagName::fromRawValue(text.substr(0, equal));
        if (!name) {
            reporter.error("not an edit of the form Family:Key=VALUE: " + text);
            return false;
        }
        edits.emplace_back(*name, text.substr(equal + 1));
    }
    EditionManager::Session session;
    for (const auto& editor : editors)
        for (const auto& [name, value] : edits)
            editor->setValue(value, name);
    return true;
}

int runShow(const ShowOptions& options) {
    MainQueue& main = MainQueue::shared();
    if (!main.mainThread()) main.registerCurrentThreadAsMain();
    registerDefaults();
    Reporter reporter;
    try {
        loadTagSet(options.tagSet);
    } catch (const std::exception& e) {
        reporter.error(inputFailure(
            options.tagSet.empty() ? std::string("the user's tag set") : options.tagSet, e, "a tag set"));
        return 1;
    }
    auto editors = importEditors(collectSources(options.paths, options.recursive, reporter),
                                 options.recursive, reporter);

    // The first content is computed at once, for all the rows.
    auto table = TagValueTable::create(TagValueTable::Request(Domain::application, editors));
    if (!applyAssignments(options, editors, reporter)) return 1;
    if (!table->drainUntilIdle(reloadTimeout)) {
        reporter.error("the table did not finish its reload");
        return 1;
    }
    // Sections and filters through a reload, as a view would ask for them.
    auto request = table->latestRequest();
    request.showSections = options.sections;
    if (!options.filter.empty())
        request.filter.nameConstraint = TagValueFilter::StringConstraint::contains(options.filter);
    if (!options.value.empty())
        request.filter.valueConstraint = TagValueFilter::StringConstraint::contains(options.value);
    if (options.edited)
        request.filter.valueEditionConstraint = TagValueFilter::ValueEditionConstraint::edited;
    table->reload(request);
    if (!table->drainUntilIdle(reloadTimeout)) {
        reporter.error("the table did not finish its reload");
        return 1;
    }

    for (const auto& entry : table->content()->entries()) {
        if (const auto* section = std::get_if<TagSection>(&entry))
            std::cout << "[" << section->rawValue() << "]\n";
        else
            printRow(std::get<TagValueRow>(entry));
    }
    std::cout << std::flush;
    return reporter.errorCount() ? 1 : 0;
}

// --- tagset

void printTagSet(const TagSet& set) {
    for (const auto& entry : set.entries()) {
        if (const TagSection* section = entry.section())
            std::cout << "[" << section->rawValue() << "]\n";
        else
            std::cout << entry.name()->rawValue() << (entry.tagItem() ? "" : "\t(unknown tag)") << '\n';
    }
    std::cout << std::flush;
}

int runTagSet(const std::string& action, const std::string& domainName, const std::string& file) {
    const auto domain = domainNamed(domainName);
    if (!domain) {
        std::cerr << "corvane: unknown domain \"" << domainName << "\" (application, photos-extension)\n";
        return 1;
    }
    MainQueue& main = MainQueue::shared();
    if (!main.mainThread()) main.registerCurrentThreadAsMain();
    registerDefaults();
    auto& manager = TagSetManager::shared();
    try {
        if (action == "reset") {
            manager.restore(*domain);
            manager.save(*domain);
            return 0;
        }
        if (action == "import") {
            const TagSet set = TagSetFile::fromJSONURL(file).tagSet();
            manager.edit(*domain, [&](TagSet) { return set; });
            manager.save(*domain);
            return 0;
        }
        manager.reload(*domain);
        if (action == "export")
            TagSetFile(std::nullopt, manager.tagSet(*domain)).exportTo(file);
        else
            printTagSet(manager.tagSet(*domain));
    } catch (const std::exception& e) {
        std::cerr << "corvane: " << inputFailure(file.empty() ? std::string("the user's tag set") : file, e)
                  << '\n';
        return 1;
    }
    return 0;
}

} // namespace

void addTableCommands(CLI::App& app, int& exitCode) {
    auto options = std::make_shared<ShowOptions>();
    auto* show = app.add_subcommand(
        "show",
        "The tags of files merged as a table: per tag the one shared value, or \"<N values>\" and the "
        "distinct values, or nothing");
    show->add_option("--tagset", options->tagSet,
                     "images, videos or a tag set file (default: the user's tag set)");
    show->add_flag("--sections", options->sections, "Show the section headings, as [Section]");
    show->add_flag("--edited", options->edited, "Only the rows edited by --set");
    show->add_option("--filter", options->filter, "Only tags whose name holds these words");
    show->add_option("--value", options->value, "Only tags whose value holds these words");
    show->add_option(
        "--set", options->assignments,
        "Edit Family:Key=VALUE in memory before showing (nothing is saved); edited rows start with *");
    show->add_flag("-r,--recursive", options->recursive, "Read the files of subfolders too");
    show->add_option("PATH", options->paths, "Files and folders")->required();
    show->callback([options, &exitCode] { exitCode = runShow(*options); });

    auto* tagset = app.add_subcommand("tagset", "The user's tag sets, kept in the user defaults");
    tagset->require_subcommand(1);
    auto domain = std::make_shared<std::string>("application");
    auto file = std::make_shared<std::string>();
    auto addAction = [&](const char* name, const char* help) {
        auto* action = tagset->add_subcommand(name, help);
        action->add_option("--domain", *domain, "application (default) or photos-extension");
        action->callback([name, domain, file, &exitCode] { exitCode = runTagSet(name, *domain, *file); });
        return action;
    };
    addAction("show", "Print the tag set: [Section] lines and tag names");
    addAction("export", "Write the tag set to a file")->add_option("-o,--output", *file, "File")->required();
    addAction("import", "Take the tag set of a file and keep it")
        ->add_option("FILE", *file, "File")
        ->required();
    addAction("reset", "Go back to the built-in images set");
}

} // namespace corvane::cli
