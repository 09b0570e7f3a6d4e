#include "corvane/tag_table/TagValueTableRequest.hpp"

namespace corvane {

std::set<TagValueTableRequest::Field> TagValueTableRequest::diff(const TagValueTableRequest& other) const {
    std::set<Field> fields;
    if (domain_ != other.domain_) fields.insert(Field::domain);
    if (convert != other.convert) fields.insert(Field::convert);
    if (filter != other.filter) fields.insert(Field::filter);
    if (editors_ != other.editors_ && *editors_ != *other.editors_) fields.insert(Field::editors);
    if (selection != other.selection) fields.insert(Field::selection);
    if (showSections != other.showSections) fields.insert(Field::showSections);
    return fields;
}

} // namespace corvane
