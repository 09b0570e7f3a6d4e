#include "corvane/tag_value/MediaType.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <set>
#include <thread>

using namespace corvane;
using testing::ElementsAre;

namespace {

const TagAccess N = TagAccess::n, R = TagAccess::r, RW = TagAccess::rw, RWC = TagAccess::rwc;

} // namespace

TEST(TagAccess, RightsAndRawValues) {
    struct Row {
        TagAccess access;
        const char* raw;
        std::array<bool, 3> rights; // read, edit, create
    };
    for (const Row& row : {Row{N, "N", {false, false, false}}, Row{R, "R", {true, false, false}},
                           Row{RW, "RW", {true, true, false}}, Row{RWC, "RWC", {true, true, true}}}) {
        SCOPED_TRACE(row.raw);
        EXPECT_EQ((std::array{row.access.canBeRead(), row.access.canBeEdited(), row.access.canBeCreated()}),
                  row.rights);
        EXPECT_EQ(nlohmann::json(row.access), row.raw);
        EXPECT_EQ(nlohmann::json(row.raw).get<TagAccess>(), row.access);
    }
    EXPECT_FALSE(TagAccess::fromRawValue("rw"));
    EXPECT_THROW(nlohmann::json("rwc").get<TagAccess>(), std::invalid_argument);
    EXPECT_THROW(nlohmann::json(2).get<TagAccess>(), std::invalid_argument);
}

TEST(MediaKind, RawValuesRoundTripAndNamesAreTranslated) {
    for (MediaKind kind : MediaKind::allCases()) {
        EXPECT_EQ(MediaKind::fromRawValue(kind.rawValue()), kind);
        EXPECT_FALSE(kind.localizedName().empty());
        EXPECT_NE(kind.localizedName(), kind.localizationKey()) << "a text of the string table";
    }
    EXPECT_FALSE(MediaKind::fromRawValue("Image"));
}

TEST(MediaType, TableHas289UniqueRecordsInDeclarationOrderFoundByKind) {
    const auto& all = MediaType::allCases();
    ASSERT_EQ(all.size(), 289u);
    EXPECT_THAT(
        (std::vector<std::string>{all[0].format(), all[1].format(), all[2].format(), all.back().format()}),
        ElementsAre("", "360", "3FR", "ZIP"));
    EXPECT_EQ(MediaType::indexedTypes().size(), 289u);
    for (const MediaType& type : all) {
        // The constants and the index hand out the same record.
        auto found = MediaType::type(type.format());
        ASSERT_TRUE(found) << type.format();
        EXPECT_EQ(&found->access(), &type.access()) << type.format();
    }
    std::set<std::string> formats;
    for (const MediaType& t : MediaType::types({MediaKind::sidecar}))
        formats.insert(t.format());
    EXPECT_EQ(formats, (std::set<std::string>{"EXIF", "EXV", "ICC", "MIE", "VRD", "XMP"}));
    EXPECT_EQ(MediaType::types(MediaKind::allCases()).size(), 289u);
    auto media = MediaType::types({MediaKind::audio, MediaKind::movie, MediaKind::audio});
    EXPECT_EQ(media.size(), 70u);
    EXPECT_TRUE(media.count(MediaType::typeMP3()) && !media.count(MediaType::typeJPEG()));
    EXPECT_TRUE(MediaType::types({}).empty());
}

