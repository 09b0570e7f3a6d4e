// The two sidecar formats: JSON grouped by family with typed values, CSV one row per tag; what each
// reader skips or refuses, the files behind them, and values of real files carried without loss.

#include "corvane/sidecar_support/CSVSidecarReader.hpp"
#include "corvane/sidecar_support/CSVSidecarWriter.hpp"
#include "corvane/sidecar_support/JSONSidecarReader.hpp"
#include "corvane/sidecar_support/JSONSidecarWriter.hpp"
#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/utilities/FileError.hpp"

#include "support/SampleFiles.hpp"
#include "support/StorageValues.hpp"
#include "support/TemporaryFolder.hpp"
#include "task_support/TaskTestSupport.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <map>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using test::tagName;
using Texts = std::map<std::string, std::string>;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

TagStorage storageWith(std::initializer_list<std::pair<std::string_view, std::string>> originals) {
    TagStorage storage(TagStorageSource("/photos/a.jpg"));
    for (const auto& [raw, value] : originals)
        storage.setOriginalValue(value, tagName(raw));
    return storage;
}

// The values read from a sidecar by "Family:Key", to be compared whole.
Texts texts(const SidecarReader::Values& values) {
    Texts result;
    for (const auto& [tag, value] : values)
        result.emplace(tag.rawValue(), value);
    return result;
}

TEST(JSONSidecarWriter, GroupsTagsByStreamWithTypedJSONValuesWrittenOnesWinning) {
    auto storage = storageWith({{"EXIF:Make", "ACME"},
                                {"EXIF:ExifImageWidth", "200"},
                                {"XMP:Rating", "4.5"},
                                {"IPTC:Keywords", "Alpha,Beta"},
                                {"XMP:NotInCatalogue", "42"}});
    // A tag the catalogue doesn't know passes as text, not as a number; lists go as arrays.
    EXPECT_EQ(json::parse(JSONSidecarWriter().data(storage)), json::parse(R"({
        "EXIF": {"Make": "ACME", "ExifImageWidth": 200}, "IPTC": {"Keywords": ["Alpha", "Beta"]},
        "XMP": {"Rating": 4.5, "NotInCatalogue": "42"}})"));
    EXPECT_TRUE(json::parse(JSONSidecarWriter().data(storage))["EXIF"]["ExifImageWidth"].is_number_integer());
    EXPECT_EQ(json::parse(JSONSidecarWriter().data(storageWith({}))), json::object());

    storage = storageWith({{"EXIF:Make", "ACME"}, {"EXIF:Artist", "Old"}});
    storage.unsafeSetValue("New", tagName("EXIF:Artist"));
    storage.unsafeSetValue("", tagName("EXIF:ISO")); // cleared: no number to write
    EXPECT_EQ(json::parse(JSONSidecarWriter().data(storage)),
              json::parse(R"({"EXIF": {"Make": "ACME", "Artist": "New", "ISO": null}})"));
}

// Text that isn't UTF-8 is refused; so are "nan" and "inf", which the number converters read as C
// does: JSON has no such numbers, and writing them as null would lose the tag without a word.
TEST(JSONSidecarWriter, RefusesTextThatIsNotUTF8AndNumbersThatJSONCannotHold) {
    const std::pair<std::string_view, std::string> refused[] = {{"EXIF:Artist", "bad \xFF byte"},
                                                                {"EXIF:ExposureCompensation", "nan"},
                                                                {"EXIF:ExposureCompensation", "inf"},
                                                                {"EXIF:ExposureCompensation", "-inf"},
                                                                {"XMP:Rating", "nan"}};
    for (const auto& value : refused)
        EXPECT_THAT([&] { JSONSidecarWriter().data(storageWith({value})); },
                    ThrowsMessage<JSONSidecarWriter::WriteException>(StrEq("Data validation failed")))
            << value.first << " " << value.second;
}

