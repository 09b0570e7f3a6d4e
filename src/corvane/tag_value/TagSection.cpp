#include "corvane/tag_value/TagSection.hpp"

#include "corvane/utilities/KitToolbox.hpp"

namespace corvane {

std::string TagSection::localizedName() const {
    return KitToolbox::localize(rawValue_, "Sections");
}

} // namespace corvane
