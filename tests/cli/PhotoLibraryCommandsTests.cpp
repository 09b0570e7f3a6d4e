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
    ::setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
    const auto photo = makeJPEG(folder / "photo.jpg");
    tagWithExifTool(photo, {"-EXIF:DateTimeOriginal=2018:03:04 05:06:07"});
    fs::last_write_time(photo, fs::file_time_type::clock::now());

    auto added = corvane(
        {"library", "add", "--root", root.string(), photo.string(), (folder / "x.txt").string()}, scratch);
    EXPECT_EQ(added.exitCode, 1) << added.err; // the missing file
    ASSERT_NE(added.out.find("added: "), std::string::npos) << added.out;
    const std::string identifier = added.out.substr(7, added.out.find('\n') - 7);

    auto listed = corvane({"library", "list", "--root", root.string()}, scratch);
    EXPECT_EQ(listed.exitCode, 0);
    EXPECT_EQ(listed.out, identifier + "\n");

    auto edited =
        corvane({"library", "set", "--root", root.string(), identifier, "EXIF:Artist=Ana"}, scratch);
    ASSERT_EQ(edited.exitCode, 0) << edited.err;
    EXPECT_EQ(edited.out, identifier + " -> 2018/03/photo.jpg\n");
    EXPECT_EQ(exifToolValue(root / "2018/03/photo.jpg", "EXIF:Artist"), "Ana");
    EXPECT_EQ(corvane({"library", "list", "--root", root.string()}, scratch).out, "2018/03/photo.jpg\n");

    auto refused = corvane(
        {"library", "set", "--root", root.string(), "2018/03/photo.jpg", "EXIF:Orientation=99"}, scratch);
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_EQ(corvane({"library", "set", "--root", root.string(), "../photo.jpg", "EXIF:Artist=B"}, scratch)
                  .exitCode,
              1);
    ::unsetenv("XDG_DATA_HOME");
}

TEST_F(PhotoLibraryCommands, doctorNamesTheToolsAndTheLibrary) {
    auto run = corvane({"doctor", "--root", folder.path().string()}, scratch);
    EXPECT_EQ(run.exitCode, 0) << run.out;
    EXPECT_NE(run.out.find("ExifTool: "), std::string::npos);
    EXPECT_NE(run.out.find("photo library: " + folder.path().string() + " (writable)"), std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find("sandbox: "), std::string::npos);
}

} // namespace
} // namespace corvane::test
