#include <gtest/gtest.h>

#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

using namespace corvane::test;

// Every generated file must be valid for ExifTool (the writes the tests rely on are read back by
// the writer's and the reader's tests); the temporary folder they are made in goes with its contents.
TEST(SampleFiles, AreValidAndWritableInAFolderThatIsRemovedWhole) {
    std::filesystem::path kept;
    {
        TemporaryFolder folder;
        kept = folder.path();
        std::vector<std::string> arguments{"-p", "$FileName $Validate", "-validate"};
        std::string expected;
        for (auto kind : {SampleKind::jpeg, SampleKind::png, SampleKind::tiff, SampleKind::mov}) {
            const auto name = "sample." + sampleExtension(kind);
            arguments.push_back(makeSample(kind, folder.makeSubfolder("a/b") / name).string());
            expected += name + " OK\n";
        }
        EXPECT_EQ(runExifTool(arguments).standardOutput, expected);

        // A write ExifTool refuses fails loudly.
        EXPECT_THROW(
            tagWithExifTool(writeBytes(folder / "broken.jpg", {0xFF, 0xD8, 0x00, 0x01}), {"-EXIF:Artist=x"}),
            std::runtime_error);
    }
    EXPECT_FALSE(std::filesystem::exists(kept));
}
