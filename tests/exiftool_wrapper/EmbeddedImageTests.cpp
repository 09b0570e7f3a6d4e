// The one-job ExifTool wrappers (positions, embedded images, thumbnails) and AtomicParsley, run on
// files the tests make and, where present, on the corpus's raw files.
#include "corvane/exiftool_wrapper/AtomicParsley.hpp"
#include "corvane/exiftool_wrapper/ETCoordinateReader.hpp"
#include "corvane/exiftool_wrapper/ETEmbeddedImageReader.hpp"
#include "corvane/exiftool_wrapper/ETEmbeddedImageWriter.hpp"
#include "corvane/exiftool_wrapper/ETMetadataCleaner.hpp"
#include "corvane/exiftool_wrapper/detail/ProgramRun.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "support/Corpus.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/xattr.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;

std::string bytesOf(const fs::path& path) {
    return readFileBytes(path);
}

// A user extended attribute, as another program would leave on the file; false when the file
// system doesn't take them.
bool setMarker(const fs::path& path) {
    return ::setxattr(path.c_str(), "user.corvane.test", "kept", 4, 0) == 0;
}

bool hasMarker(const fs::path& path) {
    char value[8] = {};
    return ::getxattr(path.c_str(), "user.corvane.test", value, sizeof value) == 4 &&
           std::string(value, 4) == "kept";
}

TEST(ETCoordinateReaderTest, EachSourceGetsItsOwnPositionWhateverTheOthersAre) {
    TemporaryFolder folder;
    const auto south = test::makeJPEG(folder / "south.jpg");
    test::tagWithExifTool(
        south, {"-GPSLatitude=33.8675", "-GPSLatitudeRef=S", "-GPSLongitude=151.207", "-GPSLongitudeRef=E"});
    const auto none = test::makeJPEG(folder / "none.jpg");
    const auto broken = test::writeBytes(folder / "broken.jpg", {0x00, 0x01, 0x02});
    const auto west = test::makeJPEG(folder / "west.jpg");
    test::tagWithExifTool(
        west, {"-GPSLatitude=40.5", "-GPSLatitudeRef=N", "-GPSLongitude=75.25", "-GPSLongitudeRef=W"});

    ETCoordinateReader reader;
    // A missing file prints no line at all: the files after it must not move up.
    for (const auto& path : {south, none, broken, folder / "missing.jpg", west})
        reader.storageSources.emplace_back(path);
    const auto coordinates = reader.read();
    ASSERT_EQ(coordinates.size(), 5u);
    EXPECT_EQ(coordinates,
              (std::vector<std::optional<Coordinate>>{Coordinate(-33.8675, 151.207), std::nullopt,
                                                      std::nullopt, std::nullopt, Coordinate(40.5, -75.25)}));

    EXPECT_THROW(ETCoordinateReader{}.read(), ETCoordinateReader::ReadException);
    // ExifTool's placeholder, numbers out of range and stray text give no position.
    for (const char* line :
         {"-\t-", "+91.000000\t+10.000000", "+10.0\t-181.0", "+1.0 +2.0", "+1.0\t+2.0x", "1.0\t2.0"})
        EXPECT_FALSE(ETCoordinateReader::coordinate(line)) << line;
}

TEST(ETEmbeddedImageWriterTest, ThumbnailIsReplacedReadBackAndRemovedInPlace) {
    TemporaryFolder folder;
    const auto photo = test::makeJPEG(folder / "photo.jpg");
    test::tagWithExifTool(photo, {"-EXIF:Artist=Someone"});
    const bool marked = setMarker(photo);
    const auto thumbnailPNG = test::makePNG(folder / "thumb.png");

    ETEmbeddedImageWriter writer;
    writer.image = Image::fromFile(thumbnailPNG);
    ASSERT_TRUE(writer.image);
    writer.storageSources = {TagStorageSource(photo)};
    writer.write();

    // The PNG went in as a JPEG of its size; it reads back and decodes.
    ETEmbeddedImageReader reader;
    reader.imageSource = ETEmbeddedImageReader::ImageSource::thumbnail;
    reader.storageSource = TagStorageSource(photo);
    const Image thumbnail = reader.read();
    EXPECT_TRUE(thumbnail.format() == Image::Format::jpeg && thumbnail.width() == 1 &&
                thumbnail.height() == 1);
    EXPECT_EQ(test::exifToolValue(photo, "EXIF:Artist"), "Someone");
    EXPECT_TRUE(!marked || hasMarker(photo));

    // A JPEG that fits goes in byte for byte.
    const auto small = test::makeJPEG(folder / "small.jpg");
    writer.image = Image::fromFile(small);
    writer.write();
    EXPECT_EQ(reader.read().data(), bytesOf(small));

    writer.image.reset();
    writer.write();
    EXPECT_THAT([&] { reader.read(); }, testing::Throws<ETEmbeddedImageReader::ReadException>(
                                            testing::Property(&ETEmbeddedImageReader::ReadException::error,
                                                              ETEmbeddedImageReader::ReadError::emptyOutput)))
        << "the thumbnail is still there";
    EXPECT_FALSE(fs::exists(fs::path(photo.string() + "_original")));
    EXPECT_THROW(ETEmbeddedImageWriter{}.write(), ETEmbeddedImageWriter::WriteException);
}

