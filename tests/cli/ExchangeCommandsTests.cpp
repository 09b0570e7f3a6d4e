// `corvane compare`, run as the built program on real files: each option reaches the comparison,
// whose rows, search and formats the comparison's own tests check in full.
#include "cli/CliRun.hpp"
#include "support/SampleFiles.hpp"

#include <gtest/gtest.h>

namespace {

using namespace corvane::test;

using ExchangeCommands = CliTest;

TEST_F(ExchangeCommands, compareShowsEveryFileAndNarrowsToDifferences) {
    auto a = makeJPEG(folder / "a.jpg");
    auto b = makeJPEG(folder / "b.jpg");
    tagWithExifTool(a, {"-EXIF:Artist=Zoë", "-EXIF:Copyright=Same"});
    tagWithExifTool(b, {"-EXIF:Artist=Ana", "-EXIF:Copyright=Same"});
    const std::vector<std::string> files{a.string(), b.string()};
    auto compare = [&](std::vector<std::string> options) {
        options.insert(options.begin(), "compare");
        options.insert(options.end(), files.begin(), files.end());
        return cliOK(options).out;
    };
    const auto all = compare({"--format", "csv"});
    EXPECT_THAT(all, HasSubstr("Tags; a.jpg; b.jpg\n"));
    EXPECT_THAT(all, HasSubstr("Zoë"));
    EXPECT_THAT(all, HasSubstr("Same"));
    const auto different = compare({"--only-different", "--format", "csv"});
    EXPECT_THAT(different, HasSubstr("Zoë"));
    EXPECT_THAT(different, Not(HasSubstr("Same")));
    // The search ignores case and accents.
    const auto searched = compare({"--search", "zoe", "--format", "txt"});
    EXPECT_THAT(searched, HasSubstr("Zoë"));
    EXPECT_THAT(searched, Not(HasSubstr("Same")));
    // The format follows the output file's extension.
    compare({"--output", (folder / "comparison.rtf").string()});
    EXPECT_THAT(readText(folder / "comparison.rtf"), StartsWith("{\\rtf1"));

    // A file ExifTool can't read is reported and gets no column; the columns follow the arguments,
    // a folder giving its own files where it stands.
    auto empty = writeBytes(folder / "empty.jpg", {});
    auto sub = folder.makeSubfolder("sub");
    makeJPEG(sub / "c.jpg");
    auto mixed = cliExits(1, {"compare", "--format", "csv", b.string(), empty.string(), sub.string(),
                              a.string(), (folder / "none.jpg").string()});
    EXPECT_THAT(mixed.err, HasSubstr("empty.jpg"));
    EXPECT_THAT(mixed.err, HasSubstr("none.jpg"));
    EXPECT_THAT(mixed.out, StartsWith("Tags; b.jpg; c.jpg; a.jpg\n"));
}

} // namespace
