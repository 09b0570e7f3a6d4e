#include "corvane/tag_value/MediaType.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
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
        bool read, edit, create;
    };
    for (const Row& row : {Row{N, "N", false, false, false}, Row{R, "R", true, false, false},
                           Row{RW, "RW", true, true, false}, Row{RWC, "RWC", true, true, true}}) {
        SCOPED_TRACE(row.raw);
        EXPECT_EQ(row.access.rawValue(), row.raw);
        EXPECT_EQ(TagAccess::fromRawValue(row.raw), row.access);
        EXPECT_EQ(row.access.canBeRead(), row.read);
        EXPECT_EQ(row.access.canBeEdited(), row.edit);
        EXPECT_EQ(row.access.canBeCreated(), row.create);
        nlohmann::json encoded = row.access;
        EXPECT_EQ(encoded, row.raw);
        EXPECT_EQ(encoded.get<TagAccess>(), row.access);
    }
    EXPECT_FALSE(TagAccess::fromRawValue("rw"));
    EXPECT_THROW(nlohmann::json("rwc").get<TagAccess>(), std::invalid_argument);
    EXPECT_THROW(nlohmann::json(2).get<TagAccess>(), std::invalid_argument);
}

TEST(MediaKind, CasesInOrderWithKeys) {
    std::vector<std::string> names;
    for (MediaKind kind : MediaKind::allCases()) {
        names.emplace_back(kind.name());
        EXPECT_EQ(MediaKind::fromRawValue(kind.rawValue()), kind);
        EXPECT_FALSE(kind.localizedName().empty());
        EXPECT_NE(kind.localizedName(), kind.localizationKey()) << "a text of the string table";
    }
    EXPECT_THAT(names, ElementsAre("audio", "image", "movie", "sidecar", "other"));
    EXPECT_FALSE(MediaKind::fromRawValue("Image"));
}

TEST(MediaType, TableHas289UniqueRecordsInDeclarationOrderFoundByKind) {
    const auto& all = MediaType::allCases();
    ASSERT_EQ(all.size(), 289u);
    EXPECT_EQ(all.front().format(), "");
    EXPECT_EQ(all[1].format(), "360");
    EXPECT_EQ(all[2].format(), "3FR");
    EXPECT_EQ(all.back().format(), "ZIP");
    EXPECT_EQ(MediaType::indexedTypes().size(), 289u);

    for (const MediaType& type : all) {
        // The constants and the index hand out the same record.
        auto found = MediaType::type(type.format());
        ASSERT_TRUE(found) << type.format();
        EXPECT_EQ(&found->access(), &type.access()) << type.format();
    }
    auto sidecars = MediaType::types({MediaKind::sidecar});
    std::set<std::string> formats;
    for (const MediaType& t : sidecars)
        formats.insert(t.format());
    EXPECT_EQ(formats, (std::set<std::string>{"EXIF", "EXV", "ICC", "MIE", "VRD", "XMP"}));

    EXPECT_EQ(MediaType::types(MediaKind::allCases()).size(), 289u);
    auto media = MediaType::types({MediaKind::audio, MediaKind::movie, MediaKind::audio});
    EXPECT_EQ(media.size(), 70u);
    EXPECT_TRUE(media.count(MediaType::typeMP3()));
    EXPECT_FALSE(media.count(MediaType::typeJPEG()));
    EXPECT_TRUE(MediaType::types({}).empty());
}

