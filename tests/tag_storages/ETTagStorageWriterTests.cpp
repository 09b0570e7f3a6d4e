// Writing storages through ExifTool: the import records, then real writes read back with the reader.

#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/tag_storages/ETTagStorageWriter.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/utilities/KitSettings.hpp"

#include "ReadBack.hpp"
#include "support/FileBytes.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/Unwritable.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using nlohmann::ordered_json;
using testing::ElementsAre;
using testing::StrEq;
using testing::ThrowsMessage;

using test::edit;
using test::edited;
using test::fileBytes;
using test::originalValue;
TagName name(std::string_view raw) {
    return test::tagName(raw);
}

TagStorageMap readAll(const std::vector<fs::path>& paths) {
    return test::readWithExifTool({paths.begin(), paths.end()});
}

TagStorage readOne(const fs::path& path) {
    auto storages = readAll({path});
    EXPECT_TRUE(storages.contains(path)) << path;
    return storages.contains(path) ? storages.at(path) : TagStorage(TagStorageSource(path));
}

ordered_json recordOf(const TagStorage& storage, ETTagStorageWriter::Settings settings = {}) {
    return ETTagStorageWriter(std::move(settings)).importRecord(storage).value_or(ordered_json());
}

// --- Import records

// Blank values, lists, the IPTC character set and the XMP toolkit are read back in the real writes
// below; here, what those don't show.
TEST(ETWriterRecords, OnlyExifToolsTagsBecomeImportEntriesAndMakerNotesGoUnderTheirGroup) {
    TagStorage storage(TagStorageSource("/photos/a.jpg"));
    // Nothing for ExifTool, no record: no edit, or only file resources and unknown tags.
    EXPECT_TRUE(recordOf(storage).is_null());
    edit(storage, {{"File:FileModifyDate", "2024:01:02 03:04:05+00:00"}, {"EXIF:NotInTheCatalogue", "x"}});
    EXPECT_TRUE(recordOf(storage).is_null());
    const TagItem* canonItem = TagStream::streamCanon.items().front();
    edit(storage, {{canonItem->name().rawValue(), "maker"}});
    EXPECT_EQ(
        json::parse(recordOf(storage).dump()),
        (json{{"SourceFile", "/photos/a.jpg"}, {"MakerNotes:" + canonItem->key().rawValue(), "maker"}}));
    // A value can't be taken for another writer's deletion marker.
    EXPECT_NE(ETTagStorageWriter{ETTagStorageWriter::Settings()}.deletionMarker(),
              ETTagStorageWriter{ETTagStorageWriter::Settings()}.deletionMarker());
}

// The IPTC character set and the digest are only written where needed, in the cases the real writes
// don't reach.
TEST(ETWriterRecords, IPTCSetAndDigestAreDeclaredOnlyWhereNeeded) {
    const std::string charset = "IPTC:CodedCharacterSet";
    TagStorage iptc(TagStorageSource("/photos/a.jpg"));
    edit(iptc, {{"IPTC:By-line", "Ünïcödé"}});
    ETTagStorageWriter::Settings off;
    off.setForceIPTCUTF8(false);
    EXPECT_FALSE(recordOf(iptc, off).contains(charset));
    // Undeclared IPTC in the file that can't be written again in UTF-8 keeps its set.
    iptc.setOriginalValue("x", name("IPTC:NotInTheCatalogue"));
    EXPECT_FALSE(recordOf(iptc).contains(charset));

    TagStorage exifOnly(TagStorageSource("/photos/a.jpg"));
    edit(exifOnly, {{"EXIF:Artist", "x"}});
    EXPECT_FALSE(recordOf(exifOnly).contains("XMP:XMPToolkit")) << "XMP not written, toolkit untouched";

    const std::string digest = "Photoshop:IPTCDigest";
    TagStorage plain(TagStorageSource("/photos/a.jpg"));
    edit(plain, {{"IPTC:By-line", "x"}});
    // A digest the file holds follows its IPTC: the character-set round trip below reads it back.
    EXPECT_FALSE(recordOf(plain).contains(digest)) << "ignore is the default";
    ETTagStorageWriter::Settings ifExists;
    ifExists.setForceIPTCDigest(IPTCDigestUpdate::updateIfExists);
    EXPECT_FALSE(recordOf(plain, ifExists).contains(digest));
    TagStorage withDigest = plain;
    withDigest.setOriginalValue("0123456789abcdef0123456789abcdef", name(digest));
    EXPECT_EQ(recordOf(withDigest, ifExists)[digest], "new");
    exifOnly.setOriginalValue("0123456789abcdef0123456789abcdef", name(digest));
    EXPECT_FALSE(recordOf(exifOnly).contains(digest)) << "IPTC unchanged, digest untouched";
}

