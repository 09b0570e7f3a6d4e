#include "corvane/utilities/FileError.hpp"

#include <string_view>
#include <utility>

namespace corvane {

namespace {

std::string describe(const std::filesystem::path& path, const std::string& action, std::error_code code) {
    std::string text = path.string();
    if (!text.empty()) text += ": ";
    text += action;
    if (code) text += ": " + code.message();
    return text;
}

// The standard library's what() repeats the reason and the paths around the action:
// "filesystem error: cannot copy: File exists [a] [b]". Only the action is kept.
std::string actionOf(const std::filesystem::filesystem_error& error) {
    std::string text = error.what();
    constexpr std::string_view prefix = "filesystem error: ";
    if (text.starts_with(prefix)) text.erase(0, prefix.size());
    if (const auto reason = ": " + error.code().message(); !error.code().message().empty())
        if (const auto at = text.find(reason); at != std::string::npos) text.erase(at);
    if (const auto bracket = text.find(" ["); bracket != std::string::npos) text.erase(bracket);
    return text;
}

} // namespace

FileError::FileError(std::filesystem::path path, std::string action, std::error_code code)
    : Error(describe(path, action, code)), path_(std::move(path)), action_(std::move(action)), code_(code) {}

FileError::FileError(const std::filesystem::filesystem_error& error)
    : FileError(error.path1(), actionOf(error), error.code()) {}

} // namespace corvane
