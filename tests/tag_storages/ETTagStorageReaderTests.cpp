// Reading storages through ExifTool: the decoding rules on hand-made output, then real runs.

#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include "support/FileBytes.hpp"
#include "support/SampleFiles.hpp"
#include "support/StorageValues.hpp"
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

std::optional<std::string> original(const TagStorage& storage, const TagItem& item) {
    auto it = storage.originalValues().find(item.name());
    if (it == storage.originalValues().end()) return std::nullopt;
    return it->second;
}

std::optional<std::string> original(const TagStorage& storage, std::string_view name) {
    return test::originalValue(storage, name);
}

ETTagStorageReader::Settings defaultSettings(std::vector<TagStorageSource> sources) {
    ETTagStorageReader::Settings settings(std::move(sources));
    settings.setupDefaultBannedValues();
    return settings;
}

// --- Decoding ExifTool's output

class ETReaderDecoding : public testing::Test {
protected:
    const std::vector<TagStorageSource> sources{TagStorageSource("/photos/a.jpg"),
                                                TagStorageSource("/photos/b.mov")};
    ETTagStorageReader reader{defaultSettings(sources)};

    TagStorage decodeOne(const std::string& groups, const std::string& path = "/photos/a.jpg") {
        const std::string data =
            R"([{"SourceFile": ")" + path + "\"" + (groups.empty() ? "" : ", ") + groups + "}]";
        auto storages = reader.parseExifToolOutput(data, sources);
        EXPECT_EQ(storages.size(), 1u);
        return storages.empty() ? TagStorage(sources[0]) : storages.front();
    }
};

TEST_F(ETReaderDecoding, ValuesAreKeptUnderCatalogueNamesWithTheirStreams) {
    const TagStorage storage = decodeOne(R"(
        "EXIF:IFD0": {"Artist": "Zoë", "NotInTheCatalogue": "x", "Copyright": ""},
        "IPTC:IPTC": {"Keywords": ["one", "two"]},
        "XMP:XMP-dc": {"Title": 1.50, "Subject": ["007", 2.0]},
        "XMP:XMP-other": {"Title": "second"},
        "JFIF:JFIF": {"NothingKnown": 1})");
    EXPECT_EQ(original(storage, TagItem::itemEXIFArtist()), "Zoë");
    EXPECT_EQ(original(storage, "EXIF:NotInTheCatalogue"), std::nullopt);
    EXPECT_EQ(original(storage, TagItem::itemEXIFCopyright()), "") << "an empty value is stored";
    EXPECT_EQ(original(storage, TagItem::itemIPTCKeywords()), "one,two");
    // ExifTool prints numeric-looking text as numbers; text tags keep it as printed.
    EXPECT_EQ(original(storage, "XMP:Title"), "1.50") << "the first occurrence of a name wins";
    EXPECT_EQ(original(storage, TagItem::itemXMPSubject()), "007,2.0");
    // A group without any known tag still marks its stream as present.
    EXPECT_TRUE(storage.originalStreams().contains(TagStream::streamJFIF));
    EXPECT_TRUE(storage.originalStreams().contains(TagStream::streamEXIF));
    // The file's own resources are completed from the source.
    EXPECT_EQ(original(storage, TagItem::itemFileFileName()), "a.jpg");
    EXPECT_EQ(original(storage, TagItem::itemFileDirectory()), "/photos");
    EXPECT_EQ(original(storage, TagItem::itemFileFileTypeExtension()), "jpg");
    EXPECT_TRUE(storage.writtenValues().empty());
}

