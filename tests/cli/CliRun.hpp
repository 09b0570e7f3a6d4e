// Runs the built `corvane` program for the command-line tests.
#pragma once

#include "support/FileBytes.hpp"
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <vector>

#ifndef CORVANE_CLI_PATH
#error "CORVANE_CLI_PATH must name the built corvane program"
#endif

namespace corvane::test {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

struct Run {
    int exitCode = -1;
    std::string out;
    std::string err;
};

// The text quoted for the shell that popen runs.
inline std::string quoted(const std::string& text) {
    std::string result = "'";
    for (char c : text)
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

inline void writeText(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

// An environment variable set for the program runs of one scope, and restored after it.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const std::string& value) : name_(name) {
        if (const char* previous = std::getenv(name)) saved_ = previous;
        ::setenv(name, value.c_str(), 1);
    }
    ~ScopedEnvironment() { saved_ ? ::setenv(name_, saved_->c_str(), 1) : ::unsetenv(name_); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    const char* name_;
    std::optional<std::string> saved_;
};

// A test of the program: `folder` for the files it works on, `scratch` for its standard error.
class CliTest : public ::testing::Test {
protected:
    TemporaryFolder scratch{"corvane-cli-scratch"};
    TemporaryFolder folder{"corvane-cli"};

    // Runs the program with these arguments, in `workingDirectory` when given; standard error goes to
    // a file of the scratch folder.
    test::Run cli(const std::vector<std::string>& arguments, const fs::path& workingDirectory = {}) const {
        std::string command = quoted(CORVANE_CLI_PATH);
        if (!workingDirectory.empty()) command = "cd " + quoted(workingDirectory.string()) + " && " + command;
        for (const auto& argument : arguments)
            command += " " + quoted(argument);
        const fs::path errFile = scratch / "stderr.txt";
        command += " 2>" + quoted(errFile.string());
        test::Run run;
        FILE* pipe = popen(command.c_str(), "r");
        if (!pipe) return run;
        char buffer[4096];
        std::size_t n;
        while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0)
            run.out.append(buffer, n);
        const int status = pclose(pipe);
        run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        run.err = fileBytes(errFile);
        return run;
    }
    // Runs the program and expects this exit code, showing the arguments and standard error if not.
    test::Run cliExits(int exitCode, const std::vector<std::string>& arguments) const {
        test::Run run = cli(arguments);
        std::string line;
        for (const auto& argument : arguments)
            line += " " + argument.substr(0, 200);
        EXPECT_EQ(run.exitCode, exitCode) << "corvane" << line << "\n" << run.err;
        return run;
    }
    test::Run cliOK(const std::vector<std::string>& arguments) const { return cliExits(0, arguments); }
};

} // namespace corvane::test