TEST(ETWriterRecords, FilesShareTheFirstBatchAndFoldersGetTheirOwn) {
    const std::vector<TagStorage> storages{
        TagStorage(TagStorageSource("/f1")), TagStorage(TagStorageSource("/a.jpg")),
        TagStorage(TagStorageSource("/f2")), TagStorage(TagStorageSource("/b.mov"))};
    const auto batches = ETTagStorageWriter::splitStorages(storages);
    ASSERT_EQ(batches.size(), 3u);
    EXPECT_THAT(batches[0], ElementsAre(&storages[1], &storages[3]));
    EXPECT_THAT(batches[1], ElementsAre(&storages[0]));
    EXPECT_THAT(batches[2], ElementsAre(&storages[2]));
}

// --- Real writes

class ETWriter : public testing::Test {
protected:
    test::TemporaryFolder folder{"corvane-etio"};
    // Every import file goes into a temporary folder of this test, so that leftovers can be seen.
    test::TemporaryFolder temporary{"corvane-etio-tmp"};
    std::optional<std::string> previousTMPDIR;

    void SetUp() override {
        if (const char* value = std::getenv("TMPDIR")) previousTMPDIR = value;
        ::setenv("TMPDIR", temporary.path().c_str(), 1);
    }
    void TearDown() override {
        if (previousTMPDIR)
            ::setenv("TMPDIR", previousTMPDIR->c_str(), 1);
        else
            ::unsetenv("TMPDIR");
        EXPECT_TRUE(fs::is_empty(temporary.path())) << "temporary files are removed";
    }

    static void write(std::vector<TagStorage> storages,
                      const std::function<void(ETTagStorageWriter::Settings&)>& configure = {}) {
        ETTagStorageWriter::Settings settings(std::move(storages));
        if (configure) configure(settings);
        ETTagStorageWriter(settings).write();
    }
    // Reads the file, edits it and writes it back.
    static void writeEdits(const fs::path& path, const std::map<std::string, std::string>& values,
                           const std::function<void(ETTagStorageWriter::Settings&)>& configure = {}) {
        TagStorage storage = readOne(path);
        edit(storage, values);
        write({storage}, configure);
    }
};

