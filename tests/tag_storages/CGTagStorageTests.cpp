// The in-process engine: reads compared with ExifTool's, writes read back by ExifTool, and files
// that can't be written staying as they were.

#include "corvane/tag_storages/CGTagStorageReader.hpp"
#include "corvane/tag_storages/CGTagStorageWriter.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include "ReadBack.hpp"
#include "support/Corpus.hpp"
#include "support/EngineAgreement.hpp"
#include "support/FileBytes.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sys/stat.h>
#include <sys/xattr.h>

#ifdef CORVANE_HAVE_EXIV2 // the in-process engine is part of the build

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::exifToolValue;

using test::edited;
using test::fileBytes;
using test::tagName;

// The image data of a file: for a JPEG, everything from its first start-of-scan marker; for a
// TIFF, its strips, where ExifTool says they are.
std::string imageData(const fs::path& path) {
    const std::string bytes = fileBytes(path);
    if (path.extension() == ".jpg") return bytes.substr(bytes.find("\xFF\xDA"));
    const auto offset = std::stoul(exifToolValue(path, "IFD0:StripOffsets", true));
    const auto count = std::stoul(exifToolValue(path, "IFD0:StripByteCounts", true));
    return bytes.substr(offset, count);
}

void write(const std::vector<TagStorage>& storages, CGTagStorageWriter::Destinations destinations = {}) {
    CGTagStorageWriter::Settings settings(storages);
    settings.setDestinations(std::move(destinations));
    CGTagStorageWriter(std::move(settings)).write();
}

std::optional<CGTagStorageWriter::WriteError> writeError(const TagStorage& storage) {
    try {
        write({storage});
    } catch (const CGTagStorageWriter::WriteException& e) {
        EXPECT_EQ(e.url(), storage.source().url());
        return e.error();
    }
    return std::nullopt;
}

std::optional<CGTagStorageReader::ReadError> readError(const fs::path& path) {
    try {
        CGTagStorageReader(CGTagStorageReader::Settings({TagStorageSource(path)})).readStorages();
    } catch (const CGTagStorageReader::ReadException& e) {
        EXPECT_EQ(e.url(), path);
        return e.error();
    }
    return std::nullopt;
}

// A 1x1 GIF: a format exiv2 opens but writes no metadata into. The comment makes it long enough
// for exiv2 to recognise.
fs::path makeGIF(const fs::path& path) {
    std::vector<std::uint8_t> bytes = {'G', 'I', 'F', '8',  '9',  'a',  1,    0, 1,    0,    0x80, 0, 0,
                                       0,   0,   0,   0xFF, 0xFF, 0xFF, 0x2C, 0, 0,    0,    0,    1, 0,
                                       1,   0,   0,   2,    2,    0x44, 1,    0, 0x21, 0xFE, 80};
    bytes.insert(bytes.end(), 80, 'x');
    bytes.insert(bytes.end(), {0, 0x3B});
    return test::writeBytes(path, bytes);
}

std::string attribute(const fs::path& path, const char* key) {
    char buffer[256];
    const ssize_t size = ::getxattr(path.c_str(), key, buffer, sizeof buffer);
    return size < 0 ? std::string() : std::string(buffer, static_cast<std::size_t>(size));
}

class CGTagStorage : public testing::Test {
protected:
    test::TemporaryFolder folder;
};

TEST_F(CGTagStorage, EditsOfEveryFamilyAreReadBackByExifToolAndTheImageDataIsUntouched) {
    const std::map<std::string, std::string> edits{
        {"EXIF:Artist", "Zoë Nakamura"},        {"EXIF:DateTimeOriginal", "2021:03:04 05:06:07"},
        {"EXIF:ExposureTime", "0.004"},         {"EXIF:ISO", "400"},
        {"EXIF:ApertureValue", "2.8"},          {"EXIF:UserComment", "Zoë's comment"},
        {"EXIF:GPSLatitude", "48.8566"},        {"EXIF:GPSLatitudeRef", "N"},
        {"EXIF:GPSLongitude", "2.3522"},        {"EXIF:GPSLongitudeRef", "W"},
        {"IPTC:Keywords", "alpha,beta, gamma"}, {"IPTC:City", "Zürich"},
        {"IPTC:DateCreated", "2021:03:04"},     {"XMP:Rating", "4"}};
    for (auto kind : {test::SampleKind::jpeg, test::SampleKind::tiff}) {
        test::TemporaryFolder folder;
        const auto file = test::makeSample(kind, folder / ("photo." + test::sampleExtension(kind)));
        SCOPED_TRACE(file.filename().string());
        const std::string before = imageData(file);
        ASSERT_EQ(::setxattr(file.c_str(), "user.corvane.note", "kept", 4, 0), 0);
        fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);

        write({edited(file, edits)});

        // ExifTool reads every value back as stored, each compared in its converter's form.
        ETTagStorageReader::Settings settings({TagStorageSource(file)});
        settings.setEnableRawValues(true);
        const TagStorage back = ETTagStorageReader(settings).readStorages().at(file);
        std::map<std::string, std::string> written, read;
        for (const auto& [raw, value] : edits) {
            written[raw] = test::canonical(tagName(raw), value);
            read[raw] = test::canonical(tagName(raw), test::originalValue(back, raw).value_or("absent"));
        }
        EXPECT_EQ(read, written);
        EXPECT_EQ(imageData(file), before);
        EXPECT_EQ(attribute(file, "user.corvane.note"), "kept");
        EXPECT_EQ(fs::status(file).permissions() & fs::perms::all,
                  fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
        // Nothing is left beside the file.
        EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);

        // The in-process reader finds what ExifTool finds under the same names.
        const auto agreement = test::compareEngines({file});
        EXPECT_TRUE(agreement.disagreements.empty() && agreement.missed.empty() && agreement.compared > 0);
    }
}

