#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace corvane {

/// Whether the process may reach the user's files, and how the user grants it when it may not.
///
/// A process outside any sandbox reaches the whole home folder: `authorized`. Under Flatpak (the
/// file `/.flatpak-info`) or Snap (the `SNAP` environment variable) the home folder is reachable
/// only when the user granted it: the Flatpak `filesystems` entry names `home` or `host`, or the
/// probe path (by default the real home folder) can be read. A probe path that doesn't exist
/// gives `notDetermined`, not `denied`.
///
/// A value type; every status is computed anew on each read. Any thread.
class AccessAutorizer {
public:
    /// Whether the process may read the user's files.
    enum class AuthorizationStatus { denied, authorized, notDetermined };

    /// The sandbox the process runs in.
    enum class Sandbox { none, flatpak, snap };

    /// Takes the real home folder: inside a sandbox that moves HOME (Snap), the user's password
    /// entry, otherwise HOME.
    AccessAutorizer();

    /// The user's real home folder.
    const std::filesystem::path& userHomeFolderURL() const { return userHomeFolderURL_; }

    /// What is read to test access; the home folder by default.
    ///@{
    const std::filesystem::path& probePath() const { return probePath_; }
    void setProbePath(std::filesystem::path path) { probePath_ = std::move(path); }
    ///@}
    /// The Flatpak description file; "/.flatpak-info" by default.
    void setFlatpakInfoPath(std::filesystem::path path) { flatpakInfoPath_ = std::move(path); }
    /// The environment lookup; `getenv` by default.
    void setEnvironment(std::function<std::optional<std::string>(const std::string&)> environment);

    /// The sandbox the process runs in; whether it can read the user's home folder (`notDetermined`
    /// when the test can't tell).
    ///@{
    Sandbox sandbox() const;
    AuthorizationStatus fullDiskAccessAuthorizationStatus() const;
    ///@}

    /// The command that grants the home folder to this application in its sandbox; empty outside one.
    std::string grantCommand() const;

    /// Shows the user how to grant access: calls the opener set with `setPreferencePanelOpener`
    /// with `grantCommand()`; by default the command is printed on standard error.
    void openFullDiskAccessPreferencePanel() const;
    /// Replaces how `openFullDiskAccessPreferencePanel` shows the command.
    void setPreferencePanelOpener(std::function<void(const std::string& command)> opener);

private:
    std::optional<std::string> environment(const std::string& name) const;
    /// The value of `key` in the Flatpak description, when present.
    std::optional<std::string> flatpakEntry(const std::string& key) const;

    std::filesystem::path userHomeFolderURL_;
    std::filesystem::path probePath_;
    std::filesystem::path flatpakInfoPath_ = "/.flatpak-info";
    std::function<std::optional<std::string>(const std::string&)> environment_;
    std::function<void(const std::string&)> opener_;
};

} // namespace corvane
