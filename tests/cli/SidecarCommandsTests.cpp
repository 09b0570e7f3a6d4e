// `corvane sidecar`, `corvane copy-tags` and `corvane table`, run as the built program on files the
// tests make and, where present, on copies of the camera corpus.
#include "cli/CliRun.hpp"
#include "support/Corpus.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

namespace {

using namespace corvane::test;

using SidecarCommands = CliTest;

// A sidecar of each type, holding commas, quotes and accents, imported into its own file changes
// nothing, even where the file holds a value in another spelling (a movie turned by its track matrix,
// rounded numbers); what reaches another file is the transfer tasks' test. No sidecar for a file
// that can't be read.
TEST_F(SidecarCommands, sidecarsCarryValuesAndChangeNothingInTheirOwnFile) {
    auto mov = makeMOV(folder / "turned.mov");
    tagWithExifTool(mov, {"-Rotation=90", "-XMP:Title=clip"});
    auto jpeg = makeJPEG(folder / "photo.jpg");
    tagWithExifTool(jpeg, {"-EXIF:Artist=Zoë, \"Z\"", "-XMP:Subject=one", "-XMP:Subject=two, three",
                           "-IPTC:City=Genève", "-EXIF:FNumber=1.8", "-EXIF:ExposureTime=0.01",
                           "-IPTC:Caption-Abstract=a, b, c", "-IPTC:Keywords=x, y", "-IPTC:Keywords=z",
                           "-EXIF:ImageUniqueID=0358DB4E08632D90925171A6BB8848A2"});
    for (const std::string type : {"json", "csv"}) {
        const auto out = folder / ("sidecars-" + type);
        for (const auto& file : {mov, jpeg}) {
            SCOPED_TRACE(file.filename().string() + " " + type);
            const std::string before = fileBytes(file);
            cliOK({"sidecar", "export", "--type", type, "--output", out.string(), file.string()});
            cliOK({"sidecar", "import", (out / (file.stem().string() + "." + type)).string(), file.string()});
            EXPECT_TRUE(fileBytes(file) == before) << "the file was rewritten";
        }
    }
    EXPECT_EQ(exifToolValue(mov, "Rotation"), "90");

    auto empty = writeBytes(folder / "empty.jpg", {});
    cliExits(1, {"sidecar", "export", "--type", "json", empty.string()});
    EXPECT_FALSE(fs::exists(folder / "empty.json"));
}

// What describes the source's own image stays out of another file unless --all; a sidecar is found
// under either case of its extension; an existing sidecar isn't replaced without --force, and two
// files that would write one sidecar are reported, not merged.
TEST_F(SidecarCommands, sidecarsNeverOverwriteOrMergeAndKeepTheTargetsCamera) {
    auto canon = makeJPEG(folder.makeSubfolder("a") / "photo.jpg");
    tagWithExifTool(canon,
                    {"-EXIF:Make=Canon", "-EXIF:Model=EOS", "-EXIF:XResolution=300", "-XMP:Title=Lake"});
    auto twin = makeJPEG(folder.makeSubfolder("b") / "photo.jpg");
    auto nikon = makeJPEG(folder / "nikon.jpg");
    tagWithExifTool(nikon, {"-EXIF:Make=Nikon", "-EXIF:XResolution=72"});

    EXPECT_THAT(cliExits(1, {"sidecar", "export", "--type", "xmp", "--output", (folder / "out").string(),
                             canon.string(), twin.string()})
                    .err,
                HasSubstr("same sidecar"));
    EXPECT_FALSE(fs::exists(folder / "out" / "photo.xmp"));

    auto exported = cliOK({"sidecar", "export", "--type", "EXV", canon.string()});
    const fs::path sidecar = folder / "a" / "photo.exv";
    EXPECT_EQ(exported.out, sidecar.string() + "\n");
    tagWithExifTool(sidecar, {"-XMP:Title=Edited"});
    cliExits(1, {"sidecar", "export", "--type", "exv", canon.string()});
    EXPECT_EQ(exifToolValue(sidecar, "XMP:Title"), "Edited");
    cliOK({"sidecar", "export", "--type", "exv", "--force", canon.string()});
    EXPECT_EQ(exifToolValue(sidecar, "XMP:Title"), "Lake");

    fs::rename(sidecar, folder / "a" / "photo.EXV");
    cliOK({"sidecar", "import", sidecar.string(), nikon.string()});
    EXPECT_EQ(exifToolValue(nikon, "XMP:Title"), "Lake");
    EXPECT_EQ(exifToolValue(nikon, "EXIF:Make"), "Nikon");
    EXPECT_EQ(exifToolValue(nikon, "EXIF:XResolution"), "72");
    EXPECT_EQ(exifToolValue(nikon, "EXIF:Model"), "");

    auto all = cliOK({"sidecar", "import", "--all", "--exclude-tag", "EXIF:Model",
                      (folder / "a" / "photo.EXV").string(), nikon.string()});
    EXPECT_EQ(exifToolValue(nikon, "EXIF:Make"), "Canon");
    EXPECT_EQ(exifToolValue(nikon, "EXIF:XResolution"), "300");
    EXPECT_EQ(exifToolValue(nikon, "EXIF:Model"), "");

    cliExits(2, {"sidecar", "import", "--exclude-tag", "Nothing", canon.string(), nikon.string()});
}

// Values of a sidecar are checked as typed ones: one its tag can't hold is refused, naming the tag,
// the value and the file, and nothing of the file is written.
TEST_F(SidecarCommands, sidecarValuesTheTagsCantHoldWriteNothing) {
    const auto target = makeJPEG(folder / "target.jpg");
    tagWithExifTool(target, {"-EXIF:Artist=Before"});
    const std::string before = fileBytes(target);
    // The target's own sidecar (same base name): its orientation is taken too.
    const auto sidecar = folder / "target.json";
    writeText(sidecar, R"({"EXIF": {"Artist": "After", "Orientation": 99}})");
    const auto err = cliExits(1, {"sidecar", "import", sidecar.string(), target.string()}).err;
    EXPECT_THAT(err, HasSubstr("\"99\" is not a valid value for EXIF:Orientation"));
    EXPECT_THAT(err, HasSubstr("target.jpg"));
    EXPECT_EQ(fileBytes(target), before);

    writeText(sidecar, R"({"EXIF": {"Artist": "After", "Orientation": 6}})");
    cliOK({"sidecar", "import", sidecar.string(), target.string()});
    EXPECT_EQ(exifToolValue(target, "EXIF:Artist"), "After");
}

// A folder to XMP sidecars and back, a missing sidecar named; a tag copied in a folder and in a file
// (the sync and copy tasks' tests check both in full).
TEST_F(SidecarCommands, syncAndCopyTagsWorkOnFoldersAndFiles) {
    auto sub = folder.makeSubfolder("shoot");
    auto a = makeJPEG(sub / "a.jpg");
    auto b = makeJPEG(sub / "b.jpg");
    tagWithExifTool(a, {"-EXIF:DateTimeOriginal=2022:03:04 05:06:07", "-XMP:Title=A"});

    cliOK({"sidecar", "sync", "--export", sub.string()});
    tagWithExifTool(sub / "a.xmp", {"-XMP:Title=A edited"});
    fs::remove(sub / "b.xmp");
    EXPECT_THAT(cliExits(1, {"sidecar", "sync", "--import", sub.string()}).err, HasSubstr("b.jpg"));
    EXPECT_EQ(exifToolValue(a, "XMP:Title"), "A edited");
    cliExits(2, {"sidecar", "sync", sub.string()});

    auto single = makeJPEG(folder / "single.jpg");
    tagWithExifTool(single, {"-EXIF:Artist=Ana"});
    cliOK({"copy-tags", "EXIF:DateTimeOriginal>XMP:CreateDate", "EXIF:Artist>XMP:Creator", sub.string(),
           single.string()});
    EXPECT_EQ(exifToolValue(a, "XMP:CreateDate"), "2022:03:04 05:06:07");
    EXPECT_EQ(exifToolValue(single, "XMP:Creator"), "Ana");
    cliExits(2, {"copy-tags", "EXIF:Nothing>XMP:Title", single.string()});
}

// A table exported, edited in a spreadsheet's way and imported sets what was edited (an unchanged
// table edits nothing: the table tasks' test). An existing table is kept without --force.
TEST_F(SidecarCommands, tableExportAndImportApplyOnlyTheEdits) {
    auto a = makeJPEG(folder / "a.jpg");
    auto b = makeJPEG(folder / "b.jpg");
    tagWithExifTool(a, {"-XMP:Title=Été", "-XMP:Subject=x", "-XMP:Subject=y, z"});
    const fs::path table = folder / "tags.csv";
    cliOK({"table", "export", "-o", table.string(), "--tags", "XMP:Title,XMP:Subject,EXIF:Artist", a.string(),
           b.string()});

    std::string text = fileBytes(table);
    const auto at = text.find(",-NoData-,-NoData-,-NoData-");
    ASSERT_NE(at, std::string::npos) << text;
    writeText(table, text.replace(at, 27, ",Nouveau,-NoData-,Ana"));
    cliOK({"table", "import", table.string(), a.string(), b.string()});
    EXPECT_EQ(exifToolValue(b, "XMP:Title"), "Nouveau");
    EXPECT_EQ(exifToolValue(b, "EXIF:Artist"), "Ana");

    cliExits(1, {"table", "export", "-o", table.string(), a.string()});
    EXPECT_EQ(fileBytes(table), text);
    cliOK({"table", "export", "--force", "--tagset", "images", "-o", table.string(), a.string()});
    EXPECT_THAT(fileBytes(table), HasSubstr("EXIF:DateTimeOriginal"));
}

// On copies of camera files: a Canon raw file's XMP sidecar into a Nikon raw file keeps it a
// Nikon; a JPEG, a HEIC and a movie take a sidecar's title, a tag copy, and a table round trip
// that changes nothing.
TEST_F(SidecarCommands, corpusFilesTakeSidecarsCopiesAndTables) {
    const fs::path corpus = corpusFolder();
    const std::vector<std::string> names{
        "cr2/exiftool/CanonRaw.cr2", "nef/exiftool/Nikon.nef", "jpeg/exiftool/FLIR.jpg",
        "heic/metadata-extractor-images/IMG_2927.HEIC", "mov/exiftool/QuickTime.mov"};
    for (const auto& name : names)
        if (!fs::exists(corpus / name)) GTEST_SKIP() << "corpus file absent: " << (corpus / name);
    std::vector<fs::path> copies;
    for (const auto& name : names) {
        copies.push_back(folder / fs::path(name).filename());
        fs::copy_file(corpus / name, copies.back());
    }
    // The command's words followed by the copies from `first` on.
    auto onCopies = [&](std::vector<std::string> arguments, std::size_t first = 0) {
        for (std::size_t i = first; i < copies.size(); ++i)
            arguments.push_back(copies[i].string());
        return cliOK(arguments);
    };
    tagWithExifTool(copies[0], {"-XMP:Title=From Canon"});
    cliOK({"sidecar", "export", "--type", "xmp", copies[0].string()});
    onCopies({"sidecar", "import", (folder / "CanonRaw.xmp").string()}, 1);
    for (std::size_t i = 1; i < copies.size(); ++i)
        EXPECT_EQ(exifToolValue(copies[i], "XMP:Title"), "From Canon") << copies[i];
    EXPECT_EQ(exifToolValue(copies[1], "EXIF:Make"), "NIKON CORPORATION");
    EXPECT_NE(exifToolValue(copies[1], "MakerNotes:MakerNoteVersion"), "");

    onCopies({"copy-tags", "XMP:Title>XMP:Description"});
    EXPECT_EQ(exifToolValue(copies[2], "XMP:Description"), "From Canon");

    std::vector<std::string> before;
    for (const auto& copy : copies)
        before.push_back(fileBytes(copy));
    const fs::path table = folder / "table.csv";
    onCopies({"table", "export", "-o", table.string()});
    onCopies({"table", "import", table.string()});
    for (std::size_t i = 0; i < copies.size(); ++i)
        EXPECT_TRUE(fileBytes(copies[i]) == before[i]) << copies[i] << " was rewritten";
}

} // namespace
