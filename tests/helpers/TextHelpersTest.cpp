// Search and replace with the user's comparison options: exact (up to canonical equivalence),
// ignoring case, diacritics or width, and by regular expression.

#include "corvane/helpers/WhiteSpace.hpp"
#include "corvane/helpers/detail/TextReplacement.hpp"

#include <gtest/gtest.h>

namespace corvane {
using detail::TextReplacement;
namespace {

std::string replace(std::string_view text, std::string_view target, std::string_view value,
                    TextReplacement::Options options = 0) {
    return TextReplacement::replacingOccurrences(text, target, value, options);
}

TEST(TextReplacementTest, ExactInsensitiveAndRegularExpressionReplacements) {
    EXPECT_EQ(replace("a cat, a Cat, a cat", "cat", "dog"), "a dog, a Cat, a dog");
    EXPECT_EQ(replace("aaaa", "aa", "b"), "bb");
    EXPECT_EQ(replace("aaa", "aa", "b"), "ba") << "no overlapping hits";
    EXPECT_EQ(replace("abc", "", "x"), "abc");
    // Precomposed and decomposed accents are the same text ...
    EXPECT_EQ(replace("caf\u00e9 bar", "cafe\u0301", "X"), "X bar");
    EXPECT_EQ(replace("cafe\u0301 bar", "caf\u00e9", "X"), "X bar");
    // ... but a letter followed by an accent isn't the bare letter.
    EXPECT_EQ(replace("cafe\u0301", "cafe", "X"), "cafe\u0301");
    const auto caseless = TextReplacement::caseInsensitive;
    const auto bare = TextReplacement::diacriticInsensitive;
    const auto width = TextReplacement::widthInsensitive;
    EXPECT_EQ(replace("Hello HELLO hello", "hello", "bye", caseless), "bye bye bye");
    EXPECT_EQ(replace("Gro\u00dfe Stra\u00dfe", "STRASSE", "Weg", caseless), "Gro\u00dfe Weg");
    EXPECT_EQ(replace("caf\u00e9 cafe\u0301 CAFE", "cafe", "tea", bare), "tea tea CAFE");
    EXPECT_EQ(replace("Caf\u00e9 CAF\u00c9", "cafe", "tea", bare | caseless), "tea tea");
    EXPECT_EQ(replace("\uff21\uff22\uff23 ABC abc", "ABC", "x", width), "x x abc");
    EXPECT_EQ(replace("\uff21\uff22\uff23", "ABC", "x"), "\uff21\uff22\uff23")
        << "width counts without the option";
    // A hit takes whole scalars: "s" doesn't split "ß" into "ss".
    EXPECT_EQ(replace("Stra\u00dfe", "s", "z", caseless), "ztra\u00dfe");
    // Malformed UTF-8 is kept as it is around a hit.
    EXPECT_EQ(replace("a\xff"
                      "b a",
                      "a", "c"),
              "c\xff"
              "b c");
    const auto regex = TextReplacement::regularExpression;
    EXPECT_EQ(replace("2024-05, 2023-12", "(\\d+)-(\\d+)", "$2/$1", regex), "05/2024, 12/2023");
    EXPECT_EQ(replace("Cat cat", "cat", "dog", regex | TextReplacement::caseInsensitive), "dog dog");
    EXPECT_EQ(replace("price", "i", "\\$1", regex), "pr$1ce") << "a backslash escapes";
    EXPECT_EQ(replace("a (b", "(", "x", regex), "a (b") << "a pattern that doesn't compile changes nothing";
    EXPECT_EQ(replace("  trim  ", "^\\s+|\\s+$", "", regex), "trim");
}

// Each trim takes exactly its own character set off the ends of a text, whole characters only.
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