TEST_F(CGTagStorage, AClearRemovesOnlyItsTagAndTagsWithoutImageIONameAreLeftAlone) {
    const auto file = test::makeJPEG(folder / "a.jpg");
    test::tagWithExifTool(file, {"-EXIF:Artist=Someone", "-EXIF:Copyright=Them", "-IPTC:Keywords=one",
                                 "-IPTC:Keywords=two", "-XMP:Title=Kept"});

    const std::string toolkit = exifToolValue(file, "XMP:XMPToolkit");
    ASSERT_FALSE(toolkit.empty());
    // XMP:Title has no image I/O name; ISO doesn't read as a number: neither may touch the file.
    write({edited(file, {{"EXIF:Artist", ""},
                         {"IPTC:Keywords", ""},
                         {"XMP:Title", "Changed"},
                         {"EXIF:ISO", "not a number"}})});

    EXPECT_EQ(exifToolValue(file, "EXIF:Artist"), "");
    EXPECT_EQ(exifToolValue(file, "IPTC:Keywords"), "");
    EXPECT_EQ(exifToolValue(file, "EXIF:Copyright"), "Them");
    EXPECT_EQ(exifToolValue(file, "XMP:Title"), "Kept");
    // XMP the write doesn't change keeps its packet as it was.
    EXPECT_EQ(exifToolValue(file, "XMP:XMPToolkit"), toolkit);
    EXPECT_EQ(exifToolValue(file, "EXIF:ISO"), "");
}

TEST_F(CGTagStorage, FilesThatCannotBeWrittenGiveTheirErrorAndStayByteIdentical) {
    const auto gif = makeGIF(folder / "flat.gif");
    const auto corrupt = test::writeBytes(folder / "corrupt.jpg", {0xFF, 0xD8, 0xFF, 0xE1, 0x00, 0x10, 'E'});
    const auto missing = folder / "missing.jpg";
    const std::string gifBytes = fileBytes(gif), corruptBytes = fileBytes(corrupt);

    EXPECT_EQ(writeError(edited(gif, {{"EXIF:Artist", "X"}})),
              CGTagStorageWriter::WriteError::destinationIsInvalid);
    EXPECT_EQ(writeError(edited(corrupt, {{"EXIF:Artist", "X"}})),
              CGTagStorageWriter::WriteError::sourceIsInvalid);
    EXPECT_EQ(writeError(edited(missing, {{"EXIF:Artist", "X"}})),
              CGTagStorageWriter::WriteError::sourceIsInvalid);
    EXPECT_EQ(fileBytes(gif), gifBytes);
    EXPECT_EQ(fileBytes(corrupt), corruptBytes);
    EXPECT_FALSE(fs::exists(missing));
    EXPECT_EQ(readError(missing), CGTagStorageReader::ReadError::sourceIsInvalid);

    // HEIC, and camera raw files, are read in process but not written.
    const auto corpus = test::corpusFolder();
    const auto heics = test::corpusFiles(corpus, {"heic"}, true),
               nefs = test::corpusFiles(corpus, {"nef"}, true);
    if (heics.empty() || nefs.empty()) GTEST_SKIP() << "no HEIC or NEF in the corpus at " << corpus;
    for (const auto& original : {heics.front(), nefs.front()}) {
        const auto copy = folder / original.filename();
        fs::copy_file(original, copy);
        const std::string bytes = fileBytes(copy);
        EXPECT_FALSE(readError(copy).has_value()) << copy;
        EXPECT_EQ(writeError(edited(copy, {{"EXIF:Artist", "X"}})),
                  CGTagStorageWriter::WriteError::destinationIsInvalid)
            << copy;
        EXPECT_EQ(fileBytes(copy), bytes) << copy;
    }
}

