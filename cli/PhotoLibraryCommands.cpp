// `corvane library` (a photo library kept as a folder tree of pictures: list, add, edit an asset)
// and `corvane doctor` (what this installation can do).
#include "Commands.hpp"
#include "Output.hpp"
#include "StorageReading.hpp"

#include "corvane/Version.hpp"
#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/photos_library/FolderPhotoLibrary.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/tag_value/TagValueChecker.hpp"
#include "corvane/tag_value/TypedTagValue.hpp"
#include "corvane/task_support/FileExportToPhotosTask.hpp"
#include "corvane/task_support/SaveTagEditorsTask.hpp"
#include "corvane/utilities/AccessAutorizer.hpp"
#include "corvane/utilities/EngineVersions.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <iostream>
#include <memory>
#include <optional>

extern char** environ;

namespace corvane::cli {

namespace {

namespace fs = std::filesystem;

struct LibraryOptions {
    std::string root;
    std::vector<std::string> paths;
    std::string identifier;
    std::vector<std::string> assignments;
};

// The library of `--root`, or of the user's pictures folder, installed as the process's library.
std::shared_ptr<FolderPhotoLibrary> openLibrary(const std::string& root) {
    auto library =
        std::make_shared<FolderPhotoLibrary>(root.empty() ? std::nullopt : std::optional<fs::path>(root));
    PhotoLibrary::setShared(library);
    return library;
}

int refuseAccess(const FolderPhotoLibrary& library) {
    std::cerr << "corvane: " << library.root().string()
              << ": the photo library isn't a folder this program can write into\n";
    return 1;
}

int listAssets(const LibraryOptions& options) {
    auto library = openLibrary(options.root);
    std::error_code error;
    if (!fs::is_directory(library->root(), error)) {
        std::cerr << "corvane: " << library->root().string() << ": no such folder\n";
        return 1;
    }
    for (const auto& asset : library->allAssets())
        std::cout << asset.localIdentifier() << '\n';
    return 0;
}

int addFiles(const LibraryOptions& options) {
    auto library = openLibrary(options.root);
    if (!library->requestAuthorization()) return refuseAccess(*library);
    std::vector<fs::path> urls(options.paths.begin(), options.paths.end());
    auto task = FileExportToPhotosTask::create(FileExportToPhotosTask::Settings(urls));
    Reporter reporter;
    runTask(task, "Adding", reporter);
    reportTaskErrors(*task, reporter);
    for (const auto& identifier : task->createdAssets())
        std::cout << "added: " << identifier << '\n';
    return reporter.errorCount() ? 1 : 0;
}

// Edits one asset the way a photo library needs it: the asset's content is copied out, written,
// added back as a new asset, and only then is the old asset moved to the Trash.
int editAsset(const LibraryOptions& options) {
    auto library = openLibrary(options.root);
    if (!library->requestAuthorization()) return refuseAccess(*library);
    Reporter reporter;
    const auto assets = library->fetchAssets({options.identifier});
    const auto urls = library->urls(assets);
    if (assets.empty() || urls.empty()) {
        reporter.error(options.identifier + ": no such asset in " + library->root().string());
        return 1;
    }
    const AssetHandle asset = assets.front();

    std::vector<std::pair<TagName, std::string>> values;
    for (const auto& assignment : options.assignments) {
        const auto equals = assignment.find('=');
        const auto name =
            equals == std::string::npos ? std::nullopt : TagName::fromRawValue(assignment.substr(0, equals));
        const TagItem* item = name ? TagItem::find(*name) : nullptr;
        if (!item) {
            reporter.usageError("not an edit of a known tag (FAMILY:TAG=VALUE): " + assignment);
            return exitUsage;
        }
        const std::string typed = assignment.substr(equals + 1);
        if (typed.empty()) {
            values.emplace_back(*name, std::string());
            continue;
        }
        const auto checked = TagValueChecker::check(*item, typed);
        if (!checked.isValid()) {
            reporter.usageError(checked.error);
            return exitUsage;
        }
        values.emplace_back(*name, checked.text);
    }

    auto editors =
        importEditors({TagStorageSource(urls.at(asset.localIdentifier()), asset)}, false, reporter);
    if (editors.size() != 1) return 1;
    const auto& editor = editors.front();
    {
        EditionManager::Session session;
        for (const auto& [name, text] : values) {
            if (!editor->canEditValue(name)) {
                reporter.error(options.identifier + ": " + name.rawValue() +
                               " can't be written in this file");
                return 1;
            }
            editor->setValue(text.empty() ? TagValueClear : std::optional(text), name);
        }
    }
    if (!editor->isEdited()) {
        std::cout << options.identifier << ": nothing to change\n";
        return 0;
    }
    auto task = SaveTagEditorsTask::create(SaveTagEditorsTask::Settings({editor}));
    runTask(task, "Writing", reporter);
    reportTaskErrors(*task, reporter);
    if (reporter.errorCount()) return 1;
    std::cout << options.identifier << " -> " << editor->source().asset()->localIdentifier() << '\n';
    return 0;
}

// The first line a program prints for `arguments`, run without a shell; nothing when it can't run.
std::optional<std::string> firstLineOf(const std::vector<std::string>& arguments) {
    int pipeFds[2];
    if (::pipe2(pipeFds, O_CLOEXEC) != 0) return std::nullopt;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeFds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::vector<char*> argv;
    for (const auto& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    pid_t pid = 0;
    const int spawned = ::posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipeFds[1]);
    std::string output;
    char buffer[4096];
    for (ssize_t n; spawned == 0 && (n = ::read(pipeFds[0], buffer, sizeof buffer)) != 0;) {
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) break;
        output.append(buffer, static_cast<size_t>(n));
    }
    ::close(pipeFds[0]);
    int status = 0;
    if (spawned != 0 || ::waitpid(pid, &status, 0) != pid || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return std::nullopt;
    output = output.substr(0, output.find('\n'));
    if (output.empty()) return std::nullopt;
    return output;
}

std::string_view statusText(AccessAutorizer::AuthorizationStatus status) {
    switch (status) {
    case AccessAutorizer::AuthorizationStatus::authorized:
        return "granted";
    case AccessAutorizer::AuthorizationStatus::denied:
        return "denied";
    case AccessAutorizer::AuthorizationStatus::notDetermined:
        return "not determined";
    }
    return {};
}

// What this installation has and can do; exit code 1 when something it needs is missing.
int doctor(const std::string& root) {
    int exitCode = 0;
    auto line = [](std::string_view what, const std::string& text) {
        std::cout << what << ": " << text << '\n';
    };
    line("corvane", CORVANE_VERSION);
    const auto exiftool = firstLineOf({ETProcess::executableURL().string(), "-ver"});
    line("ExifTool", exiftool ? *exiftool + " (" + ETProcess::executableURL().string() + ")" : "missing");
    if (!exiftool) exitCode = 1;
    const auto atomicParsley = firstLineOf({"AtomicParsley", "--version"});
    line("AtomicParsley", atomicParsley.value_or("missing (needed to remove movie atoms)"));
    const auto exiv2 = imageEngineVersion();
    line("exiv2",
         exiv2 ? *exiv2 + " (in-process image engine)" : "not in this build (no in-process image engine)");

    FolderPhotoLibrary library(root.empty() ? std::nullopt : std::optional<fs::path>(root));
    line("photo library",
         library.root().string() +
             (library.requestAuthorization() ? " (writable)" : " (missing or not writable)"));

    const AccessAutorizer access;
    switch (access.sandbox()) {
    case AccessAutorizer::Sandbox::none:
        line("sandbox", "none");
        break;
    case AccessAutorizer::Sandbox::flatpak:
        line("sandbox", "Flatpak");
        break;
    case AccessAutorizer::Sandbox::snap:
        line("sandbox", "Snap");
        break;
    }
    const auto status = access.fullDiskAccessAuthorizationStatus();
    line("home folder access",
         std::string(statusText(status)) + " (" + access.userHomeFolderURL().string() + ")");
    if (status != AccessAutorizer::AuthorizationStatus::authorized && !access.grantCommand().empty())
        line("to grant it, run", access.grantCommand());
    return exitCode;
}

} // namespace

void addPhotoLibraryCommands(CLI::App& app, int& exitCode) {
    auto options = std::make_shared<LibraryOptions>();
    auto* library = app.add_subcommand(
        "library", "A photo library kept as a folder tree (by default the XDG pictures folder)");
    library->require_subcommand(1);
    auto addRoot = [&](CLI::App* command) {
        command->add_option("--root", options->root,
                            "The library's folder (default: the XDG pictures folder)");
    };

    auto* list =
        library->add_subcommand("list", "List the library's assets (images and movies) by identifier");
    addRoot(list);
    list->callback([options, &exitCode] { exitCode = listAssets(*options); });

    auto* add = library->add_subcommand(
        "add", "Copy files into the library under YYYY/MM/ of their date, never overwriting a file");
    addRoot(add);
    add->add_option("paths", options->paths, "Images and movies to add")->required();
    add->callback([options, &exitCode] { exitCode = addFiles(*options); });

    auto* set = library->add_subcommand(
        "set", "Edit an asset: the edited copy is added as a new asset, then the old one goes to the Trash");
    addRoot(set);
    set->add_option("identifier", options->identifier, "The asset's path relative to the library's folder")
        ->required();
    set->add_option("assignments", options->assignments, "FAMILY:TAG=VALUE (an empty value clears the tag)")
        ->required();
    set->callback([options, &exitCode] { exitCode = editAsset(*options); });

    auto* check = app.add_subcommand(
        "doctor", "Show the versions of the tools Corvane uses, the photo library and the sandbox's access");
    check->add_option("--root", options->root, "The photo library's folder");
    check->callback([options, &exitCode] { exitCode = doctor(options->root); });
}

} // namespace corvane::cli
