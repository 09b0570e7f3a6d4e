// `corvane keywords`, `locations` and `library`, run as the built program with the user defaults in
// a folder of the test: what one run saves, the next one finds; bad input is refused and saves
// nothing.
#include "cli/CliRun.hpp"
#include "corvane/location_support/LocationFile.hpp"
#include "support/SampleFiles.hpp"

#include <gtest/gtest.h>

namespace {

using namespace corvane::test;

// The user defaults in a folder of the test.
class LibraryCommands : public CliTest {
protected:
    ScopedEnvironment config{"XDG_CONFIG_HOME", folder.makeSubfolder("config").string()};
};

TEST_F(LibraryCommands, KeywordsImportExportBothForms) {
    writeText(folder / "k.txt", "Places\n\t{Areas}\n\tParis\n[People]\n\tZoë\n");
    auto imported = cliOK({"keywords", "import", (folder / "k.txt").string()});
    EXPECT_EQ(imported.out, "imported 4 keywords\n");
    auto listed = cli({"keywords", "list"});
    EXPECT_EQ(listed.out, "Places {Areas}\n  Paris\n[People]\n  Zoë\n");

    cliOK({"keywords", "export", "-o", (folder / "out.txt").string()});
    EXPECT_EQ(fileBytes(folder / "out.txt"), "[People]\n\tZoë\nPlaces\n\t{Areas}\n\tParis\n")
        << "sorted by name";
    cliOK({"keywords", "export", "-o", (folder / "out.json").string()});
    EXPECT_EQ(nlohmann::json::parse(fileBytes(folder / "out.json"))["items"][1]["is_header"], true);

    // Importing the JSON export adds a second copy after the first.
    cliOK({"keywords", "import", (folder / "out.json").string()});
    EXPECT_EQ(cli({"keywords", "list"}).out, listed.out + listed.out);

    writeText(folder / "bad.txt", "A\n\t\t\tB\n");
    auto bad = cliExits(1, {"keywords", "import", (folder / "bad.txt").string()});
    EXPECT_EQ(bad.err, "corvane: " + (folder / "bad.txt").string() + ": Line indentation is invalid\n");
    writeText(folder / "bad.json", R"({"description": "no items"})");
    bad = cliExits(1, {"keywords", "import", (folder / "bad.json").string()});
    EXPECT_EQ(cli({"keywords", "list"}).out, listed.out + listed.out) << "failed imports save nothing";
}

TEST_F(LibraryCommands, LocationsAddRemoveAndExchange) {
    cliOK({"locations", "add", "Home", "48.8566, 2.3522"});
    cliOK({"locations", "add", "Office", "40°26'46\"N 79°58'56\"W"});
    EXPECT_THAT(cliExits(1, {"locations", "add", "Home", "1.5, 2.5"}).err, HasSubstr("already saved"));
    cliExits(1, {"locations", "add", "Nowhere", "north"});
    EXPECT_EQ(cli({"locations", "list"}).out, "Home\t48.85660°, 2.35220°\nOffice\t40.44611°, -79.98222°\n");

    const auto exported = folder / "places.json";
    cliOK({"locations", "export", "-o", exported.string()});
    EXPECT_EQ(fs::status(exported).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write);
    cliOK({"locations", "remove", "Home"});
    cliExits(1, {"locations", "remove", "Home"});
    EXPECT_EQ(cli({"locations", "list"}).out, "Office\t40.44611°, -79.98222°\n");
    cliOK({"locations", "import", exported.string()});
    EXPECT_EQ(cli({"locations", "list"}).out,
              "Office\t40.44611°, -79.98222°\nHome\t48.85660°, 2.35220°\nOffice\t40.44611°, -79.98222°\n");
}

TEST_F(LibraryCommands, SetWritesASavedPlaceWithItsAddress) {
    corvane::Location paris(48.8566, 2.3522);
    paris.setCity("Paris");
    paris.setCountryName("France");
    corvane::LocationFile({}, {corvane::LocationItem::create("Paris", paris)})
        .exportTo(folder / "places.json");
    cliOK({"locations", "import", (folder / "places.json").string()});
    const auto jpeg = makeJPEG(folder / "a.jpg");

    EXPECT_THAT(cliExits(2, {"set", "--saved-location", "Lyon", "--", jpeg.string()}).err,
                HasSubstr("no place named \"Lyon\""));
    EXPECT_EQ(exifToolValue(jpeg, "GPSLatitude"), "") << "a refused command writes nothing";
    EXPECT_THAT(cliExits(2, {"set", "--saved-location", "Paris", "--location", "1, 2", jpeg.string()}).err,
                HasSubstr("excludes"));

    // The place's position and address (where each field goes is the location editors' test).
    cliOK({"set", "--saved-location", "Paris", "--", jpeg.string()});
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:GPSLatitude", true), "48.8566");
    EXPECT_EQ(exifToolValue(jpeg, "IPTC:City"), "Paris");
}

// `corvane library` on a temporary library, and `corvane doctor`.
TEST_F(LibraryCommands, addListAndEditAnAssetThroughTheProgram) {
    const fs::path root = folder.makeSubfolder("Pictures");
    // The program's Trash: under this test's data folder, not the user's.
    ScopedEnvironment data("XDG_DATA_HOME", (folder / "data").string());
    const auto photo = makeJPEG(folder / "photo.jpg");
    tagWithExifTool(photo, {"-EXIF:DateTimeOriginal=2018:03:04 05:06:07"});
    fs::last_write_time(photo, fs::file_time_type::clock::now());

    // The missing file fails; the photo is added.
    auto added =
        cliExits(1, {"library", "add", "--root", root.string(), photo.string(), (folder / "x.txt").string()});
    ASSERT_THAT(added.out, StartsWith("added: "));
    const std::string identifier = added.out.substr(7, added.out.find('\n') - 7);

    EXPECT_EQ(cliOK({"library", "list", "--root", root.string()}).out, identifier + "\n");

    EXPECT_EQ(cliOK({"library", "set", "--root", root.string(), identifier, "EXIF:Artist=Ana"}).out,
              identifier + " -> 2018/03/photo.jpg\n");
    EXPECT_EQ(exifToolValue(root / "2018/03/photo.jpg", "EXIF:Artist"), "Ana");
    EXPECT_EQ(cli({"library", "list", "--root", root.string()}).out, "2018/03/photo.jpg\n");

    cliExits(2, {"library", "set", "--root", root.string(), "2018/03/photo.jpg", "EXIF:Orientation=99"});
    cliExits(1, {"library", "set", "--root", root.string(), "../photo.jpg", "EXIF:Artist=B"});
}

TEST_F(LibraryCommands, doctorNamesTheToolsAndTheLibrary) {
    auto run = cliOK({"doctor", "--root", folder.path().string()});
    EXPECT_THAT(run.out, HasSubstr("ExifTool: "));
    EXPECT_THAT(run.out, HasSubstr("photo library: " + folder.path().string() + " (writable)"));
    EXPECT_THAT(run.out, HasSubstr("sandbox: "));
}

} // namespace
