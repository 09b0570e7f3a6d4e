#include "corvane/tag_value/TagSection.hpp"

#include "corvane/utilities/KitToolbox.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

std::string TagSection::localizedName() const {
    return KitToolbox::localize(rawValue_, "Sections");
}

void to_json(nlohmann::json& j, const TagSection& section) {
    j = section.rawValue();
}

void from_json(const nlohmann::json& j, TagSection& section) {
    section = TagSection(j.get<std::string>());
}

} // namespace corvane
