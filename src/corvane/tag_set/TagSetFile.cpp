#include "corvane/tag_set/TagSetFile.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"

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

TagSetFile TagSetFile::fromJSONData(std::string_view data) {
    json j;
    try {
        j = json::parse(data);
    } catch (const json::exception& e) {
        throw TagSet::DecodingError(e.what());
    }
    return fromJSON(j);
}

std::string TagSetFile::jsonData() const {
    return toJSON().dump(2);
}

TagSetFile TagSetFile::fromJSONURL(const std::filesystem::path& url) {
    return fromJSONData(readFileBytes(url));
}

void TagSetFile::exportTo(const std::filesystem::path& url) const {
    writeFileAtomically(url, jsonData(), 0600);
}

} // namespace corvane
