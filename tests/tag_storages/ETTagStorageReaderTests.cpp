// Reading storages through ExifTool: the decoding rules on hand-made output, then real runs.

#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/helpers/JSONInput.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include "ReadBack.hpp"
#include "support/FileBytes.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <numeric>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::defaultSettings;
using test::Values;
using test::valuesOf;
using testing::ElementsAre;
using testing::StrEq;
using testing::ThrowsMessage;

std::optional<std::string> original(const TagStorage& storage, std::string_view name) {
    return test::originalValue(storage, name);
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

// An empty value is stored; ExifTool prints numeric-looking text as numbers, and text tags keep it
// as printed; numbers keep their fraction, an open count of numbers its blanks; the first occurrence
// of a name wins; the file's own resources are completed from the source. What the file holds is
// shown even where the tag's converter can't read it: more numbers than the tag's table declares, an
// unset date, a number ExifTool prints as text, a date alone. A list of one text, which ExifTool
// prints as a plain text, is that one element even when it holds the list's separator; a list of
// numbers printed as one text is all of its numbers, and a list whose every element its converter
// drops is its elements as they print.
TEST_F(ETReaderDecoding, ValuesAreKeptUnderCatalogueNamesWithTheirStreams) {
    const TagStorage storage = decodeOne(R"(
        "EXIF:IFD0": {"Artist": "Zoë", "NotInTheCatalogue": "x", "Copyright": ""},
        "IPTC:IPTC": {"Keywords": ["one", "two"], "By-line": "Kohl, Allan"},
        "Photoshop:Photoshop": {"LayerRectangles": "0 0 0 4"},
        "XMP:XMP-dc": {"Title": 1.50, "Subject": ["007", 2.0]},
        "XMP:XMP-other": {"Title": "second"},
        "JFIF:JFIF": {"NothingKnown": 1},
        "EXIF:ExifIFD": {"ExifImageWidth": "100 0", "DateTimeOriginal": "0000:00:00 00:00:00",
                         "DigitalZoomRatio": "undef", "ExposureTime": 0.002, "SubjectArea": "2009 1506 2318 1390"},
        "PNG:PNG-cHRM": {"WhitePointX": 0.3127},
        "XMP:XMP-photoshop": {"DateCreated": "2004:02:26"},
        "XMP:XMP-iptcExt": {"LocationCreatedCountryCode": [1, 2, 4]})");
    const Values expected{{"EXIF:Artist", "Zoë"},
                          {"EXIF:NotInTheCatalogue", {}},
                          {"EXIF:Copyright", ""},
                          {"IPTC:Keywords", "one,two"},
                          {"IPTC:By-line", "\"Kohl, Allan\""},
                          {"Photoshop:LayerRectangles", "0 0 0 4"},
                          {"XMP:Title", "1.50"},
                          {"XMP:Subject", "007,2.0"},
                          {"File:FileName", "a.jpg"},
                          {"File:Directory", "/photos"},
                          {"File:FilePath", "/photos/a.jpg"},
                          {"File:FileTypeExtension", "jpg"},
                          {"EXIF:ExifImageWidth", "100 0"},
                          {"EXIF:DateTimeOriginal", "0000:00:00 00:00:00"},
                          {"EXIF:DigitalZoomRatio", "undef"},
                          {"EXIF:ExposureTime", "0.00200000"},
                          {"EXIF:SubjectArea", "2009 1506 2318 1390"},
                          {"PNG:WhitePointX", "0.31270000"},
                          {"XMP:DateCreated", "2004:02:26"},
                          {"XMP:LocationCreatedCountryCode", "1,2,4"}};
    EXPECT_EQ(valuesOf(storage, expected), expected);
    // A group without any known tag still marks its stream as present; the resources completed from
    // the source don't.
    EXPECT_FALSE(storage.originalStreams().contains(TagStream::streamFile));
    EXPECT_TRUE(storage.originalStreams().contains(TagStream::streamJFIF));
    EXPECT_TRUE(storage.originalStreams().contains(TagStream::streamEXIF));
    EXPECT_TRUE(storage.writtenValues().empty());
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
    EXPECT_EQ(original(storage, "QuickTime:Title"), "movie title");

    // Without the ban lists everything known is kept.
    ETTagStorageReader plain{ETTagStorageReader::Settings(sources)};
    auto storages = plain.parseExifToolOutput(
        R"([{"SourceFile": "/photos/a.jpg", "QuickTime:Track1": {"Title": "track title"}}])", sources);
    ASSERT_EQ(storages.size(), 1u);
    EXPECT_EQ(original(storages[0], "QuickTime:Title"), "track title");
}

TEST_F(ETReaderDecoding, MakerNotesAndQuickTimeKeysAreLookedUpUnderTheirOwnNames) {
    EXPECT_EQ(ETTagStorageReader::findTagItem("QuickTime", "Keys", "CameraLensModel"),
              TagItem::find("QuickTime", "LensModel"));
    const TagItem* userData = ETTagStorageReader::findTagItem("QuickTime", "UserData", "CameraLensModel");
    ASSERT_NE(userData, nullptr);
    EXPECT_EQ(userData->name().rawValue(), "QuickTime:CameraLensModel")
        << "only the Keys group is searched again; elsewhere the name is shown as it stands";

    const auto& items = TagStream::streamCanon.items();
    const auto found = std::find_if(items.begin(), items.end(), [](const TagItem* item) {
        return item->type() == TagType::string && !item->isList();
    });
    ASSERT_NE(found, items.end());
    const TagItem* canonItem = *found;
    const std::string key = canonItem->key().rawValue();

    const TagStorage storage = decodeOne(R"("MakerNotes:Canon": {")" + key + R"(": "x"}, "Canon:Canon": {})");
    EXPECT_TRUE(storage.originalStreams().contains(TagStream::streamMakerNotes));
    EXPECT_FALSE(storage.originalStreams().contains(TagStream::streamCanon))
        << "a maker family in family 0 is recorded as maker notes";
    EXPECT_TRUE(storage.originalValues().contains(canonItem->name()));
}

TEST_F(ETReaderDecoding, RecordsThatNameNoSourceAreDroppedAndOutputOfAnotherShapeFails) {
    const auto storages = reader.parseExifToolOutput(R"([
        {"SourceFile": "/elsewhere/x.jpg", "EXIF:IFD0": {"Artist": "x"}},
        {"EXIF:IFD0": {"Artist": "no source file"}},
        {"SourceFile": 12, "EXIF:IFD0": {"Artist": "not a path"}},
        {"SourceFile": "/photos/b.mov", "EXIF:IFD0": "not an object", "QuickTime:ItemList": {"Title": "t"}}
    ])",
                                                     sources);
    ASSERT_EQ(storages.size(), 1u);
    EXPECT_EQ(storages[0].source().url(), "/photos/b.mov");
    EXPECT_EQ(original(storages[0], "QuickTime:Title"), "t");
    EXPECT_TRUE(storages[0].originalStreams().contains(TagStream::streamEXIF));

    // Output of another shape fails.
    for (const char* data :
         {R"({"SourceFile": "/photos/a.jpg"})", "[1, 2]", R"([[{"SourceFile": "/a.jpg"}]])"})
        EXPECT_THAT([&] { reader.parseExifToolOutput(data, sources); },
                    ThrowsMessage<ETTagStorageReader::ReadException>(StrEq("Data decoding failed")))
            << data;
    EXPECT_TRUE(reader.parseExifToolOutput("[]", sources).empty()) << "an empty array is no error";
    EXPECT_THROW(reader.parseExifToolOutput("[{\"SourceFile\": ", sources), nlohmann::json::parse_error);
    EXPECT_THROW(reader.parseExifToolOutput("", sources), nlohmann::json::parse_error);
}

