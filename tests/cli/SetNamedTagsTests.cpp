// `corvane set TAG=VALUE` reads only the tags it edits and those the writer consults: what it
// writes, and what it finds there is nothing to change, are what a read of every tag gives.
#include "cli/CliRun.hpp"
#include "support/FileBytes.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <string>

namespace {

using corvane::test::exifToolValue;
using corvane::test::fileBytes;
using corvane::test::makeJPEG;
using corvane::test::tagWithExifTool;

using SetNamedTags = corvane::test::CliTest;

TEST_F(SetNamedTags, IPTCTextCharacterSetAndDigestFollowAnEditAndAnEqualValueChangesNothing) {
    // Latin IPTC text without a declared character set, and a digest of the IPTC.
    const auto file = makeJPEG(folder / "latin.jpg");
    tagWithExifTool(file, {"-charset", "iptc=Latin", "-IPTC:By-line=J\xc3\xbcrgen", "-EXIF:Artist=Ann",
                           "-overwrite_original"});
    tagWithExifTool(file, {"-Photoshop:IPTCDigest=new", "-overwrite_original"});
    ASSERT_EQ(exifToolValue(file, "IPTC:CodedCharacterSet"), "");
    ASSERT_FALSE(exifToolValue(file, "Photoshop:IPTCDigest").empty());

    EXPECT_THAT(cliOK({"set", "IPTC:Caption-Abstract=Neu", "EXIF:Artist=Bo", "--", file.string()}).out,
                testing::HasSubstr("1 file updated, 0 unchanged"));
    // The file's other IPTC text went over to UTF-8 with the declaration, unchanged in meaning.
    EXPECT_EQ(exifToolValue(file, "IPTC:CodedCharacterSet"), "UTF8");
    EXPECT_EQ(exifToolValue(file, "IPTC:By-line"), "J\xc3\xbcrgen");
    EXPECT_EQ(exifToolValue(file, "IPTC:Caption-Abstract"), "Neu");
    EXPECT_EQ(exifToolValue(file, "EXIF:Artist"), "Bo");
    // The digest describes the IPTC as written.
    EXPECT_EQ(exifToolValue(file, "Photoshop:IPTCDigest"), exifToolValue(file, "File:CurrentIPTCDigest"));

    // The values the file holds: nothing to write, the file as it was.
    const std::string before = fileBytes(file);
    EXPECT_THAT(cliOK({"set", "IPTC:Caption-Abstract=Neu", "Artist=Bo", "--", file.string()}).out,
                testing::HasSubstr("0 files updated, 1 unchanged"));
    EXPECT_EQ(fileBytes(file), before);
}

} // namespace
