#include "corvane/tag_storages/IPTCDigestUpdate.hpp"

namespace corvane {

std::string_view IPTCDigestUpdate::rawValue() const {
    switch (case_) {
    case ignore:
        return "ignore";
    case delete_:
        return "delete";
    case update:
        return "update";
    case updateIfExists:
        return "update_if_exists";
    }
    return "ignore";
}

std::optional<IPTCDigestUpdate> IPTCDigestUpdate::fromRawValue(std::string_view raw) {
    for (const auto& c : allCases())
        if (c.rawValue() == raw) return c;
    return std::nullopt;
}

const std::vector<IPTCDigestUpdate>& IPTCDigestUpdate::allCases() {
    static const std::vector<IPTCDigestUpdate> cases{ignore, delete_, update, updateIfExists};
    return cases;
}

std::optional<std::string> IPTCDigestUpdate::jsonValue(bool hasDigest) const {
    switch (case_) {
    case ignore:
        return std::nullopt;
    case delete_:
        return "-";
    case update:
        return "new";
    case updateIfExists:
        return hasDigest ? std::optional<std::string>("new") : std::nullopt;
    }
    return std::nullopt;
}

std::vector<std::string> IPTCDigestUpdate::exifToolArguments() const {
    switch (case_) {
    case ignore:
        return {};
    case delete_:
        return {"-Photoshop:IPTCDigest="};
    case update:
        return {"-Photoshop:IPTCDigest=new"};
    case updateIfExists:
        return {"-if", "$Photoshop:IPTCDigest", "-Photoshop:IPTCDigest=new"};
    }
    return {};
}

} // namespace corvane
