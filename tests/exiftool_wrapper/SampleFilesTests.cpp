#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>

#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

using namespace corvane::test;

namespace {

// "SourceFile" -> record of "exiftool -j -G1 -validate ..." over the files.
std::map<std::string, nlohmann::json> readAll(const std::vector<std::filesystem::path>& files) {
    std::vector<std::string> args = {"-j", "-G1", "-validate", "-Artist", "-Title", "-Keywords"};
    for (const auto& f : files)
        args.push_back(f.string());
    std::map<std::string, nlohmann::json> out;
    for (const auto& r : nlohmann::json::parse(runExifTool(args).standardOutput))
        out[r.at("SourceFile").get<std::string>()] = r;
    return out;
}

} // namespace

// Every generated file must be valid for ExifTool (the writes the tests rely on are read back by
// the writer's and the reader's tests); the temporary folder they are made in goes with its contents.
TEST(SampleFiles, AreValidAndWritableInAFolderThatIsRemovedWhole) {
    std::filesystem::path kept;
    {
        TemporaryFolder folder;
        kept = folder.path();
        std::vector<std::filesystem::path> files;
        for (auto kind : {SampleKind::jpeg, SampleKind::png, SampleKind::tiff, SampleKind::mov})
            files.push_back(
                makeSample(kind, folder.makeSubfolder("a/b") / ("sample." + sampleExtension(kind))));
        for (const auto& [path, record] : readAll(files))
            EXPECT_EQ(record.at("ExifTool:Validate"), "OK") << path;

        // A write ExifTool refuses fails loudly.
        EXPECT_THROW(
            tagWithExifTool(writeBytes(folder / "broken.jpg", {0xFF, 0xD8, 0x00, 0x01}), {"-EXIF:Artist=x"}),
            std::runtime_error);
    }
    EXPECT_FALSE(std::filesystem::exists(kept));
}
