// `corvane show` and `corvane tagset`, run as the built program on files tagged by ExifTool, with
// the user defaults in a folder of the test.
#include "cli/CliRun.hpp"
#include "support/Corpus.hpp"
#include "support/SampleFiles.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <sstream>

namespace {

using namespace corvane::test;
using corvane::test::corvane;

class TableCommands : public CliTest {
protected:
    void SetUp() override {
        const char* previous = std::getenv("XDG_CONFIG_HOME");
        if (previous) savedConfigHome = previous;
        setenv("XDG_CONFIG_HOME", folder.makeSubfolder("config").c_str(), 1);
        a = makeJPEG(folder / "a.jpg").string();
        b = makeJPEG(folder / "b.jpg").string();
        tagWithExifTool(a, {"-EXIF:Artist=Ann", "-EXIF:Make=Canon"});
        tagWithExifTool(b, {"-EXIF:Artist=Ann", "-EXIF:Make=Nikon"});
    }
    void TearDown() override {
        if (savedConfigHome)
            setenv("XDG_CONFIG_HOME", savedConfigHome->c_str(), 1);
        else
            unsetenv("XDG_CONFIG_HOME");
    }

    bool has(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }

    std::optional<std::string> savedConfigHome;
    std::string a, b;
};

TEST_F(TableCommands, ShowMergesTheFilesValuesPerTag) {
    auto shown = corvane({"show", "--tagset", "images", a, b}, scratch);
    ASSERT_EQ(shown.exitCode, 0) << shown.err;
    EXPECT_TRUE(has(shown.out, "EXIF:Artist\t\"Ann\"\n")) << shown.out;
    EXPECT_TRUE(has(shown.out, "EXIF:Make\t<2 values>\t\"Canon\"\t\"Nikon\"\n")) << shown.out;
    EXPECT_TRUE(has(shown.out, "\nEXIF:Copyright\n")) << "no value, nothing after the tag";
    EXPECT_FALSE(has(shown.out, "[")) << "no headings without --sections";

    auto filtered = corvane({"show", "--tagset", "images", "--sections", "--filter", "make", a, b}, scratch);
    ASSERT_EQ(filtered.exitCode, 0) << filtered.err;
    EXPECT_EQ(filtered.out, "[Camera]\nEXIF:Make\t<2 values>\t\"Canon\"\t\"Nikon\"\n[Lens]\nEXIF:LensMake\n");

    // Edits in memory reach the table through its partial reload; the files stay as they were.
    auto edited =
        corvane({"show", "--tagset", "images", "--set", "EXIF:Artist=Bob", "--edited", a, b}, scratch);
    ASSERT_EQ(edited.exitCode, 0) << edited.err;
    EXPECT_EQ(edited.out, "* EXIF:Artist\t\"Bob\"\n");
    EXPECT_EQ(exifToolValue(a, "EXIF:Artist"), "Ann");

    auto broken = corvane({"show", "--tagset", (folder / "missing.json").string(), a}, scratch);
    EXPECT_EQ(broken.exitCode, 1);
    EXPECT_TRUE(has(broken.err, "missing.json")) << broken.err;
}

TEST_F(TableCommands, TagSetsAreKeptInTheUserDefaults) {
    auto shown = corvane({"tagset", "show"}, scratch);
    ASSERT_EQ(shown.exitCode, 0) << shown.err;
    EXPECT_EQ(shown.out.rfind("[File]\nFile:FileName\n", 0), 0u) << "the built-in images set by default";

    const auto mine = folder / "mine.json";
    {
        std::ofstream out(mine);
        out << R"({"EXIF": [{"type": "sec", "value": "Who"}, {"type": "key", "value": "Artist"},
                            {"type": "key", "value": "NotInTheCatalogue"}]})";
    }
    ASSERT_EQ(corvane({"tagset", "import", mine.string()}, scratch).exitCode, 0);
    shown = corvane({"tagset", "show"}, scratch);
    EXPECT_EQ(shown.out, "[EXIF Who]\nEXIF:Artist\nEXIF:NotInTheCatalogue\t(unknown tag)\n");
    EXPECT_EQ(corvane({"tagset", "show", "--domain", "photos-extension"}, scratch).out.rfind("[File]", 0), 0u)
        << "the other domain keeps its own set";

    auto table = corvane({"show", "--sections", a, b}, scratch);
    EXPECT_EQ(table.out, "[EXIF Who]\nEXIF:Artist\t\"Ann\"\n") << "show uses the user's set";

    const auto exported = folder / "exported.json";
    ASSERT_EQ(corvane({"tagset", "export", "-o", exported.string()}, scratch).exitCode, 0);
    const auto file = nlohmann::json::parse(readText(exported));
    EXPECT_EQ(file["description"], "");
    EXPECT_EQ(file["tag_set"]["entries"].size(), 3u);

    ASSERT_EQ(corvane({"tagset", "reset"}, scratch).exitCode, 0);
    EXPECT_EQ(corvane({"tagset", "show"}, scratch).out.rfind("[File]", 0), 0u);
    EXPECT_EQ(corvane({"tagset", "show", "--domain", "elsewhere"}, scratch).exitCode, 1);
}

// Camera JPEGs of the corpus: the Make row merges what each file holds, as the corpus index says.
TEST_F(TableCommands, ShowMergesTheMakesOfCameraFiles) {
    const auto corpus = corpusFolder();
    if (!fs::exists(corpus / "INDEX.tsv")) GTEST_SKIP() << "no camera corpus at " << corpus;
    std::ifstream index(corpus / "INDEX.tsv");
    std::vector<std::string> arguments{"show", "--tagset", "images", "--filter", "make"};
    std::set<std::string> makes;
    for (std::string line; std::getline(index, line) && makes.size() < 4;) {
        std::vector<std::string> columns;
        std::istringstream fields(line);
        for (std::string field; std::getline(fields, field, '\t');)
            columns.push_back(field);
        // dest, ..., has_exif (11), ..., make (17)
        if (columns.size() < 18 || columns[0].rfind("jpeg/", 0) != 0 || columns[11] != "True" ||
            columns[17].empty())
            continue;
        if (!makes.insert(columns[17]).second) continue;
        arguments.push_back((corpus / columns[0]).string());
    }
    ASSERT_EQ(makes.size(), 4u);
    auto shown = corvane(arguments, scratch);
    ASSERT_EQ(shown.exitCode, 0) << shown.err;
    std::string expected = "EXIF:Make\t<4 values>";
    for (const auto& make : makes)
        expected += "\t\"" + make + "\"";
    EXPECT_TRUE(has(shown.out, expected + "\n")) << shown.out;
}

} // namespace
