// `corvane preset`: preset libraries on disk, listed and made from the values of a file; and the
// look-up of one preset that `corvane set --preset` applies.
#include "Commands.hpp"
#include "Output.hpp"
#include "StorageReading.hpp"

#include "corvane/preset_support/PresetFile.hpp"
#include "corvane/preset_support/PresetManager.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagPair.hpp"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <iostream>
#include <memory>

namespace corvane::cli {

namespace fs = std::filesystem;

namespace {

// The library in `file`; nothing, with the reason in `error`, when it can't be read.
std::optional<PresetFile> openLibrary(const std::string& file, std::string& error) {
    try {
        return PresetFile::fromJSONURL(file);
    } catch (const std::exception& e) {
        error = inputFailure(file, e, "a preset library");
        return std::nullopt;
    }
}

} // namespace

std::optional<std::vector<PresetItemEntry>> presetEntries(const std::string& file, const std::string& name,
                                                          std::string& error) {
    const auto library = openLibrary(file, error);
    if (!library) return std::nullopt;
    std::vector<PresetItemRef> matches;
    std::string names;
    for (const auto& group : library->groups())
        for (const auto& preset : group->presets()) {
            if (name.empty() || preset->name() == name) matches.push_back(preset);
            names += (names.empty() ? "\"" : ", \"") + preset->name() + "\"";
        }
    if (matches.size() == 1) return matches[0]->entries();
    if (matches.empty() && !name.empty())
        error =
            file + ": no preset named \"" + name + "\" (presets: " + (names.empty() ? "none" : names) + ")";
    else if (matches.empty())
        error = file + ": the library holds no preset";
    else
        error = file + ": " +
                (name.empty() ? "several presets, choose one with --preset-name: " + names
                              : "several presets are named \"" + name + "\"");
    return std::nullopt;
}

namespace {

// An edition on one line: its type and settings as written in the library.
std::string editionText(const PresetEdition& edition) {
    nlohmann::ordered_json j = edition;
    std::string text = j.at("type").get<std::string>();
    if (j.contains("settings"))
        text += ' ' + j["settings"].dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    return text;
}

int listPresets(const std::string& file) {
    std::string error;
    const auto library = openLibrary(file, error);
    if (!library) {
        std::cerr << "corvane: " << error << '\n';
        return 1;
    }
    if (library->description() && !library->description()->empty())
        std::cout << *library->description() << '\n';
    for (const auto& group : library->groups()) {
        std::cout << "Group \"" << group->name() << '"';
        if (!group->detail().empty()) std::cout << ": " << group->detail();
        std::cout << '\n';
        for (const auto& preset : group->presets()) {
            std::cout << "  Preset \"" << preset->name() << '"';
            if (!preset->detail().empty()) std::cout << ": " << preset->detail();
            std::cout << '\n';
            for (const auto& entry : preset->entries())
                std::cout << "    " << entry.tagName().rawValue() << '\t' << editionText(entry.edition())
                          << '\n';
        }
    }
    return 0;
}

struct MakeOptions {
    std::string photo;
    std::vector<std::string> tags;
    std::string output;
    std::string name;
    std::string detail;
};

// A preset that puts back the current values of the tags of one file. The preset is appended to
// the library of the output file (to its last group), which is made if it doesn't exist.
int makePreset(const MakeOptions& options) {
    std::vector<TagName> names;
    for (const std::string& text : options.tags) {
        auto name = TagName::fromRawValue(text);
        const TagItem* item = name ? name->item() : nullptr;
        if (!item) {
            std::cerr << "corvane: unknown tag \"" << text
                      << "\" (tags are named Family:Key, see `corvane tags`)\n";
            return 2;
        }
        names.push_back(item->name());
    }
    auto manager = PresetManager::create();
    std::optional<std::string> description;
    std::error_code ec;
    if (fs::exists(options.output, ec)) {
        std::string error;
        const auto library = openLibrary(options.output, error);
        if (!library) {
            std::cerr << "corvane: " << error << '\n';
            return 1;
        }
        description = library->description();
        manager->setGroups(library->groups());
    }
    int exitCode = 0;
    auto storages = readStorages({options.photo}, exitCode);
    if (storages.empty()) return 1;
    const TagStorage& storage = storages.front();

    std::vector<PresetItemEntry> entries;
    for (const TagName& name : names) {
        auto value = storage.currentValue(name);
        auto entry = value ? TagPair(name, *value).convertToPresetEntry() : std::nullopt;
        if (!entry) {
            std::cerr << "corvane: " << options.photo << ": no value for " << name.rawValue()
                      << ", left out\n";
            exitCode = 1;
            continue;
        }
        entries.push_back(std::move(*entry));
    }
    if (entries.empty()) {
        std::cerr << "corvane: nothing to keep in a preset\n";
        return 1;
    }
    const std::string presetName =
        options.name.empty() ? fs::path(options.photo).filename().string() : options.name;
    manager->appendPresetItem(PresetItem::create(presetName, options.detail, std::move(entries)));
    try {
        PresetFile(description, manager->groups()).exportTo(options.output);
    } catch (const std::exception& e) {
        std::cerr << "corvane: " << options.output << ": " << readableReason(e) << '\n';
        return 1;
    }
    std::cout << "Preset \"" << presetName << "\" saved to " << options.output << '\n';
    return exitCode;
}

} // namespace

void addPresetCommands(CLI::App& app, int& exitCode) {
    auto* presetCmd = app.add_subcommand("preset", "Preset libraries: list them, make presets from files");
    presetCmd->require_subcommand(1);

    auto listFile = std::make_shared<std::string>();
    auto* listCmd = presetCmd->add_subcommand("list", "Print the groups, presets and entries of a library");
    listCmd->add_option("FILE", *listFile, "A preset library (.json)")->required()->check(CLI::ExistingFile);
    listCmd->callback([listFile, &exitCode] { exitCode = listPresets(*listFile); });

    auto make = std::make_shared<MakeOptions>();
    auto* makeCmd = presetCmd->add_subcommand(
        "make", "Make a preset that sets the given tags to their values in a file, and add it to a library");
    makeCmd->add_option("--output,-o", make->output, "The library to add the preset to (made if missing)")
        ->required();
    makeCmd->add_option("--name", make->name, "The preset's name (default: the file's name)");
    makeCmd->add_option("--detail", make->detail, "A description of the preset");
    makeCmd->add_option("FILE", make->photo, "The file whose values the preset keeps")->required();
    makeCmd->add_option("TAG", make->tags, "Tags named Family:Key")->required();
    makeCmd->callback([make, &exitCode] { exitCode = makePreset(*make); });
}

} // namespace corvane::cli
