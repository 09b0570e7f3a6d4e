#include "corvane/utilities/AccessAutorizer.hpp"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <system_error>
#include <vector>

namespace corvane {

namespace fs = std::filesystem;

namespace {

std::optional<std::string> processEnvironment(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value ? std::optional<std::string>(value) : std::nullopt;
}

fs::path passwordHome() {
    if (const passwd* entry = ::getpwuid(::getuid()); entry && entry->pw_dir) return entry->pw_dir;
    return {};
}

// Whether a `filesystems` list ("host;xdg-pictures;!home") grants the whole home folder.
bool grantsHome(const std::string& list) {
    std::stringstream in(list);
    std::string entry;
    bool granted = false;
    while (std::getline(in, entry, ';')) {
        // An access suffix (":ro", ":rw", ":create") keeps the folder reachable.
        const std::string name = entry.substr(0, entry.find(':'));
        if (name == "home" || name == "host" || name == "host-home") granted = true;
        if (name == "!home" || name == "!host") granted = false;
    }
    return granted;
}

} // namespace

AccessAutorizer::AccessAutorizer() : environment_(processEnvironment) {
    // Snap points HOME into the snap's own folder; the real home is the password entry's.
    const auto home = environment("HOME");
    userHomeFolderURL_ = environment("SNAP") || !home || home->empty() ? passwordHome() : fs::path(*home);
    probePath_ = userHomeFolderURL_;
}

void AccessAutorizer::setEnvironment(
    std::function<std::optional<std::string>(const std::string&)> environment) {
    environment_ = environment ? std::move(environment) : processEnvironment;
}

std::optional<std::string> AccessAutorizer::environment(const std::string& name) const {
    return environment_(name);
}

std::optional<std::string> AccessAutorizer::flatpakEntry(const std::string& key) const {
    std::ifstream in(flatpakInfoPath_);
    std::string line;
    while (std::getline(in, line))
        if (line.rfind(key + "=", 0) == 0) return line.substr(key.size() + 1);
    return std::nullopt;
}

AccessAutorizer::Sandbox AccessAutorizer::sandbox() const {
    std::error_code error;
    if (fs::exists(flatpakInfoPath_, error)) return Sandbox::flatpak;
    if (environment("SNAP")) return Sandbox::snap;
    return Sandbox::none;
}

AccessAutorizer::AuthorizationStatus AccessAutorizer::fullDiskAccessAuthorizationStatus() const {
    const Sandbox box = sandbox();
    if (box == Sandbox::none) return AuthorizationStatus::authorized;
    if (box == Sandbox::flatpak && grantsHome(flatpakEntry("filesystems").value_or(""))) {
        return AuthorizationStatus::authorized;
    }
    std::error_code error;
    if (!fs::exists(probePath_, error)) {
        // Either absent, or hidden from us: only a denial of the parent's search tells them apart.
        return error == std::errc::permission_denied ? AuthorizationStatus::denied
                                                     : AuthorizationStatus::notDetermined;
    }
    const bool readable = fs::is_directory(probePath_, error) ? ::access(probePath_.c_str(), R_OK | X_OK) == 0
                                                              : std::ifstream(probePath_).good();
    return readable ? AuthorizationStatus::authorized : AuthorizationStatus::denied;
}

std::string AccessAutorizer::grantCommand() const {
    switch (sandbox()) {
    case Sandbox::flatpak:
        return "flatpak override --user --filesystem=home " +
               flatpakEntry("name").value_or(environment("FLATPAK_ID").value_or("APPLICATION-ID"));
    case Sandbox::snap:
        return "snap connect " + environment("SNAP_NAME").value_or("SNAP-NAME") + ":home";
    case Sandbox::none:
        break;
    }
    return {};
}

void AccessAutorizer::openFullDiskAccessPreferencePanel() const {
    const std::string command = grantCommand();
    if (opener_) {
        opener_(command);
    } else if (!command.empty()) {
        std::cerr << "To let this application reach your home folder, run: " << command << "\n";
    }
}

void AccessAutorizer::setPreferencePanelOpener(std::function<void(const std::string&)> opener) {
    opener_ = std::move(opener);
}

} // namespace corvane