TEST(JSONSidecarReader, ReadsAnyMemberOrderNormalisesAndKeepsTheLastOfDuplicates) {
    const std::string text = R"({
        "XMP": {"Subject": ["one", "two"], "Rating": 3, "Unknown": 12.5, "Gone": null},
        "EXIF": {"ISO": 400, "Make": "ACME \"Pro\"", "Artist": "Zoë 東京 😀"},
        "Ignored": "not an object",
        "Other": [1, 2]
    })";
    auto values = texts(JSONSidecarReader().readString(text));
    EXPECT_FALSE(values.at("XMP:Unknown").empty());
    values.erase("XMP:Unknown");
    EXPECT_EQ(values,
              (Texts{{"EXIF:Artist", "Zoë 東京 😀"},
                     {"EXIF:ISO", "400"},
                     {"EXIF:Make", "ACME \"Pro\""},
                     {"XMP:Rating",
                      *TagItem::find(tagName("XMP:Rating"))->converter()->stringValueFromStringValue("3")},
                     {"XMP:Subject", "one,two"}}));
    EXPECT_EQ(texts(JSONSidecarReader().readString(R"({"EXIF": {"Make": "First", "Make": "Second"}})")),
              (Texts{{"EXIF:Make", "Second"}}));
}

TEST(JSONSidecarReader, MalformedInputFailsWithClearErrors) {
    JSONSidecarReader reader;
    const auto refusedAs = [](const char* text) {
        return ThrowsMessage<JSONSidecarReader::ReadException>(StrEq(text));
    };
    EXPECT_THAT([&] { reader.readString(R"([{"EXIF": {"Make": "ACME"}}])"); },
                refusedAs("Data decoding failed"));
    EXPECT_THAT([&] { reader.readString(R"("just text")"); }, refusedAs("Data decoding failed"));
    EXPECT_THAT([&] { reader.readString("{\"EXIF\": {\"Make\": \"\xC3\"}}"); },
                refusedAs("String decoding failed"));

    // Syntax errors are the parser's own, with its position.
    EXPECT_THROW(reader.readString(R"({"EXIF": {"Make": "ACME")"), nlohmann::json::parse_error);
    EXPECT_THROW(reader.readString(""), nlohmann::json::parse_error);
    EXPECT_THROW(reader.readData("{\"EXIF\": {\"Make\": \"\xFF\"}}"), nlohmann::json::parse_error);
}

TEST(CSVSidecarWriter, WritesOneQuotedWhereNeededRowPerTag) {
    TagStorage storage = storageWith(
        {{"EXIF:Make", "ACME, Inc."}, {"EXIF:ISO", "200"}, {"IPTC:Caption-Abstract", "Say \"hi\"\nthen go"}});
    storage.unsafeSetValue("", tagName("EXIF:Artist"));
    EXPECT_EQ(CSVSidecarWriter().data(storage), "EXIF:Artist,\n"
                                                "EXIF:ISO,200\n"
                                                "EXIF:Make,\"ACME, Inc.\"\n"
                                                "IPTC:Caption-Abstract,\"Say \"\"hi\"\"\nthen go\"");
    EXPECT_EQ(CSVSidecarWriter().data(storageWith({})), "");
}

TEST(CSVSidecarReader, SkipsOddRowsGuessesTheDelimiterAndTrimsOnlyTheEnds) {
    const std::string text = "EXIF:Make,ACME\n"
                             "EXIF:Artist,A,extra\n"      // three fields
                             "just one field\n"           // one field
                             "NotAName,value\n"           // no colon
                             "XMP:NotInCatalogue,value\n" // unknown to the catalogue
                             "  EXIF:ISO , \t 400 \r\n"   // blanks around name and value
                             "IPTC:Keywords,\"a, b,c\"\n"
                             "EXIF:Make,ACME 2\n"; // a later row wins
    // A list's text is kept as written.
    EXPECT_EQ(texts(CSVSidecarReader().readString(text)),
              (Texts{{"EXIF:ISO", "400"}, {"EXIF:Make", "ACME 2"}, {"IPTC:Keywords", "a, b,c"}}));
    EXPECT_TRUE(CSVSidecarReader().readString("").empty());
    EXPECT_EQ(texts(CSVSidecarReader().readString(
                  "EXIF:Make;ACME, Inc.\nIPTC:Caption-Abstract;\"one\ntwo; three\"\n")),
              (Texts{{"EXIF:Make", "ACME, Inc."}, {"IPTC:Caption-Abstract", "one\ntwo; three"}}));
    // Unicode blanks trimmed at the ends only; a value of line ends alone is empty.
    EXPECT_EQ(texts(CSVSidecarReader().readString(
                  " \u00A0 EXIF:Artist\u3000, a  b \u00A0\u2028\r\nEXIF:Make,\"\r\n\r\n\"\r\n")),
              (Texts{{"EXIF:Artist", "a  b"}, {"EXIF:Make", ""}}));
}

