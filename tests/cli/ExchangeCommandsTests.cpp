// `corvane compare`, run as the built program on real files.
#include "cli/CliRun.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using namespace corvane::test;

using ExchangeCommands = CliTest;

TEST_F(ExchangeCommands, compareShowsEveryFileAndNarrowsToDifferences) {
    auto a = makeJPEG(folder / "a.jpg");
    auto b = makeJPEG(folder / "b.jpg");
    tagWithExifTool(a, {"-EXIF:Artist=Zoë", "-EXIF:Copyright=Same"});
    tagWithExifTool(b, {"-EXIF:Artist=Ana", "-EXIF:Copyright=Same"});

    auto all = cliOK({"compare", "--format", "csv", a.string(), b.string()});
    EXPECT_THAT(all.out, HasSubstr("a.jpg"));
    EXPECT_THAT(all.out, HasSubstr("b.jpg"));
    EXPECT_THAT(all.out, HasSubstr("Zoë"));
    EXPECT_THAT(all.out, HasSubstr("Same"));

    auto different = cliOK({"compare", "--only-different", "--format", "csv", a.string(), b.string()});
    EXPECT_THAT(different.out, HasSubstr("Zoë"));
    EXPECT_THAT(different.out, Not(HasSubstr("Same")));

    // The search ignores case and accents.
    auto searched = cliOK({"compare", "--search", "zoe", "--format", "txt", a.string(), b.string()});
    EXPECT_THAT(searched.out, HasSubstr("Zoë"));
    EXPECT_THAT(searched.out, Not(HasSubstr("Same")));

    // The format follows the output file's extension.
    auto rtf = folder / "comparison.rtf";
    cliOK({"compare", "--output", rtf.string(), a.string(), b.string()});
    EXPECT_THAT(readText(rtf), StartsWith("{\\rtf1"));

    EXPECT_THAT(cliExits(1, {"compare", a.string(), (folder / "none.jpg").string()}).err,
                HasSubstr("none.jpg"));

    // A file ExifTool can't read is reported and gets no column; the columns follow the arguments,
    // a folder giving its own files where it stands.
    auto empty = writeBytes(folder / "empty.jpg", {});
    auto sub = folder.makeSubfolder("sub");
    makeJPEG(sub / "c.jpg");
    auto mixed =
        cliExits(1, {"compare", "--format", "csv", b.string(), empty.string(), sub.string(), a.string()});
    EXPECT_THAT(mixed.err, HasSubstr("empty.jpg"));
    const std::string header = mixed.out.substr(0, mixed.out.find('\n'));
    EXPECT_EQ(header, "Tags; b.jpg; c.jpg; a.jpg");
}

} // namespace
