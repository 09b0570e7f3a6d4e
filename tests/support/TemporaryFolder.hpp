#pragma once

#include <filesystem>
#include <string_view>

namespace corvane::test {

// A fresh folder under the system's temporary folder, removed with its contents when the
// object goes away. Not copyable; movable.
class TemporaryFolder {
public:
    explicit TemporaryFolder(std::string_view prefix = "corvane-test");
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    TemporaryFolder(TemporaryFolder&& other) noexcept;
    TemporaryFolder& operator=(TemporaryFolder&& other) noexcept;

    const std::filesystem::path& path() const { return path_; }
    // path() / name, nothing created.
    std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }
    // Creates the subfolder (and its parents) and returns its path.
    std::filesystem::path makeSubfolder(const std::filesystem::path& name) const;

private:
    std::filesystem::path path_;
};

} // namespace corvane::test