// Texts in every script, lists, a clear, and values that mean something to ExifTool's command line
// ("-", "<", "-all=", "base64:", "$HOME") arrive as typed. The file saved is the same file, with its
// mode and extended attributes.
TEST_F(ETWriter, EXIFIPTCAndXMPValuesRoundTripOnJPEG) {
    const fs::path jpeg = test::makeJPEG(folder / "photo.jpg");
    test::tagWithExifTool(jpeg, {"-EXIF:Copyright=to be cleared", "-XMP:Creator=Keep"});
    TagStorage storage = readOne(jpeg);
    const std::string tags = "Red\n";
    const bool tagged = ::setxattr(jpeg.c_str(), "user.xdg.tags", tags.data(), tags.size(), 0) == 0;
    fs::permissions(jpeg, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    struct stat before {};
    ASSERT_EQ(::stat(jpeg.c_str(), &before), 0);
    const std::map<std::string, std::string> values{
        {"EXIF:Artist", "Zoë Ünïcödé ✓"},
        {"EXIF:ImageDescription", "line one\nline two"},
        {"EXIF:Make", "-"},
        {"EXIF:Model", "base64:SGVsbG8="},
        {"EXIF:Software", "$HOME %d"},
        {"EXIF:DateTimeOriginal", "2023:04:05 06:07:08"},
        {"EXIF:Copyright", ""},
        {"IPTC:By-line", "Jürgen Łukasz"},
        {"IPTC:Caption-Abstract", "写真の説明"},
        {"IPTC:Keywords", "alpha, béta,γ"},
        {"XMP:Subject", "x,y,ζ"},
        {"XMP:Title", "Tïtle \"quoted\""},
        {"XMP:Headline", "<x"},
        {"XMP:Rights", "-all="},
        {"XMP:Label", "base64:x"},
        {"XMP:Description", std::string(100 * 1024, 'x') + "é"},
    };
    edit(storage, values);
    std::vector<std::string> events;
    write({storage}, [&](ETTagStorageWriter::Settings& settings) {
        settings.setOnStartHandler([&](ETTagStorageWriter&) { events.push_back("start"); });
        settings.setOnEndHandler([&](ETTagStorageWriter& writer) {
            events.push_back("end");
            EXPECT_DOUBLE_EQ(writer.progress(), 1.0);
        });
    });
    EXPECT_THAT(events, ElementsAre("start", "end"));

    test::Values expected{{"XMP:Creator", "Keep"}}; // tags not written stay
    for (const auto& [raw, value] : values)
        expected[raw] = value.empty() ? std::nullopt : std::optional(value);
    const auto toolkit = KitSettings::shared().xmpToolkit();
    expected["XMP:XMPToolkit"] = toolkit.empty() ? std::nullopt : std::optional(toolkit);
    expected["IPTC:Keywords"] = "alpha,béta,γ"; // the blank after a comma is no part of an item
    EXPECT_EQ(test::valuesOf(readOne(jpeg), expected), expected);
    // Lists are real lists in the file, not one item holding commas.
    EXPECT_EQ(test::exifToolValue(jpeg, "IPTC:Keywords"), "alpha, béta, γ");
    EXPECT_FALSE(fs::exists(fs::path(jpeg.string() + "_original"))) << "written in place";
    struct stat after {};
    ASSERT_EQ(::stat(jpeg.c_str(), &after), 0);
    EXPECT_TRUE(after.st_ino == before.st_ino && after.st_mode == before.st_mode &&
                after.st_uid == before.st_uid)
        << "the same file, not a replacement";
    char buffer[64] = {};
    const auto size = ::getxattr(jpeg.c_str(), "user.xdg.tags", buffer, sizeof buffer);
    EXPECT_TRUE(!tagged || std::string(buffer, static_cast<std::size_t>(std::max<ssize_t>(size, 0))) == tags);
}

TEST_F(ETWriter, QuickTimeAndXMPValuesRoundTripOnMOV) {
    const fs::path mov = test::makeMOV(folder / "movie.mov");
    test::tagWithExifTool(mov, {"-QuickTime:Title=to be cleared", "-XMP:Subject=to be cleared"});
    writeEdits(mov, {{"QuickTime:Title", ""},
                     {"QuickTime:Artist", "Ana Ñúñez"},
                     {"QuickTime:Description", "описание"},
                     {"XMP:Title", "XMP tïtle"},
                     {"XMP:Subject", " "}});
    const test::Values expected{{"QuickTime:Title", {}},
                                {"QuickTime:Artist", "Ana Ñúñez"},
                                {"QuickTime:Description", "описание"},
                                {"XMP:Title", "XMP tïtle"},
                                {"XMP:Subject", {}}};
    EXPECT_EQ(test::valuesOf(readOne(mov), expected), expected);
}

// Files of several formats share one import file, read once; a folder's batch has its own, in the
// same run, and reaches every matching file. How every difficult name reaches ExifTool is the
// process's test; the save of such names, read back, the import-save task's.
TEST_F(ETWriter, FilesOfSeveralFormatsAndAFoldersMatchingFilesAreWrittenInOneRun) {
    const std::vector<fs::path> paths{test::makeJPEG(folder / "-dash 'q'.jpg"),
                                      test::makePNG(folder / "Zoë.png"),
                                      test::makeTIFF(folder / "line\nbreak.tif")};
    std::vector<TagStorage> storages;
    for (const auto& path : paths)
        storages.push_back(edited(path, {{"XMP:Title", path.filename().string()}}));
    const fs::path deep = test::makeJPEG(folder.makeSubfolder("shoot/day1") / "deep.jpg");
    const fs::path top = test::makeJPEG(folder / "shoot/top.jpg");
    const fs::path png = test::makePNG(folder / "shoot/top.png");
    TagStorage shoot = edited(folder / "shoot", {{"XMP:Title", "everywhere"}});
    shoot.setRecurseSubfolders(true);
    shoot.setFilePathFilter(ETPathFilter{"jpg"});
    storages.push_back(shoot);

    ETTagStorageWriter writer{ETTagStorageWriter::Settings(storages)};
    writer.write();
    const auto back = readAll({paths[0], paths[1], paths[2], top, png, deep});
    for (const auto& path : paths)
        EXPECT_EQ(originalValue(back.at(path), "XMP:Title"), path.filename().string());
    EXPECT_EQ(originalValue(back.at(top), "XMP:Title"), "everywhere");
    EXPECT_EQ(originalValue(back.at(deep), "XMP:Title"), "everywhere") << "subfolders when recursing";
    EXPECT_EQ(originalValue(back.at(png), "XMP:Title"), std::nullopt) << "the filter keeps other types out";
    const ETOutput output = writer.process().output();
    const auto& arguments = output.arguments();
    EXPECT_EQ(std::count_if(arguments.begin(), arguments.end(),
                            [](const std::string& a) { return a.starts_with("-json="); }),
              2);
    EXPECT_EQ(std::count(arguments.begin(), arguments.end(), "-execute"), 1);
}

TEST_F(ETWriter, AFileThatCannotBeWrittenEndsWithAnErrorAndStaysAsItWas) {
    const fs::path locked = test::makeJPEG(folder.makeSubfolder("locked") / "locked.jpg");
    test::tagWithExifTool(locked, {"-EXIF:Artist=before"});
    TagStorage storage = readOne(locked);
    edit(storage, {{"EXIF:Artist", "after"}});
    const TagItem& modify = TagItem::itemFileFileModifyDate();
    storage.unsafeSetValue(*modify.stringValueFromNativeValue(DynamicValue(Date(1000000000))), modify.name());
    const std::string before = fileBytes(locked);
    const auto modified = fs::last_write_time(locked);

    test::Unwritable guard(locked);
    if (!guard.ok()) GTEST_SKIP() << "cannot make a file unwritable on this volume";
    std::vector<std::string> events;
    try {
        write({storage}, [&](ETTagStorageWriter::Settings& settings) {
            settings.setOnEndHandler([&](ETTagStorageWriter&) { events.push_back("end"); });
        });
        ADD_FAILURE() << "the write should fail";
    } catch (const ETOutputException& e) {
        EXPECT_FALSE(e.details().empty());
    }
    EXPECT_TRUE(events.empty()) << "no end after a failure";
    EXPECT_EQ(fileBytes(locked), before);
    EXPECT_EQ(fs::last_write_time(locked), modified) << "Finder resources aren't written after a failure";
}

// Text the import file can't hold, and an import file that can't be made, stop the write before
// ExifTool starts, with their texts, and the file stays as it was.
TEST_F(ETWriter, FailuresOfTheImportFileStopTheWriteBeforeExifTool) {
    const fs::path jpeg = test::makeJPEG(folder / "refused.jpg");
    const std::string before = fileBytes(jpeg);
    TagStorage storage = readOne(jpeg);
    const auto expectRefused = [&](const std::string& artist, const char* text) {
        edit(storage, {{"EXIF:Artist", artist}});
        ETTagStorageWriter writer{ETTagStorageWriter::Settings({storage})};
        EXPECT_THAT([&] { writer.write(); }, ThrowsMessage<ETTagStorageWriter::WriteException>(StrEq(text)));
        EXPECT_TRUE(writer.process().output().arguments().empty()) << "ExifTool was not started";
        EXPECT_EQ(fileBytes(jpeg), before);
    };
    expectRefused("caf\xE9", "JSON encoding failed");
    // The import file goes to the temporary folder, which takes no new file now.
    test::Unwritable guard(temporary.path());
    if (!guard.ok()) GTEST_SKIP() << "cannot make a folder unwritable on this volume";
    expectRefused("never", "JSON file creation failed");
}

TEST_F(ETWriter, FinderResourcesAreWrittenWithoutExifTool) {
    const fs::path jpeg = test::makeJPEG(folder / "finder.jpg");
    const std::string before = fileBytes(jpeg);
    TagStorage storage = readOne(jpeg);
    const TagItem& tags = TagItem::itemFileMDItemUserTags();
    const TagItem& modify = TagItem::itemFileFileModifyDate();
    const auto tagsText = tags.stringValueFromNativeValue(DynamicValue(StringArray{"Red", "Prïvate"}));
    const auto dateText = modify.stringValueFromNativeValue(DynamicValue(Date(1600000000)));
    ASSERT_TRUE(tagsText && dateText);
    storage.unsafeSetValue(*tagsText, tags.name());
    storage.unsafeSetValue(*dateText, modify.name());

    ETTagStorageWriter writer{ETTagStorageWriter::Settings({storage})};
    writer.write();
    EXPECT_TRUE(writer.process().output().arguments().empty()) << "nothing for ExifTool, no run";
    EXPECT_EQ(fileBytes(jpeg), before);

    // With metadata written too, the dates set afterwards are the ones that stay. The values that
    // went in are read back by the Finder resources' own tests; the tags written first are below.
    TagStorage back = readOne(jpeg);
    edit(back, {{"EXIF:Artist", "x"}});
    back.unsafeSetValue(*modify.stringValueFromNativeValue(DynamicValue(Date(1500000000))), modify.name());
    write({back});
    const TagStorage again = readOne(jpeg);
    EXPECT_EQ(originalValue(again, "EXIF:Artist"), "x");
    EXPECT_EQ(again.currentNativeValue(modify), DynamicValue(Date(1500000000)));
    EXPECT_EQ(originalValue(again, "File:MDItemUserTags"), tagsText);
}

TEST_F(ETWriter, IPTCDigestIsUpdatedOrDeletedAsAsked) {
    const fs::path jpeg = test::makeJPEG(folder / "digest.jpg");
    auto withDigest = [](IPTCDigestUpdate update) {
        return [update](ETTagStorageWriter::Settings& settings) { settings.setForceIPTCDigest(update); };
    };

    writeEdits(jpeg, {{"IPTC:Caption-Abstract", "first"}}, withDigest(IPTCDigestUpdate::update));
    const auto digest = originalValue(readOne(jpeg), "Photoshop:IPTCDigest");
    EXPECT_EQ(digest.value_or("").size(), 32u) << digest.value_or("none");
    // ExifTool compares the digest with the IPTC data: a current digest gives no warning.
    EXPECT_EQ(test::exifToolValue(jpeg, "Warning"), "");

    writeEdits(jpeg, {{"IPTC:Caption-Abstract", "second"}}, withDigest(IPTCDigestUpdate::delete_));
    EXPECT_EQ(originalValue(readOne(jpeg), "Photoshop:IPTCDigest"), std::nullopt);
}

TEST_F(ETWriter, IPTCCharacterSetsAreKeptAndTheDigestStaysCurrent) {
    const fs::path jpeg = test::makeJPEG(folder / "press.jpg");
    // What most press photos hold: Latin IPTC without a declared set, and a Photoshop digest.
    test::tagWithExifTool(jpeg, {"-charset", "iptc=Latin", "-IPTC:CopyrightNotice=©2009 Julie Doe",
                                 "-IPTC:Keywords=café", "-IPTC:Keywords=thé", "-Photoshop:IPTCDigest=new"});
    ASSERT_EQ(test::exifToolValue(jpeg, "IPTC:CodedCharacterSet"), "");

    writeEdits(jpeg, {{"EXIF:Artist", "Someone"}});
    EXPECT_EQ(test::exifToolValue(jpeg, "IPTC:CodedCharacterSet"), "") << "IPTC not written, set unchanged";
    EXPECT_EQ(test::exifToolValue(jpeg, "IPTC:CopyrightNotice"), "©2009 Julie Doe");

    writeEdits(jpeg, {{"IPTC:By-line", "東京 Zoë"}});
    EXPECT_EQ(test::exifToolValue(jpeg, "IPTC:CodedCharacterSet"), "UTF8");
    const TagStorage back = readOne(jpeg);
    EXPECT_EQ(originalValue(back, "IPTC:By-line"), "東京 Zoë");
    EXPECT_EQ(originalValue(back, "IPTC:CopyrightNotice"), "©2009 Julie Doe") << "carried over into UTF-8";
    EXPECT_EQ(test::exifToolValue(jpeg, "IPTC:Keywords"), "café, thé");
    EXPECT_EQ(test::exifToolValue(jpeg, "Warning"), "") << "the digest describes the new IPTC";

    // A declared set (ISO 8859-1, "ESC . A") is kept.
    const fs::path declared = test::makeJPEG(folder / "latin.jpg");
    test::tagWithExifTool(declared, {"-IPTC:CodedCharacterSet#=\x1b.A", "-IPTC:ObjectName=old"});
    writeEdits(declared, {{"IPTC:By-line", "Jose"}});
    EXPECT_EQ(test::exifToolValue(declared, "IPTC:CodedCharacterSet"), "ESC . A");
    EXPECT_EQ(originalValue(readOne(declared), "IPTC:By-line"), "Jose");
}

} // namespace
} // namespace corvane
