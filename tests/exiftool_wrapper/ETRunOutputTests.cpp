// The argument file and the parsers of ExifTool's output, on canned text cut the way pipes cut it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvane/exiftool_wrapper/detail/ETArgumentFile.hpp"
#include "corvane/exiftool_wrapper/detail/ETBatchSplit.hpp"
#include "corvane/exiftool_wrapper/detail/ETRunOutput.hpp"

using namespace corvane;
using namespace corvane::detail;
using ::testing::ElementsAre;

namespace {

ETRunState runOf(std::vector<std::vector<std::string>> targets) {
    ETRunState run;
    run.setToken("t0k");
    for (auto& t : targets) {
        ETCommand command;
        command.targets = std::move(t);
        run.progress.push_back(
            {0, static_cast<double>(std::max<std::size_t>(command.targets.size(), 1)), false});
        run.commands.push_back(std::move(command));
    }
    return run;
}

// Each message as "path: text" ("minor" marked), for comparing a list whole.
std::vector<std::string> described(const std::vector<ETFileMessage>& messages) {
    std::vector<std::string> texts;
    for (const auto& m : messages)
        texts.push_back(m.path.value_or("").string() + ": " + (m.minor ? "[minor] " : "") + m.text);
    return texts;
}

} // namespace

TEST(ETArgumentFile, EncodesEachArgumentSoThatExifToolReadsItBackAndKeepsTheirOrder) {
    EXPECT_EQ(argumentEncoding("-EXIF:Artist=Ann"), ArgumentEncoding::plainLine);
    // ExifTool would trim these as plain lines, or take them for comments.
    for (const char* arg : {" lead.jpg", "-Artist= Ann", "-Artist = Ann", "#hash.jpg", "two\nlines", ""})
        EXPECT_EQ(argumentEncoding(arg), ArgumentEncoding::cStringLine) << arg;
    // "$" and "@" would come back escaped from a C-string line.
    EXPECT_EQ(argumentEncoding("-Comment= $HOME\n@"), ArgumentEncoding::argumentVector);
    EXPECT_EQ(cStringLine("a\\b\"c\nd\te"), "#[CSTR]a\\\\b\\\"c\\nd\\te");

    EXPECT_EQ(targetText("-x.jpg"), "./-x.jpg");
    EXPECT_EQ(targetText("\xE2\x88\x92x.jpg"), "./\xE2\x88\x92x.jpg");
    EXPECT_EQ(targetText("/abs/-x.jpg"), "/abs/-x.jpg");

    ETArgumentFile file;
    for (const char* arg : {"-password", "secret", "-Comment= $x\n@", " b.jpg"})
        file.add(arg);
    ASSERT_EQ(file.parts().size(), 3u);
    EXPECT_EQ(file.parts()[0].text, "-password\nsecret\n");
    EXPECT_TRUE(file.parts()[1].inVector);
    EXPECT_EQ(file.parts()[2].text, "#[CSTR] b.jpg\n");
    EXPECT_FALSE(file.fitsInLines());
    EXPECT_THAT(file.logged(), ElementsAre("-password", "********", "-Comment= $x\n@", " b.jpg"));
}