// What the file holds is shown even where the tag's converter can't read it: more numbers than the
// tag's table declares, an unset date, a number ExifTool prints as text.
TEST_F(ETReaderDecoding, ValuesTheConverterCantReadAreKeptAsPrinted) {
    const TagStorage storage = decodeOne(R"(
        "EXIF:ExifIFD": {"ExifImageWidth": "100 0", "DateTimeOriginal": "0000:00:00 00:00:00",
                         "DigitalZoomRatio": "undef", "ExposureTime": 0.002},
        "XMP:XMP-photoshop": {"DateCreated": "2004:02:26"})");
    EXPECT_EQ(original(storage, "EXIF:ExifImageWidth"), "100 0");
    EXPECT_EQ(original(storage, TagItem::itemEXIFDateTimeOriginal()), "0000:00:00 00:00:00");
    EXPECT_EQ(original(storage, TagItem::itemEXIFDigitalZoomRatio()), "undef");
    EXPECT_EQ(original(storage, TagItem::itemEXIFExposureTime()), "0.00200000");
    EXPECT_EQ(original(storage, "XMP:DateCreated"), "2004:02:26") << "a date alone stays so";
}

TEST_F(ETReaderDecoding, BannedGroupsAndValuesAreDropped) {
    const TagStorage storage = decodeOne(R"json(
        "Composite": {"ImageSize": "8x8"},
        "QuickTime:Track12": {"Title": "track title"}, "QuickTime:Track0": {"Artist": "track artist"},
        "ExifTool:ExifTool": {"Warning": "w"},
        "EXIF:IFD1": {"ThumbnailImage": "(Binary data 631 bytes, use -b option to extract)"},
        "QuickTime:ItemList": {"Title": "movie title"})json");
    EXPECT_FALSE(storage.originalStreams().contains(TagStream::streamComposite));
    EXPECT_FALSE(storage.originalStreams().contains(TagStream("ExifTool")));
    EXPECT_EQ(original(storage, "EXIF:ThumbnailImage"), std::nullopt);
    EXPECT_EQ(original(storage, "QuickTime:Artist"), std::nullopt);
    EXPECT_TRUE(storage.originalStreams().contains(TagStream::streamEXIF)) << "the group itself isn't banned";
    // Track12 is banned through "Track1": the title comes from the item list only.
    EXPECT_EQ(original(storage, TagItem::itemQuickTimeTitle()), "movie title");

    // Without the ban lists everything known is kept.
    ETTagStorageReader plain{ETTagStorageReader::Settings(sources)};
    auto storages = plain.parseExifToolOutput(
        R"([{"SourceFile": "/photos/a.jpg", "QuickTime:Track1": {"Title": "track title"}}])", sources);
    ASSERT_EQ(storages.size(), 1u);
    EXPECT_EQ(original(storages[0], TagItem::itemQuickTimeTitle()), "track title");
}

TEST_F(ETReaderDecoding, MakerNotesAndQuickTimeKeysAreLookedUpUnderTheirOwnNames) {
    EXPECT_EQ(ETTagStorageReader::findTagItem("QuickTime", "Keys", "CameraLensModel"),
              TagItem::find("QuickTime", "LensModel"));
    EXPECT_EQ(ETTagStorageReader::findTagItem("QuickTime", "Keys", "CameraFocalLength35mmEquivalent"),
              TagItem::find("QuickTime", "FocalLength35mm"));
    const TagItem* userData = ETTagStorageReader::findTagItem("QuickTime", "UserData", "CameraLensModel");
    ASSERT_NE(userData, nullptr);
    EXPECT_EQ(userData->name().rawValue(), "QuickTime:CameraLensModel")
        << "only the Keys group is searched again; elsewhere the name is shown as it stands";

    const TagItem* canonItem = nullptr;
    for (const TagItem* item : TagStream::streamCanon.items())
        if (item->type() == TagType::string && !item->isList()) {
            canonItem = item;
            break;
        }
    ASSERT_NE(canonItem, nullptr);
    const std::string key = canonItem->key().rawValue();
    EXPECT_EQ(ETTagStorageReader::findTagItem("MakerNotes", "Canon", key), canonItem);

    const TagStorage storage = decodeOne(R"("MakerNotes:Canon": {")" + key + R"(": "x"}, "Canon:Canon": {})");
    EXPECT_TRUE(storage.originalStreams().contains(TagStream::streamMakerNotes));
    EXPECT_FALSE(storage.originalStreams().contains(TagStream::streamCanon))
        << "a maker family in family 0 is recorded as maker notes";
    EXPECT_TRUE(storage.originalValues().contains(canonItem->name()));
}

