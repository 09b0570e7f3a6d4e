#pragma once

#include <nlohmann/json.hpp>

#include <atomic>
#include <filesystem>
#include <memory>
#include <optional>
#include <shared_mutex>
#include <string>
#include <vector>

namespace corvane {

/// Persistent key-value settings, kept as one pretty-printed JSON object in a
/// file. The standard instance lives in "$XDG_CONFIG_HOME/corvane/defaults.json"
/// (or "~/.config/corvane/defaults.json"); an application or a test may move it
/// with setFileURL(). The file is read on first use and rewritten atomically
/// (temporary file, then rename) after every change. An unreadable or malformed
/// file counts as empty. Thread-safe.
class UserDefaults {
public:
    /// Settings kept in `fileURL`, read on first use.
    explicit UserDefaults(std::filesystem::path fileURL);

    /// The standard instance, made on first use; the same object as a shared pointer.
    ///@{
    static UserDefaults& standard();
    static std::shared_ptr<UserDefaults> standardShared();
    ///@}
    /// The folder of this library's preferences under the user's configuration home.
    static std::filesystem::path defaultDirectory();

    /// The file the settings are kept in.
    std::filesystem::path fileURL() const;
    /// Points to another file and reloads from it.
    void setFileURL(std::filesystem::path fileURL);
    /// Drops what is in memory and reads the file again.
    void reload();

    /// The JSON value under `key`, nothing when absent; store a value (and rewrite the file);
    /// remove a key; whether a key is there; every key.
    ///@{
    std::optional<nlohmann::json> value(const std::string& key) const;
    void set(const std::string& key, nlohmann::json value);
    void remove(const std::string& key);
    bool contains(const std::string& key) const;
    std::vector<std::string> keys() const;
    ///@}

    /// Typed reads; nothing when absent or of another JSON type (an integer reads as a number too).
    ///@{
    std::optional<std::string> string(const std::string& key) const;
    std::optional<bool> boolean(const std::string& key) const;
    std::optional<long long> integer(const std::string& key) const;
    std::optional<double> number(const std::string& key) const;
    ///@}

    /// The URL of a data file named after the key, "<key>.data", in the folder of
    /// the defaults file; the folder is made if needed.
    std::filesystem::path preferenceFileURL(const std::string& key) const;

private:
    void loadIfNeeded() const;
    void loadLocked() const;
    void saveLocked() const;

    mutable std::shared_mutex mutex_;
    std::filesystem::path fileURL_;
    mutable nlohmann::json values_ = nlohmann::json::object();
    mutable std::atomic<bool> loaded_{false};
};

} // namespace corvane
