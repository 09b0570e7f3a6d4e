#include "corvane/utilities/UserDefaults.hpp"

#include "support/FileBytes.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <thread>
#include <vector>

using namespace corvane;
namespace fs = std::filesystem;

namespace {

TEST(UserDefaultsTest, PersistsAndReloadsPrettyPrintedJSON) {
    test::TemporaryFolder folder;
    const fs::path file = folder / "prefs" / "defaults.json";
    {
        UserDefaults defaults(file);
        EXPECT_FALSE(defaults.value("QRVUserLanguage"));
        defaults.set("QRVUserLanguage", "fr");
        defaults.set("QRVPresets", {{"entries", nlohmann::json::array({1, 2})}});
        defaults.set("Count", 3);
        defaults.set("Gone", true);
        defaults.remove("Gone");
        EXPECT_EQ(defaults.integer("Count"), 3);
        EXPECT_FALSE(defaults.string("Count")); // wrong type gives nothing
    }
    // Pretty-printed, and no temporary file left behind.
    const std::string text = test::fileBytes(file);
    EXPECT_NE(text.find("\n    \"QRVUserLanguage\": \"fr\""), std::string::npos) << text;
    EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), fs::directory_iterator()), 1);

    UserDefaults reread(file);
    EXPECT_EQ(reread.string("QRVUserLanguage"), "fr");
    EXPECT_EQ(reread.value("QRVPresets")->at("entries").size(), 2u);
    EXPECT_FALSE(reread.contains("Gone"));

    // Another writer changes the file: reload() sees it, setFileURL() switches.
    UserDefaults other(file);
    other.set("QRVUserLanguage", "de");
    EXPECT_EQ(reread.string("QRVUserLanguage"), "fr");
    reread.reload();
    EXPECT_EQ(reread.string("QRVUserLanguage"), "de");
    reread.setFileURL(folder / "empty.json");
    EXPECT_TRUE(reread.keys().empty());
}

TEST(UserDefaultsTest, MalformedFileCountsAsEmptyAndPreferenceFilesLieBeside) {
    test::TemporaryFolder folder;
    std::ofstream(folder / "bad.json") << "{ not json";
    UserDefaults defaults(folder / "bad.json");
    EXPECT_TRUE(defaults.keys().empty());
    defaults.set("Key", "value");
    EXPECT_EQ(UserDefaults(folder / "bad.json").string("Key"), "value");
    UserDefaults beside(folder / "sub" / "defaults.json");
    const fs::path url = beside.preferenceFileURL("QRVKeywords");
    EXPECT_EQ(url, folder / "sub" / "QRVKeywords.data");
    EXPECT_TRUE(fs::is_directory(folder / "sub"));
    EXPECT_EQ(UserDefaults::standard().fileURL().filename(), "defaults.json");
    EXPECT_EQ(UserDefaults::standard().fileURL().parent_path().filename(), "corvane");
}

TEST(UserDefaultsTest, ConcurrentWritersLoseNothing) {
    test::TemporaryFolder folder;
    UserDefaults defaults(folder / "d.json");
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < 10; ++i) {
                defaults.set("k" + std::to_string(t) + "_" + std::to_string(i), i);
                (void)defaults.value("k0_0");
            }
        });
    for (auto& t : threads)
        t.join();
    EXPECT_EQ(UserDefaults(folder / "d.json").keys().size(), 40u);
}

} // namespace
