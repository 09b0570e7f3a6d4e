#include "corvane/utilities/KitDebugger.hpp"

#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

using namespace corvane;

namespace {

std::vector<std::string> lines(const std::filesystem::path& p) {
    std::ifstream in(p);
    std::vector<std::string> result;
    for (std::string line; std::getline(in, line);)
        result.push_back(line);
    return result;
}

TEST(KitDebuggerTest, LogsOnlyWhenEnabledOneLinePerEntryAfterItsHeader) {
    test::TemporaryFolder folder;
    KitDebugger debugger;
    bool evaluated = false;
    debugger.log([&] {
        evaluated = true;
        return std::string("never");
    });
    EXPECT_FALSE(evaluated);
    EXPECT_FALSE(debugger.isLogEnabled());

    const auto file = folder / "logs" / "debug.log";
    ASSERT_TRUE(debugger.enableLog(file));
    EXPECT_EQ(debugger.logFileURL(), file);
    debugger.log("first entry");
    debugger.log([] { return std::string("second entry"); });
    debugger.logExifTool(KitDebugger::Traffic::arguments, "-json\n-G1\n");
    debugger.logExifTool(KitDebugger::Traffic::output, "{ }");
    debugger.disableLog();
    debugger.log("after");

    auto all = lines(file);
    auto dashes = std::find(all.begin(), all.end(), std::string(40, '-'));
    ASSERT_NE(dashes, all.end());
    std::vector<std::string> body(dashes + 2, all.end()); // after the dashes and the empty line
    EXPECT_EQ(body, (std::vector<std::string>{"first entry", "second entry", "EXIFTOOL ARGS -json",
                                              "EXIFTOOL ARGS -G1", "EXIFTOOL OUT { }"}));
    KitDebugger described;
    described.setApplicationInfo(
        {{"CFBundleName", "Viewer"}, {"CFBundleShortVersionString", "2.1"}, {"Other", "x"}});
    const std::string header = described.buildDebugHeader();
    EXPECT_EQ(header.rfind("Date: ", 0), 0u);
    EXPECT_NE(
        header.find(
            "\nInformation about the application:\nCFBundleName: Viewer\nCFBundleShortVersionString: 2.1\n"),
        std::string::npos)
        << header;
    EXPECT_EQ(header.find("Other"), std::string::npos);
    EXPECT_NE(header.find("CFBundleName: Corvane\n"), std::string::npos);
    const std::string end = "\n" + std::string(40, '-') + "\n\n";
    ASSERT_GE(header.size(), end.size());
    EXPECT_EQ(header.substr(header.size() - end.size()), end);
}

TEST(KitDebuggerTest, ConcurrentEntriesStayWhole) {
    test::TemporaryFolder folder;
    KitDebugger debugger;
    ASSERT_TRUE(debugger.enableLog(folder / "d.log"));
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < 100; ++i)
                debugger.log("thread " + std::to_string(t) + " entry " + std::to_string(i));
        });
    for (auto& t : threads)
        t.join();
    debugger.disableLog();
    int entries = 0;
    for (const auto& line : lines(folder / "d.log"))
        if (line.rfind("thread ", 0) == 0) {
            ++entries;
            EXPECT_NE(line.find(" entry "), std::string::npos);
        }
    EXPECT_EQ(entries, 400);
}

} // namespace
