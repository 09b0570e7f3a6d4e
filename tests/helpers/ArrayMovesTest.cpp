// Moves of rows by index set: the block lands before the row that stood at the target offset.

#include "corvane/helpers/ArrayMoves.hpp"

#include <gtest/gtest.h>

#include <string>

namespace corvane {
namespace {

std::string moved(std::string text, const IndexSet& from, std::size_t to) {
    std::vector<char> chars(text.begin(), text.end());
    moveElements(chars, from, to);
    return std::string(chars.begin(), chars.end());
}

TEST(ArrayMovesTest, BlockLandsBeforeTheTargetRowInItsOriginalOrder) {
    EXPECT_EQ(moved("abcde", {3, 1}, 0), "bdace");
    EXPECT_EQ(moved("abcde", {0, 1}, 4), "cdabe");
    EXPECT_EQ(moved("abcde", {0, 1}, 5), "cdeab");
    EXPECT_EQ(moved("abcde", {1, 2}, 2), "abcde") << "dropped onto its own place";
    EXPECT_EQ(moved("abcde", {1, 2}, 3), "abcde");
    EXPECT_EQ(moved("abcde", {4, 9}, 99), "abcde") << "offsets past the end";

    std::vector<int> values{1, 2, 3};
    moveElementUp(values, 0);
    moveElementDown(values, 2);
    EXPECT_EQ(values, (std::vector<int>{1, 2, 3}));
    moveElementUp(values, 2);
    EXPECT_EQ(values, (std::vector<int>{1, 3, 2}));
}

} // namespace
} // namespace corvane