TEST_F(ETReaderDecoding, RecordsThatNameNoSourceAreDropped) {
    auto storages = reader.parseExifToolOutput(R"([
        {"SourceFile": "/elsewhere/x.jpg", "EXIF:IFD0": {"Artist": "x"}},
        {"EXIF:IFD0": {"Artist": "no source file"}},
        {"SourceFile": 12, "EXIF:IFD0": {"Artist": "not a path"}},
        {"SourceFile": "/photos/b.mov", "EXIF:IFD0": "not an object", "QuickTime:ItemList": {"Title": "t"}}
    ])",
                                               sources);
    ASSERT_EQ(storages.size(), 1u);
    EXPECT_EQ(storages[0].source().url(), "/photos/b.mov");
    EXPECT_EQ(original(storages[0], TagItem::itemQuickTimeTitle()), "t");
    EXPECT_TRUE(storages[0].originalStreams().contains(TagStream::streamEXIF));
}

TEST_F(ETReaderDecoding, OutputOfAnotherShapeFails) {
    auto failsWith = [&](const std::string& data) {
        try {
            reader.parseExifToolOutput(data, sources);
        } catch (const ETTagStorageReader::ReadException& e) {
            EXPECT_EQ(e.error(), ETTagStorageReader::ReadError::dataDecodingFailed);
            EXPECT_STREQ(e.what(), "Data decoding failed");
            return true;
        }
        return false;
    };
    EXPECT_TRUE(failsWith(R"({"SourceFile": "/photos/a.jpg"})"));
    EXPECT_TRUE(failsWith(R"([1, 2])"));
    EXPECT_TRUE(failsWith(R"([[{"SourceFile": "/photos/a.jpg"}]])"));
    EXPECT_TRUE(reader.parseExifToolOutput("[]", sources).empty()) << "an empty array is no error";
    EXPECT_THROW(reader.parseExifToolOutput("[{\"SourceFile\": ", sources), nlohmann::json::parse_error);
    EXPECT_THROW(reader.parseExifToolOutput("", sources), nlohmann::json::parse_error);
}

// --- Real runs

class ETReader : public testing::Test {
protected:
    test::TemporaryFolder folder{"corvane-etio"};
};

struct Calls {
    std::vector<std::string> events;
    ETTagStorageReader::Settings& install(ETTagStorageReader::Settings& settings) {
        settings.setOnStartHandler([this](ETTagStorageReader&) { events.push_back("start"); });
        settings.setOnProgressHandler([this](ETTagStorageReader&) { events.push_back("progress"); });
        settings.setOnEndHandler([this](ETTagStorageReader&) { events.push_back("end"); });
        return settings;
    }
};

TEST_F(ETReader, FoldersAndFilesWithoutExtensionGetEmptyStoragesWithoutExifTool) {
    const fs::path noExtension = folder / "README";
    std::ofstream(noExtension) << "text";
    Calls calls;
    auto settings = defaultSettings({TagStorageSource(folder.path()), TagStorageSource(noExtension)});
    ETTagStorageReader reader(calls.install(settings));
    const auto storages = reader.readStorages();
    ASSERT_EQ(storages.size(), 2u);
    for (const auto& [url, storage] : storages) {
        EXPECT_TRUE(storage.originalValues().empty()) << url;
        EXPECT_TRUE(storage.originalStreams().empty()) << url;
        EXPECT_EQ(storage.source().url(), url);
    }
    EXPECT_THAT(calls.events, ElementsAre("start", "progress", "progress", "end"));
    EXPECT_TRUE(reader.process().output().arguments().empty()) << "ExifTool was not started";

    Calls none;
    auto empty = defaultSettings({});
    ETTagStorageReader emptyReader(none.install(empty));
    EXPECT_TRUE(emptyReader.readStorages().empty());
    EXPECT_THAT(none.events, ElementsAre("start", "progress", "progress", "end"));
}

