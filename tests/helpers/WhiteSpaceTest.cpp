// Each trim takes exactly its own character set off the ends of a text, whole characters only.

#include "corvane/helpers/WhiteSpace.hpp"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(WhiteSpaceTest, EachTrimTakesItsOwnSetAndStopsAtTheFirstCharacterOutsideIt) {
    EXPECT_EQ(trimUnicodeWhiteSpace(" \t\n\u00a0Jane Doe\u2003\r\n\u2028"), "Jane Doe");
    EXPECT_EQ(trimUnicodeWhiteSpace("a \u00a0 b"), "a \u00a0 b");
    EXPECT_EQ(trimUnicodeWhiteSpace(" \u3000 "), "");
    EXPECT_EQ(trimUnicodeWhiteSpace(" \xff "), "\xff") << "malformed bytes stay as they are";
    EXPECT_EQ(trimUnicodeWhiteSpace("caf\u00e9 "), "caf\u00e9");
    EXPECT_EQ(trimUnicodeWhiteSpace(icu::UnicodeString::fromUTF8("\u2003 Zo\u00eb\n")),
              icu::UnicodeString::fromUTF8("Zo\u00eb"));

    EXPECT_TRUE(isUnicodeWhiteSpace(""));
    EXPECT_TRUE(isUnicodeWhiteSpace(" \u00a0\u2028\t"));
    EXPECT_FALSE(isUnicodeWhiteSpace(" . "));
    EXPECT_FALSE(isUnicodeWhiteSpace("\xff"));
    // Unicode blanks: horizontal spaces only, so a line break ends the trim.
    EXPECT_EQ(trimUnicodeBlanks("\t\u00a0\u3000 a, b \u202f"), "a, b");
    EXPECT_EQ(trimUnicodeBlanks(" \na\n "), "\na\n");
    // ASCII white space leaves Unicode spaces alone.
    EXPECT_EQ(trimAsciiWhiteSpace("\v\f\r\n\t [1] \n"), "[1]");
    EXPECT_EQ(trimAsciiWhiteSpace("\u00a0x "), "\u00a0x");
    // ASCII blanks: space and tab alone.
    EXPECT_EQ(trimAsciiBlanks("\t YY \t"), "YY");
    EXPECT_EQ(trimAsciiBlanks(" \r12\n "), "\r12\n");
}

} // namespace
} // namespace corvane