// A batch's output is decoded in parts side by side: the storages are those of one decoding, in
// the records' order, with a text holding a line break followed by "{" left whole; a part that
// doesn't decode makes the whole output fail as one decoding would.
TEST_F(ETReaderDecoding, ALargeOutputDecodedInPartsGivesTheStoragesOfOneDecoding) {
    std::vector<TagStorageSource> files;
    std::string data = "[";
    for (int i = 0; i < 6000; ++i) {
        files.emplace_back("/photos/" + std::to_string(i) + ".jpg");
        data += i ? "},\n{" : "{";
        data += "\n  \"SourceFile\": \"/photos/" + std::to_string(i) + ".jpg\",\n  \"EXIF:IFD0\": {\n";
        data += "    \"Artist\": \"artist " + std::to_string(i) + R"(\n{ not a record })" + "\",\n";
        data += "    \"ImageDescription\": \"" + std::string(64, 'x') + "\"\n  }\n";
    }
    data += "}]\n";
    ASSERT_GT(data.size(), 1u << 20) << "large enough to be decoded in parts";
    const ETTagStorageReader batchReader{defaultSettings(files)};
    const auto storages = batchReader.parseExifToolOutput(data, files);
    ASSERT_EQ(storages.size(), files.size());
    for (std::size_t i = 0; i < files.size(); i += 997) {
        EXPECT_EQ(storages[i].source().url(), files[i].url());
        EXPECT_EQ(original(storages[i], "EXIF:Artist"), "artist " + std::to_string(i) + "\n{ not a record }");
    }

    // A record of another shape near the end fails the whole output.
    std::string brokenData = data;
    brokenData.insert(data.rfind("},\n{") + 3, "[1],\n");
    EXPECT_THAT([&] { batchReader.parseExifToolOutput(brokenData, files); },
                ThrowsMessage<ETTagStorageReader::ReadException>(StrEq("Data decoding failed")));

    // A value nested too deep in a record of a later part is refused as in a decoding in one piece;
    // at the limit (the array and the record's two objects around it), it decodes.
    const auto withNesting = [&](std::size_t depth) {
        std::string nested = data;
        nested.insert(data.rfind("\"Artist\""), "\"UserComment\": " + std::string(depth, '[') + "1" +
                                                    std::string(depth, ']') + ",\n    ");
        return nested;
    };
    EXPECT_EQ(batchReader.parseExifToolOutput(withNesting(maxJSONNesting - 3), files).size(), files.size());
    EXPECT_THROW(batchReader.parseExifToolOutput(withNesting(maxJSONNesting - 2), files), JSONNestingError);
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
    EXPECT_TRUE(ETTagStorageReader(none.install(empty)).readStorages().empty());
    EXPECT_EQ(none.events, calls.events);
}

