#pragma once

#include "corvane/helpers/JSONInput.hpp"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

// The JSON form shared by the user's list libraries (keywords, locations): an object
// {"description": ..., "items": [...]}, or, as libraries written before files had a description
// were, a bare array of items.

/// The description (none when missing or not a text) and the items, each read by `readItem`
/// (which throws nlohmann::json::exception for an item it can't read). Anything unreadable throws
/// `Error` made from a message naming `kind`: "not a keyword library: ...".
template <class Error, class ReadItem>
auto readItemList(const nlohmann::ordered_json& j, std::string_view kind, ReadItem readItem) {
    using ItemRef = decltype(readItem(j));
    try {
        std::optional<std::string> description;
        const nlohmann::ordered_json* items = &j;
        if (!j.is_array()) {
            auto it = j.find("description");
            if (it != j.end() && it->is_string()) description = it->template get<std::string>();
            items = &j.at("items");
        }
        if (!items->is_array())
            throw nlohmann::ordered_json::type_error::create(302, "the items are not an array", items);
        std::vector<ItemRef> list;
        list.reserve(items->size());
        for (const auto& item : *items)
            list.push_back(readItem(item));
        return std::make_pair(std::move(description), std::move(list));
    } catch (const nlohmann::json::exception& e) {
        throw Error("not a " + std::string(kind) + ": " + e.what());
    }
}

/// The object form; an absent description is left out.
template <class ItemRef>
nlohmann::ordered_json writeItemList(const std::optional<std::string>& description,
                                     const std::vector<ItemRef>& items) {
    nlohmann::ordered_json j = nlohmann::ordered_json::object();
    if (description) j["description"] = *description;
    auto& list = j["items"] = nlohmann::ordered_json::array();
    for (const auto& item : items)
        list.push_back(item->toJSON());
    return j;
}

/// Parses `data` as outside input and reads it with `fromJSON`; every failure but the nesting
/// check's (JSONNestingError) leaves as `Error`, its message starting with `source`.
template <class Error, class FromJSON>
auto readJSONInput(std::string_view data, const std::string& source, FromJSON fromJSON) {
    try {
        return fromJSON(parseOrderedJSONInput(data, source));
    } catch (const Error& e) {
        throw Error(source + ": " + e.what());
    } catch (const nlohmann::json::exception& e) {
        throw Error(source + ": not JSON: " + e.what());
    }
}

} // namespace corvane
