#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/utilities/FileError.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <random>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace corvane {

namespace fs = std::filesystem;

std::string urlPath(const fs::path& url) {
    std::string text = url.string();
    while (text.size() > 1 && text.back() == '/')
        text.pop_back();
    return text;
}

std::string lastPathComponent(const fs::path& url) {
    const std::string text = urlPath(url);
    if (text == "/") return text;
    const auto slash = text.rfind('/');
    return slash == std::string::npos ? text : text.substr(slash + 1);
}

std::string pathExtension(const fs::path& url) {
    const std::string name = lastPathComponent(url);
    const auto dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == name.size()) return {};
    return name.substr(dot + 1);
}

std::string upperPathExtension(const fs::path& url) {
    std::string ext = pathExtension(url);
    for (char& c : ext)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return ext;
}

fs::path deletingLastPathComponent(const fs::path& url) {
    const std::string text = urlPath(url);
    const auto slash = text.rfind('/');
    if (slash == std::string::npos) return fs::path();
    if (slash == 0) return fs::path("/");
    return fs::path(text.substr(0, slash));
}

namespace {

std::string homeFolder() {
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    if (const passwd* pw = getpwuid(getuid()); pw && pw->pw_dir) return pw->pw_dir;
    return {};
}

} // namespace

std::string abbreviatingWithTildeInPath(const fs::path& url) {
    const std::string text = urlPath(url);
    std::string home = urlPath(homeFolder());
    if (home.empty() || home == "/") return text;
    if (text == home) return "~";
    if (text.size() > home.size() && text.compare(0, home.size(), home) == 0 && text[home.size()] == '/') {
        // Appended rather than `"~" + ...`, which GCC 12 flags with a false overlap warning.
        std::string abbreviated = "~";
        abbreviated.append(text, home.size());
        return abbreviated;
    }
    return text;
}

fs::path temporaryURL(std::string_view pathExt) {
    // A random version-4 UUID; the counter guards against a poor random device.
    thread_local std::mt19937_64 engine([] {
        std::random_device device;
        std::seed_seq seed{device(), device(), device(), device()};
        return std::mt19937_64(seed);
    }());
    static std::atomic<uint64_t> counter{0};
    std::array<uint64_t, 2> bits{engine(), engine() ^ counter.fetch_add(1)};
    bits[0] = (bits[0] & ~0xF000ULL) | 0x4000ULL;
    bits[1] = (bits[1] & 0x3FFFFFFFFFFFFFFFULL) | 0x8000000000000000ULL;
    char uuid[40];
    std::snprintf(uuid, sizeof uuid, "%08llX-%04llX-%04llX-%04llX-%012llX",
                  static_cast<unsigned long long>(bits[0] >> 32),
                  static_cast<unsigned long long>((bits[0] >> 16) & 0xFFFF),
                  static_cast<unsigned long long>(bits[0] & 0xFFFF),
                  static_cast<unsigned long long>(bits[1] >> 48),
                  static_cast<unsigned long long>(bits[1] & 0xFFFFFFFFFFFFULL));
    std::string name = uuid;
    if (!pathExt.empty()) {
        name += '.';
        name += pathExt;
    }
    std::error_code error;
    fs::path folder = fs::temp_directory_path(error);
    if (error) folder = "/tmp";
    return folder / name;
}

namespace {

void listFolder(const fs::path& folder, bool recursively, std::vector<fs::path>& result) {
    std::error_code error;
    fs::directory_iterator it(folder, fs::directory_options::none, error);
    if (error) return;
    // Entries with their kind, taken once so that the sort doesn't touch the disk.
    struct Entry {
        std::string name;
        bool isFolder;
    };
    std::vector<Entry> entries;
    for (const fs::directory_iterator end; it != end; it.increment(error)) {
        if (error) break;
        std::string name = it->path().filename().string();
        if (name.empty() || name.front() == '.') continue;
        std::error_code kindError;
        const fs::file_status linkStatus = it->symlink_status(kindError);
        if (kindError) continue;
        if (fs::is_symlink(linkStatus)) {
            // A link is listed when it leads to a file; a link to a folder isn't followed.
            const fs::file_status target = it->status(kindError);
            if (kindError || fs::is_directory(target) || !fs::exists(target)) continue;
            entries.push_back({std::move(name), false});
        } else if (fs::is_directory(linkStatus)) {
            if (recursively) entries.push_back({std::move(name), true});
        } else {
            entries.push_back({std::move(name), false});
        }
    }
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.name < b.name; });
    for (const Entry& entry : entries) {
        if (entry.isFolder)
            listFolder(folder / entry.name, true, result);
        else
            result.push_back(folder / entry.name);
    }
}

} // namespace

std::vector<fs::path> listFolderFiles(const fs::path& url, bool recursively) {
    std::vector<fs::path> result;
    if (!pathExtension(url).empty()) return result;
    std::error_code error;
    const fs::path folder = fs::canonical(fs::path(urlPath(url)), error);
    if (error || !fs::is_directory(folder, error)) return result;
    listFolder(folder, recursively, result);
    return result;
}

namespace {

[[noreturn]] void throwWriteError(const fs::path& url, int err) {
    throw FileError(url, "Cannot write the file", std::error_code(err, std::generic_category()));
}

} // namespace

std::string readFileBytes(const fs::path& url) {
    auto fail = [&url](int err) {
        throw FileError(url, "Cannot read the file", std::error_code(err, std::generic_category()));
    };
    const int fd = ::open(url.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) fail(errno);
    std::string bytes;
    struct stat info {};
    if (::fstat(fd, &info) == 0 && S_ISREG(info.st_mode))
        bytes.reserve(static_cast<std::size_t>(info.st_size));
    char buffer[1 << 16];
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n == 0) break;
        if (n < 0) {
            if (errno == EINTR) continue;
            const int err = errno;
            ::close(fd);
            fail(err);
        }
        bytes.append(buffer, static_cast<std::size_t>(n));
    }
    ::close(fd);
    return bytes;
}

void writeFileAtomically(const fs::path& url, std::string_view bytes, mode_t mode) {
    std::string pattern = url.string() + ".XXXXXX";
    // Close-on-exec: a program started meanwhile (ExifTool) must not hold it open.
    int fd = ::mkostemp(pattern.data(), O_CLOEXEC);
    if (fd < 0) throwWriteError(url, errno);
    auto fail = [&](int err) {
        ::close(fd);
        ::unlink(pattern.c_str());
        throwWriteError(url, err);
    };
    for (std::size_t done = 0; done < bytes.size();) {
        ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            fail(errno);
        }
        done += static_cast<std::size_t>(n);
    }
    // mkstemp makes the file private; the caller says what rights it should have (umask isn't
    // read: changing it to read it would race with other threads).
    if (::fchmod(fd, mode) != 0) fail(errno);
    if (::fsync(fd) != 0) fail(errno);
    if (::close(fd) != 0) {
        int err = errno;
        ::unlink(pattern.c_str());
        throwWriteError(url, err);
    }
    if (::rename(pattern.c_str(), url.c_str()) != 0) {
        int err = errno;
        ::unlink(pattern.c_str());
        throwWriteError(url, err);
    }
}

} // namespace corvane