// The raw files of the corpus hold previews and full-size JPEGs that ExifTool finds, asked for by name.
TEST(ETEmbeddedImageReaderTest, RawPreviewsComeOutUntouchedAndDecode) {
    const auto root = test::corpusFolder();
    std::vector<fs::path> raws;
    for (const char* format : {"cr2", "nef", "dng"}) {
        std::error_code error;
        for (fs::recursive_directory_iterator it(root / format, error), end; !error && it != end;
             it.increment(error))
            if (it->is_regular_file()) raws.push_back(it->path());
    }
    if (raws.empty()) GTEST_SKIP() << "no raw files in the corpus at " << root;
    int previews = 0;
    for (const auto& raw : raws) {
        ETEmbeddedImageReader reader;
        reader.storageSource = TagStorageSource(raw);
        // By the names a person gives them.
        for (const char* name : {"preview", "jpgfromraw"}) {
            const auto source = ETEmbeddedImageReader::imageSourceNamed(name).value();
            reader.imageSource = source;
            try {
                const Image image = reader.read();
                const auto expected =
                    test::runExifTool({"-b", ETEmbeddedImageReader::argument(source), raw.string()});
                // ExifTool's own output (the helper's end marker follows it) holds the same bytes.
                EXPECT_TRUE(expected.standardOutput.starts_with(image.data()) &&
                            expected.standardOutput.size() < image.data().size() + 64)
                    << raw << ": " << image.data().size() << " bytes, ExifTool gave "
                    << expected.standardOutput.size();
                EXPECT_GT(image.width(), 0);
                ++previews;
            } catch (const ETEmbeddedImageReader::ReadException& e) {
                // A raw file without this kind of image, or one in another format, is no failure.
                EXPECT_NE(e.error(), ETEmbeddedImageReader::ReadError::unreadableImage) << raw;
            }
        }
    }
    EXPECT_GT(previews, 0);
}

TEST(ImageTest, DamagedBytesAreNoImageAndALargeImageIsShrunkToFitTheExifSegment) {
    const auto jpeg = test::jpegBytes();
    const std::string whole(jpeg.begin(), jpeg.end());
    EXPECT_TRUE(Image::fromData(whole));
    // Cut in the middle of the entropy-coded data.
    EXPECT_FALSE(Image::fromData(whole.substr(0, whole.size() / 2)));
    const auto tiff = test::tiffBytes();
    EXPECT_FALSE(Image::fromData(std::string(tiff.begin(), tiff.end())));
    const auto png = test::pngBytes();
    std::string pngText(png.begin(), png.end());
    pngText[pngText.size() / 2] ^= 0x55;
    EXPECT_FALSE(Image::fromData(pngText));
    // A large image of the corpus is shrunk to fit the EXIF segment.
    const auto root = test::corpusFolder();
    std::optional<Image> large;
    std::error_code error;
    for (fs::recursive_directory_iterator it(root / "jpeg", error), end; !error && it != end && !large;
         it.increment(error))
        if (it->is_regular_file() && it->file_size() > 200000) large = Image::fromFile(it->path());
    if (!large) GTEST_SKIP() << "no large JPEG in the corpus at " << root;
    const auto data = large->jpegData(ETEmbeddedImageWriter::maxThumbnailBytes);
    ASSERT_TRUE(data);
    EXPECT_LE(data->size(), ETEmbeddedImageWriter::maxThumbnailBytes);
    const auto shrunk = Image::fromData(*data);
    ASSERT_TRUE(shrunk);
    EXPECT_LT(shrunk->width(), large->width() + 1);
}

