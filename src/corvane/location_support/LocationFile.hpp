#pragma once

#include "corvane/helpers/JSONFileForm.hpp"
#include "corvane/location_support/LocationItem.hpp"
#include "corvane/utilities/Error.hpp"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// A location library on disk: an optional description and the saved places.
///
/// Written as {"description": ..., "items": [...]} in that order, pretty-printed; an absent
/// description is left out. Reading requires "items", both keys of every place and the thirteen of
/// its location; a missing or non-text description is read as none. A root that is a bare array of places
/// (the form of libraries written before files had a description) is read as the items.
class LocationFile : public JSONFileForm<LocationFile> {
public:
    /// A file or text that isn't a location library; `what()` names the source and the reason.
    class DecodingError : public Error {
    public:
        using Error::Error;
    };

    LocationFile() = default;
    /// A file of these places, with an optional description.
    LocationFile(std::optional<std::string> description, std::vector<LocationItemRef> items)
        : description_(std::move(description)), items_(std::move(items)) {}

    /// The user's description; the places, in order.
    ///@{
    const std::optional<std::string>& description() const { return description_; }
    const std::vector<LocationItemRef>& items() const { return items_; }
    ///@}

    /// Throws DecodingError.
    static LocationFile fromJSON(const nlohmann::ordered_json& j);
    /// The JSON form `fromJSON` reads.
    nlohmann::ordered_json toJSON() const;

    /// Parses through the nesting check of outside input. Throws DecodingError, or
    /// JSONNestingError for input nested too deep.
    static LocationFile fromJSONData(std::string_view data, const std::string& source = "location library");
    /// Throws FileError when the file can't be read, and as fromJSONData.
    static LocationFile fromJSONURL(const std::filesystem::path& url);
    // jsonData, exportTo (atomic, owner-only): see JSONFileForm.

    /// Equal descriptions and equal places.
    friend bool operator==(const LocationFile& a, const LocationFile& b) {
        return a.description_ == b.description_ && equalItems(a.items_, b.items_);
    }

private:
    std::optional<std::string> description_;
    std::vector<LocationItemRef> items_;
};

} // namespace corvane
