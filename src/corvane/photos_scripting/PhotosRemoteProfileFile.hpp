#pragma once

#include "corvane/helpers/JSONFileForm.hpp"
#include "corvane/photos_scripting/PhotosRemoteProfile.hpp"
#include "corvane/utilities/Error.hpp"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// A library of Photos profiles on disk: an optional description and the profiles.
///
/// Written as {"description": ..., "profiles": [...]} in that order, pretty-printed, an absent
/// description as the empty text. Reading requires "profiles" and every key of every profile; a
/// missing or non-text description is read as none. A root that is a bare array of profiles (the
/// form written before files had a description) is read as the profiles.
class PhotosRemoteProfileFile : public JSONFileForm<PhotosRemoteProfileFile> {
public:
    /// A file or text that isn't a profile library; `what()` names the source and the reason.
    class DecodingError : public Error {
    public:
        using Error::Error;
    };

    PhotosRemoteProfileFile() = default;
    /// A file of these profiles, with an optional description.
    PhotosRemoteProfileFile(std::optional<std::string> description,
                            std::vector<PhotosRemoteProfileRef> profiles)
        : description_(std::move(description)), profiles_(std::move(profiles)) {}

    /// The file's description; its profiles, in order.
    ///@{
    const std::optional<std::string>& description() const { return description_; }
    const std::vector<PhotosRemoteProfileRef>& profiles() const { return profiles_; }
    ///@}

    /// Throws DecodingError.
    static PhotosRemoteProfileFile fromJSON(const nlohmann::ordered_json& j);
    /// The JSON form `fromJSON` reads.
    nlohmann::ordered_json toJSON() const;

    /// Parses through the nesting check of outside input. Throws DecodingError, or
    /// JSONNestingError for input nested too deep.
    static PhotosRemoteProfileFile fromJSONData(std::string_view data,
                                                const std::string& source = "Photos profile library");
    /// Throws FileError when the file can't be read, and as fromJSONData.
    static PhotosRemoteProfileFile fromJSONURL(const std::filesystem::path& url);
    // jsonData, exportTo (atomic, owner-only): see JSONFileForm.

    /// Equal descriptions and the same profile objects.
    friend bool operator==(const PhotosRemoteProfileFile&, const PhotosRemoteProfileFile&) = default;

private:
    std::optional<std::string> description_;
    std::vector<PhotosRemoteProfileRef> profiles_;
};

} // namespace corvane
