// Values that the converters read but that must not reach a file: non-finite numbers, integers
// the integer converter would read as another number, GPS positions off the globe. Both writers
// leave such a file as it was and name the tag.

#include "corvane/tag_storages/ETTagStorageWriter.hpp"
#include "corvane/tag_storages/UnwritableValueError.hpp"
#include "corvane/tag_storages/detail/WritableValue.hpp"
#include "corvane/tag_value/TagItem.hpp"

#ifdef CORVANE_HAVE_EXIV2
#include "corvane/tag_storages/CGTagStorageWriter.hpp"
#endif

#include "support/FileBytes.hpp"
#include "support/SampleFiles.hpp"
#include "support/StorageValues.hpp"
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace corvane {
namespace {

namespace fs = std::filesystem;

using test::fileBytes;

using test::edited;

std::optional<std::string> reason(std::string_view stream, std::string_view key, const std::string& value) {
    const TagItem* item = TagItem::find(stream, key);
    EXPECT_TRUE(item) << stream << ":" << key;
    return item ? detail::unwritableValueReason(*item, value) : std::nullopt;
}

TEST(UnwritableValues, NonFiniteOverflowingAndOffGlobeNumbersAreRefusedByTag) {
    // Floats: what the converter lets through as "inf" and "nan".
    for (const char* value : {"inf", "-infinity", "nan", "1e999"})
        EXPECT_EQ(reason("EXIF", "ExposureTime", value),
                  "EXIF:ExposureTime: \"" + std::string(value) + "\" is not a finite number");
    EXPECT_EQ(reason("EXIF", "ExposureTime", "0.004"), std::nullopt);
    EXPECT_EQ(reason("EXIF", "ExposureTime", "1/500"), std::nullopt) << "left to the converter";
    // Integers: "1e999" reads 0 and 1e16 reads 1 through the integer converter. Each element of a
    // list is looked at.
    EXPECT_EQ(reason("EXIF", "ISO", "1e999"), "EXIF:ISO: \"1e999\" is not a finite number");
    EXPECT_EQ(reason("EXIF", "ISO", "100, 10000000000000000"),
              "EXIF:ISO: \"10000000000000000\" is out of the integer range");
    EXPECT_EQ(reason("EXIF", "ISO", "100, 1e3"), std::nullopt);
    // GPS degrees, in numbers and in a position text.
    EXPECT_EQ(reason("EXIF", "GPSLatitude", "91"), "EXIF:GPSLatitude: \"91\" is beyond 90 degrees");
    EXPECT_EQ(reason("EXIF", "GPSLongitude", "179.5"), std::nullopt);
    EXPECT_EQ(reason("QuickTime", "GPSCoordinates", "+91.00000-075.50000/"),
              "QuickTime:GPSCoordinates: \"+91.00000-075.50000/\" is not a position on the globe");
    EXPECT_EQ(reason("QuickTime", "GPSCoordinates", "+40.20000-075.50000/"), std::nullopt);
}

TEST(UnwritableValues, ExifToolWriterLeavesTheFileAndWritesTheOthers) {
    test::TemporaryFolder folder("corvane-unwritable");
    const fs::path refused = test::makeJPEG(folder.path() / "refused.jpg");
    const fs::path accepted = test::makeJPEG(folder.path() / "accepted.jpg");
    const std::string before = fileBytes(refused);
    ETTagStorageWriter writer(ETTagStorageWriter::Settings(
        {edited(refused, {{"EXIF:Artist", "Ann"}, {"EXIF:ExposureTime", "inf"}}),
         edited(accepted, {{"EXIF:Artist", "Ann"}, {"EXIF:ExposureTime", "0.004"}})}));
    writer.write();
    ASSERT_EQ(writer.outcomes().size(), 2u);
    EXPECT_EQ(writer.outcomes()[0].status, ETTagStorageWriter::FileOutcome::Status::failed);
    EXPECT_EQ(writer.outcomes()[0].reason, "EXIF:ExposureTime: \"inf\" is not a finite number");
    EXPECT_EQ(fileBytes(refused), before);
    EXPECT_EQ(writer.outcomes()[1].status, ETTagStorageWriter::FileOutcome::Status::written);
    EXPECT_EQ(test::exifToolValue(accepted, "EXIF:Artist"), "Ann");
}

#ifdef CORVANE_HAVE_EXIV2
TEST(UnwritableValues, ImageEngineWriterThrowsBeforeTouchingTheFile) {
    test::TemporaryFolder folder("corvane-unwritable");
    const fs::path jpeg = test::makeJPEG(folder.path() / "photo.jpg");
    const std::string before = fileBytes(jpeg);
    CGTagStorageWriter writer(CGTagStorageWriter::Settings({edited(jpeg, {{"EXIF:ISO", "1e999"}})}));
    EXPECT_THAT([&] { writer.write(); },
                testing::Throws<UnwritableValueError>(testing::AllOf(
                    testing::Property(&UnwritableValueError::url, jpeg),
                    testing::Property(
                        &UnwritableValueError::what,
                        testing::StrEq(jpeg.string() + ": EXIF:ISO: \"1e999\" is not a finite number")))));
    EXPECT_EQ(fileBytes(jpeg), before);
}
#endif

} // namespace
} // namespace corvane
