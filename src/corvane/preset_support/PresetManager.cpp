#include "corvane/preset_support/PresetManager.hpp"

#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/preset_support/PresetFile.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "corvane/utilities/UserDefaults.hpp"

#include <nlohmann/json.hpp>

#include <cassert>

namespace corvane {

std::optional<PresetManager::GroupEdition> PresetManager::groupEdition(const Notification& note) {
    if (auto edition = note.userInfoValue<GroupEdition>(std::string(groupEditionKey))) return *edition;
    return std::nullopt;
}

const std::shared_ptr<PresetManager>& PresetManager::shared() {
    static const std::shared_ptr<PresetManager> instance = create();
    return instance;
}

std::shared_ptr<PresetManager> PresetManager::create() {
    return std::shared_ptr<PresetManager>(new PresetManager());
}

void PresetManager::setGroups(std::vector<PresetGroupRef> groups) {
    if (groups == groups_) return;
    groups_ = std::move(groups);
    informsDidChangeGroups(ReloadGroups{});
}

void PresetManager::setSelectedItems(std::vector<EquatableObjectRef> items) {
    if (items == selectedItems_) return;
    selectedItems_ = std::move(items);
    informsDidChangeGroups(ReloadSelection{});
}

void PresetManager::insertGroups(std::vector<PresetGroupRef> groups, std::size_t index) {
    if (groups.empty()) return;
    assert(index <= groups_.size());
    const std::size_t count = groups.size();
    groups_.insert(groups_.begin() + static_cast<std::ptrdiff_t>(index),
                   std::make_move_iterator(groups.begin()), std::make_move_iterator(groups.end()));
    informsDidChangeGroups(InsertGroups{IndexSet::range(index, index + count)});
}

void PresetManager::removeGroups(const IndexSet& indexes) {
    if (indexes.isEmpty()) return;
    indexes.removeFrom(groups_);
    informsDidChangeGroups(RemoveGroups{indexes});
}

void PresetManager::appendPresetItem(PresetItemRef item) {
    if (groups_.empty()) {
        insertGroups({PresetGroup::create({}, {}, {std::move(item)})}, 0);
        return;
    }
    const auto& last = groups_.back();
    last->insertPresets({std::move(item)}, last->presets().size());
}

void PresetManager::selectItem(const EquatableObjectRef& item) {
    std::vector<EquatableObjectRef> selection;
    if (std::dynamic_pointer_cast<PresetGroup>(item) || std::dynamic_pointer_cast<PresetItem>(item))
        selection.push_back(item);
    setSelectedItems(std::move(selection));
}

void PresetManager::loadFromDefaults() {
    auto stored = KitSettings::shared().userDefaults()->value(std::string(presetsUserDefaultsKey));
    if (!stored) return;
    // The library is kept as a JSON value; a text holds the library's JSON data as written by a
    // file export.
    PresetFile file = stored->is_string() ? PresetFile::fromJSONData(stored->get<std::string>())
                                          : PresetFile::fromJSON(nlohmann::ordered_json(*stored));
    setGroups(file.groups());
}

void PresetManager::saveToDefaults() const {
    const PresetFile file(std::nullopt, groups_);
    KitSettings::shared().userDefaults()->set(std::string(presetsUserDefaultsKey),
                                              nlohmann::json(file.toJSON()));
}

void PresetManager::informsDidChangeGroups(GroupEdition edition) {
    NotificationCenter::defaultCenter().post(
        Notification(std::string(didChangeGroupsNotification), shared_from_this(),
                     {{std::string(groupEditionKey), std::move(edition)}}));
}

} // namespace corvane