// The sample movie titled `title` with a sparse media atom of 5 GB behind its first top-level atom.
fs::path makeLargeMOV(const fs::path& path, const std::string& title) {
    const fs::path small = test::makeMOV(path.parent_path() / "small.mov");
    test::tagWithExifTool(small, {"-QuickTime:Title=" + title});
    const std::string bytes = test::fileBytes(small);
    std::ofstream out(path, std::ios::binary);
    const auto firstSize = (static_cast<unsigned char>(bytes[0]) << 24) |
                           (static_cast<unsigned char>(bytes[1]) << 16) |
                           (static_cast<unsigned char>(bytes[2]) << 8) | static_cast<unsigned char>(bytes[3]);
    out.write(bytes.data(), firstSize);
    const std::uint64_t mediaSize = (5ull << 30) + 16;
    unsigned char header[16] = {0, 0, 0, 1, 'm', 'd', 'a', 't'};
    for (int i = 0; i < 8; ++i)
        header[8 + i] = static_cast<unsigned char>(mediaSize >> (56 - 8 * i));
    out.write(reinterpret_cast<const char*>(header), sizeof header);
    out.seekp(static_cast<std::streamoff>(firstSize + mediaSize));
    out.write(bytes.data() + firstSize, static_cast<std::streamsize>(bytes.size() - firstSize));
    return path;
}