TEST_F(ETReader, ReadsTaggedFilesOfSeveralFormatsInOneRun) {
    const fs::path jpeg = test::makeJPEG(folder / "photo.jpg");
    const fs::path mov = test::makeMOV(folder / "movie.mov");
    const fs::path png = test::makePNG(folder / "image.png");
    test::tagWithExifTool(jpeg, {"-EXIF:Artist=Zoë Ünïcödé", "-IPTC:Keywords=alpha", "-IPTC:Keywords=beta",
                                 "-XMP:Subject=gamma", "-XMP:Subject=délta"});
    test::tagWithExifTool(mov, {"-QuickTime:Title=Film ✓", "-XMP:Title=Titre"});
    test::tagWithExifTool(png, {"-XMP:Creator=Ann"});

    Calls calls;
    auto settings = defaultSettings({TagStorageSource(jpeg), TagStorageSource(mov), TagStorageSource(png)});
    ETTagStorageReader reader(calls.install(settings));
    const auto storages = reader.readStorages();

    ASSERT_TRUE(storages.contains(jpeg));
    ASSERT_TRUE(storages.contains(mov));
    ASSERT_TRUE(storages.contains(png));

    const TagStorage& photo = storages.at(jpeg);
    EXPECT_EQ(original(photo, TagItem::itemEXIFArtist()), "Zoë Ünïcödé");
    EXPECT_EQ(original(photo, TagItem::itemIPTCKeywords()), "alpha,beta");
    EXPECT_EQ(original(photo, TagItem::itemXMPSubject()), "gamma,délta");
    EXPECT_EQ(original(photo, TagItem::itemFileFileName()), "photo.jpg");
    EXPECT_TRUE(photo.originalStreams().contains(TagStream::streamEXIF));
    EXPECT_TRUE(photo.originalStreams().contains(TagStream::streamIPTC));
    EXPECT_TRUE(photo.originalStreams().contains(TagStream::streamFile));
    EXPECT_FALSE(photo.originalStreams().contains(TagStream::streamComposite));
    EXPECT_TRUE(original(photo, TagItem::itemFileFileModifyDate()).has_value());

    EXPECT_EQ(original(storages.at(mov), TagItem::itemQuickTimeTitle()), "Film ✓");
    EXPECT_EQ(original(storages.at(mov), "XMP:Title"), "Titre");
    EXPECT_EQ(original(storages.at(png), "XMP:Creator"), "Ann");

    EXPECT_EQ(calls.events.front(), "start");
    EXPECT_EQ(calls.events.back(), "end");
    EXPECT_GE(std::count(calls.events.begin(), calls.events.end(), "progress"), 2);
    EXPECT_DOUBLE_EQ(reader.progress(), 1.0);
    const ETOutput output = reader.process().output();
    EXPECT_EQ(std::count(output.arguments().begin(), output.arguments().end(), "-g0:1"), 1)
        << "files with the same options share one command";
}

