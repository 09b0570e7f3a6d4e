#include "corvane/sidecar_support/CSVSidecarReader.hpp"
#include "corvane/sidecar_support/CSVSidecarWriter.hpp"
#include "corvane/sidecar_support/JSONSidecarReader.hpp"
#include "corvane/sidecar_support/JSONSidecarWriter.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;

// Real files tagged by ExifTool, read back through the ExifTool reader as the import task does.
class SidecarRoundTrip : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        folder_ = new test::TemporaryFolder("corvane-sidecar-roundtrip");
        const fs::path jpeg = test::makeJPEG(*folder_ / "tagged.jpg");
        test::tagWithExifTool(jpeg, {
                                        "-EXIF:Artist=Zoë Ünsal 東京 😀",
                                        "-EXIF:Make=ACME, Inc. \"Pro\"",
                                        "-EXIF:ISO=200",
                                        "-EXIF:ExposureTime=1/250",
                                        "-EXIF:FNumber=2.8",
                                        "-EXIF:DateTimeOriginal=2024:05:01 12:34:56",
                                        "-EXIF:GPSLatitude=48.8584",
                                        "-EXIF:GPSLatitudeRef=N",
                                        "-IPTC:Keywords=Alpha",
                                        "-IPTC:Keywords=Beta",
                                        "-IPTC:Keywords=Gamma",
                                        "-IPTC:Caption-Abstract=Line one\nLine two; with \"quotes\"",
                                        "-XMP:Title=Été à Paris",
                                        "-XMP:Rating=4",
                                        "-XMP:Subject=one",
                                        "-XMP:Subject=two",
                                    });
        const fs::path mov = test::makeMOV(*folder_ / "tagged.mov");
        test::tagWithExifTool(mov, {"-XMP:Title=Film ñ", "-QuickTime:Artist=Réal Isateur"});

        std::vector<TagStorageSource> sources{TagStorageSource(jpeg), TagStorageSource(mov)};
        ETTagStorageReader::Settings settings(sources);
        settings.setEnableRawValues(true);
        settings.setEnableShortTags(true);
        settings.setDisableComposite(true);
        settings.setIgnoreMinorErrors(true);
        settings.setupDefaultBannedValues();
        ETTagStorageReader reader(settings);
        storages_ = new TagStorageMap(reader.readStorages());
    }
    static void TearDownTestSuite() {
        delete storages_;
        delete folder_;
    }

    // Every tag of the storage must come back with the same value, as the tag's converter states it
    // (a sidecar may hold a value in another spelling, "1" for "1.00000000").
    // With `trimsEnds`, values with blanks at their ends are passed over: a CSV sidecar trims them.
    static void expectNoLoss(const TagStorage& storage, const SidecarReader::Values& values,
                             bool trimsEnds = false) {
        std::size_t compared = 0;
        for (const TagName& tag : storage.currentTagNames()) {
            const std::string original = *storage.currentValue(tag);
            if (trimsEnds && !original.empty() && (original.front() == ' ' || original.back() == ' '))
                continue;
            const TagItem* item = TagItem::find(tag);
            ASSERT_NE(item, nullptr) << tag.rawValue();
            auto normalised = item->converter()->stringValueFromStringValue(original);
            if (!normalised) continue; // not a value the tag's type can hold: nothing to carry
            auto it = values.find(tag);
            ASSERT_NE(it, values.end()) << "lost " << tag.rawValue() << " = " << original;
            EXPECT_EQ(item->converter()->stringValueFromStringValue(it->second), normalised)
                << tag.rawValue();
            ++compared;
        }
        EXPECT_GT(compared, 10u);
    }

    static const TagStorage& storage(const char* file) { return storages_->at(*folder_ / file); }

    static test::TemporaryFolder* folder_;
    static TagStorageMap* storages_;
};

test::TemporaryFolder* SidecarRoundTrip::folder_ = nullptr;
TagStorageMap* SidecarRoundTrip::storages_ = nullptr;

TEST_F(SidecarRoundTrip, ExifToolValuesSurviveJSONSidecars) {
    for (const char* file : {"tagged.jpg", "tagged.mov"}) {
        const fs::path url = *folder_ / "json" / (std::string(file) + ".json");
        JSONSidecarWriter().write(storage(file), url);
        expectNoLoss(storage(file), JSONSidecarReader().readContentsOf(url));
    }
    const auto values = JSONSidecarReader().readContentsOf(*folder_ / "json" / "tagged.jpg.json");
    EXPECT_EQ(values.at(*TagName::fromRawValue("EXIF:Artist")), "Zoë Ünsal 東京 😀");
    EXPECT_EQ(values.at(*TagName::fromRawValue("IPTC:Keywords")), "Alpha,Beta,Gamma");
}

TEST_F(SidecarRoundTrip, ExifToolValuesSurviveCSVSidecars) {
    for (const char* file : {"tagged.jpg", "tagged.mov"}) {
        const fs::path url = *folder_ / "csv" / (std::string(file) + ".csv");
        CSVSidecarWriter().write(storage(file), url);
        expectNoLoss(storage(file), CSVSidecarReader().readContentsOf(url), true);
    }
    const auto values = CSVSidecarReader().readContentsOf(*folder_ / "csv" / "tagged.jpg.csv");
    EXPECT_EQ(values.at(*TagName::fromRawValue("IPTC:Caption-Abstract")),
              "Line one\nLine two; with \"quotes\"");
    EXPECT_EQ(values.at(*TagName::fromRawValue("EXIF:Make")), "ACME, Inc. \"Pro\"");
}

TEST_F(SidecarRoundTrip, EditsGoOutAsCurrentValues) {
    TagStorage edited = storage("tagged.jpg");
    edited.unsafeSetValue("Nouvel Artiste", *TagName::fromRawValue("EXIF:Artist"));
    edited.unsafeSetValue("Delta,Epsilon", *TagName::fromRawValue("IPTC:Keywords"));
    for (const char* format : {"json", "csv"}) {
        auto writer = SidecarWriter::forPathExtension(format);
        auto reader = SidecarReader::forPathExtension(format);
        ASSERT_TRUE(writer && reader) << format;
        const auto values = reader->readData(writer->data(edited));
        expectNoLoss(edited, values);
        EXPECT_EQ(values.at(*TagName::fromRawValue("EXIF:Artist")), "Nouvel Artiste") << format;
        EXPECT_EQ(values.at(*TagName::fromRawValue("IPTC:Keywords")), "Delta,Epsilon") << format;
    }
}

} // namespace
} // namespace corvane
