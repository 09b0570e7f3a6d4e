// Unicode white space at the ends of texts and in blank ones.

#include "corvane/helpers/WhiteSpace.hpp"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(WhiteSpaceTest, TrimsUnicodeSpaceAndKeepsEverythingElse) {
    EXPECT_EQ(WhiteSpace::trimmed(" \t\n\u00a0Jane Doe\u2003\r\n"), "Jane Doe");
    EXPECT_EQ(WhiteSpace::trimmed("a \u00a0 b"), "a \u00a0 b");
    EXPECT_EQ(WhiteSpace::trimmed(" \u3000 "), "");
    EXPECT_EQ(WhiteSpace::trimmed(" \xff "), "\xff") << "malformed bytes stay as they are";
    EXPECT_EQ(WhiteSpace::trimmed("caf\u00e9 "), "caf\u00e9");

    EXPECT_TRUE(WhiteSpace::isBlank(""));
    EXPECT_TRUE(WhiteSpace::isBlank(" \u00a0\u2028\t"));
    EXPECT_FALSE(WhiteSpace::isBlank(" . "));
    EXPECT_FALSE(WhiteSpace::isBlank("\xff"));
}

} // namespace
} // namespace corvane
