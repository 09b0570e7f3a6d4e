// ExifTool's warnings about the files it reads are kept per file, beside the values it read.
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/tag_value/TagName.hpp"

#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace corvane {
namespace {

namespace fs = std::filesystem;

// A JPEG with EXIF whose file ends inside its frame header: ExifTool reads the EXIF and
// warns that the JPEG is damaged.
fs::path cutJPEG(const fs::path& path) {
    test::makeJPEG(path);
    test::tagWithExifTool(path, {"-EXIF:Artist=Cut"});
    std::ifstream in(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), {}};
    in.close();
    bytes.resize(bytes.find("\xFF\xC0") + 6);
    return test::writeBytes(path, std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
}

TEST(ETReaderWarnings, KeptPerFileWithTheValuesReadAllTheSame) {
    test::TemporaryFolder folder("corvane-reader-warnings");
    const auto cut = cutJPEG(folder / "cut.jpg");
    const auto good = test::makeJPEG(folder / "good.jpg");
    ETTagStorageReader::Settings settings({TagStorageSource(cut), TagStorageSource(good)});
    settings.setupDefaultBannedValues();
    ETTagStorageReader reader(std::move(settings));
    const TagStorageMap storages = reader.readStorages();

    ASSERT_EQ(storages.size(), 2u);
    EXPECT_EQ(storages.at(cut).originalValues().at(*TagName::fromRawValue("EXIF:Artist")), "Cut");
    // Only the damaged file has a warning; ExifTool's own group stays out of the values.
    EXPECT_THAT(reader.warnings(),
                testing::ElementsAre(testing::Pair(cut, testing::ElementsAre("JPEG format error"))));
    for (const auto& [url, storage] : storages)
        for (const auto& [name, value] : storage.originalValues())
            EXPECT_NE(name.stream().rawValue(), "ExifTool") << name.rawValue();
}

} // namespace
} // namespace corvane