TEST(ETRunOutput, ProgressReportsCutAcrossReadsStillCountAndOutputIsSplitByteForByte) {
    auto run = runOf({{"a.jpg", "b.jpg"}, {"c.jpg"}});
    // A window-title report cut inside its escape sequence, then inside its counts.
    run.err.append("\x1b]");
    run.err.append("0;1/2\x07\x1b]0;2/");
    EXPECT_TRUE(run.scan(run.err));
    EXPECT_DOUBLE_EQ(run.progress[0].done, 0);
    run.err.append("2\x07");
    run.scan(run.err);
    EXPECT_DOUBLE_EQ(run.progress[0].done, 1);
    EXPECT_EQ(run.err.text, "");

    // A line report cut in the middle of its counts, for a file whose name holds " - ".
    run.out.append("{ready-t0k-0}\n======== x - y.jpg [1");
    run.scan(run.out);
    EXPECT_TRUE(run.progress[0].finished);
    EXPECT_DOUBLE_EQ(run.progress[1].done, 0);
    run.out.append("/1]\n");
    run.scan(run.out);
    std::vector<std::string> started;
    const auto chunks = splitAtMarkers(run.out.text, run, true, &started);
    EXPECT_THAT(started, ElementsAre("x - y.jpg"));
    EXPECT_THAT(chunks, ElementsAre("", ""));
    // An escape that starts no title is text.
    run.err.append("\x1bX");
    run.err.flush();
    EXPECT_EQ(run.err.text, "\x1bX");
    run = runOf({{"a.jpg"}, {"b.bin"}});
    const std::string binary("\x00\xff\r\n\x1b]0;1/1\x07\n\xfe", 12);
    const std::string text = "[{\"A\":1}]\n{ready-t0k-0}\n" + binary;
    const auto split = splitAtMarkers(text, run, true);
    EXPECT_THAT(split, ElementsAre("[{\"A\":1}]\n", binary));
    EXPECT_EQ(joinOutputs({"[{\"A\":1}]\n", "", " [ {\"B\":2} ]\n"}), "[{\"A\":1},\n{\"B\":2}]\n");
    EXPECT_EQ(joinOutputs({"plain\n", "[1]"}), "plain\n[1]");
}

TEST(ETRunOutput, ErrorStreamReportsFindTheirFileEvenWithDashesAndLineBreaks) {
    ETCommand command;
    command.targets = {"a - b.jpg", "two\nlines.jpg", "dir"};
    command.folderTargets = {"dir"};
    std::vector<ETFileMessage> messages;
    std::vector<std::string> unknown;
    parseErrorText("======== a - b.jpg [1/3]\n"
                   "Error: Not a JPEG - file - a - b.jpg\n"
                   "Warning: [minor] Odd - two\nlines.jpg\n"
                   "Error: Bad - dir/x - y.jpg\n"
                   "    1 image files updated\n"
                   "Perl said something\n",
                   command, messages, unknown);
    EXPECT_THAT(described(messages), ElementsAre("a - b.jpg: Not a JPEG - file",
                                                 "two\nlines.jpg: [minor] Odd", "dir/x - y.jpg: Bad"));
    EXPECT_EQ(messages.at(1).kind, ETFileMessage::Kind::warning);
    EXPECT_THAT(unknown, ElementsAre("Perl said something"));
}

// A value printed as a number no double holds is quoted, and only such a value: numbers inside
// texts (escaped quotes included) and numbers that fit stay as they are.
TEST(ETRunOutput, NumbersBeyondADoubleAreQuotedSoTheirRecordsStillRead) {
    EXPECT_EQ(quoteOutOfRangeNumbers(R"([{"A":1e400,"B":"x\"1e400","C":-1.5e-999,"D":[2e308,1.5]}])"),
              R"([{"A":"1e400","B":"x\"1e400","C":"-1.5e-999","D":["2e308",1.5]}])");
    EXPECT_EQ(quoteOutOfRangeNumbers(R"([{"A":1.7e308,"B":"1e400"}])"), std::nullopt);

    ETCommand command;
    std::vector<ETFileMessage> messages, excused;
    collectJSONMessages(R"([{"SourceFile":"a.jpg","XMP:Title":1e400,"Warning":"W"}])", command, messages,
                        excused);
    EXPECT_THAT(described(messages), ElementsAre("a.jpg: W"));
}

