#include "corvane/tag_storages/FinderResources.hpp"
#include "corvane/utilities/FileError.hpp"

#include "support/FileBytes.hpp"
#include "support/TemporaryFolder.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/xattr.h>

using namespace corvane;
using testing::AllOf;
using testing::ElementsAre;
using testing::Property;
using testing::Throws;
using Tags = std::vector<std::string>;
namespace fs = std::filesystem;

namespace {

fs::path makeFile(const fs::path& path, const std::string& content = "content") {
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

// The raw attribute value, or nothing.
std::optional<std::string> attribute(const fs::path& path, const char* name) {
    char buffer[4096];
    ssize_t size = getxattr(path.c_str(), name, buffer, sizeof buffer);
    if (size < 0) return std::nullopt;
    return std::string(buffer, static_cast<size_t>(size));
}

FinderResources resources(std::optional<Date> create, std::optional<Date> modify, std::optional<Tags> tags) {
    FinderResources result;
    result.setCreateDate(create);
    result.setModifyDate(modify);
    result.setFinderTags(std::move(tags));
    return result;
}

FinderResources readAt(const fs::path& path) {
    FinderResources resources;
    resources.read(path);
    return resources;
}

class FinderResourcesTest : public testing::Test {
protected:
    test::TemporaryFolder folder{"corvane-finder"};
    fs::path file = makeFile(folder / "photo.jpg");
};

// A ramfs volume, unmounted at the end of the test: no birth time and no user extended attributes.
// Needs the right to mount (root in CI); tests skip otherwise.
struct PlainVolume {
    fs::path where;
    bool mounted = fs::create_directories(where) &&
                   mount("corvane-test", where.c_str(), "ramfs", MS_NOSUID | MS_NODEV, "") == 0;
    ~PlainVolume() {
        if (mounted) umount2(where.c_str(), MNT_DETACH);
    }
};

} // namespace

TEST_F(FinderResourcesTest, RoundTripOfDatesAndTags) {
    // 2010-01-01 00:00:00.25 UTC; the modification date keeps a fraction of a millisecond (2^-6 s, exact in
    // binary and in microseconds).
    const FinderResources written = resources(Date(1262304000.25), Date(1714564800.015625),
                                              Tags{"Red", "Holiday 2024", "Paris, France", "a\\b"});
    written.write(file);
    EXPECT_EQ(readAt(file), written);

    // What other programs see: the file's mtime and the freedesktop tag list.
    struct stat info {};
    ASSERT_EQ(stat(file.c_str(), &info), 0);
    EXPECT_EQ(info.st_mtim.tv_sec, 1714564800);
    EXPECT_EQ(info.st_mtim.tv_nsec, 15625000);
    EXPECT_EQ(attribute(file, FinderResources::tagsAttribute), "Red,Holiday 2024,Paris\\, France,a\\\\b");
    EXPECT_EQ(attribute(file, FinderResources::creationDateAttribute), "2010-01-01T00:00:00.250000Z");
}

TEST_F(FinderResourcesTest, OnlyTheFieldsSetAreWrittenAndAReadKeepsWhatTheFileLacks) {
    EXPECT_TRUE(FinderResources().isEmpty());
    EXPECT_FALSE(resources(std::nullopt, std::nullopt, Tags{}).isEmpty())
        << "an empty list of tags is not absent";
    const auto before = fs::last_write_time(file);
    FinderResources().write(file);
    EXPECT_EQ(fs::last_write_time(file), before);
    EXPECT_FALSE(attribute(file, FinderResources::creationDateAttribute));
    EXPECT_FALSE(attribute(file, FinderResources::tagsAttribute));
    FinderResources read = resources(std::nullopt, std::nullopt, Tags{"Kept"});
    read.read(file);
    EXPECT_EQ(read.finderTags(), Tags{"Kept"});
    EXPECT_TRUE(read.modifyDate());

    resources(Date(1000000000), std::nullopt, Tags{"Blue"}).write(file);
    resources(std::nullopt, Date(1600000000.5), std::nullopt).write(file);
    EXPECT_EQ(readAt(file), resources(Date(1000000000), Date(1600000000.5), Tags{"Blue"}));
    EXPECT_EQ(test::fileBytes(file), "content");
    // An empty list removes every tag, the dates stay; removing tags that are gone is no failure.
    const FinderResources noTags = resources(std::nullopt, std::nullopt, Tags{});
    noTags.write(file);
    noTags.write(file);
    EXPECT_FALSE(attribute(file, FinderResources::tagsAttribute));
    EXPECT_EQ(readAt(file), resources(Date(1000000000), Date(1600000000.5), std::nullopt));
}

TEST_F(FinderResourcesTest, CreationDateFromBirthTimeUntilOneIsWritten) {
    struct statx info {};
    ASSERT_EQ(statx(AT_FDCWD, file.c_str(), 0, STATX_BTIME, &info), 0);
    if (!(info.stx_mask & STATX_BTIME)) GTEST_SKIP() << "the temporary folder's volume keeps no birth time";
    const double birth = static_cast<double>(info.stx_btime.tv_sec) + info.stx_btime.tv_nsec / 1e9;

    FinderResources read = readAt(file);
    ASSERT_TRUE(read.createDate());
    EXPECT_NEAR(read.createDate()->timeIntervalSince1970(), birth, 1e-6);
    EXPECT_FALSE(read.finderTags());

    // Earlier than the birth time: an imported photo.
    resources(Date(946684800), std::nullopt, std::nullopt).write(file);
    EXPECT_EQ(readAt(file).createDate(), Date(946684800));

    // A damaged stored date is passed over for the birth time.
    ASSERT_EQ(setxattr(file.c_str(), FinderResources::creationDateAttribute, "yesterday", 9, 0), 0);
    EXPECT_NEAR(readAt(file).createDate()->timeIntervalSince1970(), birth, 1e-6);
}

TEST_F(FinderResourcesTest, MissingFileFailsAndChangesNothing) {
    const fs::path missing = folder / "missing.jpg";
    FinderResources kept = resources(std::nullopt, Date(5), std::nullopt);
    EXPECT_THAT([&] { kept.read(missing); },
                Throws<FileError>(AllOf(Property(&FileError::code, std::errc::no_such_file_or_directory),
                                        Property(&FileError::path, missing))));
    EXPECT_EQ(kept, resources(std::nullopt, Date(5), std::nullopt));
    EXPECT_THROW(resources(std::nullopt, Date(5), Tags{"x"}).write(missing), FileError);
    EXPECT_FALSE(fs::exists(missing));
}

TEST(FinderResourcesVolume, FileWithoutBirthTimeOrAttributes) {
    // A kernel file: no birth time and no user attributes, readable by anyone.
    const FinderResources kernelFile = readAt("/proc/self/status");
    EXPECT_TRUE(kernelFile.modifyDate());
    EXPECT_EQ(kernelFile, resources(std::nullopt, kernelFile.modifyDate(), std::nullopt));

    test::TemporaryFolder folder{"corvane-finder-volume"};
    PlainVolume volume{folder / "volume"};
    if (!volume.mounted) GTEST_SKIP() << "cannot mount a ramfs volume: " << std::strerror(errno);
    const fs::path file = makeFile(folder / "volume" / "clip.mov", "movie");

    const FinderResources read = readAt(file);
    EXPECT_TRUE(read.modifyDate());
    EXPECT_EQ(read, resources(std::nullopt, read.modifyDate(), std::nullopt));

    // The volume refuses the attributes; the modification date is still set,
    // the failure names the refused attribute and the file is intact.
    EXPECT_THAT([&] { resources(Date(1000000000), Date(1500000000.75), Tags{"Green"}).write(file); },
                Throws<FileError>(AllOf(Property(&FileError::code, std::errc::not_supported),
                                        Property(&FileError::path, file),
                                        Property(&FileError::what, testing::HasSubstr("creation date")))));
    EXPECT_EQ(readAt(file), resources(std::nullopt, Date(1500000000.75), std::nullopt));
    EXPECT_EQ(test::fileBytes(file), "movie");
    // Only a modification date needs no attribute at all.
    EXPECT_NO_THROW(resources(std::nullopt, Date(1400000000), std::nullopt).write(file));
    EXPECT_EQ(readAt(file).modifyDate(), Date(1400000000));
}

TEST(FinderResourcesText, TagListsAndDatesFromOtherPrograms) {
    EXPECT_THAT(FinderResources::decodeTags("a, b,,c , "), ElementsAre("a", "b", "c"));
    EXPECT_THAT(FinderResources::decodeTags("x\\,y,z\\\\,w\\q"), ElementsAre("x,y", "z\\", "w\\q"));
    EXPECT_THAT(FinderResources::decodeTags("trailing\\"), ElementsAre("trailing\\"));
    EXPECT_TRUE(FinderResources::decodeTags("").empty());
    EXPECT_EQ(FinderResources::encodeTags({"", "  ", "One"}), "One");
    const std::vector<std::string> awkward{"a,b", "\\", ",", "c\\,d"};
    EXPECT_EQ(FinderResources::decodeTags(FinderResources::encodeTags(awkward)), awkward);

    // Stored dates.
    EXPECT_EQ(FinderResources::encodeDate(Date(0)), "1970-01-01T00:00:00.000000Z");
    EXPECT_EQ(FinderResources::encodeDate(Date(-1.5)), "1969-12-31T23:59:58.500000Z");
    EXPECT_EQ(FinderResources::decodeDate("1970-01-01T00:00:00Z"), Date(0));
    EXPECT_EQ(FinderResources::decodeDate("2000-01-01T02:00:00+02:00"), Date(946684800));
    EXPECT_EQ(FinderResources::decodeDate("1999-12-31T19:30:00-04:30"), Date(946684800));
    EXPECT_NEAR(FinderResources::decodeDate("2024-05-01T12:00:00.123456789Z")->timeIntervalSince1970(),
                1714564800.123456789, 1e-6);
    for (const char* bad :
         {"", "yesterday", "2024-02-30T00:00:00Z", "2024-05-01T12:00:00", "2024-05-01T25:00:00Z",
          "2024-05-01T12:00:00.Z", "2024-05-01T12:00:00+0200", "2024-5-01T12:00:00Z"})
        EXPECT_FALSE(FinderResources::decodeDate(bad)) << bad;
    for (double seconds : {1714564800.5, -86400.25, 1.0e9 + 0.000001})
        EXPECT_NEAR(
            FinderResources::decodeDate(FinderResources::encodeDate(Date(seconds)))->timeIntervalSince1970(),
            seconds, 1e-6);
}
