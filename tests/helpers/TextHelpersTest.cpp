// Search and replace with the user's comparison options: exact (up to canonical equivalence),
// ignoring case, diacritics or width, and by regular expression.

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

} // namespace
} // namespace corvane