TEST(MediaType, KnownRightsOfTheJPEGFamilyMoviesAndHEIC) {
    for (const MediaType* type :
         {&MediaType::typeJPEG(), &MediaType::typeJPG(), &MediaType::typeJPE(), &MediaType::typeMPO(),
          &MediaType::typeTHM(), &MediaType::typeINSP(), &MediaType::typeEXV()}) {
        SCOPED_TRACE(type->format());
        EXPECT_EQ(type->access().size(), 23u); // 4 of its own, 22 of the set, 3 shared
        EXPECT_EQ(type->access(TagStream::streamEXIF), RWC);
        EXPECT_EQ(type->access(TagStream::streamIPTC), RWC);
        EXPECT_EQ(type->access(TagStream::streamJFIF), RWC);
        EXPECT_EQ(type->access(TagStream::streamMPF), RWC);
        EXPECT_EQ(type->access(TagStream::streamKodak), RW);
        EXPECT_EQ(type->access(TagStream::streamFLIR), R);
        EXPECT_EQ(type->access(TagStream::streamMIE), RW);
        EXPECT_EQ(type->access(TagStream::streamQuickTime), N);
    }
    EXPECT_EQ(MediaType::typeJPEG().kind(), MediaKind::image);
    EXPECT_EQ(MediaType::typeEXV().kind(), MediaKind::sidecar);
    EXPECT_FALSE(MediaType::typeJPG().is(MediaType::typeJPEG())); // aliases are records of their own
    const MediaType& mov = MediaType::typeMOV();
    EXPECT_EQ(mov.kind(), MediaKind::movie);
    EXPECT_EQ(mov.access(TagStream::streamQuickTime), RWC);
    EXPECT_EQ(mov.access(TagStream::streamXMP), RWC);
    EXPECT_EQ(mov.access(TagStream::streamEXIF), RW);
    EXPECT_EQ(mov.access(TagStream::streamPNG), N);
    EXPECT_EQ(mov.access(TagStream("NoSuchFamily")), N);
    EXPECT_EQ(MediaType::typeQT().access(TagStream::streamXMP), RW);

    const MediaType& heic = MediaType::typeHEIC();
    EXPECT_EQ(heic.kind(), MediaKind::image);
    EXPECT_EQ(heic.access(TagStream::streamICC_Profile), RW);
    EXPECT_FALSE(heic.access(TagStream::streamICC_Profile).canBeCreated());
    EXPECT_EQ(heic.access(TagStream::streamIPTC), N);
    EXPECT_FALSE(heic.access(TagStream::streamIPTC).canBeCreated());

    const MediaType& pdf = MediaType::typePDF();
    EXPECT_EQ(pdf.kind(), MediaKind::image);
    EXPECT_EQ(pdf.access(TagStream::streamXMP), RWC);
    EXPECT_EQ(pdf.access(TagStream::streamPDF), RWC);
    EXPECT_EQ(pdf.access(TagStream::streamEXIF), R);
    EXPECT_EQ(pdf.access(TagStream::streamIPTC), R);

    // The settled oddities of the table.
    EXPECT_EQ(MediaType::typeM4A().kind(), MediaKind::movie);
    EXPECT_EQ(MediaType::typeOGV().kind(), MediaKind::audio);
    EXPECT_EQ(MediaType::typeZIP().kind(), MediaKind::image);
    EXPECT_EQ(MediaType::typeASF().kind(), MediaKind::other);
    EXPECT_TRUE(MediaType::typeCSV().access().empty());
    EXPECT_EQ(MediaType::typeDVR_MS().format(), "DVR-MS");
    EXPECT_EQ(MediaType::typeDVR_MS().access(TagStream::streamASF), R);
}

TEST(MediaType, LookUpsIgnoreCaseAndNothingElseAndFoldersTakeEveryFamily) {
    for (const char* key : {"jpg", "JPG", "Jpg"})
        EXPECT_EQ(MediaType::type(key), MediaType::typeJPG()) << key;
    EXPECT_EQ(MediaType::type(std::string("dvr-ms")), MediaType::typeDVR_MS());
    EXPECT_EQ(MediaType::type(std::filesystem::path("/a/b/IMG_0001.HeIc")), MediaType::typeHEIC());
    EXPECT_EQ(MediaType::type(std::filesystem::path("archive.tar.GZ")), MediaType::typeGZ());
    EXPECT_EQ(MediaType::type(std::filesystem::path("/a/b.mov/")), MediaType::typeMOV());

    EXPECT_FALSE(MediaType::type("xyz"));
    EXPECT_FALSE(MediaType::type(" jpg"));
    EXPECT_FALSE(MediaType::type(".jpg"));
    EXPECT_FALSE(MediaType::type(std::filesystem::path("/a/b.unknownext")));
    // Unicode upper-casing: the long s upper-cases to S.
    EXPECT_EQ(MediaType::type("\u017Fvg"), MediaType::typeSVG());
    EXPECT_FALSE(MediaType::type("j\u00E9pg"));
    // An empty text is the folder's key.
    EXPECT_EQ(MediaType::type(""), MediaType::typeFolder());

    EXPECT_TRUE(MediaType::typeTIFF().isFormat("tiff"));
    EXPECT_FALSE(MediaType::typeTIFF().isFormat("tif"));
    EXPECT_TRUE(MediaType::typeTIF().isFormat(std::filesystem::path("/x/scan.Tif")));
    EXPECT_TRUE(MediaType::typeFolder().isFormat(std::filesystem::path("/x/folder")));
    const MediaType& folder = MediaType::typeFolder();
    EXPECT_EQ(folder.format(), "");
    EXPECT_EQ(folder.kind(), MediaKind::other);
    ASSERT_FALSE(TagStream::allCases().empty());
    for (const TagStream& stream : TagStream::allCases())
        EXPECT_EQ(folder.access(stream), RWC) << stream.rawValue();
    EXPECT_EQ(folder.access(TagStream("NoSuchFamily")), N);

    for (const char* path : {"/photos/2024", "relative/folder", "/photos/2024/", "noext"}) {
        auto found = MediaType::type(std::filesystem::path(path));
        ASSERT_TRUE(found) << path;
        EXPECT_EQ(*found, folder) << path;
    }
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
