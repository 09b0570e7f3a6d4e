// `corvane compare`, run as the built program on real files.
#include "cli/CliRun.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using namespace corvane::test;
using corvane::test::corvane;

using ExchangeCommands = CliTest;

TEST_F(ExchangeCommands, compareShowsEveryFileAndNarrowsToDifferences) {
    auto a = makeJPEG(folder / "a.jpg");
    auto b = makeJPEG(folder / "b.jpg");
    tagWithExifTool(a, {"-EXIF:Artist=Zoë", "-EXIF:Copyright=Same"});
    tagWithExifTool(b, {"-EXIF:Artist=Ana", "-EXIF:Copyright=Same"});

    auto all = corvane({"compare", "--format", "csv", a.string(), b.string()}, scratch);
    ASSERT_EQ(all.exitCode, 0) << all.err;
    EXPECT_NE(all.out.find("a.jpg"), std::string::npos) << all.out;
    EXPECT_NE(all.out.find("b.jpg"), std::string::npos);
    EXPECT_NE(all.out.find("Zoë"), std::string::npos);
    EXPECT_NE(all.out.find("Same"), std::string::npos);

    auto different =
        corvane({"compare", "--only-different", "--format", "csv", a.string(), b.string()}, scratch);
    ASSERT_EQ(different.exitCode, 0) << different.err;
    EXPECT_NE(different.out.find("Zoë"), std::string::npos) << different.out;
    EXPECT_EQ(different.out.find("Same"), std::string::npos) << different.out;

    // The search ignores case and accents.
    auto searched =
        corvane({"compare", "--search", "zoe", "--format", "txt", a.string(), b.string()}, scratch);
    ASSERT_EQ(searched.exitCode, 0) << searched.err;
    EXPECT_NE(searched.out.find("Zoë"), std::string::npos) << searched.out;
    EXPECT_EQ(searched.out.find("Same"), std::string::npos) << searched.out;

    // The format follows the output file's extension.
    auto rtf = folder / "comparison.rtf";
    auto written = corvane({"compare", "--output", rtf.string(), a.string(), b.string()}, scratch);
    ASSERT_EQ(written.exitCode, 0) << written.err;
    EXPECT_EQ(readText(rtf).rfind("{\\rtf1", 0), 0u);

    auto missing = corvane({"compare", a.string(), (folder / "none.jpg").string()}, scratch);
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.err.find("none.jpg"), std::string::npos) << missing.err;

    // A file ExifTool can't read is reported and gets no column; the columns follow the arguments,
    // a folder giving its own files where it stands.
    auto empty = writeBytes(folder / "empty.jpg", {});
    auto sub = folder.makeSubfolder("sub");
    makeJPEG(sub / "c.jpg");
    auto mixed = corvane({"compare", "--format", "csv", b.string(), empty.string(), sub.string(), a.string()},
                         scratch);
    EXPECT_EQ(mixed.exitCode, 1);
    EXPECT_NE(mixed.err.find("empty.jpg"), std::string::npos) << mixed.err;
    const std::string header = mixed.out.substr(0, mixed.out.find('\n'));
    EXPECT_EQ(header, "Tags; b.jpg; c.jpg; a.jpg");
}

} // namespace
