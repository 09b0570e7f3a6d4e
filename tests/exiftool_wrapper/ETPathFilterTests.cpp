#include <gtest/gtest.h>

#include "corvane/exiftool_wrapper/ETPathFilter.hpp"

using corvane::ETPathFilter;

TEST(ETPathFilter, KeepsExtensionsUpperCasedOnceInOrderAndFiltersAndPassesThem) {
    ETPathFilter filter({"jpg", ".Png", "JPG", "", " ", "heic"});
    EXPECT_EQ(filter.extensions(), (std::vector<std::string>{"JPG", "PNG", "HEIC"}));
    EXPECT_EQ(filter, ETPathFilter({"HEIC", "png", "jpg"}));
    EXPECT_TRUE(ETPathFilter().isEmpty());
    const ETPathFilter jpgAndTif{"jpg", "tif"};
    const std::vector<std::filesystem::path> urls = {"/a/x.JPG", "/a/y.jpeg",     "/a/z.tif", "/a/folder",
                                                     "/a/.jpg",  "/a/b.c/readme", "/a/w.Jpg"};
    EXPECT_EQ(jpgAndTif.filter(urls),
              (std::vector<std::filesystem::path>{"/a/x.JPG", "/a/z.tif", "/a/w.Jpg"}));
    EXPECT_TRUE(ETPathFilter().filter(urls).empty());
    EXPECT_EQ(ETPathFilter({"jpg", "mov"}).exifToolArguments(),
              (std::vector<std::string>{"-ext", "JPG", "-ext", "MOV"}));
    EXPECT_TRUE(ETPathFilter().exifToolArguments().empty());
}