// A PNG chunk: length, type, data and the CRC-32 of type and data.
std::string pngChunk(const std::string& type, const std::string& data) {
    auto bigEndian = [](std::uint32_t v) {
        return std::string{static_cast<char>(v >> 24), static_cast<char>(v >> 16), static_cast<char>(v >> 8),
                           static_cast<char>(v)};
    };
    std::uint32_t crc = 0xFFFFFFFFu;
    for (unsigned char c : type + data) {
        crc ^= c;
        for (int k = 0; k < 8; ++k)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    std::string chunk = bigEndian(static_cast<std::uint32_t>(data.size())) + type + data;
    return chunk + bigEndian(~crc);
}

// Values reach the storage as ExifTool holds them: an open count of numbers keeps its blanks, and
// a number that ExifTool converts (PNG chromaticities stored in 100000ths) keeps its fraction.
TEST_F(ETReader, NumbersAreReadAsExifToolHoldsThem) {
    const fs::path jpeg = test::makeJPEG(folder / "photo.jpg");
    test::tagWithExifTool(jpeg, {"-EXIF:SubjectArea=2009 1506 2318 1390"});
    // The sample PNG with the sRGB chromaticities behind its header chunk.
    const auto sample = test::pngBytes();
    std::string png(sample.begin(), sample.end());
    std::string chromaticities;
    for (std::uint32_t v : {31270u, 32900u, 64000u, 33000u, 30000u, 60000u, 15000u, 6000u})
        chromaticities += std::string{static_cast<char>(v >> 24), static_cast<char>(v >> 16),
                                      static_cast<char>(v >> 8), static_cast<char>(v)};
    png.insert(8 + 25, pngChunk("cHRM", chromaticities));
    const fs::path pngPath = test::writeBytes(folder / "image.png", {png.begin(), png.end()});

    auto settings = defaultSettings({TagStorageSource(jpeg), TagStorageSource(pngPath)});
    const auto storages = ETTagStorageReader(settings).readStorages();
    ASSERT_TRUE(storages.contains(jpeg) && storages.contains(pngPath));
    EXPECT_EQ(original(storages.at(jpeg), "EXIF:SubjectArea"), "2009 1506 2318 1390");
    EXPECT_EQ(original(storages.at(pngPath), "PNG:WhitePointX"), "0.31270000");
    EXPECT_EQ(original(storages.at(pngPath), "PNG:RedX"), "0.64000000");
}

// A movie over 4 GB is read whole: its tags behind a large media atom are found.
TEST_F(ETReader, ReadsMoviesOverFourGigabytes) {
    const fs::path small = test::makeMOV(folder / "small.mov");
    test::tagWithExifTool(small, {"-QuickTime:Title=Large"});
    const std::string bytes = test::fileBytes(small);
    // The top-level atoms in order; a sparse media atom of 5 GB goes behind the first one.
    const fs::path large = folder / "large.mov";
    {
        std::ofstream out(large, std::ios::binary);
        const auto firstSize =
            (static_cast<unsigned char>(bytes[0]) << 24) | (static_cast<unsigned char>(bytes[1]) << 16) |
            (static_cast<unsigned char>(bytes[2]) << 8) | static_cast<unsigned char>(bytes[3]);
        out.write(bytes.data(), firstSize);
        const std::uint64_t mediaSize = (5ull << 30) + 16;
        unsigned char header[16] = {0, 0, 0, 1, 'm', 'd', 'a', 't'};
        for (int i = 0; i < 8; ++i)
            header[8 + i] = static_cast<unsigned char>(mediaSize >> (56 - 8 * i));
        out.write(reinterpret_cast<const char*>(header), sizeof header);
        out.seekp(static_cast<std::streamoff>(firstSize + mediaSize));
        out.write(bytes.data() + firstSize, static_cast<std::streamsize>(bytes.size() - firstSize));
    }
    ASSERT_GT(fs::file_size(large), 4ull << 30);
    auto settings = defaultSettings({TagStorageSource(large)});
    const auto storages = ETTagStorageReader(settings).readStorages();
    ASSERT_TRUE(storages.contains(large));
    EXPECT_EQ(original(storages.at(large), TagItem::itemQuickTimeTitle()), "Large");
}

TEST_F(ETReader, FilesWithDifficultNamesAreReadUnderTheirOwnURL) {
    const std::vector<std::string> names{
        " .jpg",          "blank name.jpg",  "quote's \"here\".jpg", "-dash.jpg",
        "Zoë 写真 ✓.jpg", "line\nbreak.jpg", "semi;colon$HOME.jpg"};
    std::vector<TagStorageSource> sources;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const fs::path path = test::makeJPEG(folder / names[i]);
        test::tagWithExifTool(path, {"-EXIF:Artist=artist " + std::to_string(i)});
        sources.emplace_back(path);
    }
    ETTagStorageReader reader(defaultSettings(sources));
    const auto storages = reader.readStorages();
    ASSERT_EQ(storages.size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto it = storages.find(sources[i].url());
        ASSERT_NE(it, storages.end()) << names[i];
        EXPECT_EQ(original(it->second, TagItem::itemEXIFArtist()), "artist " + std::to_string(i)) << names[i];
        EXPECT_EQ(original(it->second, TagItem::itemFileFileName()), names[i]);
    }
}

