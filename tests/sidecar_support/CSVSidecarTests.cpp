#include "corvane/sidecar_support/CSVSidecarReader.hpp"
#include "corvane/sidecar_support/CSVSidecarWriter.hpp"
#include "corvane/sidecar_support/SidecarReader.hpp"
#include "corvane/sidecar_support/SidecarWriter.hpp"
#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/utilities/FileError.hpp"

#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <fstream>

namespace corvane {
namespace {

namespace fs = std::filesystem;

TagName name(std::string_view raw) {
    return *TagName::fromRawValue(raw);
}

TEST(CSVSidecarWriter, WritesOneQuotedWhereNeededRowPerTag) {
    TagStorage storage(TagStorageSource("/photos/a.jpg"));
    storage.setOriginalValue("ACME, Inc.", name("EXIF:Make"));
    storage.setOriginalValue("200", name("EXIF:ISO"));
    storage.setOriginalValue("Say \"hi\"\nthen go", name("IPTC:Caption-Abstract"));
    storage.unsafeSetValue("", name("EXIF:Artist"));
    EXPECT_EQ(CSVSidecarWriter().data(storage), "EXIF:Artist,\n"
                                                "EXIF:ISO,200\n"
                                                "EXIF:Make,\"ACME, Inc.\"\n"
                                                "IPTC:Caption-Abstract,\"Say \"\"hi\"\"\nthen go\"");
    EXPECT_EQ(CSVSidecarWriter().data(TagStorage(TagStorageSource("/photos/b.jpg"))), "");
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
    auto values = CSVSidecarReader().readString(text);
    EXPECT_EQ(values.size(), 3u);
    EXPECT_EQ(values.at(name("EXIF:Make")), "ACME 2");
    EXPECT_EQ(values.at(name("EXIF:ISO")), "400");
    EXPECT_EQ(values.at(name("IPTC:Keywords")), "a, b,c"); // a list's text is kept as written
    EXPECT_TRUE(CSVSidecarReader().readString("").empty());
    values =
        CSVSidecarReader().readString("EXIF:Make;ACME, Inc.\nIPTC:Caption-Abstract;\"one\ntwo; three\"\n");
    EXPECT_EQ(values.at(name("EXIF:Make")), "ACME, Inc.");
    EXPECT_EQ(values.at(name("IPTC:Caption-Abstract")), "one\ntwo; three");
    values = CSVSidecarReader().readString(
        " \u00A0 EXIF:Artist\u3000, a  b \u00A0\u2028\r\nEXIF:Make,\"\r\n\r\n\"\r\n");
    EXPECT_EQ(values.at(name("EXIF:Artist")), "a  b");
    EXPECT_EQ(values.at(name("EXIF:Make")), "") << "a value of line ends alone is empty";
}

TEST(CSVSidecarReader, MalformedInputFailsWithClearErrors) {
    try {
        CSVSidecarReader().readData("EXIF:Make,\xC3\x28");
        FAIL() << "expected a decoding error";
    } catch (const CSVSidecarReader::ReadException& e) {
        EXPECT_EQ(e.error(), CSVSidecarReader::ReadError::dataDecodingFailed);
        EXPECT_STREQ(e.what(), "Data decoding failed");
    }
    // An unterminated quote runs to the end of the text: the rest stays in the value, nothing is dropped.
    auto unterminated = CSVSidecarReader().readString("EXIF:Make,\"ACME\nEXIF:ISO,200\n");
    EXPECT_EQ(unterminated.size(), 1u);
    EXPECT_EQ(unterminated.at(name("EXIF:Make")), "ACME\nEXIF:ISO,200");

    // A byte-order mark doesn't spoil the first tag.
    auto values = CSVSidecarReader().readData("\xEF\xBB\xBF"
                                              "EXIF:Make,ACME\n");
    EXPECT_EQ(values.at(name("EXIF:Make")), "ACME");
}

TEST(CSVSidecarFiles, ReadsFilesAndRefusesBytesThatAreNotUTF8) {
    test::TemporaryFolder folder("corvane-sidecars");
    std::ofstream(folder / "latin1.csv", std::ios::binary) << "EXIF:Artist,Zo\xEB\n";
    EXPECT_THROW(CSVSidecarReader().readContentsOf(folder / "latin1.csv"), CSVSidecarReader::ReadException);
    EXPECT_THROW(CSVSidecarReader().readContentsOf(folder / "missing.csv"), FileError);
    // A folder opens like a file, has no meaningful size, and fails only when read.
    EXPECT_THROW(CSVSidecarReader().readContentsOf(folder.makeSubfolder("folder.csv")), FileError);

    TagStorage storage(TagStorageSource("/photos/a.jpg"));
    storage.setOriginalValue("Zoë", name("EXIF:Artist"));
    SidecarWriter::writeSidecar(storage, folder / "out" / "a.CSV");
    EXPECT_EQ(SidecarReader::readSidecar(folder / "out" / "a.CSV").at(name("EXIF:Artist")), "Zoë");
    EXPECT_THROW(SidecarWriter::writeSidecar(storage, folder / "a.xmp"), NotASidecarError);
    EXPECT_THROW(SidecarReader::readSidecar(folder / "a.txt"), NotASidecarError);
}

} // namespace
} // namespace corvane
