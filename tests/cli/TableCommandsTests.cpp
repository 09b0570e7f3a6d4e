// `corvane show`, `tagset` and `compare`, run as the built program on files tagged by ExifTool, with
// the user defaults in a folder of the test.
#include "cli/CliRun.hpp"
#include "support/Corpus.hpp"
#include "support/SampleFiles.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

namespace {

using namespace corvane::test;

// Two photos by one artist with two makes; the user defaults in a folder of the test.
class TableCommands : public CliTest {
protected:
    void SetUp() override {
        tagWithExifTool(a, {"-EXIF:Artist=Ann", "-EXIF:Make=Canon"});
        tagWithExifTool(b, {"-EXIF:Artist=Ann", "-EXIF:Make=Nikon"});
    }

    ScopedEnvironment config{"XDG_CONFIG_HOME", folder.makeSubfolder("config").string()};
    std::string a = makeJPEG(folder / "a.jpg").string();
    std::string b = makeJPEG(folder / "b.jpg").string();
};

TEST_F(TableCommands, ShowMergesTheFilesValuesPerTag) {
    auto shown = cliOK({"show", "--tagset", "images", a, b});
    EXPECT_THAT(shown.out, HasSubstr("EXIF:Artist\t\"Ann\"\n"));
    EXPECT_THAT(shown.out, HasSubstr("EXIF:Make\t<2 values>\t\"Canon\"\t\"Nikon\"\n"));
    EXPECT_THAT(shown.out, HasSubstr("\nEXIF:Copyright\n"));
    EXPECT_THAT(shown.out, Not(HasSubstr("[")));

    EXPECT_EQ(cliOK({"show", "--tagset", "images", "--sections", "--filter", "make", a, b}).out,
              "[Camera]\nEXIF:Make\t<2 values>\t\"Canon\"\t\"Nikon\"\n[Lens]\nEXIF:LensMake\n");

    // Edits in memory reach the table through its partial reload; the files stay as they were.
    auto edited = cliOK({"show", "--tagset", "images", "--set", "EXIF:Artist=Bob", "--edited", a, b});
    EXPECT_EQ(edited.out, "* EXIF:Artist\t\"Bob\"\n");
    EXPECT_EQ(exifToolValue(a, "EXIF:Artist"), "Ann");

    EXPECT_THAT(cliExits(1, {"show", "--tagset", (folder / "missing.json").string(), a}).err,
                HasSubstr("missing.json"));
}

TEST_F(TableCommands, TagSetsAreKeptInTheUserDefaults) {
    auto shown = cliOK({"tagset", "show"});
    EXPECT_THAT(shown.out, StartsWith("[File]\nFile:FileName\n"));

    const auto mine = folder / "mine.json";
    writeText(mine, R"({"EXIF": [{"type": "sec", "value": "Who"}, {"type": "key", "value": "Artist"},
                            {"type": "key", "value": "NotInTheCatalogue"}]})");
    cliOK({"tagset", "import", mine.string()});
    shown = cli({"tagset", "show"});
    EXPECT_EQ(shown.out, "[EXIF Who]\nEXIF:Artist\nEXIF:NotInTheCatalogue\t(unknown tag)\n");
    EXPECT_EQ(cli({"tagset", "show", "--domain", "photos-extension"}).out.rfind("[File]", 0), 0u)
        << "the other domain keeps its own set";

    EXPECT_EQ(cli({"show", "--sections", a, b}).out, "[EXIF Who]\nEXIF:Artist\t\"Ann\"\n")
        << "show uses the user's set";

    const auto exported = folder / "exported.json";
    cliOK({"tagset", "export", "-o", exported.string()});
    const auto file = nlohmann::json::parse(fileBytes(exported));
    EXPECT_EQ(file["description"], "");
    EXPECT_EQ(file["tag_set"]["entries"].size(), 3u);

    cliOK({"tagset", "reset"});
    EXPECT_THAT(cli({"tagset", "show"}).out, StartsWith("[File]"));
    cliExits(1, {"tagset", "show", "--domain", "elsewhere"});
}

// Camera JPEGs of the corpus: the Make row merges what each file holds, as the corpus index says.
TEST_F(TableCommands, ShowMergesTheMakesOfCameraFiles) {
    const auto corpus = corpusFolder();
    if (!fs::exists(corpus / "INDEX.tsv")) GTEST_SKIP() << "no camera corpus at " << corpus;
    std::vector<std::string> arguments{"show", "--tagset", "images", "--filter", "make"};
    std::set<std::string> makes;
    for (auto& entry : corpusIndex(corpus))
        if (makes.size() < 4 && entry["dest"].starts_with("jpeg/") && entry["has_exif"] == "True" &&
            !entry["make"].empty() && makes.insert(entry["make"]).second)
            arguments.push_back((corpus / entry["dest"]).string());
    ASSERT_EQ(makes.size(), 4u);
    std::string expected = "EXIF:Make\t<4 values>";
    for (const auto& make : makes)
        expected += "\t\"" + make + "\"";
    EXPECT_THAT(cliOK(arguments).out, HasSubstr(expected + "\n"));
}

// `corvane compare`: each option reaches the comparison, whose rows, search and formats the
// comparison's own tests check in full.
using CompareCommand = CliTest;

TEST_F(CompareCommand, compareShowsEveryFileAndNarrowsToDifferences) {
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
    EXPECT_THAT(fileBytes(folder / "comparison.rtf"), StartsWith("{\\rtf1"));

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