TEST_F(ETReader, RelativePathsThatLookLikeOptionsAreMatched) {
    test::makeJPEG(folder / "-rel.jpg");
    test::tagWithExifTool(folder / "-rel.jpg", {"-EXIF:Artist=relative"});
    const fs::path previous = fs::current_path();
    fs::current_path(folder.path());
    ETTagStorageReader reader(defaultSettings({TagStorageSource("-rel.jpg")}));
    TagStorageMap storages;
    EXPECT_NO_THROW(storages = reader.readStorages());
    fs::current_path(previous);
    ASSERT_TRUE(storages.contains("-rel.jpg"));
    EXPECT_EQ(original(storages.at("-rel.jpg"), TagItem::itemEXIFArtist()), "relative");
}

TEST_F(ETReader, ACorruptFileFailsTheBatchUnlessMinorErrorsAreIgnored) {
    const fs::path good = test::makeJPEG(folder / "good.jpg");
    test::tagWithExifTool(good, {"-EXIF:Artist=good"});
    const fs::path corrupt = folder / "corrupt.jpg";
    {
        // Bytes of no known format: ExifTool reports "File format error" for it.
        std::ofstream out(corrupt, std::ios::binary);
        for (int i = 0; i < 512; ++i)
            out.put(static_cast<char>(i % 256));
    }

    Calls calls;
    auto strict = defaultSettings({TagStorageSource(good), TagStorageSource(corrupt)});
    ETTagStorageReader strictReader(calls.install(strict));
    try {
        strictReader.readStorages();
        ADD_FAILURE() << "the corrupt file should fail the read";
    } catch (const ETOutputException& e) {
        EXPECT_EQ(e.error(), ETOutputError::exifToolErrors);
        ASSERT_FALSE(e.fileErrors().empty());
        EXPECT_EQ(e.fileErrors().front().path, corrupt);
    }
    EXPECT_EQ(std::count(calls.events.begin(), calls.events.end(), "end"), 0) << "no end after a failure";

    auto lenient = defaultSettings({TagStorageSource(good), TagStorageSource(corrupt)});
    lenient.setIgnoreMinorErrors(true);
    ETTagStorageReader lenientReader(lenient);
    const auto storages = lenientReader.readStorages();
    ASSERT_TRUE(storages.contains(good));
    EXPECT_EQ(original(storages.at(good), TagItem::itemEXIFArtist()), "good");
}

TEST_F(ETReader, FinderResourcesOfTheFileAreRead) {
    const fs::path jpeg = test::makeJPEG(folder / "finder.jpg");
    FinderResources resources;
    resources.setFinderTags(std::vector<std::string>{"Red", "Wörk"});
    resources.setModifyDate(Date(1700000000));
    resources.write(jpeg);

    ETTagStorageReader reader(defaultSettings({TagStorageSource(jpeg)}));
    const TagStorage storage = reader.readStorages().at(jpeg);
    EXPECT_EQ(original(storage, TagItem::itemFileMDItemUserTags()), "Red,Wörk");
    const DynamicValue modified = storage.currentNativeValue(TagItem::itemFileFileModifyDate());
    ASSERT_NE(modified.dateValue(), nullptr);
    EXPECT_EQ(*modified.dateValue(), Date(1700000000));
}

