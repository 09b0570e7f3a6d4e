#include "support/TemporaryFolder.hpp"

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <system_error>

namespace corvane::test {

TemporaryFolder::TemporaryFolder(std::string_view prefix) {
    std::string pattern = (std::filesystem::temp_directory_path() / std::string(prefix)).string() + "-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("cannot create a temporary folder from " + pattern);
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    if (path_.empty()) return;
    std::error_code ec;
    // Files made read-only by a test must not keep the folder alive.
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, std::filesystem::perm_options::add,
                                 ec);
    std::filesystem::remove_all(path_, ec);
}

TemporaryFolder::TemporaryFolder(TemporaryFolder&& other) noexcept : path_(std::move(other.path_)) {
    other.path_.clear();
}

TemporaryFolder& TemporaryFolder::operator=(TemporaryFolder&& other) noexcept {
    if (this != &other) {
        TemporaryFolder old(std::move(*this));
        path_ = std::move(other.path_);
        other.path_.clear();
    }
    return *this;
}

std::filesystem::path TemporaryFolder::makeSubfolder(const std::filesystem::path& name) const {
    auto p = path_ / name;
    std::filesystem::create_directories(p);
    return p;
}

} // namespace corvane::test
