#include "corvane/tag_set/TagSetFile.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

using json = nlohmann::ordered_json;

TagSetFile TagSetFile::fromJSON(const json& j) {
    std::optional<std::string> description;
    if (j.is_object()) {
        auto it = j.find("description");
        if (it != j.end() && it->is_string()) description = it->get<std::string>();
        it = j.find("tag_set");
        if (it != j.end()) try {
                return TagSetFile(description, TagSet::fromJSON(*it));
            } catch (const std::exception&) {
                // Read below as a bare set.
            }
    }
    return TagSetFile(std::move(description), TagSet::fromJSON(j));
}

json TagSetFile::toJSON() const {
    return json{{"description", description_.value_or(std::string())}, {"tag_set", tagSet_.toJSON()}};
}

} // namespace corvane
