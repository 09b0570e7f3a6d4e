#include "corvane/utilities/KitSettings.hpp"
#include "corvane/utilities/KitToolbox.hpp"
#include "corvane/utilities/Localizer.hpp"
#include "corvane/utilities/TextLocalizer.hpp"

#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

using namespace corvane;
namespace fs = std::filesystem;

namespace {

TEST(LocalizationTest, EnglishTablesAreCompiledInWithPluralsAndUnknownKeysFallBackToTheKey) {
    EXPECT_EQ(TL(LocalizerString::tagComparisonTagsTitle()), "Tags");
    EXPECT_EQ(KitToolbox::localize("MediaKindSidecar"), "Sidecar");
    EXPECT_EQ(KitToolbox::localize("Country3166a3:ALA", "Country3166a3"), "Åland Islands");
    EXPECT_EQ(StringTables::english().at("Country3166a3").size(), 249u);
    EXPECT_EQ(TL("NoSuchKey"), "NoSuchKey");
    EXPECT_EQ(KitToolbox::localize("TaskStatusPending", "NoSuchTable"), "TaskStatusPending");
    EXPECT_EQ(TL("AbstractTaskNoErrors") + "|" + TL("AbstractTaskNoErrors", 0) + "|" +
                  TL("AbstractTaskNoErrors", 1) + "|" + TL("AbstractTaskNoErrors", std::size_t{3}),
              "No errors|No errors|1 error|3 errors");
}

TEST(LocalizationTest, FormatsLikePrintf) {
    using A = std::vector<LocalizerArgument>;
    EXPECT_EQ(Localizer::format("%@ of %ld (%d%%)", A{"3", 10, 30}), "3 of 10 (30%)");
    EXPECT_EQ(Localizer::format("%2$@ %1$@", A{"world", "hello"}), "hello world");
    EXPECT_EQ(Localizer::format("%.2f|%5d|%-3s|", A{3.14159, 42, "a"}), "3.14|   42|a  |");
    EXPECT_EQ(Localizer::format("missing %@", A{}), "missing %@");
    EXPECT_EQ(KitToolbox::localize("Key %@ %@", "NoTable", "a", 2), "Key a 2");

    // Conversions are as long as their value, however long that is.
    const std::string path(300, 'p');
    EXPECT_EQ(Localizer::format("[%-4@]", A{path}), "[" + path + "]");
    EXPECT_EQ(Localizer::format("%.1f", A{1e200}).size(), 202u);
    // An absurd position is a missing argument, not a failure.
    EXPECT_EQ(Localizer::format("%99999999999999999999999$@", A{"x"}), "%99999999999999999999999$@");
}

TEST(LocalizationDeathTest, ProgrammingFaultsStopTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    std::vector<LocalizerArgument> five{1, 2, 3, 4, 5};
    EXPECT_DEATH(KitToolbox::localizeWithArguments("X", "", five), "doesn't support more than 4 arguments");
    EXPECT_DEATH(TextLocalizer().localized(), "No localized string has been set.");
    EXPECT_DEATH(TextLocalizer("X").arguments(five).localized(),
                 "TextLocalizer requires less than 4 arguments.");
    EXPECT_EQ(TextLocalizer("AbstractTaskNoErrors").argument(2).localized(), "2 errors");
}

// Compiles a resource-bundle source with genrb; false when genrb is missing.
bool compileBundle(const fs::path& source, const fs::path& outDir) {
    const std::string command =
        "genrb -q -e UTF-8 -d '" + outDir.string() + "' '" + source.string() + "' >/dev/null 2>&1";
    return std::system(command.c_str()) == 0;
}

class TranslationTest : public ::testing::Test {
protected:
    void TearDown() override {
        KitSettings::shared().setLocalizationDirectory({});
        KitSettings::shared().setLocalizationLanguage({});
    }
    test::TemporaryFolder folder_;
};

TEST_F(TranslationTest, LoadsTheMostSpecificTranslationAndFallsBackToEnglish) {
    std::ofstream(folder_ / "fr.txt") << R"(fr {
    Localizable {
        TaskStatusPending { "En attente" }
        TaskStatusCompleted { "Terminée" }
        AbstractTaskNoErrors { text { "Aucune erreur" } one { "%ld erreur" } other { "%ld erreurs" } }
    }
    Sections { "Date and Time" { "Date et heure" } }
})";
    std::ofstream(folder_ / "fr_CA.txt")
        << R"(fr_CA { Localizable { TaskStatusCompleted { "Complétée" } } })";
    if (!compileBundle(folder_ / "fr.txt", folder_.path()) ||
        !compileBundle(folder_ / "fr_CA.txt", folder_.path()))
        GTEST_SKIP() << "genrb (icu-devtools) is not installed";

    KitSettings::shared().setLocalizationDirectory(folder_.path());
    KitSettings::shared().setLocalizationLanguage("fr_CA");
    EXPECT_EQ(Localizer::shared().loadedFiles().size(), 2u);
    EXPECT_EQ(TL("TaskStatusCompleted"), "Complétée"); // fr_CA
    EXPECT_EQ(TL("TaskStatusPending"), "En attente");  // fr
    EXPECT_EQ(TL("TaskStatusCancelled"), "Cancelled"); // English
    EXPECT_EQ(KitToolbox::localize("Date and Time", "Sections"), "Date et heure");
    EXPECT_EQ(TL("AbstractTaskNoErrors"), "Aucune erreur");
    EXPECT_EQ(TL("AbstractTaskNoErrors", 0), "0 erreur"); // French: 0 is "one"
    EXPECT_EQ(TL("AbstractTaskNoErrors", 5), "5 erreurs");

    KitSettings::shared().setLocalizationLanguage("de_DE");
    EXPECT_TRUE(Localizer::shared().loadedFiles().empty());
    EXPECT_EQ(TL("TaskStatusPending"), "Pending");
}

TEST_F(TranslationTest, TemplateCompilesAndReadsBackAsEnglish) {
    std::ofstream out(folder_ / "xx.txt");
    StringTables::writeTemplate(out, "xx");
    out.close();
    if (!compileBundle(folder_ / "xx.txt", folder_.path()))
        GTEST_SKIP() << "genrb (icu-devtools) is not installed";
    auto tables = StringTables::loadResourceBundle(folder_.path(), "xx");
    ASSERT_TRUE(tables);
    const auto& english = StringTables::english();
    ASSERT_EQ(tables->size(), english.size());
    for (const auto& [name, table] : english) {
        ASSERT_EQ(tables->at(name).size(), table.size()) << name;
        for (const auto& [key, entry] : table) {
            EXPECT_EQ(tables->at(name).at(key).text, entry.text) << key;
            EXPECT_EQ(tables->at(name).at(key).plurals, entry.plurals) << key;
        }
    }
}

} // namespace
