#include "corvane/sidecar_support/JSONSidecarReader.hpp"
#include "corvane/sidecar_support/JSONSidecarWriter.hpp"
#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/utilities/FileError.hpp"

#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>

namespace corvane {
namespace {

namespace fs = std::filesystem;

TagName name(std::string_view raw) {
    return *TagName::fromRawValue(raw);
}

TagStorage storageWith(std::initializer_list<std::pair<std::string_view, std::string>> originals) {
    TagStorage storage(TagStorageSource("/photos/a.jpg"));
    for (const auto& [raw, value] : originals)
        storage.setOriginalValue(value, name(raw));
    return storage;
}

TEST(JSONSidecarWriter, GroupsTagsByStreamWithTypedJSONValuesWrittenOnesWinning) {
    auto storage = storageWith({{"EXIF:Make", "ACME"},
                                {"EXIF:ExifImageWidth", "200"},
                                {"XMP:Rating", "4.5"},
                                {"IPTC:Keywords", "Alpha,Beta"},
                                {"XMP:NotInCatalogue", "42"}});
    auto json = nlohmann::json::parse(JSONSidecarWriter().data(storage));
    ASSERT_TRUE(json.is_object());
    EXPECT_EQ(json.size(), 3u);
    EXPECT_EQ(json["EXIF"]["Make"], "ACME");
    EXPECT_TRUE(json["EXIF"]["ExifImageWidth"].is_number_integer());
    EXPECT_EQ(json["EXIF"]["ExifImageWidth"], 200);
    EXPECT_TRUE(json["XMP"]["Rating"].is_number());
    EXPECT_DOUBLE_EQ(json["XMP"]["Rating"].get<double>(), 4.5);
    EXPECT_EQ(json["IPTC"]["Keywords"], nlohmann::json::array({"Alpha", "Beta"}));
    // A tag the catalogue doesn't know passes as text, not as a number.
    EXPECT_EQ(json["XMP"]["NotInCatalogue"], "42");
    EXPECT_EQ(nlohmann::json::parse(JSONSidecarWriter().data(storageWith({}))), nlohmann::json::object());

    storage = storageWith({{"EXIF:Make", "ACME"}, {"EXIF:Artist", "Old"}});
    storage.unsafeSetValue("New", name("EXIF:Artist"));
    storage.unsafeSetValue("", name("EXIF:ISO")); // cleared: no number to write
    json = nlohmann::json::parse(JSONSidecarWriter().data(storage));
    EXPECT_EQ(json["EXIF"]["Artist"], "New");
    EXPECT_TRUE(json["EXIF"]["ISO"].is_null());
}

TEST(JSONSidecarWriter, RefusesTextThatIsNotUTF8AndNumbersThatJSONCannotHold) {
    auto storage = storageWith({{"EXIF:Artist", std::string("bad \xFF byte")}});
    try {
        JSONSidecarWriter().data(storage);
        FAIL() << "expected a validation error";
    } catch (const JSONSidecarWriter::WriteException& e) {
        EXPECT_EQ(e.error(), JSONSidecarWriter::WriteError::dataValidationFailed);
        EXPECT_STREQ(e.what(), "Data validation failed");
    }
    // The number converters read "nan" and "inf" as C does; JSON has no such numbers, and writing
    // them as null would lose the tag without a word.
    for (const char* text : {"nan", "inf", "-inf"}) {
        auto storage = storageWith({{"EXIF:ExposureCompensation", text}, {"XMP:Rating", text}});
        try {
            const std::string json = JSONSidecarWriter().data(storage);
            ADD_FAILURE() << "wrote " << json << " for " << text;
        } catch (const JSONSidecarWriter::WriteException& e) {
            EXPECT_EQ(e.error(), JSONSidecarWriter::WriteError::dataValidationFailed) << text;
        }
    }
}

TEST(JSONSidecarReader, ReadsAnyMemberOrderNormalisesAndKeepsTheLastOfDuplicates) {
    const std::string text = R"({
        "XMP": {"Subject": ["one", "two"], "Rating": 3, "Unknown": 12.5, "Gone": null},
        "EXIF": {"ISO": 400, "Make": "ACME \"Pro\"", "Artist": "Zoë 東京 😀"},
        "Ignored": "not an object",
        "Other": [1, 2]
    })";
    auto values = JSONSidecarReader().readString(text);
    EXPECT_EQ(values.at(name("EXIF:ISO")), "400");
    EXPECT_EQ(values.at(name("EXIF:Make")), "ACME \"Pro\"");
    EXPECT_EQ(values.at(name("EXIF:Artist")), "Zoë 東京 😀");
    EXPECT_EQ(values.at(name("XMP:Subject")), "one,two");
    EXPECT_EQ(values.at(name("XMP:Rating")),
              TagItem::find(name("XMP:Rating"))->converter()->stringValueFromStringValue("3"));
    EXPECT_FALSE(values.at(name("XMP:Unknown")).empty());
    EXPECT_FALSE(values.contains(name("XMP:Gone")));
    EXPECT_EQ(values.size(), 6u);
    values = JSONSidecarReader().readString(R"({"EXIF": {"Make": "First", "Make": "Second"}})");
    EXPECT_EQ(values.at(name("EXIF:Make")), "Second");
}

TEST(JSONSidecarReader, MalformedInputFailsWithClearErrors) {
    JSONSidecarReader reader;
    auto expectReadError = [&](std::string_view text, JSONSidecarReader::ReadError error,
                               const char* message) {
        try {
            reader.readString(text);
            ADD_FAILURE() << "no error for " << text;
        } catch (const JSONSidecarReader::ReadException& e) {
            EXPECT_EQ(e.error(), error) << text;
            EXPECT_STREQ(e.what(), message);
        }
    };
    expectReadError(R"([{"EXIF": {"Make": "ACME"}}])", JSONSidecarReader::ReadError::dataDecodingFailed,
                    "Data decoding failed");
    expectReadError(R"("just text")", JSONSidecarReader::ReadError::dataDecodingFailed,
                    "Data decoding failed");
    expectReadError("{\"EXIF\": {\"Make\": \"\xC3\"}}", JSONSidecarReader::ReadError::stringDecodingFailed,
                    "String decoding failed");

    // Syntax errors are the parser's own, with its position.
    EXPECT_THROW(reader.readString(R"({"EXIF": {"Make": "ACME")"), nlohmann::json::parse_error);
    EXPECT_THROW(reader.readString(""), nlohmann::json::parse_error);
    EXPECT_THROW(reader.readData("{\"EXIF\": {\"Make\": \"\xFF\"}}"), nlohmann::json::parse_error);
}

TEST(JSONSidecarFiles, WriteCreatesFoldersAndReadsBack) {
    test::TemporaryFolder folder("corvane-sidecars");
    const fs::path url = folder / "deep" / "er" / "a.json";
    auto storage = storageWith({{"EXIF:Make", "ACME"}, {"IPTC:Keywords", "k1,k2,k3"}});
    JSONSidecarWriter().write(storage, url);
    ASSERT_TRUE(fs::exists(url));
    auto values = JSONSidecarReader().readContentsOf(url);
    EXPECT_EQ(values.at(name("EXIF:Make")), "ACME");
    EXPECT_EQ(values.at(name("IPTC:Keywords")), "k1,k2,k3");

    // The file system's errors go through.
    EXPECT_THROW(JSONSidecarReader().readContentsOf(folder / "missing.json"), FileError);
    std::ofstream(folder / "blocker") << "x";
    EXPECT_THROW(JSONSidecarWriter().write(storage, folder / "blocker" / "a.json"), FileError);
}

} // namespace
} // namespace corvane
