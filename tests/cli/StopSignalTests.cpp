// `corvane set` stopped while ExifTool writes: by SIGINT or SIGTERM it stops ExifTool so that
// ExifTool cleans up, removes its own files and exits 130; killed outright, its ExifTool still stops
// and cleans up. The program's ExifTool processes are told apart by their environment (EXIFTOOL_HOME,
// the folder of ExifTool's configuration file), which they inherit however they were started.
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
    // ExifTool then pauses before each write, as it does on a large file, so that a stop lands
    // while it works: its configuration file (Perl) wraps the reading of the import file.
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
        if (slowWrites)
            std::ofstream(tools / ".ExifTool_config")
                << "require Image::ExifTool::Import; { no warnings 'redefine';\n"
                   "my $read = \\&Image::ExifTool::Import::ReadJSON;\n"
                   "*Image::ExifTool::Import::ReadJSON = sub ($$;$$) { sleep 30; goto &$read }; } 1;\n";
        const pid_t pid = ::fork();
        if (pid == 0) {
            ::setenv("TMPDIR", temporary.path().c_str(), 1);
            ::setenv("EXIFTOOL_HOME", tools.path().c_str(), 1);
            std::vector<char*> argv;
            for (auto& argument : arguments)
                argv.push_back(const_cast<char*>(argument.c_str()));
            argv.push_back(nullptr);
            const int out = ::open((tools / "out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            const int null = ::open("/dev/null", O_WRONLY);
            ::dup2(out, 1);
            ::dup2(null, 2);
            ::execv(argv[0], argv.data());
            ::_exit(127);
        }
        return pid;
    }

    // Whether ExifTool's write has begun: the import file is made in the temporary folder just
    // before ExifTool writes.
    bool waitForWrite(pid_t pid) const {
        const auto deadline = Clock::now() + std::chrono::seconds(60);
        while (Clock::now() < deadline) {
            for (const auto& entry : fs::directory_iterator(temporary.path()))
                if (entry.path().extension() == ".json") return true;
            if (::waitpid(pid, nullptr, WNOHANG) == pid) return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return false;
    }

    // ExifTool processes started for this batch.
    bool exifToolRuns() const {
        // One variable of the environment, whose entries each end with a null character.
        const std::string mark = std::string(1, '\0') + "EXIFTOOL_HOME=" + tools.path().string() + '\0';
        for (const auto& entry : fs::directory_iterator("/proc"))
            if (('\0' + corvane::test::fileBytes(entry.path() / "environ")).find(mark) != std::string::npos &&
                !zombie(entry.path()))
                return true;
        return false;
    }

    static bool zombie(const fs::path& process) {
        const std::string text = corvane::test::fileBytes(process / "stat");
        const auto close = text.rfind(')');
        return close != std::string::npos && text.compare(close + 2, 1, "Z") == 0;
    }

    std::string output() const { return corvane::test::fileBytes(tools / "out"); }

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

    std::vector<std::string> leftovers() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(photos.path()))
            if (entry.path().string().find("_exiftool_tmp") != std::string::npos)
                names.push_back(entry.path().filename().string());
        return names;
    }
};

class StopSignals : public ::testing::TestWithParam<int> {};

TEST_P(StopSignals, StopTheWriteCleanlyAndExit130) {
    Batch batch;
    const pid_t pid = batch.start();
    ASSERT_GT(pid, 0);
    if (!batch.waitForWrite(pid))
        GTEST_SKIP() << "the write ended before it could be stopped: " << batch.output();
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    ::kill(pid, GetParam());
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

INSTANTIATE_TEST_SUITE_P(SIGINTAndSIGTERM, StopSignals, ::testing::Values(SIGINT, SIGTERM));

TEST(StopSignal, AKilledProgramLeavesNoExifToolBehind) {
    Batch batch;
    batch.slowWrites = true;
    const pid_t pid = batch.start();
    ASSERT_GT(pid, 0);
    if (!batch.waitForWrite(pid))
        GTEST_SKIP() << "the write ended before it could be stopped: " << batch.output();
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    ASSERT_TRUE(batch.exifToolRuns()) << "the batch's ExifTool is found while it works";
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
    const auto deadline = Clock::now() + std::chrono::seconds(10);
    while (batch.exifToolRuns() && Clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(batch.exifToolRuns()) << "ExifTool stops with its parent";
    EXPECT_TRUE(batch.leftovers().empty()) << batch.leftovers().front();
}

} // namespace
