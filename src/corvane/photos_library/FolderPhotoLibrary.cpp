#include "corvane/photos_library/FolderPhotoLibrary.hpp"

#include "corvane/tag_value/MediaType.hpp"
#include "corvane/utilities/Error.hpp"
#include "corvane/value_models/DateTime.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <system_error>
#include <utility>

#ifdef CORVANE_HAVE_GIO
#include <dlfcn.h>
#include <gio/gio.h>
#endif

namespace corvane {

namespace fs = std::filesystem;

namespace {

bool isAssetFile(const fs::path& file) {
    const auto type = MediaType::type(file);
    return type && (type->kind() == MediaKind::image || type->kind() == MediaKind::movie);
}

// The value of XDG_PICTURES_DIR in the user-dirs file ("$HOME/Pictures" form), when set.
std::optional<fs::path> xdgPicturesDir(const fs::path& home) {
    const char* configHome = std::getenv("XDG_CONFIG_HOME");
    const fs::path config = configHome && *configHome ? fs::path(configHome) : home / ".config";
    std::ifstream in(config / "user-dirs.dirs");
    std::string line;
    const std::string key = "XDG_PICTURES_DIR=\"";
    while (std::getline(in, line)) {
        if (line.rfind(key, 0) != 0 || line.back() != '"') continue;
        std::string value = line.substr(key.size(), line.size() - key.size() - 1);
        if (value.rfind("$HOME", 0) == 0) return home / fs::path(value.substr(5)).relative_path();
        if (!value.empty() && value.front() == '/') return fs::path(value);
    }
    return std::nullopt;
}

std::string twoDigits(int64_t n) {
    std::string text = n < 10 ? "0" : ""; // appended to: GCC 12 warns, wrongly (-Wrestrict), on "0" + text
    text += std::to_string(n);
    return text;
}

// The file's modification time as a date.
Date modificationDate(const fs::path& file) {
    std::error_code error;
    const auto time = fs::last_write_time(file, error);
    if (error) return Date::now();
    const auto system = fs::file_time_type::clock::to_sys(time);
    return Date(std::chrono::duration<double>(system.time_since_epoch()).count());
}

#ifdef CORVANE_HAVE_GIO
// The four GIO functions a move to the Trash calls. GIO is loaded on the first move rather than
// linked: its libraries would lengthen every start of a program that links Corvane.
struct GioTrash {
    GFile* (*fileForPath)(const char*) = nullptr;
    gboolean (*trash)(GFile*, GCancellable*, GError**) = nullptr;
    void (*unref)(gpointer) = nullptr;
    void (*freeError)(GError*) = nullptr;
    std::string loadError; // why GIO can't be used, when it can't

