#include "corvane/utilities/KitSettings.hpp"
#include "corvane/Version.hpp"
#include "corvane/exiftool_wrapper/ETLanguage.hpp"
#include "corvane/helpers/NotificationCenter.hpp"

#include "support/SampleFiles.hpp"
#include "support/ScratchDefaults.hpp"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

using namespace corvane;

namespace {

// The settings on a private defaults file for one test.
class KitSettingsTest : public ::testing::Test {
protected:
    test::ScratchDefaults scratch;
};

// The engines as a set; by default every engine and the library's own XMP toolkit name (the default
// media types are what the folder writers' test relies on).
TEST_F(KitSettingsTest, EngineSetsAndDefaults) {
    constexpr auto et = EngineOption::exifTool(), ci = EngineOption::coreImage(),
                   av = EngineOption::avFoundation();
    static_assert(EngineOption({et, ci, av}) == EngineOption::all());
    EXPECT_EQ(((et | ci) & (ci | av)), ci);
    EXPECT_EQ(((et | ci) ^ (ci | av)), EngineOption::all() - ci);
    EXPECT_TRUE(et.isSubset(et | ci) && EngineOption::all().isSuperset(av) && !ci.contains(et));
    auto o = ci;
    o.insert(et);
    o.remove(ci);
    EXPECT_EQ(o, et);

    auto& settings = KitSettings::shared();
    EXPECT_EQ(settings.engineOption(), EngineOption::all());
    EXPECT_NE(settings.undoManager(), nullptr);
    EXPECT_TRUE(settings.extraArguments().empty());
    EXPECT_EQ(settings.xmpToolkit(), std::string("Corvane ") + CORVANE_VERSION);
}

TEST_F(KitSettingsTest, UserLanguageFallsBackToLocalAndNotifiesAroundTheChange) {
    EXPECT_EQ(ETLanguage::userLanguage(), ETLanguage::local);
    scratch.defaults->set("QRVUserLanguage", "klingon");
    EXPECT_EQ(ETLanguage::userLanguage(), ETLanguage::local);

    std::vector<std::string> events;
    auto& center = NotificationCenter::defaultCenter();
    auto will = center.subscribe("QRVUserLanguageWillChangeNotification", [&](const Notification& n) {
        EXPECT_EQ(n.sender(), nullptr);
        events.push_back("will:" + std::string(ETLanguage::userLanguage().rawValue()));
    });
    auto did = center.subscribe("QRVUserLanguageDidChangeNotification", [&](const Notification&) {
        events.push_back("did:" + std::string(ETLanguage::userLanguage().rawValue()));
    });
    ETLanguage::setUserLanguage(ETLanguage::zh_tw);
    EXPECT_EQ(events, (std::vector<std::string>{"will:local", "did:zh_tw"}));
    EXPECT_EQ(UserDefaults(scratch.folder / "defaults.json").string("QRVUserLanguage"), "zh_tw");

    ETLanguage::setUserLanguageKey("OtherKey");
    EXPECT_EQ(ETLanguage::userLanguage(), ETLanguage::local);
    ETLanguage::setUserLanguageKey("QRVUserLanguage");
    EXPECT_EQ(ETLanguage::userLanguage(), ETLanguage::zh_tw);
}

TEST(ETLanguageTest, MatchesTheLanguagesOfExifTool) {
    std::set<std::string> codes;
    std::istringstream lines(test::runExifTool({"-lang"}).standardOutput);
    for (std::string line; std::getline(lines, line);)
        if (line.rfind("  ", 0) == 0) codes.insert(line.substr(2, line.find(" - ") - 2));
    std::set<std::string> ours;
    for (auto l : ETLanguage::allCases())
        if (!l.etName().empty()) ours.insert(std::string(l.etName()));
    EXPECT_EQ(ours, codes);
}

// A locale's language, by its script where it has one, else by its language alone.
TEST(ETLanguageTest, NamesAndLocales) {
    EXPECT_EQ(ETLanguage::fromRawValue("en_gb"), ETLanguage(ETLanguage::en_gb));
    EXPECT_FALSE(ETLanguage::fromRawValue("en-gb"));
    EXPECT_EQ(ETLanguage(ETLanguage::de).title(), "Deutsch (de)");
    EXPECT_EQ(ETLanguage(ETLanguage::zh_cn).localizedName(), "Simplified Chinese");
    EXPECT_EQ(ETLanguage(ETLanguage::local).name(), "System");
    for (const auto& [locale, language] : {std::pair{"zh_Hant_HK", ETLanguage::zh_tw},
                                           {"zh-Hans", ETLanguage::zh_cn},
                                           {"fr_CA", ETLanguage::fr},
                                           {"en_GB", ETLanguage::en_gb}})
        EXPECT_EQ(ETLanguage::forLocale(locale), ETLanguage(language)) << locale;
    EXPECT_FALSE(ETLanguage::forLocale("pt_BR"));
    EXPECT_EQ(ETLanguage(ETLanguage::fr).equivalentLanguage(), ETLanguage(ETLanguage::fr));
}

} // namespace
