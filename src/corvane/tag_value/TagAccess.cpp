#include "corvane/tag_value/TagAccess.hpp"

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

namespace corvane {

std::string_view TagAccess::rawValue() const {
    switch (case_) {
    case n:
        return "N";
    case r:
        return "R";
    case rw:
        return "RW";
    case rwc:
        return "RWC";
    }
    return "N";
}

std::optional<TagAccess> TagAccess::fromRawValue(std::string_view raw) {
    if (raw == "N") return TagAccess(n);
    if (raw == "R") return TagAccess(r);
    if (raw == "RW") return TagAccess(rw);
    if (raw == "RWC") return TagAccess(rwc);
    return std::nullopt;
}

const std::vector<TagAccess>& TagAccess::allCases() {
    static const std::vector<TagAccess> all{n, r, rw, rwc};
    return all;
}

void to_json(nlohmann::json& j, const TagAccess& access) {
    j = std::string(access.rawValue());
}

void from_json(const nlohmann::json& j, TagAccess& access) {
    if (j.is_string()) {
        if (auto decoded = TagAccess::fromRawValue(j.get_ref<const std::string&>())) {
            access = *decoded;
            return;
        }
    }
    throw std::invalid_argument("Cannot decode a tag access from " + j.dump());
}

} // namespace corvane
