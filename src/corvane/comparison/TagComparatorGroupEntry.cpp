#include "corvane/comparison/TagComparatorGroupEntry.hpp"

namespace corvane {

TagComparatorGroupEntry::TagComparatorGroupEntry(TagComparatorGroupKey key,
                                                 std::vector<TagComparatorValue> values)
    : key_(std::move(key)), values_(std::move(values)) {
    for (std::size_t i = 1; i < values_.size(); ++i) {
        if (values_[i].string != values_.front().string) {
            isShared_ = true;
            break;
        }
    }
}

std::vector<std::string> TagComparatorGroupEntry::strings() const {
    std::vector<std::string> result;
    result.reserve(values_.size());
    for (const auto& value : values_)
        result.push_back(value.string.value_or(std::string()));
    return result;
}

std::optional<TagComparatorSearchValue>
TagComparatorGroupEntry::search(std::size_t column, bool showName, std::optional<std::string> search) const {
    TagComparatorSearchValue cell;
    cell.search = std::move(search);
    cell.isShared = isShared_;
    cell.isMultiValued = values_.size() >= 2;
    if (column == 0) {
        cell.isTag = true;
        cell.rawText = showName ? key_.localizedText() : key_.localizedKeyText();
        return cell;
    }
    if (column > values_.size()) return std::nullopt;
    const auto& value = values_[column - 1];
    cell.rawText = value.string;
    cell.isEdited = value.isEdited;
    return cell;
}

} // namespace corvane