// In place by default: the same file (inode, extended attributes), no copy left beside it; else
// the file as it was is kept as NAME_original.
TEST(ETMetadataCleanerTest, RemovesEveryFamilyInPlaceOrKeepingTheOriginal) {
    TemporaryFolder folder;
    const auto photo = test::makeJPEG(folder / "photo.jpg");
    const auto kept = test::makeJPEG(folder / "kept.jpg");
    for (const auto& path : {photo, kept})
        test::tagWithExifTool(path, {"-EXIF:Artist=A", "-XMP:Title=T", "-IPTC:Keywords=K"});
    const bool marked = setMarker(photo);
    struct stat before {};
    ASSERT_EQ(::stat(photo.c_str(), &before), 0);
    ETMetadataCleaner cleaner;
    cleaner.storageSources = {TagStorageSource(photo)};
    cleaner.clean();
    for (const char* tag : {"EXIF:Artist", "XMP:Title", "IPTC:Keywords"})
        EXPECT_EQ(test::exifToolValue(photo, tag), "") << tag;
    struct stat after {};
    ASSERT_EQ(::stat(photo.c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_TRUE(!marked || hasMarker(photo));
    EXPECT_FALSE(fs::exists(folder / "photo.jpg_original"));

    cleaner.overrideInPlace = false;
    cleaner.storageSources = {TagStorageSource(kept)};
    cleaner.clean();
    EXPECT_EQ(test::exifToolValue(kept, "EXIF:Artist"), "");
    EXPECT_EQ(test::exifToolValue(folder / "kept.jpg_original", "EXIF:Artist"), "A");
    EXPECT_THROW(ETMetadataCleaner{}.clean(), ETMetadataCleaner::ReadException);
}

// An MPEG-4 movie made from the sample QuickTime movie: the same atoms under an "isom" brand, which
// AtomicParsley takes.
fs::path makeMP4(const fs::path& path) {
    auto bytes = test::movBytes();
    for (std::size_t offset : {8u, 16u})
        std::copy_n("isom", 4, bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    return test::writeBytes(path, bytes);
}

TEST(AtomicParsleyTest, RemovesTheMovieAtomAndLeavesMoviesWithoutItAlone) {
    TemporaryFolder folder;
    const auto plain = makeMP4(folder / "plain.mp4");
    const auto tagged = folder / "tagged.mp4";
    const auto made =
        detail::runProgram({"AtomicParsley", plain.string(), "--rDNSatom", "<plist/>", "name=iTunMOVI",
                            "domain=com.apple.iTunes", "--output", tagged.string()},
                           std::chrono::seconds(30));
    ASSERT_TRUE(made.succeeded()) << made.standardOutput << made.standardError;
    const bool marked = setMarker(tagged);
    ASSERT_TRUE(AtomicParsley::hasiTunMOVI(tagged));

    const auto before = bytesOf(plain);
    const auto plainTime = fs::last_write_time(plain);
    EXPECT_FALSE(AtomicParsley::deleteiTunMOVI(plain));
    EXPECT_EQ(bytesOf(plain), before);
    EXPECT_EQ(fs::last_write_time(plain), plainTime);

    EXPECT_TRUE(AtomicParsley::deleteiTunMOVI(tagged));
    EXPECT_FALSE(AtomicParsley::hasiTunMOVI(tagged));
    EXPECT_FALSE(test::exifToolValue(tagged, "QuickTime:MovieHeaderVersion").empty());
    EXPECT_TRUE(!marked || hasMarker(tagged));

    // A QuickTime movie is refused with AtomicParsley's reason, naming the file; it stays as it was.
    const auto mov = test::makeMOV(folder / "movie.mov");
    const auto movBefore = bytesOf(mov);
    try {
        AtomicParsley::deleteiTunMOVI(mov);
        ADD_FAILURE() << "a QuickTime movie was taken";
    } catch (const AtomicParsley::RunException& e) {
        EXPECT_EQ(e.url(), mov);
        EXPECT_NE(std::string(e.what()).find(mov.string() + ": "), std::string::npos);
    }
    EXPECT_EQ(bytesOf(mov), movBefore);

    const auto program = AtomicParsley::executableURL();
    AtomicParsley::setExecutableURL(folder / "no-such-program");
    EXPECT_THROW(AtomicParsley::hasiTunMOVI(plain), AtomicParsley::RunException);
    AtomicParsley::setExecutableURL(program);
}

} // namespace
} // namespace corvane
