// `corvane photos-script remote` and `corvane photos-script import`: the scripts that set a
// profile's values on the images selected in the Photos application, or import files into it.
// They are printed, or run through the script host with --run.
#include "Commands.hpp"

#include "corvane/photos_scripting/PhotosAppExporter.hpp"
#include "corvane/photos_scripting/PhotosAppRemote.hpp"
#include "corvane/photos_scripting/PhotosRemoteProfileFile.hpp"

#include <filesystem>
#include <iostream>
#include <memory>

namespace corvane::cli {

namespace {

namespace fs = std::filesystem;

struct ScriptOptions {
    std::string profilesFile;
    std::string profileName;
    std::vector<std::string> paths;
    int delay = 0;
    bool run = false;
    std::string host;
};

// Prints the script, or runs it; a script that fails gives its error and exit code 1.
template <class Script> int printOrRun(const Script& script, const ScriptOptions& options) {
    if (!options.run) {
        std::cout << script.generateScript() << std::flush;
        return 0;
    }
    if (!options.host.empty()) PhotosScriptRunner::setShared(PhotosScriptRunner(options.host));
    if (!PhotosScriptRunner::shared()) {
        std::cerr << "corvane: no script host on this system (" << PhotosScriptRunner::defaultExecutable
                  << "): the script can't be run; without --run it is printed\n";
        return 1;
    }
    if (const auto error = script.perform()) {
        const auto number = error->find(std::string(PhotosScriptRunner::errorNumberKey));
        std::cerr << "corvane: Photos: " << error->at(std::string(PhotosScriptRunner::errorMessageKey))
                  << (number != error->end() ? " (" + number->second + ")" : std::string()) << '\n';
        return 1;
    }
    return 0;
}

int runRemote(const ScriptOptions& options) {
    std::vector<PhotosRemoteProfileRef> profiles;
    try {
        profiles = PhotosRemoteProfileFile::fromJSONURL(options.profilesFile).profiles();
    } catch (const std::exception& e) {
        std::string message = e.what();
        if (message.rfind(options.profilesFile + ": ", 0) != 0)
            message = options.profilesFile + ": " + message;
        std::cerr << "corvane: " << message << '\n';
        return 1;
    }
    PhotosRemoteProfileRef chosen;
    for (const auto& profile : profiles)
        if (options.profileName.empty() ? profiles.size() == 1 : profile->name() == options.profileName)
            chosen = profile;
    if (!chosen) {
        std::cerr << "corvane: " << options.profilesFile << ": ";
        if (!options.profileName.empty())
            std::cerr << "no profile named \"" << options.profileName << "\"";
        else if (profiles.empty())
            std::cerr << "no profile";
        else
            std::cerr << profiles.size() << " profiles: choose one with --profile";
        std::cerr << '\n';
        return profiles.size() > 1 && options.profileName.empty() ? 2 : 1;
    }
    return printOrRun(PhotosAppRemote(options.delay, chosen), options);
}

int runImport(const ScriptOptions& options) {
    // The application needs full paths of files that are there.
    std::vector<fs::path> urls;
    int status = 0;
    for (const auto& path : options.paths) {
        std::error_code error;
        if (!fs::is_regular_file(path, error)) {
            std::cerr << "corvane: " << path << ": not a file\n";
            status = 1;
            continue;
        }
        urls.push_back(fs::absolute(path).lexically_normal());
    }
    if (status != 0) return status;
    return printOrRun(PhotosAppExporter(options.delay, std::move(urls)), options);
}

} // namespace

void addPhotosScriptCommands(CLI::App& app, int& exitCode) {
    auto options = std::make_shared<ScriptOptions>();
    auto* group = app.add_subcommand("photos-script", "Scripts that drive the Photos application");
    group->require_subcommand(1);
    const auto common = [options](CLI::App* command) {
        command->add_option("--delay", options->delay, "Seconds the script waits before it acts")
            ->check(CLI::NonNegativeNumber);
        command->add_flag("--run", options->run,
                          "Run the script through the script host instead of printing it");
        command->add_option("--host", options->host, "The script host program to run it with")
            ->needs("--run");
    };

    auto* remote = group->add_subcommand(
        "remote", "The script that sets a profile's values on the images selected in Photos");
    remote->add_option("PROFILES", options->profilesFile, "A Photos profile library (.json)")->required();
    remote->add_option("--profile", options->profileName,
                       "The profile, when the library holds more than one");
    common(remote);
    remote->callback([options, &exitCode] { exitCode = runRemote(*options); });

    auto* import = group->add_subcommand("import", "The script that imports files into Photos");
    import->add_option("PATH", options->paths, "Files to import")->required();
    common(import);
    import->callback([options, &exitCode] { exitCode = runImport(*options);
});
} // namespace corvane::cli

} // namespace corvane::cli
