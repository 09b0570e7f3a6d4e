#include "corvane/helpers/SingleKeyCoding.hpp"

namespace corvane {

nlohmann::json SingleKeyCoding::encode(std::string_view caseName) {
    nlohmann::json j = nlohmann::json::object();
    j[std::string(caseName)] = nlohmann::json::object();
    return j;
}

nlohmann::json SingleKeyCoding::encode(std::string_view caseName, nlohmann::json value) {
    nlohmann::json j = nlohmann::json::object();
    j[std::string(caseName)] = nlohmann::json{{"_0", std::move(value)}};
    return j;
}

nlohmann::json SingleKeyCoding::encode(std::string_view caseName, nlohmann::json first,
                                       nlohmann::json second) {
    nlohmann::json j = nlohmann::json::object();
    j[std::string(caseName)] = nlohmann::json{{"_0", std::move(first)}, {"_1", std::move(second)}};
    return j;
}

SingleKeyCoding::Decoded SingleKeyCoding::decode(const nlohmann::json& j) {
    if (!j.is_object() || j.size() != 1) throw TypeMismatch();
    const auto it = j.begin();
    if (!it->is_object()) throw TypeMismatch();
    return Decoded{it.key(), *it};
}

} // namespace corvane
