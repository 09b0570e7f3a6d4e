// What every command shares: exit codes, help, the completion script, the manual page and the
// ExifTool processes it starts.
#include "cli/CliRun.hpp"
#include "corvane/exiftool_wrapper/detail/ProgramRun.hpp"
#include "support/SampleFiles.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace corvane::test;

using Program = CliTest;

TEST_F(Program, exitCodesAndHelp) {
    // CLI11's parse errors are usage errors: 2, whatever CLI11 would return.
    const std::vector<std::vector<std::string>> usageErrors{
        {"read"},          {"read", "--no-such-option", "x.jpg"},
        {"nosuchcommand"}, {"--engine", "other", "read", "x.jpg"},
        {"read", "-t"},    {"help", "nosuchcommand"}};
    for (const auto& arguments : usageErrors)
        EXPECT_THAT(cliExits(2, arguments).err, StartsWith("corvane: "));
    // Help, of the program or a command, in any form, succeeds.
    const auto help = cliOK({"help", "read"}).out;
    EXPECT_THAT(help, HasSubstr("--raw"));
    EXPECT_EQ(cliOK({"read", "--help"}).out, help);
    cliOK({"--help"});
    EXPECT_THAT(cliOK({"help", "preset", "make"}).out, HasSubstr("--detail"));
    cliOK({"--version"});
}

// The program is started by a launcher that loads it from beside itself or from the installed
// library folder: a launcher found alone says what it couldn't load, and fails.
TEST_F(Program, aLauncherWithoutItsProgramSaysWhatItCouldNotLoad) {
    const auto alone = folder / "corvane";
    fs::copy_file(CORVANE_CLI_PATH, alone);
    const auto run = corvane::detail::runProgram({alone.string(), "--version"}, std::chrono::seconds(30));
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.standardError, StartsWith("corvane: can't load the program: "));
    EXPECT_THAT(run.standardError, HasSubstr("corvane-program.so"));
    EXPECT_TRUE(run.standardOutput.empty());
}

// A text input that can't be read is named with the line at fault, and no parser's internal text
// reaches the person.
TEST_F(Program, inputErrorsNameTheFileAndLine) {
    const auto jpeg = makeJPEG(folder / "a.jpg");
    const auto csv = folder / "values.csv";
    writeText(csv, "SourceFile,EXIF:Artist\nx,\"y\"c\n");
    const auto json = folder / "library.json";
    writeText(json, "{\n \"a\": [1,\n");
    const auto odd = folder / "odd.json";
    writeText(odd, "[{\"SourceFile\": 3}]");
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{"sidecar", "import", csv.string(), jpeg.string()},
         csv.string() + ":2: not a sidecar: misplaced quotation mark"},
        {{"sidecar", "import", json.string(), jpeg.string()},
         json.string() + ":3: not a sidecar: JSON syntax error"},
        {{"preset", "list", json.string()}, json.string() + ":3: not a preset library: JSON syntax error"},
        {{"preset", "list", odd.string()}, odd.string() + ": not a preset library: unexpected content"},
    };
    const std::string before = fileBytes(jpeg);
    for (const auto& [arguments, message] : cases) {
        auto run = cli(arguments);
        EXPECT_NE(run.exitCode, 0) << message;
        EXPECT_THAT(run.err, StartsWith("corvane: " + message));
        EXPECT_THAT(run.err, Not(HasSubstr("json.exception")));
    }
    EXPECT_EQ(fileBytes(jpeg), before);
}

