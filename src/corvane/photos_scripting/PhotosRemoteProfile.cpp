#include "corvane/photos_scripting/PhotosRemoteProfile.hpp"

#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/helpers/SingleKeyCoding.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

namespace {

using json = nlohmann::json;
using ordered = nlohmann::ordered_json;
using Profile = PhotosRemoteProfile;

// Dates are kept as the seconds since the first instant of 2001 (UTC), the form application
// settings of this kind have always used.
constexpr double referenceDateSince1970 = 978307200;

[[noreturn]] void unknownCase(const std::string& name) {
    throw SingleKeyCoding::TypeMismatch("Unknown case \"" + name + "\"");
}

json encode(const Profile::FilenameValue& value) {
    if (auto custom = std::get_if<Profile::Custom>(&value))
        return SingleKeyCoding::encode("custom", custom->name);
    if (std::holds_alternative<Profile::UseOriginalName>(value))
        return SingleKeyCoding::encode("useOriginalName");
    return SingleKeyCoding::encode("none");
}

json encode(const Profile::KeywordsValue& value) {
    if (auto k = std::get_if<Profile::Keywords>(&value))
        return SingleKeyCoding::encode("keywords", k->keywords);
    return SingleKeyCoding::encode("none");
}

json encode(const Profile::DescriptionValue& value) {
    if (auto d = std::get_if<Profile::Description>(&value))
        return SingleKeyCoding::encode("description", d->text);
    return SingleKeyCoding::encode("none");
}

json encode(const Profile::DateTimeValue& value) {
    if (auto d = std::get_if<Profile::DateTime>(&value))
        return SingleKeyCoding::encode("dateTime", d->date.timeIntervalSince1970() - referenceDateSince1970);
    return SingleKeyCoding::encode("none");
}

json encode(const Profile::LocationValue& value) {
    if (auto c = std::get_if<Profile::Coordinates>(&value))
        return SingleKeyCoding::encode("coordinates", c->latitude, c->longitude);
    return SingleKeyCoding::encode("none");
}

Profile::FilenameValue decodeFilename(const json& j) {
    const auto decoded = SingleKeyCoding::decode(j);
    if (decoded.caseName == "none") return Profile::None{};
    if (decoded.caseName == "useOriginalName") return Profile::UseOriginalName{};
    if (decoded.caseName == "custom")
        return Profile::Custom{SingleKeyCoding::associatedValue<std::string>(decoded)};
    unknownCase(decoded.caseName);
}

Profile::KeywordsValue decodeKeywords(const json& j) {
    const auto decoded = SingleKeyCoding::decode(j);
    if (decoded.caseName == "none") return Profile::None{};
    if (decoded.caseName == "keywords")
        return Profile::Keywords{SingleKeyCoding::associatedValue<std::vector<std::string>>(decoded)};
    unknownCase(decoded.caseName);
}

Profile::DescriptionValue decodeDescription(const json& j) {
    const auto decoded = SingleKeyCoding::decode(j);
    if (decoded.caseName == "none") return Profile::None{};
    if (decoded.caseName == "description")
        return Profile::Description{SingleKeyCoding::associatedValue<std::string>(decoded)};
    unknownCase(decoded.caseName);
}

Profile::DateTimeValue decodeDateTime(const json& j) {
    const auto decoded = SingleKeyCoding::decode(j);
    if (decoded.caseName == "none") return Profile::None{};
    if (decoded.caseName == "dateTime")
        return Profile::DateTime{
            Date(SingleKeyCoding::associatedValue<double>(decoded) + referenceDateSince1970)};
    unknownCase(decoded.caseName);
}

Profile::LocationValue decodeLocation(const json& j) {
    const auto decoded = SingleKeyCoding::decode(j);
    if (decoded.caseName == "none") return Profile::None{};
    if (decoded.caseName == "coordinates")
        return Profile::Coordinates{SingleKeyCoding::associatedValue<double>(decoded),
                                    SingleKeyCoding::associatedValue<double>(decoded, "_1")};
    unknownCase(decoded.caseName);
}

} // namespace

PhotosRemoteProfileRef PhotosRemoteProfile::create(std::string name, std::string description) {
    return PhotosRemoteProfileRef(new PhotosRemoteProfile(std::move(name), std::move(description)));
}

PhotosRemoteProfileRef PhotosRemoteProfile::fromJSON(const ordered& j) {
    auto profile = create(j.at("name").get<std::string>(), j.at("description").get<std::string>());
    // The values are read through the unordered form, which SingleKeyCoding works on.
    profile->filenameValue_ = decodeFilename(json(j.at("filename_value")));
    profile->keywordsValue_ = decodeKeywords(json(j.at("keywords_value")));
    profile->descriptionValue_ = decodeDescription(json(j.at("description_value")));
    profile->dateTimeValue_ = decodeDateTime(json(j.at("dateTime_value")));
    profile->locationValue_ = decodeLocation(json(j.at("location_value")));
    return profile;
}

ordered PhotosRemoteProfile::toJSON() const {
    return ordered{{"name", name_},
                   {"description", description_},
                   {"filename_value", ordered(encode(filenameValue_))},
                   {"keywords_value", ordered(encode(keywordsValue_))},
                   {"description_value", ordered(encode(descriptionValue_))},
                   {"dateTime_value", ordered(encode(dateTimeValue_))},
                   {"location_value", ordered(encode(locationValue_))}};
}

void PhotosRemoteProfile::setName(std::string name) {
    if (name == name_) return;
    name_ = std::move(name);
    informs(didChangeInfoNotification);
}

void PhotosRemoteProfile::setDescription(std::string description) {
    if (description == description_) return;
    description_ = std::move(description);
    informs(didChangeInfoNotification);
}

void PhotosRemoteProfile::setFilenameValue(FilenameValue value) {
    store(filenameValue_, std::move(value), didChangeValuesNotification);
}

void PhotosRemoteProfile::setKeywordsValue(KeywordsValue value) {
    store(keywordsValue_, std::move(value), didChangeValuesNotification);
}

void PhotosRemoteProfile::setDescriptionValue(DescriptionValue value) {
    store(descriptionValue_, std::move(value), didChangeValuesNotification);
}

void PhotosRemoteProfile::setDateTimeValue(DateTimeValue value) {
    store(dateTimeValue_, std::move(value), didChangeValuesNotification);
}

void PhotosRemoteProfile::setLocationValue(LocationValue value) {
    store(locationValue_, std::move(value), didChangeValuesNotification);
}

void PhotosRemoteProfile::informs(std::string_view notification) {
    NotificationCenter::defaultCenter().post(Notification(std::string(notification), shared_from_this()));
}

} // namespace corvane
