#include "corvane/utilities/UserDefaults.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/JSONInput.hpp"
#include "corvane/utilities/FileError.hpp"

#include <cstdlib>
#include <mutex>
#include <system_error>

namespace corvane {

namespace fs = std::filesystem;

UserDefaults::UserDefaults(fs::path fileURL) : fileURL_(std::move(fileURL)) {}

fs::path UserDefaults::defaultDirectory() {
    // The XDG base-directory convention of the platform, not a setting of ours.
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && *xdg && fs::path(xdg).is_absolute())
        return fs::path(xdg) / "corvane";
    if (const char* home = std::getenv("HOME"); home && *home) return fs::path(home) / ".config" / "corvane";
    return fs::temp_directory_path() / "corvane";
}

std::shared_ptr<UserDefaults> UserDefaults::standardShared() {
    static const auto defaults = std::make_shared<UserDefaults>(defaultDirectory() / "defaults.json");
    return defaults;
}

UserDefaults& UserDefaults::standard() {
    return *standardShared();
}

fs::path UserDefaults::fileURL() const {
    std::shared_lock lock(mutex_);
    return fileURL_;
}

void UserDefaults::setFileURL(fs::path fileURL) {
    std::unique_lock lock(mutex_);
    fileURL_ = std::move(fileURL);
    loadLocked();
}

void UserDefaults::reload() {
    std::unique_lock lock(mutex_);
    loadLocked();
}

void UserDefaults::loadIfNeeded() const {
    if (loaded_.load(std::memory_order_acquire)) return;
    std::unique_lock lock(mutex_);
    if (!loaded_.load(std::memory_order_relaxed)) loadLocked();
}

void UserDefaults::loadLocked() const {
    values_ = nlohmann::json::object();
    // A file that is missing, can't be read or nests beyond reason counts as empty.
    try {
        checkJSONNesting(readFileBytes(fileURL_), fileURL_.string());
        auto parsed = nlohmann::json::parse(readFileBytes(fileURL_), nullptr, /*allow_exceptions=*/false);
        if (parsed.is_object()) values_ = std::move(parsed);
    } catch (const FileError&) {
    } catch (const JSONNestingError&) {
    }
    loaded_.store(true, std::memory_order_release);
}

void UserDefaults::saveLocked() const {
    std::error_code ec;
    if (fileURL_.has_parent_path()) fs::create_directories(fileURL_.parent_path(), ec);
    writeFileAtomically(fileURL_, values_.dump(4) + '\n');
}

std::optional<nlohmann::json> UserDefaults::value(const std::string& key) const {
    loadIfNeeded();
    std::shared_lock lock(mutex_);
    auto it = values_.find(key);
    if (it == values_.end()) return std::nullopt;
    return *it;
}

void UserDefaults::set(const std::string& key, nlohmann::json value) {
    loadIfNeeded();
    std::unique_lock lock(mutex_);
    values_[key] = std::move(value);
    saveLocked();
}

void UserDefaults::remove(const std::string& key) {
    loadIfNeeded();
    std::unique_lock lock(mutex_);
    if (values_.erase(key)) saveLocked();
}

bool UserDefaults::contains(const std::string& key) const {
    loadIfNeeded();
    std::shared_lock lock(mutex_);
    return values_.contains(key);
}

std::vector<std::string> UserDefaults::keys() const {
    loadIfNeeded();
    std::shared_lock lock(mutex_);
    std::vector<std::string> result;
    for (auto it = values_.begin(); it != values_.end(); ++it)
        result.push_back(it.key());
    return result;
}

std::optional<std::string> UserDefaults::string(const std::string& key) const {
    auto v = value(key);
    if (v && v->is_string()) return v->get<std::string>();
    return std::nullopt;
}

std::optional<bool> UserDefaults::boolean(const std::string& key) const {
    auto v = value(key);
    if (v && v->is_boolean()) return v->get<bool>();
    return std::nullopt;
}

std::optional<long long> UserDefaults::integer(const std::string& key) const {
    auto v = value(key);
    if (v && v->is_number_integer()) return v->get<long long>();
    return std::nullopt;
}

std::optional<double> UserDefaults::number(const std::string& key) const {
    auto v = value(key);
    if (v && v->is_number()) return v->get<double>();
    return std::nullopt;
}

fs::path UserDefaults::preferenceFileURL(const std::string& key) const {
    const fs::path folder = fileURL().parent_path();
    std::error_code ec;
    fs::create_directories(folder, ec);
    return folder / (key + ".data");
}

} // namespace corvane
