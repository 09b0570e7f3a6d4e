// `corvane library` on a temporary library, and `corvane doctor`, through the program.
#include "cli/CliRun.hpp"

#include "support/SampleFiles.hpp"

#include <cstdlib>

namespace corvane::test {
namespace {

using PhotoLibraryCommands = CliTest;

TEST_F(PhotoLibraryCommands, addListAndEditAnAssetThroughTheProgram) {
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

TEST_F(PhotoLibraryCommands, doctorNamesTheToolsAndTheLibrary) {
    auto run = cliOK({"doctor", "--root", folder.path().string()});
    EXPECT_THAT(run.out, HasSubstr("ExifTool: "));
    EXPECT_THAT(run.out, HasSubstr("photo library: " + folder.path().string() + " (writable)"));
    EXPECT_THAT(run.out, HasSubstr("sandbox: "));
}

} // namespace
} // namespace corvane::test