// Names made from the file's content are shown under ExifTool's names: languages of alternative
// texts (writable where the base text is), the Canon raw directory of a JPEG file under "CIFF",
// and names of XMP namespaces the catalogue doesn't list (read only). Other families' unknown
// names stay out.
TEST_F(ETReaderDecoding, NamesOutsideTheCatalogueAreShownAsExifToolNamesThem) {
    const TagStorage storage = decodeOne(R"(
        "XMP:XMP-dc": {"Title": "Square", "Title-de-CH": "Quadrat", "Rights-fr": "Droit"},
        "XMP:XMP-foo": {"CustomName": "custom", "CustomList": ["a", "b"], "CustomNumber": 12},
        "ICC_Profile:ICC_Profile": {"ProfileDescriptionML-ja-JP": "RGB"},
        "MakerNotes:CIFF": {"Model": "Canon PowerShot A5", "FocalLength": 5},
        "MakerNotes:Canon": {"CanonImageSize": -1},
        "File:System": {"MadeUpName": "x"})");
    EXPECT_EQ(original(storage, "XMP:Title-de-CH"), "Quadrat");
    EXPECT_EQ(original(storage, "XMP:Rights-fr"), "Droit");
    EXPECT_EQ(original(storage, "XMP:CustomName"), "custom");
    EXPECT_EQ(original(storage, "XMP:CustomList"), "a,b");
    EXPECT_EQ(original(storage, "XMP:CustomNumber"), "12");
    EXPECT_EQ(original(storage, "ICC_Profile:ProfileDescriptionML-ja-JP"), "RGB");
    EXPECT_EQ(original(storage, "CIFF:Model"), "Canon PowerShot A5");
    EXPECT_EQ(original(storage, "File:MadeUpName"), std::nullopt);
    EXPECT_EQ(original(storage, "Canon:CanonImageSize"), "-1") << "a number out of the type's range is kept";

    const TagItem* german = TagItem::find("XMP", "Title-de-CH");
    ASSERT_NE(german, nullptr);
    EXPECT_TRUE(german->isWritable());
    EXPECT_TRUE(storage.canEditValue(german->name()));
    EXPECT_FALSE(storage.canEditValue(*TagName::fromRawValue("XMP:CustomName")));
    EXPECT_FALSE(storage.canEditValue(*TagName::fromRawValue("ICC_Profile:ProfileDescriptionML-ja-JP")));
    EXPECT_FALSE(storage.canEditValue(*TagName::fromRawValue("CIFF:Model")));
    // A language of a text that is no catalogue tag, or a suffix that is no language, is unknown
    // until a file holds it.
    EXPECT_EQ(TagItem::find("XMP", "Title-"), nullptr);
    EXPECT_EQ(TagItem::find("XMP", "Title-not_a_language"), nullptr);
    EXPECT_EQ(TagItem::find("XMP", "NeverSeen-de"), nullptr);
}

// ExifTool prints a text that looks like a number without quotes; one beyond a double ("1e400")
// must not make the file unreadable, nor its neighbours in the batch, and reads as the text it is.
TEST_F(ETReader, TextsThatLookLikeHugeNumbersReadAsTheirText) {
    const fs::path odd = test::makeJPEG(folder / "odd.jpg");
    const fs::path plain = test::makeJPEG(folder / "plain.jpg");
    test::tagWithExifTool(odd, {"-XMP:Title=1e400", "-EXIF:Artist=-2e-999", "-IPTC:Keywords=9e99999"});
    test::tagWithExifTool(plain, {"-EXIF:Artist=Ann"});
    const auto storages =
        ETTagStorageReader(defaultSettings({TagStorageSource(odd), TagStorageSource(plain)})).readStorages();
    ASSERT_TRUE(storages.contains(odd) && storages.contains(plain));
    EXPECT_EQ(original(storages.at(odd), "XMP:Title"), "1e400");
    EXPECT_EQ(original(storages.at(odd), "EXIF:Artist"), "-2e-999");
    EXPECT_EQ(original(storages.at(odd), "IPTC:Keywords"), "9e99999");
    EXPECT_EQ(original(storages.at(plain), "EXIF:Artist"), "Ann");
}

} // namespace
} // namespace corvane
