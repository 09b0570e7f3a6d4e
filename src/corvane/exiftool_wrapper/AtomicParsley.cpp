#include "corvane/exiftool_wrapper/AtomicParsley.hpp"

#include "corvane/exiftool_wrapper/detail/ProgramRun.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/WhiteSpace.hpp"
#include "corvane/tag_storages/detail/FileReplacement.hpp"

#include <cstring>
#include <mutex>

namespace corvane {

namespace fs = std::filesystem;

namespace {

// The atom's path as AtomicParsley's --manualAtomRemove names a reverse-DNS tag.
constexpr const char* movieAtomPath = "moov.udta.meta.ilst.----.name:[iTunMOVI]";

std::mutex settingsMutex;
fs::path executable = "AtomicParsley";
std::chrono::milliseconds limit{120000};

// The program's message, or what went wrong with the run itself.
std::string failureReason(const detail::ProgramRun& run) {
    if (run.launchError == ENOENT) return "AtomicParsley not found";
    if (run.launchError)
        return std::string("AtomicParsley could not start: ") + std::strerror(run.launchError);
    if (run.timedOut) return "AtomicParsley did not end in time";
    // AtomicParsley reports its errors on standard output as often as on standard error.
    for (const auto* text : {&run.standardError, &run.standardOutput}) {
        const auto reason = trimAsciiWhiteSpace(*text);
        if (!reason.empty()) return std::string(reason.substr(0, reason.find('\n')));
    }
    return "AtomicParsley failed";
}

detail::ProgramRun run(const fs::path& url, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {AtomicParsley::executableURL().string(), url.string()});
    auto result = detail::runProgram(arguments, AtomicParsley::timeLimit());
    if (!result.succeeded()) throw AtomicParsley::RunException(url, failureReason(result));
    return result;
}

} // namespace

AtomicParsley::RunException::RunException(fs::path url, const std::string& reason)
    : Error(url.string() + ": " + reason), url_(std::move(url)) {}

bool AtomicParsley::hasiTunMOVI(const fs::path& url) {
    // "-t" lists the metadata atoms, a reverse-DNS one as: Atom "----" [com.apple.iTunes;iTunMOVI]
    const auto listing = run(url, {"-t"}).standardOutput;
    return listing.find(";iTunMOVI]") != std::string::npos || listing.find("[iTunMOVI]") != std::string::npos;
}

bool AtomicParsley::deleteiTunMOVI(const fs::path& url) {
    if (!hasiTunMOVI(url)) return false;
    // The result goes to a private temporary file, whose content then replaces the movie.
    const fs::path output = temporaryURL(pathExtension(url));
    struct Removal {
        fs::path path;
        ~Removal() {
            std::error_code error;
            fs::remove(path, error);
        }
    } removal{output};
    run(url, {"--manualAtomRemove", movieAtomPath, "--output", output.string()});
    detail::replaceFileKeepingAttributes(url, url, readFileBytes(output));
    return true;
}

fs::path AtomicParsley::executableURL() {
    std::lock_guard lock(settingsMutex);
    return executable;
}

void AtomicParsley::setExecutableURL(const fs::path& url) {
    std::lock_guard lock(settingsMutex);
    executable = url;
}

std::chrono::milliseconds AtomicParsley::timeLimit() {
    std::lock_guard lock(settingsMutex);
    return limit;
}

void AtomicParsley::setTimeLimit(std::chrono::milliseconds value) {
    std::lock_guard lock(settingsMutex);
    limit = value;
}

} // namespace corvane
