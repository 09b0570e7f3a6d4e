#include "corvane/photos_scripting/PhotosRemoteProfileFile.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/ItemListJSON.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

using json = nlohmann::ordered_json;

PhotosRemoteProfileFile PhotosRemoteProfileFile::fromJSON(const json& j) {
    try {
        std::optional<std::string> description;
        const json* profiles = &j;
        if (!j.is_array()) {
            auto it = j.find("description");
            if (it != j.end() && it->is_string()) description = it->get<std::string>();
            profiles = &j.at("profiles");
        }
        if (!profiles->is_array())
            throw json::type_error::create(302, "the profiles are not an array", profiles);
        std::vector<PhotosRemoteProfileRef> list;
        list.reserve(profiles->size());
        for (const auto& profile : *profiles)
            list.push_back(PhotosRemoteProfile::fromJSON(profile));
        return PhotosRemoteProfileFile(std::move(description), std::move(list));
    } catch (const nlohmann::json::exception& e) {
        throw DecodingError(std::string("not a Photos profile library: ") + e.what());
    } catch (const Error& e) {
        throw DecodingError(std::string("not a Photos profile library: ") + e.what());
    }
}

json PhotosRemoteProfileFile::toJSON() const {
    json j = json::object();
    j["description"] = description_.value_or(std::string());
    auto& list = j["profiles"] = json::array();
    for (const auto& profile : profiles_)
        list.push_back(profile->toJSON());
    return j;
}

PhotosRemoteProfileFile PhotosRemoteProfileFile::fromJSONData(std::string_view data,
                                                              const std::string& source) {
    return readJSONInput<DecodingError>(data, source, PhotosRemoteProfileFile::fromJSON);
}

PhotosRemoteProfileFile PhotosRemoteProfileFile::fromJSONURL(const std::filesystem::path& url) {
    return fromJSONData(readFileBytes(url), url.string());
}

} // namespace corvane
