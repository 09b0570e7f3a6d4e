#include "corvane/tag_value/TagItem.hpp"

#include "support/Corpus.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>

using namespace corvane;
namespace fs = std::filesystem;

namespace {

struct Resolution {
    int total = 0;
    std::vector<std::string> unknown;
};

// Files every tag of ExifTool's grouped JSON the way the reader does: under
// family 0, or under family 1 for maker notes.
Resolution resolve(const std::vector<std::string>& files) {
    std::vector<std::string> args = {"-j", "-g0:1", "-n"};
    args.insert(args.end(), files.begin(), files.end());
    auto run = test::runExifTool(args);
    Resolution r;
    auto json = nlohmann::json::parse(run.standardOutput);
    for (const auto& object : json) {
        for (const auto& [group, tags] : object.items()) {
            if (group == "SourceFile" || !tags.is_object()) continue;
            auto colon = group.find(':');
            std::string g0 = group.substr(0, colon);
            std::string g1 = colon == std::string::npos ? g0 : group.substr(colon + 1);
            const std::string& stream = g0 == "MakerNotes" ? g1 : g0;
            for (const auto& [key, value] : tags.items()) {
                ++r.total;
                if (!TagItem::find(stream, key)) r.unknown.push_back(group + ":" + key);
            }
        }
    }
    return r;
}

} // namespace

TEST(CatalogueWithExifTool, KnowsEveryTagExifToolWritesAndReadsBack) {
    test::TemporaryFolder folder;
    fs::path jpeg = test::makeJPEG(folder / "a.jpg");
    test::tagWithExifTool(jpeg,
                          {"-EXIF:Artist=Ann", "-EXIF:DateTimeOriginal=2024:05:01 12:00:00",
                           "-EXIF:GPSLatitude=48.85", "-EXIF:GPSLatitudeRef=N", "-IPTC:Keywords=sea",
                           "-IPTC:Keywords=sun", "-IPTC:By-line=Bob", "-XMP:Subject=sea", "-XMP:Rating=4",
                           "-XMP:CountryCode=FR", "-XMP:CreateDate=2024:05:01 12:00:00+02:00"});
    fs::path mov = test::makeMOV(folder / "b.mov");
    test::tagWithExifTool(mov, {"-QuickTime:Title=Holiday", "-QuickTime:Keyword=sea"});
    Resolution r = resolve({jpeg.string(), mov.string()});
    EXPECT_GT(r.total, 60);
    EXPECT_TRUE(r.unknown.empty()) << r.unknown.size() << " unknown, first " << r.unknown.front();
}

TEST(CatalogueWithExifTool, KnowsTheTagsOfCameraFiles) {
    const fs::path corpus = test::corpusFolder();
    std::vector<std::string> files;
    for (const char* f :
         {"jpeg/exif-samples/Canon_40D.jpg", "jpeg/exif-samples/DSCN0010.jpg", "cr2/exiftool/CanonRaw.cr2",
          "nef/exiftool/Nikon.nef", "mov/exiftool/QuickTime.mov"})
        if (fs::exists(corpus / f)) files.push_back((corpus / f).string());
    if (files.empty()) GTEST_SKIP() << "no camera files under " << corpus;
    Resolution r = resolve(files);
    ASSERT_GT(r.total, 300);
    // Only composite previews that ExifTool files under a maker's preview group stay unknown.
    EXPECT_LE(r.unknown.size(), static_cast<size_t>(r.total / 100)) << "first unknown: " << r.unknown.front();
}
