// `corvane sidecar`, `corvane copy-tags` and `corvane table`, run as the built program on files the
// tests make and, where present, on copies of the camera corpus.
#include "cli/CliRun.hpp"
#include "support/Corpus.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <fstream>

namespace {

using namespace corvane::test;
using corvane::test::corvane;

using SidecarCommands = CliTest;

TEST_F(SidecarCommands, sidecarsCarryValuesFromOneFileToAnother) {
    for (const std::string type : {"json", "csv"}) {
        SCOPED_TRACE(type);
        auto source = makeJPEG(folder / ("source-" + type + ".jpg"));
        auto target = makeJPEG(folder / ("target-" + type + ".jpg"));
        tagWithExifTool(source, {"-EXIF:Artist=Zoë, \"Z\"", "-XMP:Subject=one", "-XMP:Subject=two, three",
                                 "-IPTC:City=Genève"});

        auto out = folder / ("sidecars-" + type);
        auto exported = corvane(
            {"sidecar", "export", "--type", type, "--output", out.string(), source.string()}, scratch);
        ASSERT_EQ(exported.exitCode, 0) << exported.err;
        auto sidecar = out / ("source-" + type + "." + type);
        ASSERT_TRUE(fs::exists(sidecar)) << exported.out;

        auto imported = corvane({"sidecar", "import", sidecar.string(), target.string()}, scratch);
        ASSERT_EQ(imported.exitCode, 0) << imported.err;
        EXPECT_EQ(exifToolValue(target, "EXIF:Artist"), "Zoë, \"Z\"");
        EXPECT_EQ(exifToolValue(target, "IPTC:City"), "Genève");
        EXPECT_EQ(exifToolValue(target, "XMP:Subject"), "one, two, three");
    }

    // No sidecar for a file that can't be read.
    auto empty = writeBytes(folder / "empty.jpg", {});
    auto exported = corvane({"sidecar", "export", "--type", "json", empty.string()}, scratch);
    EXPECT_EQ(exported.exitCode, 1);
    EXPECT_FALSE(fs::exists(folder / "empty.json"));
}

TEST_F(SidecarCommands, aSidecarImportedIntoItsOwnFileChangesNothing) {
    // A movie turned by its track matrix, and numbers, lists and texts with commas.
    auto mov = makeMOV(folder / "turned.mov");
    tagWithExifTool(mov, {"-Rotation=90", "-XMP:Title=clip"});
    auto jpeg = makeJPEG(folder / "photo.jpg");
    tagWithExifTool(jpeg, {"-EXIF:FNumber=1.8", "-EXIF:ExposureTime=0.01", "-IPTC:Caption-Abstract=a, b, c",
                           "-IPTC:Keywords=x, y", "-IPTC:Keywords=z", "-XMP:Subject=p, q",
                           "-EXIF:ImageUniqueID=0358DB4E08632D90925171A6BB8848A2"});
    for (const auto& file : {mov, jpeg}) {
        for (const std::string type : {"json", "csv"}) {
            SCOPED_TRACE(file.filename().string() + " " + type);
            const std::string before = readText(file);
            auto out = folder / ("sidecars-" + type);
            auto exported = corvane(
                {"sidecar", "export", "--type", type, "--output", out.string(), file.string()}, scratch);
            ASSERT_EQ(exported.exitCode, 0) << exported.err;
            const auto sidecar = out / (file.stem().string() + "." + type);
            auto imported = corvane({"sidecar", "import", sidecar.string(), file.string()}, scratch);
            EXPECT_EQ(imported.exitCode, 0) << imported.err;
            EXPECT_TRUE(readText(file) == before) << "the file was rewritten";
        }
    }
    EXPECT_EQ(exifToolValue(mov, "Rotation"), "90");
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

    auto collided = corvane({"sidecar", "export", "--type", "xmp", "--output", (folder / "out").string(),
                             canon.string(), twin.string()},
                            scratch);
    EXPECT_EQ(collided.exitCode, 1);
    EXPECT_NE(collided.err.find("same sidecar"), std::string::npos) << collided.err;
    EXPECT_FALSE(fs::exists(folder / "out" / "photo.xmp"));

    auto exported = corvane({"sidecar", "export", "--type", "EXV", canon.string()}, scratch);
    ASSERT_EQ(exported.exitCode, 0) << exported.err;
    const fs::path sidecar = folder / "a" / "photo.exv";
    EXPECT_EQ(exported.out, sidecar.string() + "\n");
    tagWithExifTool(sidecar, {"-XMP:Title=Edited"});
    auto kept = corvane({"sidecar", "export", "--type", "exv", canon.string()}, scratch);
    EXPECT_EQ(kept.exitCode, 1);
    EXPECT_EQ(exifToolValue(sidecar, "XMP:Title"), "Edited");
    auto forced = corvane({"sidecar", "export", "--type", "exv", "--force", canon.string()}, scratch);
    ASSERT_EQ(forced.exitCode, 0) << forced.err;
    EXPECT_EQ(exifToolValue(sidecar, "XMP:Title"), "Lake");

    fs::rename(sidecar, folder / "a" / "photo.EXV");
    auto foreign = corvane({"sidecar", "import", sidecar.string(), nikon.string()}, scratch);
    ASSERT_EQ(foreign.exitCode, 0) << foreign.err;
    EXPECT_EQ(exifToolValue(nikon, "XMP:Title"), "Lake");
    EXPECT_EQ(exifToolValue(nikon, "EXIF:Make"), "Nikon");
    EXPECT_EQ(exifToolValue(nikon, "EXIF:XResolution"), "72");
    EXPECT_EQ(exifToolValue(nikon, "EXIF:Model"), "");

    auto all = corvane({"sidecar", "import", "--all", "--exclude-tag", "EXIF:Model",
                        (folder / "a" / "photo.EXV").string(), nikon.string()},
                       scratch);
    ASSERT_EQ(all.exitCode, 0) << all.err;
    EXPECT_EQ(exifToolValue(nikon, "EXIF:Make"), "Canon");
    EXPECT_EQ(exifToolValue(nikon, "EXIF:XResolution"), "300");
    EXPECT_EQ(exifToolValue(nikon, "EXIF:Model"), "");

    auto badTag =
        corvane({"sidecar", "import", "--exclude-tag", "Nothing", canon.string(), nikon.string()}, scratch);
    EXPECT_EQ(badTag.exitCode, 2);
}

// A folder to XMP sidecars and back, and a tag copied into another in a folder and in a file.
TEST_F(SidecarCommands, syncAndCopyTagsWorkOnFoldersAndFiles) {
    auto sub = folder.makeSubfolder("shoot");
    auto a = makeJPEG(sub / "a.jpg");
    auto b = makeJPEG(sub / "b.jpg");
    tagWithExifTool(a, {"-EXIF:DateTimeOriginal=2022:03:04 05:06:07", "-XMP:Title=A"});
    tagWithExifTool(b, {"-EXIF:DateTimeOriginal=2023:03:04 05:06:07", "-XMP:Title=B"});

    auto exported = corvane({"sidecar", "sync", "--export", sub.string()}, scratch);
    ASSERT_EQ(exported.exitCode, 0) << exported.err;
    ASSERT_TRUE(fs::exists(sub / "a.xmp"));
    tagWithExifTool(sub / "a.xmp", {"-XMP:Title=A edited"});
    fs::remove(sub / "b.xmp");
    auto imported = corvane({"sidecar", "sync", "--import", sub.string()}, scratch);
    EXPECT_EQ(imported.exitCode, 1);
    EXPECT_NE(imported.err.find("b.jpg"), std::string::npos) << imported.err;
    EXPECT_EQ(exifToolValue(a, "XMP:Title"), "A edited");
    EXPECT_EQ(exifToolValue(b, "XMP:Title"), "B");
    auto neither = corvane({"sidecar", "sync", sub.string()}, scratch);
    EXPECT_EQ(neither.exitCode, 2);

    auto single = makeJPEG(folder / "single.jpg");
    tagWithExifTool(single, {"-EXIF:DateTimeOriginal=2021:01:01 00:00:01", "-EXIF:Artist=Ana"});
    auto copied = corvane({"copy-tags", "EXIF:DateTimeOriginal>XMP:CreateDate", "EXIF:Artist>XMP:Creator",
                           sub.string(), single.string()},
                          scratch);
    ASSERT_EQ(copied.exitCode, 0) << copied.err;
    EXPECT_EQ(exifToolValue(a, "XMP:CreateDate"), "2022:03:04 05:06:07");
    EXPECT_EQ(exifToolValue(b, "XMP:CreateDate"), "2023:03:04 05:06:07");
    EXPECT_EQ(exifToolValue(single, "XMP:CreateDate").substr(0, 19), "2021:01:01 00:00:01");
    EXPECT_EQ(exifToolValue(single, "XMP:Creator"), "Ana");
    auto badPair = corvane({"copy-tags", "EXIF:Nothing>XMP:Title", single.string()}, scratch);
    EXPECT_EQ(badPair.exitCode, 2);
}

// A table exported, edited in a spreadsheet's way and imported sets what was edited; imported
// unchanged it writes no file. An existing table is kept without --force.
TEST_F(SidecarCommands, tableExportAndImportApplyOnlyTheEdits) {
    auto a = makeJPEG(folder / "a.jpg");
    auto b = makeJPEG(folder / "b.jpg");
    tagWithExifTool(a, {"-XMP:Title=Été", "-XMP:Subject=x", "-XMP:Subject=y, z"});
    const fs::path table = folder / "tags.csv";
    auto exported = corvane({"table", "export", "-o", table.string(), "--tags",
                             "XMP:Title,XMP:Subject,EXIF:Artist", a.string(), b.string()},
                            scratch);
    ASSERT_EQ(exported.exitCode, 0) << exported.err;
    const std::string bBefore = readText(b);
    auto unchanged = corvane({"table", "import", table.string(), a.string(), b.string()}, scratch);
    ASSERT_EQ(unchanged.exitCode, 0) << unchanged.err;
    EXPECT_NE(unchanged.out.find("0 files updated, 2 unchanged"), std::string::npos) << unchanged.out;

    std::string text = readText(table);
    const auto at = text.find(",-NoData-,-NoData-,-NoData-");
    ASSERT_NE(at, std::string::npos) << text;
    text.replace(at, 27, ",Nouveau,-NoData-,Ana");
    std::ofstream(table) << text;
    auto edited = corvane({"table", "import", table.string(), a.string(), b.string()}, scratch);
    ASSERT_EQ(edited.exitCode, 0) << edited.err;
    EXPECT_EQ(exifToolValue(b, "XMP:Title"), "Nouveau");
    EXPECT_EQ(exifToolValue(b, "EXIF:Artist"), "Ana");
    EXPECT_EQ(exifToolValue(a, "XMP:Subject"), "x, y, z");

    auto kept = corvane({"table", "export", "-o", table.string(), a.string()}, scratch);
    EXPECT_EQ(kept.exitCode, 1);
    EXPECT_EQ(readText(table), text);
    auto images = corvane(
        {"table", "export", "--force", "--tagset", "images", "-o", table.string(), a.string()}, scratch);
    ASSERT_EQ(images.exitCode, 0) << images.err;
    EXPECT_NE(readText(table).find("EXIF:DateTimeOriginal"), std::string::npos);
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
        return corvane(arguments, scratch);
    };
    tagWithExifTool(copies[0], {"-XMP:Title=From Canon"});
    auto exported = corvane({"sidecar", "export", "--type", "xmp", copies[0].string()}, scratch);
    ASSERT_EQ(exported.exitCode, 0) << exported.err;
    auto imported = onCopies({"sidecar", "import", (folder / "CanonRaw.xmp").string()}, 1);
    ASSERT_EQ(imported.exitCode, 0) << imported.err;
    for (std::size_t i = 1; i < copies.size(); ++i)
        EXPECT_EQ(exifToolValue(copies[i], "XMP:Title"), "From Canon") << copies[i];
    EXPECT_EQ(exifToolValue(copies[1], "EXIF:Make"), "NIKON CORPORATION");
    EXPECT_NE(exifToolValue(copies[1], "MakerNotes:MakerNoteVersion"), "");

    auto copied = onCopies({"copy-tags", "XMP:Title>XMP:Description"});
    ASSERT_EQ(copied.exitCode, 0) << copied.err;
    EXPECT_EQ(exifToolValue(copies[2], "XMP:Description"), "From Canon");

    std::vector<std::string> before;
    for (const auto& copy : copies)
        before.push_back(readText(copy));
    const fs::path table = folder / "table.csv";
    ASSERT_EQ(onCopies({"table", "export", "-o", table.string()}).exitCode, 0);
    auto roundTrip = onCopies({"table", "import", table.string()});
    ASSERT_EQ(roundTrip.exitCode, 0) << roundTrip.err;
    for (std::size_t i = 0; i < copies.size(); ++i)
        EXPECT_TRUE(readText(copies[i]) == before[i]) << copies[i] << " was rewritten";
}

} // namespace
