#include "corvane/tag_table/TagValueRow.hpp"

#include "corvane/tag_table/detail/ValueTally.hpp"
#include "corvane/tag_value/TagItem.hpp"

namespace corvane {

namespace {

void assign(const detail::ValueTally::Merged& merged, MultiValuedString& string, bool& isEdited,
            bool& canBeEdited) {
    string = MultiValuedString::merged(merged.values);
    isEdited = merged.isEdited;
    canBeEdited = merged.canBeEdited;
}

} // namespace

TagValueRow::TagValueRow(std::shared_ptr<const Editors> editors, const TagItem& tagItem)
    : tagItem_(&tagItem), editors_(std::move(editors)),
      tally_(std::make_shared<detail::ValueTally>(*editors_, tagItem.name())),
      isSupported_(tagItem.type().isSupported()) {
    assign(tally_->merged(), string_, isEdited_, canBeEdited_);
}

void TagValueRow::reread(std::span<const std::size_t> positions) {
    assign(tally_->reread(*editors_, positions, tagItem_->name()), string_, isEdited_, canBeEdited_);
}

} // namespace corvane