TEST_F(CGTagStorage, ReaderGivesFolderStoragesFileValuesAndProgressPerSource) {
    const auto plain = test::makeJPEG(folder / "plain.jpg");
    const auto tiff = test::makeTIFF(folder / "image.tif");
    const auto png = test::makePNG(folder / "small.png");
    const auto sub = folder.makeSubfolder("sub");
    std::vector<TagStorageSource> sources = {TagStorageSource(plain), TagStorageSource(sub),
                                             TagStorageSource(tiff), TagStorageSource(png),
                                             TagStorageSource(plain)};

    CGTagStorageReader::Settings settings(sources);
    std::vector<double> progress;
    int ends = 0;
    settings.setOnProgressHandler([&](CGTagStorageReader& reader) { progress.push_back(reader.progress()); });
    settings.setOnEndHandler([&](CGTagStorageReader&) { ++ends; });
    const auto storages = CGTagStorageReader(settings).readStorages();

    EXPECT_EQ(progress, (std::vector<double>{0, 0.2, 0.4, 0.6, 0.8, 1, 1}));
    EXPECT_EQ(ends, 1);
    ASSERT_EQ(storages.size(), 4u);
    EXPECT_TRUE(storages.at(sub).originalValues().empty());
    // Without metadata of the table, only what the file system tells.
    for (const auto& [tag, value] : storages.at(plain).originalValues())
        EXPECT_EQ(tag.stream(), TagStream::streamFile) << tag.rawValue();
    EXPECT_EQ(storages.at(plain).originalValue(tagName("File:FileName")), "plain.jpg");
    EXPECT_TRUE(storages.at(tiff).originalStreams().contains(TagStream::streamEXIF));
}

TEST_F(CGTagStorage, DestinationsAndFolders) {
    const auto source = test::makeJPEG(folder / "source.jpg");
    const std::string sourceBytes = fileBytes(source);
    const auto target = folder / "out" / "deeper" / "copy.jpg";
    write({edited(source, {{"EXIF:Artist", "Elsewhere"}})}, {{source, target}});
    EXPECT_EQ(fileBytes(source), sourceBytes);
    EXPECT_EQ(exifToolValue(target, "EXIF:Artist"), "Elsewhere");

    // A folder storage writes each of its files; the first failure stops the rest.
    const auto album = folder.makeSubfolder("album");
    test::makeJPEG(album / "1.jpg");
    makeGIF(album / "2.gif");
    test::makeJPEG(album / "3.jpg");
    TagStorage storage = edited(album, {{"EXIF:Artist", "Album"}});
    std::vector<double> progress;
    CGTagStorageWriter::Settings settings({storage, edited(source, {{"EXIF:Artist", "Later"}})});
    settings.setOnProgressHandler([&](CGTagStorageWriter& writer) { progress.push_back(writer.progress()); });
    std::optional<CGTagStorageWriter::WriteError> error;
    try {
        CGTagStorageWriter(settings).write();
    } catch (const CGTagStorageWriter::WriteException& e) {
        error = e.error();
    }
    EXPECT_EQ(error, CGTagStorageWriter::WriteError::destinationIsInvalid);
    EXPECT_EQ(exifToolValue(album / "1.jpg", "EXIF:Artist"), "Album");
    EXPECT_EQ(exifToolValue(album / "3.jpg", "EXIF:Artist"), "");
    EXPECT_EQ(exifToolValue(source, "EXIF:Artist"), "");
    EXPECT_EQ(progress, (std::vector<double>{0}));
}

// Every JPEG, TIFF, PNG, HEIC, DNG, CR2 and NEF of the corpus read by both engines: the tags both
// read agree, and the in-process engine opens every format.
TEST_F(CGTagStorage, BothEnginesAgreeOnTheCorpus) {
    const auto corpus = test::corpusFolder();
    const std::vector<std::string> formats = {"jpeg", "tiff", "png", "heic", "dng", "cr2", "nef"};
    if (test::corpusFiles(corpus, formats, false).empty()) GTEST_SKIP() << "no corpus at " << corpus;
    std::size_t compared = 0, disagreeing = 0;
    std::string report;
    for (const auto& format : formats) {
        const auto files = test::corpusFiles(corpus, {format}, false);
        const auto agreement = test::compareEngines(files);
        EXPECT_LT(agreement.unreadable.size(), files.size()) << format << " is never read in process";
        EXPECT_GT(agreement.compared, 0u) << format;
        compared += agreement.compared;
        disagreeing += agreement.disagreements.size();
        for (const auto& d : agreement.disagreements)
            report += d.file.filename().string() + " " + d.tag.rawValue() + ": ExifTool \"" + d.exifTool +
                      "\", in process \"" + d.imageIO + "\"\n";
    }
    EXPECT_GE(1.0 - static_cast<double>(disagreeing) / static_cast<double>(compared), 0.99) << report;
}

} // namespace
} // namespace corvane

#endif