TEST(ETRunOutput, JSONReportsAreCollectedInEveryGroupingAndExcusedUnderIgnoreMinorErrors) {
    const std::string json = R"([{"SourceFile":"a.jpg","ExifTool:Error":"Bad","Warning":"W1","Warning":"W2"},
        {"SourceFile":"b.jpg","ExifTool":{"Warning":"[minor] Odd","Other":{"Error":"nested, not a report"}}},
        {"SourceFile":"c.jpg","Error":{"structured":[1,2]}}])";
    ETCommand command;
    std::vector<ETFileMessage> messages, excused;
    collectJSONMessages(json, command, messages, excused);
    EXPECT_THAT(described(messages), ElementsAre("a.jpg: Bad", "a.jpg: W2", "b.jpg: [minor] Odd",
                                                 R"(c.jpg: {"structured":[1,2]})"));

    command.ignoreMinorErrors = true;
    messages.clear();
    collectJSONMessages(json, command, messages, excused);
    EXPECT_EQ(messages.size(), 2u);
    EXPECT_EQ(excused.size(), 2u);
    // Output that isn't one JSON array reports nothing.
    messages.clear();
    collectJSONMessages(R"({"Error":"x"})", command, messages, excused);
    collectJSONMessages(R"([{"Error":"x"})", command, messages, excused);
    EXPECT_TRUE(messages.empty());
}

TEST(ETBatchSplit, CutsALargeInputIntoShrinkingContiguousPiecesAndLeavesUnsafeOnesWhole) {
    auto inputOf = [](std::size_t files, const std::function<std::filesystem::path(std::size_t)>& name,
                      std::vector<std::string> arguments = {"-j"}) {
        ETInput input;
        for (std::size_t i = 0; i < files; ++i) {
            ETInput::ArgumentsMaker group;
            group.arguments = arguments;
            group.url = name(i);
            input.addGroup(group);
        }
        input.onProgressHandler = [](ETProcess&) {};
        input.timeLimit = std::chrono::milliseconds(1234);
        return input;
    };
    auto numbered = [](std::size_t i) { return "f" + std::to_string(i) + ".jpg"; };
    const auto input = inputOf(1001, numbered);
    const auto split = splitBatch(input, 4);
    EXPECT_EQ(split.processes, 4u);
    std::vector<std::string> order;
    std::vector<std::size_t> sizes;
    for (const auto& piece : split.pieces) {
        sizes.push_back(piece.groups().size());
        EXPECT_EQ(piece.timeLimit, input.timeLimit);
        EXPECT_FALSE(piece.onProgressHandler);
        for (const auto& group : piece.groups())
            order.push_back(group.url->string());
    }
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < 1001; ++i)
        expected.push_back(numbered(i));
    EXPECT_EQ(order, expected);
    // Half of a process's share first, then less and less, down to the smallest piece: the
    // processes end within a small piece of each other.
    EXPECT_EQ(sizes.front(), 126u);
    EXPECT_TRUE(std::is_sorted(sizes.rbegin(), sizes.rend()));
    EXPECT_LE(sizes.back(), minimumFilesPerPiece);
    EXPECT_EQ(sizes[sizes.size() - 2], minimumFilesPerPiece);
    EXPECT_LT(sizes.size(), 40u);

    // Commands that import a file of records: one piece per process, about the same size.
    const auto shares = splitBatch(inputOf(101, numbered, {"-n", "-json=records.json"}), 4);
    ASSERT_EQ(shares.pieces.size(), 4u);
    for (const auto& piece : shares.pieces)
        EXPECT_TRUE(piece.groups().size() == 25u || piece.groups().size() == 26u);

    // Too few files for more processes than these.
    EXPECT_EQ(splitBatch(inputOf(101, numbered), 8).processes, 101 / minimumFilesPerShare);
    for (const auto& whole :
         {splitBatch(inputOf(2 * minimumFilesPerShare - 1, numbered), 4), splitBatch(input, 1),
          // A folder, or a file named twice (written by two processes at once),
          // keeps the run whole.
          splitBatch(inputOf(100, [&](std::size_t i) { return i == 70 ? "folder" : numbered(i); }), 4),
          splitBatch(inputOf(100, [&](std::size_t i) { return i == 70 ? "./f3.jpg" : numbered(i); }), 4)}) {
        EXPECT_EQ(whole.processes, 1u);
        EXPECT_EQ(whole.pieces.size(), 1u);
    }
}