    static const GioTrash& shared() {
        static const GioTrash functions = load();
        return functions;
    }

private:
    static GioTrash load() {
        GioTrash f;
        constexpr const char* library = "libgio-2.0.so.0";
        void* handle = ::dlopen(library, RTLD_NOW | RTLD_LOCAL);
        if (!handle) {
            const char* reason = ::dlerror();
            f.loadError = reason ? reason : library;
            return f;
        }
        // GIO stays loaded for the rest of the process.
        f.fileForPath = reinterpret_cast<decltype(f.fileForPath)>(::dlsym(handle, "g_file_new_for_path"));
        f.trash = reinterpret_cast<decltype(f.trash)>(::dlsym(handle, "g_file_trash"));
        f.unref = reinterpret_cast<decltype(f.unref)>(::dlsym(handle, "g_object_unref"));
        f.freeError = reinterpret_cast<decltype(f.freeError)>(::dlsym(handle, "g_error_free"));
        if (!f.fileForPath || !f.trash || !f.unref || !f.freeError) {
            f.loadError = library;
            f.loadError += " lacks the functions of the Trash";
        }
        return f;
    }
};
#endif

// Moves a file to the freedesktop Trash of its volume.
void moveToTrash(const fs::path& file) {
#ifdef CORVANE_HAVE_GIO
    const GioTrash& gio = GioTrash::shared();
    if (!gio.loadError.empty())
        throw Error(file.string() + ": can't be moved to the Trash: " + gio.loadError);
    GFile* gfile = gio.fileForPath(file.c_str());
    GError* error = nullptr;
    const bool trashed = gio.trash(gfile, nullptr, &error);
    gio.unref(gfile);
    if (!trashed) {
        const std::string reason = error ? error->message : "unknown error";
        if (error) gio.freeError(error);
        throw Error(file.string() + ": can't be moved to the Trash: " + reason);
    }
#else
    throw Error(file.string() + ": can't be moved to the Trash: this build has no Trash support");
#endif
}

// The changes of one block. A creation reserves its file at once (so that its identifier is
// known inside the block) and the content is copied when the block has returned.
class PendingChanges : public PhotoLibrary::ChangeRequest {
public:
    explicit PendingChanges(std::function<fs::path(const PhotoLibrary::AssetCreation&)> reserve,
                            std::function<std::string(const fs::path&)> identify)
        : reserve_(std::move(reserve)), identify_(std::move(identify)) {}
    PendingChanges(const PendingChanges&) = delete;
    PendingChanges& operator=(const PendingChanges&) = delete;
    // Unless the block was applied, the reserved files go: they are ours, made a moment ago.
    ~PendingChanges() override {
        if (applied) return;
        std::error_code ignored;
        for (const auto& [file, unused] : creations)
            fs::remove(file, ignored);
    }

    std::string createAsset(const PhotoLibrary::AssetCreation& creation) override {
        creations.emplace_back(reserve_(creation), creation);
        return identify_(creations.back().first);
    }
    void deleteAssets(const std::vector<AssetHandle>& assets) override {
        deletions.insert(deletions.end(), assets.begin(), assets.end());
    }