TEST(CSVSidecarReader, MalformedInputFailsWithClearErrors) {
    EXPECT_THAT([] { CSVSidecarReader().readData("EXIF:Make,\xC3\x28"); },
                ThrowsMessage<CSVSidecarReader::ReadException>(StrEq("Data decoding failed")));
    // A byte-order mark doesn't spoil the first tag.
    EXPECT_EQ(texts(CSVSidecarReader().readData("\xEF\xBB\xBF"
                                                "EXIF:Make,ACME\n")),
              (Texts{{"EXIF:Make", "ACME"}}));
}

// Files of either format: the file system's errors go through; the format follows the extension
// (writing into a new folder, read back whole, is the round-trip test's).
TEST(SidecarFiles, ReadsFilesAndRefusesBytesThatAreNotUTF8) {
    test::TemporaryFolder folder("corvane-sidecars");
    EXPECT_THROW(JSONSidecarReader().readContentsOf(folder / "missing.json"), FileError);
    std::ofstream(folder / "blocker") << "x";
    EXPECT_THROW(JSONSidecarWriter().write(storageWith({}), folder / "blocker" / "a.json"), FileError);
    std::ofstream(folder / "latin1.csv", std::ios::binary) << "EXIF:Artist,Zo\xEB\n";
    EXPECT_THROW(CSVSidecarReader().readContentsOf(folder / "latin1.csv"), CSVSidecarReader::ReadException);
    EXPECT_THROW(CSVSidecarReader().readContentsOf(folder / "missing.csv"), FileError);
    // A folder opens like a file, has no meaningful size, and fails only when read.
    EXPECT_THROW(CSVSidecarReader().readContentsOf(folder.makeSubfolder("folder.csv")), FileError);

    const TagStorage storage = storageWith({{"EXIF:Artist", "Zoë"}});
    SidecarWriter::writeSidecar(storage, folder / "out" / "a.CSV");
    EXPECT_EQ(SidecarReader::readSidecar(folder / "out" / "a.CSV").at(tagName("EXIF:Artist")), "Zoë");
    EXPECT_THROW(SidecarWriter::writeSidecar(storage, folder / "a.xmp"), NotASidecarError);
    EXPECT_THROW(SidecarReader::readSidecar(folder / "a.txt"), NotASidecarError);
}

// Real files tagged by ExifTool, read back by the import task.
class SidecarRoundTrip : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        folder_ = new test::TemporaryFolder("corvane-sidecar-roundtrip");
        storages_ = new std::map<std::string, TagStorage>;
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

        for (const auto& editor : testing::importFiles(testing::sourcesOf({jpeg, mov})))
            storages_->emplace(editor->source().url().filename().string(), editor->storage());
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

    static const TagStorage& storage(const std::string& file) { return storages_->at(file); }

    static test::TemporaryFolder* folder_;
    static std::map<std::string, TagStorage>* storages_;
};

test::TemporaryFolder* SidecarRoundTrip::folder_ = nullptr;
std::map<std::string, TagStorage>* SidecarRoundTrip::storages_ = nullptr;

TEST_F(SidecarRoundTrip, ExifToolValuesAndEditsSurviveEveryFormat) {
    // Every value is compared, Unicode, lists, quotes, commas and line breaks among them.
    TagStorage edited = storage("tagged.jpg");
    edited.unsafeSetValue("Nouvel Artiste", test::tagName("EXIF:Artist"));
    edited.unsafeSetValue("Delta,Epsilon", test::tagName("IPTC:Keywords"));
    for (const std::string format : {"json", "csv"}) {
        SCOPED_TRACE(format);
        for (const std::string file : {"tagged.jpg", "tagged.mov"}) {
            const fs::path url = *folder_ / format / (file + "." + format);
            SidecarWriter::writeSidecar(storage(file), url);
            expectNoLoss(storage(file), SidecarReader::readSidecar(url), format == "csv");
        }
        // Edits go out as current values.
        expectNoLoss(edited, SidecarReader::forPathExtension(format)->readData(
                                 SidecarWriter::forPathExtension(format)->data(edited)));
    }
}

} // namespace
} // namespace corvane
