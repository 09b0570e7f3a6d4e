#include "corvane/photos_scripting/PhotosAppRemote.hpp"

#include "corvane/converters/DynamicValue.hpp"
#include "corvane/photos_scripting/detail/ScriptPerforming.hpp"
#include "corvane/value_models/GregorianCalendar.hpp"

namespace corvane {

namespace {

using Profile = PhotosRemoteProfile;

constexpr std::string_view quotes = "'\"";

std::string filenameText(const Profile::FilenameValue& value) {
    std::string name;
    if (std::holds_alternative<Profile::UseOriginalName>(value))
        name = "    set curFilename to the filename of image as text \n";
    else if (auto custom = std::get_if<Profile::Custom>(&value))
        name = "    set curFilename to " + detail::quotedScriptText(custom->name, quotes) + " \n";
    else
        return {};
    return name + "    set the name of image to curFilename \n";
}

std::string keywordsText(const Profile::KeywordsValue& value) {
    auto keywords = std::get_if<Profile::Keywords>(&value);
    if (!keywords) return {};
    std::string list;
    for (const auto& keyword : keywords->keywords) {
        if (!list.empty()) list += ", ";
        list += detail::quotedScriptText(keyword, quotes);
    }
    return "    set curKeywords to {" + list + "} \n    set the keywords of image to curKeywords \n";
}

std::string descriptionText(const Profile::DescriptionValue& value) {
    auto description = std::get_if<Profile::Description>(&value);
    if (!description) return {};
    return "    set curDescription to " + detail::quotedScriptText(description->text, quotes) +
           " \n    set the description of image to curDescription \n";
}

std::string dateText(const Profile::DateTimeValue& value) {
    auto dateTime = std::get_if<Profile::DateTime>(&value);
    if (!dateTime) return {};
    // The fields as the user's calendar shows them, in the process's time zone.
    const auto c = GregorianCalendar::components(dateTime->date);
    auto field = [](const char* name, const std::optional<int64_t>& v) {
        return std::string("    set the ") + name + " of curDate to " + std::to_string(v.value_or(0)) + " \n";
    };
    return "    set curDate to the current date \n" + field("year", c.year) + field("month", c.month) +
           field("day", c.day) + field("hours", c.hour) + field("minutes", c.minute) +
           field("seconds", c.second) + "    set the date of image to curDate \n";
}

std::string locationText(const Profile::LocationValue& value) {
    auto coordinates = std::get_if<Profile::Coordinates>(&value);
    if (!coordinates) return {};
    return "    set curLocation to {" + shortestDoubleText(coordinates->latitude) + ", " +
           shortestDoubleText(coordinates->longitude) + "} \n    set the location of image to curLocation \n";
}

} // namespace

std::string PhotosAppRemote::generateScript() const {
    std::string script = "delay " + std::to_string(delay_) + " \n \n";
    script += "tell application \"Photos\" \n"
              "  activate \n"
              "  set images to (get selection) \n"
              " \n"
              "  if images is {} then \n"
              "    error \"" +
              std::string(noSelectionMessage) +
              "\" \n"
              "  end if \n"
              " \n"
              "  repeat with image in images \n";
    if (profile_) {
        script += filenameText(profile_->filenameValue());
        script += keywordsText(profile_->keywordsValue());
        script += descriptionText(profile_->descriptionValue());
        script += dateText(profile_->dateTimeValue());
        script += locationText(profile_->locationValue());
    }
    script += "  end repeat \n"
              "end tell \n";
    return script;
}

} // namespace corvane
