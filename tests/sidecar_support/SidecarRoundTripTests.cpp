#include "corvane/sidecar_support/SidecarReader.hpp"
#include "corvane/sidecar_support/SidecarWriter.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include "support/SampleFiles.hpp"
#include "support/StorageValues.hpp"
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
        test::tagWithExifTool(
            jpeg, {"-EXIF:Artist=Zoë Ünsal 東京 😀", "-EXIF:Make=ACME, Inc. \"Pro\"", "-EXIF:ISO=200",
                   "-EXIF:ExposureTime=1/250", "-EXIF:FNumber=2.8",
                   "-EXIF:DateTimeOriginal=2024:05:01 12:34:56", "-EXIF:GPSLatitude=48.8584",
                   "-EXIF:GPSLatitudeRef=N", "-IPTC:Keywords=Alpha", "-IPTC:Keywords=Beta",
                   "-IPTC:Keywords=Gamma", "-IPTC:Caption-Abstract=Line one\nLine two; with \"quotes\"",
                   "-XMP:Title=Été à Paris", "-XMP:Rating=4", "-XMP:Subject=one", "-XMP:Subject=two"});
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

TEST_F(SidecarRoundTrip, ExifToolValuesAndEditsSurviveEveryFormat) {
    // Every value is compared, Unicode, lists, quotes, commas and line breaks among them.
    TagStorage edited = storage("tagged.jpg");
    edited.unsafeSetValue("Nouvel Artiste", test::tagName("EXIF:Artist"));
    edited.unsafeSetValue("Delta,Epsilon", test::tagName("IPTC:Keywords"));
    for (const std::string format : {"json", "csv"}) {
        SCOPED_TRACE(format);
        for (const std::string file : {"tagged.jpg", "tagged.mov"}) {
            const fs::path url = *folder_ / format / (file + "." + format);
            SidecarWriter::writeSidecar(storage(file.c_str()), url);
            expectNoLoss(storage(file.c_str()), SidecarReader::readSidecar(url), format == "csv");
        }
        // Edits go out as current values.
        expectNoLoss(edited, SidecarReader::forPathExtension(format)->readData(
                                 SidecarWriter::forPathExtension(format)->data(edited)));
    }
}

} // namespace
} // namespace corvane
