// `corvane keywords` and `corvane locations`, run as the built program with the user defaults in a
// folder of the test: what one run saves, the next one finds; bad input is refused and saves
// nothing.
#include "cli/CliRun.hpp"
#include "corvane/location_support/LocationFile.hpp"
#include "support/SampleFiles.hpp"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using namespace corvane::test;
using corvane::test::corvane;

class LibraryCommands : public CliTest {
protected:
    void SetUp() override {
        if (const char* previous = std::getenv("XDG_CONFIG_HOME")) savedConfigHome = previous;
        setenv("XDG_CONFIG_HOME", folder.makeSubfolder("config").c_str(), 1);
    }
    void TearDown() override {
        if (savedConfigHome)
            setenv("XDG_CONFIG_HOME", savedConfigHome->c_str(), 1);
        else
            unsetenv("XDG_CONFIG_HOME");
    }
    void write(const fs::path& path, const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
    }

    std::optional<std::string> savedConfigHome;
};

TEST_F(LibraryCommands, KeywordsImportExportBothForms) {
    write(folder / "k.txt", "Places\n\t{Areas}\n\tParis\n[People]\n\tZoë\n");
    auto imported = corvane({"keywords", "import", (folder / "k.txt").string()}, scratch);
    ASSERT_EQ(imported.exitCode, 0) << imported.err;
    EXPECT_EQ(imported.out, "imported 4 keywords\n");
    auto listed = corvane({"keywords", "list"}, scratch);
    EXPECT_EQ(listed.out, "Places {Areas}\n  Paris\n[People]\n  Zoë\n");

    ASSERT_EQ(corvane({"keywords", "export", "-o", (folder / "out.txt").string()}, scratch).exitCode, 0);
    EXPECT_EQ(readText(folder / "out.txt"), "[People]\n\tZoë\nPlaces\n\t{Areas}\n\tParis\n")
        << "sorted by name";
    ASSERT_EQ(corvane({"keywords", "export", "-o", (folder / "out.json").string()}, scratch).exitCode, 0);
    EXPECT_EQ(nlohmann::json::parse(readText(folder / "out.json"))["items"][1]["is_header"], true);

    // Importing the JSON export adds a second copy after the first.
    ASSERT_EQ(corvane({"keywords", "import", (folder / "out.json").string()}, scratch).exitCode, 0);
    EXPECT_EQ(corvane({"keywords", "list"}, scratch).out, listed.out + listed.out);

    write(folder / "bad.txt", "A\n\t\t\tB\n");
    auto bad = corvane({"keywords", "import", (folder / "bad.txt").string()}, scratch);
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_EQ(bad.err, "corvane: " + (folder / "bad.txt").string() + ": Line indentation is invalid\n");
    write(folder / "bad.json", R"({"description": "no items"})");
    bad = corvane({"keywords", "import", (folder / "bad.json").string()}, scratch);
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_EQ(corvane({"keywords", "list"}, scratch).out, listed.out + listed.out)
        << "failed imports save nothing";
}

TEST_F(LibraryCommands, LocationsAddRemoveAndExchange) {
    ASSERT_EQ(corvane({"locations", "add", "Home", "48.8566, 2.3522"}, scratch).exitCode, 0);
    ASSERT_EQ(corvane({"locations", "add", "Office", "40°26'46\"N 79°58'56\"W"}, scratch).exitCode, 0);
    auto refused = corvane({"locations", "add", "Home", "1.5, 2.5"}, scratch);
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_NE(refused.err.find("already saved"), std::string::npos) << refused.err;
    EXPECT_EQ(corvane({"locations", "add", "Nowhere", "north"}, scratch).exitCode, 1);
    const auto listed = corvane({"locations", "list"}, scratch);
    EXPECT_EQ(listed.out, "Home\t48.85660°, 2.35220°\nOffice\t40.44611°, -79.98222°\n");

    const auto exported = folder / "places.json";
    ASSERT_EQ(corvane({"locations", "export", "-o", exported.string()}, scratch).exitCode, 0);
    EXPECT_EQ(fs::status(exported).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write);
    ASSERT_EQ(corvane({"locations", "remove", "Home"}, scratch).exitCode, 0);
    EXPECT_EQ(corvane({"locations", "remove", "Home"}, scratch).exitCode, 1);
    EXPECT_EQ(corvane({"locations", "list"}, scratch).out, "Office\t40.44611°, -79.98222°\n");
    auto imported = corvane({"locations", "import", exported.string()}, scratch);
    ASSERT_EQ(imported.exitCode, 0) << imported.err;
    EXPECT_EQ(corvane({"locations", "list"}, scratch).out,
              "Office\t40.44611°, -79.98222°\nHome\t48.85660°, 2.35220°\nOffice\t40.44611°, -79.98222°\n");
}

TEST_F(LibraryCommands, SetWritesASavedPlaceWithItsAddress) {
    corvane::Location paris(48.8566, 2.3522);
    paris.setCity("Paris");
    paris.setCountryName("France");
    corvane::LocationFile({}, {corvane::LocationItem::create("Paris", paris)})
        .exportTo(folder / "places.json");
    ASSERT_EQ(corvane({"locations", "import", (folder / "places.json").string()}, scratch).exitCode, 0);
    const auto jpeg = makeJPEG(folder / "a.jpg");

    auto unknown = corvane({"set", "--saved-location", "Lyon", "--", jpeg.string()}, scratch);
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_NE(unknown.err.find("no place named \"Lyon\""), std::string::npos) << unknown.err;
    EXPECT_EQ(exifToolValue(jpeg, "GPSLatitude"), "") << "a refused command writes nothing";
    auto both = corvane({"set", "--saved-location", "Paris", "--location", "1, 2", jpeg.string()}, scratch);
    EXPECT_NE(both.exitCode, 0);
    EXPECT_NE(both.err.find("excludes"), std::string::npos) << both.err;
    EXPECT_EQ(exifToolValue(jpeg, "GPSLatitude"), "");

    auto run = corvane({"set", "--saved-location", "Paris", "--", jpeg.string()}, scratch);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:GPSLatitude", true), "48.8566");
    EXPECT_EQ(exifToolValue(jpeg, "XMP:GPSLongitude", true), "2.3522");
    EXPECT_EQ(exifToolValue(jpeg, "IPTC:City"), "Paris");
    EXPECT_EQ(exifToolValue(jpeg, "XMP:Country"), "France");
}

} // namespace
