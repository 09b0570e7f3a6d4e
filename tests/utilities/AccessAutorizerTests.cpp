// The home folder's access inside and outside a sandbox, on files the tests make.
#include "corvane/utilities/AccessAutorizer.hpp"

#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <map>

namespace corvane {
namespace {

using Status = AccessAutorizer::AuthorizationStatus;
namespace fs = std::filesystem;

TEST(AccessAutorizer, statusAndGrantCommandInEachSandbox) {
    test::TemporaryFolder folder;
    std::map<std::string, std::string> environment;
    auto makeAutorizer = [&] {
        AccessAutorizer access;
        access.setFlatpakInfoPath(folder / ".flatpak-info");
        access.setEnvironment([&](const std::string& name) -> std::optional<std::string> {
            const auto it = environment.find(name);
            return it == environment.end() ? std::nullopt : std::optional(it->second);
        });
        access.setProbePath(folder / "home");
        return access;
    };

    // No sandbox: the whole home folder is reachable, and there is nothing to grant.
    EXPECT_EQ(makeAutorizer().sandbox(), AccessAutorizer::Sandbox::none);
    EXPECT_EQ(makeAutorizer().fullDiskAccessAuthorizationStatus(), Status::authorized);
    EXPECT_EQ(makeAutorizer().grantCommand(), "");

    // Flatpak without the home folder: a missing probe is undetermined, not denied.
    std::ofstream(folder / ".flatpak-info") << "[Application]\nname=org.example.Viewer\n\n[Context]\n"
                                               "filesystems=xdg-pictures;!home\n";
    EXPECT_EQ(makeAutorizer().sandbox(), AccessAutorizer::Sandbox::flatpak);
    EXPECT_EQ(makeAutorizer().fullDiskAccessAuthorizationStatus(), Status::notDetermined);
    fs::create_directories(folder / "home");
    EXPECT_EQ(makeAutorizer().fullDiskAccessAuthorizationStatus(), Status::authorized);
    fs::remove(folder / "home");
    std::string opened;
    auto access = makeAutorizer();
    access.setPreferencePanelOpener([&](const std::string& command) { opened = command; });
    access.openFullDiskAccessPreferencePanel();
    EXPECT_EQ(opened, "flatpak override --user --filesystem=home org.example.Viewer");

    // Flatpak with the home folder granted (read-only counts).
    std::ofstream(folder / ".flatpak-info") << "[Application]\nname=org.example.Viewer\n[Context]\n"
                                               "filesystems=home:ro;xdg-run/foo\n";
    EXPECT_EQ(makeAutorizer().fullDiskAccessAuthorizationStatus(), Status::authorized);
    fs::remove(folder / ".flatpak-info");

    // Snap: HOME is the snap's folder, so the real home comes from the password entry.
    environment = {{"SNAP", "/snap/viewer/12"}, {"SNAP_NAME", "viewer"}, {"HOME", "/root/snap/viewer/12"}};
    EXPECT_EQ(makeAutorizer().sandbox(), AccessAutorizer::Sandbox::snap);
    EXPECT_EQ(makeAutorizer().grantCommand(), "snap connect viewer:home");
    EXPECT_EQ(makeAutorizer().fullDiskAccessAuthorizationStatus(), Status::notDetermined);
    const std::string home = std::getenv("HOME") ? std::getenv("HOME") : "";
    ::setenv("HOME", "/nonexistent/snap/viewer/12", 1);
    ::setenv("SNAP", "/snap/viewer/12", 1);
    EXPECT_EQ(AccessAutorizer().userHomeFolderURL(), fs::path(::getpwuid(::getuid())->pw_dir));
    ::unsetenv("SNAP");
    EXPECT_EQ(AccessAutorizer().userHomeFolderURL(), fs::path("/nonexistent/snap/viewer/12"));
    ::setenv("HOME", home.c_str(), 1);
}

} // namespace
} // namespace corvane