// ExifTool prints a text that looks like a number without quotes; one beyond a double ("1e400")
// must not make the file unreadable, nor its neighbours in the batch, and reads as the text it is.
// A movie over 4 GB is read whole: its tags behind a large media atom are found.
TEST_F(ETReader, ReadsFilesOfSeveralFormatsInOneRun) {
    const std::vector<fs::path> files{test::makeJPEG(folder / "photo.jpg"),
                                      makeLargeMOV(folder / "movie.mov", "Large"),
                                      test::makePNG(folder / "image.png")};
    ASSERT_GT(fs::file_size(files[1]), 4ull << 30);
    test::tagWithExifTool(files[0], {"-XMP:Title=1e400", "-EXIF:Artist=-2e-999", "-IPTC:Keywords=9e99999"});
    Calls calls;
    auto settings = defaultSettings({files.begin(), files.end()});
    ETTagStorageReader reader(calls.install(settings));
    const auto storages = reader.readStorages();
    for (const fs::path& file : files) {
        ASSERT_TRUE(storages.contains(file)) << file;
        const TagStorage& storage = storages.at(file);
        EXPECT_EQ(original(storage, "File:FileName"), file.filename().string());
        EXPECT_TRUE(original(storage, "File:FileModifyDate").has_value()) << file;
        EXPECT_TRUE(storage.originalStreams().contains(TagStream::streamFile)) << file;
        EXPECT_FALSE(storage.originalStreams().contains(TagStream::streamComposite)) << file;
    }
    const Values huge{{"XMP:Title", "1e400"}, {"EXIF:Artist", "-2e-999"}, {"IPTC:Keywords", "9e99999"}};
    EXPECT_EQ(valuesOf(storages.at(files[0]), huge), huge);
    EXPECT_EQ(original(storages.at(files[1]), "QuickTime:Title"), "Large");
    EXPECT_EQ(calls.events.front(), "start");
    EXPECT_EQ(calls.events.back(), "end");
    EXPECT_GE(std::count(calls.events.begin(), calls.events.end(), "progress"), 2);
    EXPECT_DOUBLE_EQ(reader.progress(), 1.0);
    const ETOutput output = reader.process().output();
    EXPECT_EQ(std::count(output.arguments().begin(), output.arguments().end(), "-g0:1"), 1)
        << "files with the same options share one command";
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
    EXPECT_EQ(original(storages.at("-rel.jpg"), "EXIF:Artist"), "relative");
}

// With minor errors ignored the same batch reads: ExifTool's reports are excused in its output's
// own tests, and the import task reads such a batch through this reader.
TEST_F(ETReader, ACorruptFileFailsTheBatchNamingItself) {
    const fs::path good = test::makeJPEG(folder / "good.jpg");
    // Bytes of no known format: ExifTool reports "File format error" for them.
    std::vector<std::uint8_t> bytes(512);
    std::iota(bytes.begin(), bytes.end(), 0);
    const fs::path corrupt = test::writeBytes(folder / "corrupt.jpg", bytes);
    Calls calls;
    auto settings = defaultSettings({TagStorageSource(good), TagStorageSource(corrupt)});
    ETTagStorageReader reader(calls.install(settings));
    EXPECT_THAT([&] { reader.readStorages(); },
                testing::Throws<ETOutputException>(testing::AllOf(
                    testing::Property(&ETOutputException::what, StrEq("ExifTool reported errors")),
                    testing::Property(&ETOutputException::fileErrors,
                                      testing::Contains(testing::Field(&ETFileMessage::path, corrupt))))));
    EXPECT_EQ(std::count(calls.events.begin(), calls.events.end(), "end"), 0) << "no end after a failure";
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
    // A number out of the type's range is kept.
    const Values expected{
        {"XMP:Title-de-CH", "Quadrat"},       {"XMP:Rights-fr", "Droit"},
        {"XMP:CustomName", "custom"},         {"XMP:CustomList", "a,b"},
        {"XMP:CustomNumber", "12"},           {"ICC_Profile:ProfileDescriptionML-ja-JP", "RGB"},
        {"CIFF:Model", "Canon PowerShot A5"}, {"File:MadeUpName", {}},
        {"Canon:CanonImageSize", "-1"}};
    EXPECT_EQ(valuesOf(storage, expected), expected);

    const TagItem* german = TagItem::find("XMP", "Title-de-CH");
    ASSERT_NE(german, nullptr);
    EXPECT_TRUE(german->isWritable());
    EXPECT_TRUE(storage.canEditValue(german->name()));
    for (const char* readOnly : {"XMP:CustomName", "ICC_Profile:ProfileDescriptionML-ja-JP", "CIFF:Model"})
        EXPECT_FALSE(storage.canEditValue(test::tagName(readOnly))) << readOnly;
    // A language of a text that is no catalogue tag, or a suffix that is no language, is unknown
    // until a file holds it.
    for (const char* key : {"Title-", "Title-not_a_language", "NeverSeen-de"})
        EXPECT_EQ(TagItem::find("XMP", key), nullptr) << key;
}

} // namespace
} // namespace corvane
