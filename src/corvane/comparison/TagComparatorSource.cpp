#include "corvane/comparison/TagComparatorSource.hpp"

#include "corvane/comparison/TagComparatorTextSearch.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <stdexcept>

namespace corvane {

void TagComparatorSource::setSearch(std::optional<std::string> search) {
    search_ = std::move(search);
    reloadCachedData();
}

void TagComparatorSource::setSourceTable(TableRef table) {
    sourceTable_ = std::move(table);
    reloadCachedData();
}

void TagComparatorSource::reloadCachedData() {
    internalTable_.reset();
    cachedRows_.clear();
    if (!sourceTable_) return;

    if (search_ && !search_->empty()) {
        TagComparatorTextSearch matcher(*search_);
        internalTable_ = std::make_shared<const TagComparatorTable>(
            sourceTable_->filter([&matcher](const std::string& text) { return matcher.matches(text); }));
    } else {
        internalTable_ = sourceTable_;
    }

    for (const auto& name : internalTable_->orderedNames()) {
        const TagComparatorGroup* group = internalTable_->group(name);
        if (!group) continue;
        cachedRows_.emplace_back(name);
        for (const auto& entry : *group)
            cachedRows_.emplace_back(entry);
    }
}

std::size_t TagComparatorSource::numberOfColumns() const {
    return internalTable_ ? static_cast<std::size_t>(internalTable_->multiValuesCount()) + 1 : 0;
}

std::string TagComparatorSource::title(std::size_t column) const {
    if (column == 0) return KitToolbox::localize("TagComparisonTagsTitle");
    if (!internalTable_) throw std::out_of_range("TagComparatorSource: no table");
    return internalTable_->titles().at(column - 1);
}

std::optional<TagComparatorSearchValue> TagComparatorSource::searchValue(std::size_t row, std::size_t column,
                                                                         bool showName) const {
    const auto* entry = std::get_if<TagComparatorGroupEntry>(&dataRow(row));
    if (!entry) return std::nullopt;
    return entry->search(column, showName, search_);
}

} // namespace corvane
