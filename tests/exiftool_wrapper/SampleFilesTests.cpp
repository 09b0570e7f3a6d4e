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

// Every generated file must be valid for ExifTool and take the writes the tests rely on.
TEST(SampleFiles, AreValidAndWritable) {
    TemporaryFolder folder;
    std::vector<std::filesystem::path> files;
    for (auto kind : {SampleKind::jpeg, SampleKind::png, SampleKind::tiff, SampleKind::mov})
        files.push_back(makeSample(kind, folder / ("sample." + sampleExtension(kind))));
    for (const auto& [path, record] : readAll(files))
        EXPECT_EQ(record.at("ExifTool:Validate"), "OK") << path;

    for (const auto& f : files) {
        if (f.extension() == ".mov")
            tagWithExifTool(f, {"-QuickTime:Title=Clip", "-Keys:Artist=Keys artist", "-XMP-dc:Title=Title"});
        else
            tagWithExifTool(f, {"-EXIF:Artist=Ann", "-IPTC:Keywords=one", "-XMP-dc:Title=Title"});
    }
    for (const auto& [path, record] : readAll(files)) {
        SCOPED_TRACE(path);
        EXPECT_EQ(record.at("ExifTool:Validate"), "OK");
        EXPECT_EQ(record.at("XMP-dc:Title"), "Title");
        if (path.ends_with(".mov")) {
            EXPECT_EQ(record.at("ItemList:Title"), "Clip");
            EXPECT_EQ(record.at("Keys:Artist"), "Keys artist");
        } else {
            EXPECT_EQ(record.at("IFD0:Artist"), "Ann");
            EXPECT_EQ(record.at("IPTC:Keywords"), "one");
        }
    }
}

TEST(SampleFiles, MinorDefectBlocksStrictWritesAndABrokenFileFailsLoudly) {
    TemporaryFolder folder;
    const auto path = makeJPEGWithMinorExifDefect(folder / "minor.jpg");
    EXPECT_EQ(exifToolValue(path, "EXIF:Artist"), "Minor");
    EXPECT_THROW(tagWithExifTool(path, {"-EXIF:Copyright=x"}), std::runtime_error);
    EXPECT_NO_THROW(tagWithExifTool(path, {"-m", "-EXIF:Copyright=x"}));
    const auto broken = writeBytes(folder / "broken.jpg", {0xFF, 0xD8, 0x00, 0x01});
    EXPECT_THROW(tagWithExifTool(broken, {"-EXIF:Artist=x"}), std::runtime_error);
}

TEST(TemporaryFolder, RemovesItsContents) {
    std::filesystem::path kept;
    {
        TemporaryFolder folder;
        kept = folder.path();
        makeJPEG(folder.makeSubfolder("a/b") / "x.jpg");
        EXPECT_TRUE(std::filesystem::exists(kept / "a/b/x.jpg"));
    }
    EXPECT_FALSE(std::filesystem::exists(kept));
}