// Rows of the table written as format, family and right, so that each reads as the table does.
TEST(MediaType, KnownRightsAndKindsOfTheJPEGFamilyMoviesHEICPDFAndTheSettledOddities) {
    struct Right {
        const char* format;
        const char* family;
        TagAccess access;
    };
    for (const char* format : {"JPEG", "JPG", "JPE", "MPO", "THM", "INSP", "EXV"}) {
        const MediaType type = *MediaType::type(std::string(format));
        EXPECT_EQ(type.access().size(), 23u) << format; // 4 of its own, 22 of the set, 3 shared
        for (auto [family, access] : {std::pair{"EXIF", RWC},
                                      {"IPTC", RWC},
                                      {"JFIF", RWC},
                                      {"MPF", RWC},
                                      {"Kodak", RW},
                                      {"FLIR", R},
                                      {"MIE", RW},
                                      {"QuickTime", N}})
            EXPECT_EQ(type.access(TagStream(family)), access) << format << " " << family;
    }
    const Right rights[] = {{"MOV", "QuickTime", RWC}, {"MOV", "XMP", RWC},         {"MOV", "EXIF", RW},
                            {"MOV", "PNG", N},         {"MOV", "NoSuchFamily", N},  {"QT", "XMP", RW},
                            {"HEIC", "IPTC", N},       {"HEIC", "ICC_Profile", RW}, {"PDF", "XMP", RWC},
                            {"PDF", "PDF", RWC},       {"PDF", "EXIF", R},          {"PDF", "IPTC", R},
                            {"DVR-MS", "ASF", R}};
    for (const Right& r : rights)
        EXPECT_EQ(MediaType::type(std::string(r.format))->access(TagStream(r.family)), r.access)
            << r.format << " " << r.family;
    EXPECT_FALSE(MediaType::typeHEIC().access(TagStream::streamICC_Profile).canBeCreated());
    EXPECT_FALSE(MediaType::typeJPG().is(MediaType::typeJPEG())); // aliases are records of their own
    EXPECT_EQ(MediaType::typeDVR_MS().format(), "DVR-MS");
    EXPECT_TRUE(MediaType::typeCSV().access().empty());
    // The kinds, the settled oddities of the table among them (M4A a movie, OGV audio, ZIP an image).
    const std::pair<const char*, const char*> kinds[] = {
        {"JPEG", "image"}, {"EXV", "sidecar"}, {"MOV", "movie"}, {"HEIC", "image"}, {"PDF", "image"},
        {"M4A", "movie"},  {"OGV", "audio"},   {"ZIP", "image"}, {"ASF", "other"}};
    for (auto [format, kind] : kinds)
        EXPECT_EQ(MediaType::type(std::string(format))->kind().name(), std::string_view(kind)) << format;
}

TEST(MediaType, LookUpsIgnoreCaseAndNothingElseAndFoldersTakeEveryFamily) {
    namespace fs = std::filesystem;
    const auto formatOf = [](const auto& key) {
        const auto type = MediaType::type(key);
        return type ? type->format() : "(none)";
    };
    // The long s upper-cases to S; an empty text and a path without extension are the folder's key.
    const std::pair<const char*, const char*> keys[] = {
        {"jpg", "JPG"}, {"JPG", "JPG"},    {"Jpg", "JPG"},     {"dvr-ms", "DVR-MS"}, {"\u017Fvg", "SVG"},
        {"", ""},       {"xyz", "(none)"}, {" jpg", "(none)"}, {".jpg", "(none)"},   {"j\u00E9pg", "(none)"}};
    for (auto [key, format] : keys)
        EXPECT_EQ(formatOf(std::string(key)), format) << key;
    const std::pair<const char*, const char*> paths[] = {
        {"/a/b/IMG_0001.HeIc", "HEIC"}, {"archive.tar.GZ", "GZ"},
        {"/a/b.mov/", "MOV"},           {"/a/b.unknownext", "(none)"},
        {"/photos/2024", ""},           {"relative/folder", ""},
        {"/photos/2024/", ""},          {"noext", ""}};
    for (auto [path, format] : paths)
        EXPECT_EQ(formatOf(fs::path(path)), format) << path;
    EXPECT_TRUE(MediaType::typeTIFF().isFormat("tiff"));
    EXPECT_FALSE(MediaType::typeTIFF().isFormat("tif"));
    EXPECT_TRUE(MediaType::typeTIF().isFormat(fs::path("/x/scan.Tif")));
    EXPECT_TRUE(MediaType::typeFolder().isFormat(fs::path("/x/folder")));
    const MediaType& folder = MediaType::typeFolder();
    EXPECT_EQ(folder.kind(), MediaKind::other);
    ASSERT_FALSE(TagStream::allCases().empty());
    for (const TagStream& stream : TagStream::allCases())
        EXPECT_EQ(folder.access(stream), RWC) << stream.rawValue();
    EXPECT_EQ(folder.access(TagStream("NoSuchFamily")), N);
    // Equality is the format alone.
    EXPECT_EQ(MediaType("", MediaKind::image, {}), folder);
    EXPECT_NE(MediaType("X", MediaKind::other, {}), folder);
    EXPECT_EQ(MediaType("jpeg", MediaKind::audio, {}), MediaType::typeJPEG());
}

TEST(MediaType, ConcurrentFirstUseBuildsOneTable) {
    // Each thread races to the first use; all must see the same records.
    std::vector<const MediaType::AccessMap*> seen(4);
    std::vector<std::thread> threads;
    for (size_t i = 0; i < seen.size(); ++i)
        threads.emplace_back([&, i] { seen[i] = &MediaType::type("cr3")->access(); });
    for (auto& t : threads)
        t.join();
    for (const auto* s : seen)
        EXPECT_EQ(s, &MediaType::typeCR3().access());
}