    std::vector<std::pair<fs::path, PhotoLibrary::AssetCreation>> creations;
    std::vector<AssetHandle> deletions;
    bool applied = false;

private:
    std::function<fs::path(const PhotoLibrary::AssetCreation&)> reserve_;
    std::function<std::string(const fs::path&)> identify_;
};

// Copies `source` into the reserved (empty) file `target`.
void copyContent(const fs::path& source, const fs::path& target) {
    std::ifstream in(source, std::ios::binary);
    if (!in) throw Error(source.string() + ": can't be read: " + std::strerror(errno));
    const int fd = ::open(target.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    if (fd < 0) throw Error(target.string() + ": can't be written: " + std::strerror(errno));
    bool written = true;
    int savedErrno = 0;
    char buffer[1 << 16];
    while (written && in.read(buffer, sizeof buffer).gcount() > 0) {
        const char* data = buffer;
        for (auto left = in.gcount(); written && left > 0;) {
            const auto n = ::write(fd, data, static_cast<size_t>(left));
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0)
                savedErrno = errno, written = false;
            else
                data += n, left -= n;
        }
    }
    if (::close(fd) != 0 && written) savedErrno = errno, written = false;
    if (in.bad()) throw Error(source.string() + ": can't be read: " + std::strerror(errno));
    if (!written) throw Error(target.string() + ": can't be written: " + std::strerror(savedErrno));
}

} // namespace

FolderPhotoLibrary::FolderPhotoLibrary(std::optional<fs::path> root)
    : root_(root ? fs::absolute(*root).lexically_normal() : picturesFolder()) {}

fs::path FolderPhotoLibrary::picturesFolder() {
    const char* home = std::getenv("HOME");
    const fs::path homePath = home && *home ? fs::path(home) : fs::current_path();
    return xdgPicturesDir(homePath).value_or(homePath / "Pictures");
}

std::optional<std::string> FolderPhotoLibrary::identifier(const fs::path& file) const {
    const fs::path relative = fs::absolute(file).lexically_normal().lexically_relative(root_);
    if (relative.empty() || *relative.begin() == "..") return std::nullopt;
    return relative.generic_string();
}

std::optional<fs::path> FolderPhotoLibrary::fileOf(const std::string& identifier) const {
    const fs::path relative = fs::path(identifier).lexically_normal();
    if (identifier.empty() || relative.is_absolute() || *relative.begin() == "..") return std::nullopt;
    const fs::path file = root_ / relative;
    std::error_code error;
    if (!fs::is_regular_file(file, error) || !isAssetFile(file)) return std::nullopt;
    return file;
}

std::vector<AssetHandle> FolderPhotoLibrary::allAssets() const {
    std::vector<std::string> identifiers;
    std::error_code error;
    for (fs::recursive_directory_iterator it(root_, fs::directory_options::skip_permission_denied, error),
         end;
         !error && it != end; it.increment(error)) {
        // Hidden folders (thumbnail caches, the Trash of the volume) hold no assets.
        if (it->path().filename().string().starts_with(".")) {
            if (it->is_directory()) it.disable_recursion_pending();
            continue;
        }
        if (it->is_regular_file() && isAssetFile(it->path()))
            identifiers.push_back(it->path().lexically_relative(root_).generic_string());
    }
    std::sort(identifiers.begin(), identifiers.end());
    return {identifiers.begin(), identifiers.end()};
}

bool FolderPhotoLibrary::requestAuthorization() {
    std::error_code error;
    return fs::is_directory(root_, error) && ::access(root_.c_str(), W_OK | X_OK) == 0;
}

std::vector<AssetHandle> FolderPhotoLibrary::fetchAssets(const std::vector<std::string>& localIdentifiers) {
    std::vector<std::string> found;
    for (const auto& identifier : localIdentifiers)
        if (fileOf(identifier)) found.push_back(fs::path(identifier).lexically_normal().generic_string());
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return {found.begin(), found.end()};
}

std::unordered_map<std::string, fs::path> FolderPhotoLibrary::urls(const std::vector<AssetHandle>& assets) {
    std::unordered_map<std::string, fs::path> result;
    for (const auto& asset : assets)
        if (auto file = fileOf(asset.localIdentifier())) result.emplace(asset.localIdentifier(), *file);
    return result;
}

fs::path FolderPhotoLibrary::reserveFile(const AssetCreation& creation) const {
    const DateTime date(creation.creationDate.value_or(modificationDate(creation.file)));
    const fs::path folder = root_ / std::to_string(date.year) / twoDigits(date.month);
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) throw Error(folder.string() + ": can't be created: " + error.message());
    const fs::path name = creation.filename.empty() ? creation.file.filename() : fs::path(creation.filename);
    const std::string stem = name.stem().string(), extension = name.extension().string();
    for (int n = 1;; ++n) {
        const fs::path target =
            folder / (n == 1 ? stem + extension : stem + " (" + std::to_string(n) + ")" + extension);
        // O_EXCL: a name taken, by anyone, is never overwritten.
        const int fd = ::open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (fd < 0 && errno == EEXIST) continue;
        if (fd < 0) throw Error(target.string() + ": can't be created: " + std::strerror(errno));
        ::close(fd);
        return target;
    }
}

void FolderPhotoLibrary::performChangesAndWait(const std::function<void(ChangeRequest&)>& changes) {
    std::lock_guard lock(changesMutex_);
    PendingChanges pending([this](const AssetCreation& creation) { return reserveFile(creation); },
                           [this](const fs::path& file) { return *identifier(file); });
    changes(pending);

    // Deletions are checked before anything changes.
    std::vector<fs::path> doomed;
    for (const auto& asset : pending.deletions) {
        auto file = fileOf(asset.localIdentifier());
        if (!file) throw Error(asset.localIdentifier() + ": no such asset in " + root_.string());
        doomed.push_back(*file);
    }
    for (const auto& [target, creation] : pending.creations)
        copyContent(creation.file, target);
    // The new assets are complete: from here on they stay, whatever happens to the old ones.
    pending.applied = true;
    for (const auto& file : doomed)
        moveToTrash(file);
}

} // namespace corvane
