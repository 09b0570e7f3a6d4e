// Path operations, temporary URLs and folder listing on a real temporary folder.

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <set>

namespace corvane {
namespace {

namespace fs = std::filesystem;

TEST(PathOperations, ComponentsHomeAbbreviationAndUniqueTemporaryURLs) {
    EXPECT_EQ(pathExtension("/a/b/IMG.JPG"), "JPG");
    EXPECT_EQ(upperPathExtension("/a/b/img.Jpg"), "JPG");
    // A last extension, a trailing separator and no extension: the media type look-up's test.
    EXPECT_EQ(pathExtension("/a/.profile"), "") << "a leading dot is no extension";
    EXPECT_EQ(pathExtension("/a/name."), "");
    EXPECT_EQ(pathExtension("/a.b/name"), "") << "only the last component counts";

    EXPECT_EQ(lastPathComponent("/a/b/IMG.JPG"), "IMG.JPG");
    EXPECT_EQ(lastPathComponent("/a/b/"), "b");
    EXPECT_EQ(lastPathComponent("/"), "/");
    EXPECT_EQ(deletingLastPathComponent("/a/b/IMG.JPG"), fs::path("/a/b"));
    EXPECT_EQ(deletingLastPathComponent("/a"), fs::path("/"));
    EXPECT_EQ(urlPath("/a/b//"), "/a/b");
    EXPECT_EQ(urlPath("/"), "/");
    const char* homeEnv = std::getenv("HOME");
    ASSERT_NE(homeEnv, nullptr);
    // The home folder is abbreviated only as a whole component (unless it is the root).
    const std::string home = urlPath(homeEnv);
    if (home != "/") {
        EXPECT_EQ(abbreviatingWithTildeInPath(home), "~");
        EXPECT_EQ(abbreviatingWithTildeInPath(home + "/x/y.jpg"), "~/x/y.jpg");
        EXPECT_EQ(abbreviatingWithTildeInPath(home + "extra/y.jpg"), home + "extra/y.jpg");
    }
    EXPECT_EQ(abbreviatingWithTildeInPath("/elsewhere/y.jpg"), "/elsewhere/y.jpg");
    std::set<fs::path> seen;
    for (int i = 0; i < 1000; ++i) {
        const fs::path url = temporaryURL("jpg");
        EXPECT_EQ(url.parent_path(), fs::temp_directory_path());
        EXPECT_EQ(pathExtension(url), "jpg");
        EXPECT_FALSE(fs::exists(url));
        EXPECT_TRUE(seen.insert(url).second) << url;
    }
    EXPECT_EQ(pathExtension(temporaryURL("")), "") << "no extension gives a folder-like path";
}

class FolderListing : public ::testing::Test {
protected:
    void touch(const fs::path& relative) {
        fs::create_directories((root_ / relative).parent_path());
        std::ofstream(root_ / relative) << "x";
    }
    std::vector<std::string> relativeNames(const std::vector<fs::path>& urls) const {
        std::vector<std::string> names;
        const fs::path base = fs::canonical(root_);
        for (const fs::path& url : urls)
            names.push_back(url.lexically_relative(base).string());
        return names;
    }
    test::TemporaryFolder folder_;
    const fs::path root_ = folder_.path();
};

TEST_F(FolderListing, SortedFilesHiddenSkippedSubfoldersOnlyWhenRecursive) {
    for (const char* name :
         {"b.jpg", "A.NEF", ".hidden.jpg", "sub/c.jpg", "sub/deeper/d.png", ".secret/e.jpg", "z"})
        touch(name);
    fs::create_directories(root_ / "empty");

    using Names = std::vector<std::string>;
    EXPECT_EQ(relativeNames(listFolderFiles(root_, false)), (Names{"A.NEF", "b.jpg", "z"}));
    EXPECT_EQ(relativeNames(listFolderFiles(root_, true)),
              (Names{"A.NEF", "b.jpg", "sub/c.jpg", "sub/deeper/d.png", "z"}));
}

TEST_F(FolderListing, SymbolicLinksAndNotAFolder) {
    touch("real/a.jpg");
    touch("real/sub/b.jpg");
    fs::create_directory_symlink(root_ / "real", root_ / "alias");
    fs::create_symlink(root_ / "real/a.jpg", root_ / "real/link.jpg");
    fs::create_symlink(root_ / "missing.jpg", root_ / "real/broken.jpg");
    fs::create_directory_symlink(root_ / "real/sub", root_ / "real/subalias");

    // The folder's own path is resolved; a link to a file is listed, a link to a folder or
    // a broken link isn't.
    const std::vector<fs::path> urls = listFolderFiles(root_ / "alias", true);
    using Names = std::vector<std::string>;
    EXPECT_EQ(relativeNames(urls), (Names{"real/a.jpg", "real/link.jpg", "real/sub/b.jpg"}));
    touch("a.jpg");
    EXPECT_TRUE(listFolderFiles(root_ / "a.jpg", true).empty()) << "a URL with an extension";
    EXPECT_TRUE(listFolderFiles(root_ / "missing", true).empty());
    touch("plain");
    EXPECT_TRUE(listFolderFiles(root_ / "plain", true).empty()) << "a file without extension";
}

} // namespace
} // namespace corvane