// The completion script knows every command and option of the program, and completes in bash.
TEST_F(Program, completionScripts) {
    auto bash = cliOK({"completion", "bash"});
    for (const char* word : {"read", "set", "--dry-run", "--preserve-mtime", "--raw", "completion", "preset"})
        EXPECT_THAT(bash.out, HasSubstr(word));
    const auto script = folder / "corvane.bash";
    writeText(script, bash.out);

    // Completes in a real bash as a person types: a command, an option of it, a subcommand, and
    // nothing after an option that takes a value.
    auto complete = [&](const std::string& line) {
        writeText(folder / "probe.sh", "source " + quoted(script.string()) + "\nCOMP_WORDS=(" + line +
                                           ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_corvane\n"
                                           "printf '%s\\n' \"${COMPREPLY[@]}\"\n");
        const auto run =
            corvane::detail::runProgram({"bash", (folder / "probe.sh").string()}, std::chrono::seconds(30));
        return run.standardOutput + run.standardError;
    };
    EXPECT_EQ(complete("corvane re"), "read\n");
    EXPECT_NE(complete("corvane --engine exiftool set --dry").find("--dry-run"), std::string::npos);
    EXPECT_NE(complete("corvane preset ''").find("make"), std::string::npos);
    EXPECT_EQ(complete("corvane read -t ''"), "\n");

    auto zsh = cliOK({"completion", "zsh"});
    EXPECT_THAT(zsh.out, StartsWith("#compdef corvane\n"));
    cliExits(2, {"completion", "fish"});
}

TEST_F(Program, manualPageCoversEveryCommand) {
    auto man = cliOK({"manpage"});
    EXPECT_THAT(man.out, StartsWith(".TH CORVANE 1"));
    for (const char* section :
         {".SS \"read\"", ".SS \"set\"", ".SS \"preset make\"", "\\-\\-dry\\-run", ".SH EXIT STATUS"})
        EXPECT_THAT(man.out, HasSubstr(section));
}

// How many ExifTool programs a command starts: `corvane set` reads and writes through one process,
// which ends with the command.
// Puts first in PATH an "exiftool" that notes each start of ExifTool, then runs the real one.
class ExifToolStarts : public CliTest {
protected:
    TemporaryFolder tools{"corvane-cli-tools"};
    ScopedEnvironment path{"PATH", tools.path().string() + ":" +
                                       (std::getenv("PATH") ? std::getenv("PATH") : "/usr/bin:/bin")};

    void SetUp() override {
        writeText(tools / "exiftool", "#!/bin/sh\necho \"$$\" >> '" + (tools / "starts").string() +
                                          "'\nexec /usr/bin/exiftool \"$@\"\n");
        fs::permissions(tools / "exiftool", fs::perms::owner_all);
    }

    // The ExifTool processes started so far, by id; none may outlive its command. The command kills
    // them as it ends, and the system frees a killed process's memory in a few milliseconds: each
    // must be gone (or a zombie, whose command line is empty) within a second.
    std::vector<std::string> starts() const {
        std::ifstream in(tools / "starts");
        std::vector<std::string> ids;
        for (std::string line; std::getline(in, line);) {
            ids.push_back(line);
            const fs::path commandLine = "/proc/" + line + "/cmdline";
            const auto running = [&] { return fs::exists(commandLine) && !fileBytes(commandLine).empty(); };
            for (int i = 0; i < 100 && running(); ++i)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            EXPECT_FALSE(running()) << "ExifTool " << line << " outlived its command";
        }
        return ids;
    }
};

TEST_F(ExifToolStarts, SetReadsAndWritesThroughOneExifToolThatEndsWithTheCommand) {
    const auto photo = makeJPEG(folder / "photo.jpg");
    cliOK({"set", "EXIF:Artist=Once", "--", photo.string()});
    EXPECT_EQ(exifToolValue(photo, "EXIF:Artist"), "Once");
    EXPECT_EQ(starts().size(), 1u);
}

TEST_F(ExifToolStarts, ReadStartsTheProcessesItsBatchIsSplitAcrossAndNoMore) {
    // One process for a file; for a batch large enough to be split, one per share (two here, or
    // one on a single processor).
    const auto photo = makeJPEG(folder / "photo.jpg");
    cliOK({"read", "--json", photo.string()});
    EXPECT_EQ(starts().size(), 1u);
    std::vector<std::string> arguments = {"read", "--json"};
    for (int i = 0; i < 40; ++i)
        arguments.push_back(makeJPEG(folder / ("batch" + std::to_string(i) + ".jpg")).string());
    cliOK(arguments);
    EXPECT_EQ(starts().size(), 1u + std::min(2u, std::max(1u, std::thread::hardware_concurrency())));
}

} // namespace
