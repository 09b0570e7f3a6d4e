// `corvane set` stopped while ExifTool writes: by SIGTERM it stops ExifTool so that ExifTool cleans
// up, removes its own files and exits 130; killed outright, its ExifTool still stops and cleans up.
#include "cli/CliRun.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <regex>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using corvane::test::TemporaryFolder;

struct Batch {
    TemporaryFolder photos{"corvane-stop"};
    TemporaryFolder temporary{"corvane-stop-tmp"};
    TemporaryFolder tools{"corvane-stop-tools"};
    std::vector<std::string> paths;
    // Put first in the program's PATH: ExifTool that pauses before a write, as it does on a large
    // file, so that a stop lands while it works.
    bool slowWrites = false;

    Batch() {
        const fs::path first = corvane::test::makeJPEG(photos / "photo-0.jpg");
        paths.push_back(first.string());
        for (int i = 1; i < 400; ++i) {
            const fs::path path = photos / ("photo-" + std::to_string(i) + ".jpg");
            fs::copy_file(first, path);
            paths.push_back(path.string());
        }
    }

    // Starts `corvane set` on every photo, with its temporary files in `temporary`.
    pid_t start() const {
        std::vector<std::string> arguments{CORVANE_CLI_PATH, "set", "XMP:Title=stopped", "--"};
        arguments.insert(arguments.end(), paths.begin(), paths.end());
        if (slowWrites) {
            const fs::path script = tools / "exiftool";
            std::ofstream(script) << "#!/bin/sh\n"
                                     "grep -q '^-json=' \"$2\" 2>/dev/null &&\n"
                                     "  exec perl -e 'sleep 30; exec @ARGV' /usr/bin/exiftool \"$@\"\n"
                                     "exec /usr/bin/exiftool \"$@\"\n";
            fs::permissions(script, fs::perms::owner_all);
        }
        const std::string path =
            tools.path().string() + ":" + (std::getenv("PATH") ? std::getenv("PATH") : "");
        const pid_t pid = ::fork();
        if (pid == 0) {
            ::setenv("TMPDIR", temporary.path().c_str(), 1);
            ::setenv("PATH", path.c_str(), 1);
            std::vector<char*> argv;
            for (auto& argument : arguments)
                argv.push_back(const_cast<char*>(argument.c_str()));
            argv.push_back(nullptr);
            const int out = ::open(
                (temporary.path().parent_path() / (temporary.path().filename().string() + ".out")).c_str(),
                O_WRONLY | O_CREAT | O_TRUNC, 0600);
            const int null = ::open("/dev/null", O_WRONLY);
            ::dup2(out, 1);
            ::dup2(null, 2);
            ::execv(argv[0], argv.data());
            ::_exit(127);
        }
        return pid;
    }

    // Whether a file with this extension is in the temporary folder: the import file is made just
    // before ExifTool writes.
    bool hasTemporary(const std::string& extension) const {
        for (const auto& entry : fs::directory_iterator(temporary.path()))
            if (entry.path().extension() == extension) return true;
        return false;
    }

    bool waitForWrite(pid_t pid) const {
        const auto deadline = Clock::now() + std::chrono::seconds(60);
        while (Clock::now() < deadline) {
            if (hasTemporary(".json")) return true;
            if (::waitpid(pid, nullptr, WNOHANG) == pid) return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return false;
    }

    // ExifTool processes that still read an argument file of this batch.
    bool exifToolRuns() const {
        for (const auto& entry : fs::directory_iterator("/proc")) {
            std::ifstream in(entry.path() / "cmdline", std::ios::binary);
            const std::string line{std::istreambuf_iterator<char>(in), {}};
            if (line.find(temporary.path().string()) != std::string::npos) return true;
        }
        return false;
    }

    std::string output() const {
        std::ifstream in(temporary.path().parent_path() / (temporary.path().filename().string() + ".out"));
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    // The photos whose title the run wrote.
    int titledCount() const {
        std::vector<std::string> arguments{"-s3", "-XMP:Title"};
        arguments.insert(arguments.end(), paths.begin(), paths.end());
        const std::string out = corvane::test::runExifTool(arguments).standardOutput;
        int count = 0;
        for (std::size_t at = out.find("stopped"); at != std::string::npos; at = out.find("stopped", at + 1))
            ++count;
        return count;
    }

    ~Batch() {
        std::error_code error;
        fs::remove(temporary.path().parent_path() / (temporary.path().filename().string() + ".out"), error);
    }

    std::vector<std::string> leftovers() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(photos.path()))
            if (entry.path().string().find("_exiftool_tmp") != std::string::npos)
                names.push_back(entry.path().filename().string());
        return names;
    }
};

TEST(StopSignals, SIGTERMStopsTheWriteCleanlyAndExits130) {
    Batch batch;
    const pid_t pid = batch.start();
    ASSERT_GT(pid, 0);
    if (!batch.waitForWrite(pid)) GTEST_SKIP() << "the write ended before it could be stopped";
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    ::kill(pid, SIGTERM);
    int status = 0;
    ASSERT_EQ(::waitpid(pid, &status, 0), pid);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 130);
    EXPECT_FALSE(batch.exifToolRuns());
    EXPECT_TRUE(batch.leftovers().empty()) << batch.leftovers().front();
    EXPECT_TRUE(fs::is_empty(batch.temporary.path())) << "argument, import and report files are removed";

    // The summary counts what was really written: the file under way at the stop may go either way.
    std::smatch counts;
    const std::string summary = batch.output();
    ASSERT_TRUE(std::regex_search(
        summary, counts,
        std::regex(R"((\d+) files? updated, 0 unchanged(, (\d+) failed)?(, (\d+) not known)?)")))
        << summary;
    const int updated = std::stoi(counts[1]);
    const int failed = counts[3].matched ? std::stoi(counts[3]) : 0;
    const int unknown = counts[5].matched ? std::stoi(counts[5]) : 0;
    EXPECT_EQ(updated + failed + unknown, 400) << summary;
    const int titled = batch.titledCount();
    EXPECT_GE(titled, updated) << summary;
    EXPECT_LE(titled, updated + unknown) << summary;
}

TEST(StopSignals, AKilledProgramLeavesNoExifToolBehind) {
    Batch batch;
    batch.slowWrites = true;
    const pid_t pid = batch.start();
    ASSERT_GT(pid, 0);
    if (!batch.waitForWrite(pid)) GTEST_SKIP() << "the write ended before it could be stopped";
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
    const auto deadline = Clock::now() + std::chrono::seconds(10);
    while (batch.exifToolRuns() && Clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(batch.exifToolRuns()) << "ExifTool stops with its parent";
    EXPECT_TRUE(batch.leftovers().empty()) << batch.leftovers().front();
}

} // namespace
