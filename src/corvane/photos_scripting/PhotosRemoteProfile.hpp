#pragma once

#include "corvane/utilities/Date.hpp"
#include "corvane/utilities/Error.hpp"

#include <nlohmann/json_fwd.hpp>

#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

class PhotosRemoteProfile;
/// The shared handle every profile lives in.
using PhotosRemoteProfileRef = std::shared_ptr<PhotosRemoteProfile>;

/// A named set of values to push to the images selected in the Photos application (see
/// PhotosAppRemote): a file name, keywords, a description, a date and a position, each of which may
/// be left alone (`None`). Equal only to itself; lives in a std::shared_ptr made by `create`.
///
/// A new name or description posts `didChangeInfoNotification`, a new value
/// `didChangeValuesNotification`, on the default notification centre, on the calling thread, with
/// the profile as sender and no user info; a change that changes nothing posts nothing. Not locked:
/// a profile belongs to the main thread (the manager guards only its lists).
///
/// JSON form: {"name", "description", "filename_value", "keywords_value", "description_value",
/// "dateTime_value", "location_value"}, each value an object with one key, its case
/// ({"none": {}}, {"custom": {"_0": "IMG"}}, {"coordinates": {"_0": 48.85, "_1": 2.35}}). A date is
/// written as seconds since 2001-01-01 00:00:00 UTC.
///
/// The calling thread is the host's main thread: the host drains the main queue there
/// (`MainQueue::shared().drain()` in a tool, its event loop woken by `MainQueue::setWakeHook` in an
/// application), so that library work scheduled for that thread reaches the profile's observers.
class PhotosRemoteProfile : public std::enable_shared_from_this<PhotosRemoteProfile> {
public:
    /// The value is left as the image has it.
    struct None {
        friend bool operator==(const None&, const None&) = default;
    };
    /// The file name given (quotes are dropped when it is sent).
    struct Custom {
        std::string name; ///< the new name, without extension
        friend bool operator==(const Custom&, const Custom&) = default;
    };
    /// The image's own file name becomes its title.
    struct UseOriginalName {
        friend bool operator==(const UseOriginalName&, const UseOriginalName&) = default;
    };
    /// The keywords that replace the image's keywords.
    struct Keywords {
        std::vector<std::string> keywords; ///< in order; an empty list removes them all
        friend bool operator==(const Keywords&, const Keywords&) = default;
    };
    /// The description (caption) given to the image.
    struct Description {
        std::string text; ///< the empty text clears it
        friend bool operator==(const Description&, const Description&) = default;
    };
    /// The date and time given to the image.
    struct DateTime {
        Date date; ///< an absolute moment
        friend bool operator==(const DateTime&, const DateTime&) = default;
    };
    /// The position given to the image, in decimal degrees (north and east positive).
    struct Coordinates {
        double latitude = 0;  ///< decimal degrees, north positive
        double longitude = 0; ///< decimal degrees, east positive
        friend bool operator==(const Coordinates&, const Coordinates&) = default;
    };
    /// What each field may hold: a value, or `None` to leave the image's own.
    ///@{
    using FilenameValue = std::variant<Custom, None, UseOriginalName>;
    using KeywordsValue = std::variant<Keywords, None>;
    using DescriptionValue = std::variant<Description, None>;
    using DateTimeValue = std::variant<DateTime, None>;
    using LocationValue = std::variant<Coordinates, None>;
    ///@}

    /// Posted on a new name or description, and on a new value of a field, respectively.
    ///@{
    static constexpr std::string_view didChangeInfoNotification =
        "PhotosRemoteProfileDidChangeInfoNotification";
    static constexpr std::string_view didChangeValuesNotification =
        "PhotosRemoteProfileDidChangeValuesNotification";
    ///@}

    /// A profile that changes nothing.
    static PhotosRemoteProfileRef create(std::string name, std::string description = {});
    /// Reads the JSON form; every key is required. Throws SingleKeyCoding::TypeMismatch for a value
    /// that isn't one known case, nlohmann::json::exception for a missing key or a wrong type.
    static PhotosRemoteProfileRef fromJSON(const nlohmann::ordered_json& j);
    /// The JSON form described above.
    nlohmann::ordered_json toJSON() const;

    virtual ~PhotosRemoteProfile() = default;
    PhotosRemoteProfile(const PhotosRemoteProfile&) = delete;
    PhotosRemoteProfile& operator=(const PhotosRemoteProfile&) = delete;

    /// The profile's name and description, as the user's list shows them; each setter posts
    /// `didChangeInfoNotification` when the text changes.
    ///@{
    const std::string& name() const { return name_; }
    virtual void setName(std::string name);
    const std::string& description() const { return description_; }
    virtual void setDescription(std::string description);
    ///@}

    /// The five values sent to the selected images; each setter posts `didChangeValuesNotification`
    /// when the value changes.
    ///@{
    const FilenameValue& filenameValue() const { return filenameValue_; }
    virtual void setFilenameValue(FilenameValue value);
    const KeywordsValue& keywordsValue() const { return keywordsValue_; }
    virtual void setKeywordsValue(KeywordsValue value);
    const DescriptionValue& descriptionValue() const { return descriptionValue_; }
    virtual void setDescriptionValue(DescriptionValue value);
    const DateTimeValue& dateTimeValue() const { return dateTimeValue_; }
    virtual void setDateTimeValue(DateTimeValue value);
    const LocationValue& locationValue() const { return locationValue_; }
    virtual void setLocationValue(LocationValue value);
    ///@}

protected:
    /// A profile that changes nothing; applications call `create`.
    PhotosRemoteProfile(std::string name, std::string description)
        : name_(std::move(name)), description_(std::move(description)) {}

private:
    void informs(std::string_view notification);
    template <class T> void store(T& field, T value, std::string_view notification) {
        if (value == field) return;
        field = std::move(value);
        informs(notification);
    }

    std::string name_;
    std::string description_;
    FilenameValue filenameValue_ = None{};
    KeywordsValue keywordsValue_ = None{};
    DescriptionValue descriptionValue_ = None{};
    DateTimeValue dateTimeValue_ = None{};
    LocationValue locationValue_ = None{};
};

} // namespace corvane
