// Thesaurus text: a tree with headers and synonyms read, written and read again to the same tree;
// the cases the line pattern decides (read with ICU's rules); the three reading failures.

#include "corvane/keyword_support/ThesaurusReader.hpp"
#include "corvane/keyword_support/ThesaurusWriter.hpp"
#include "corvane/utilities/CaseException.hpp"
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace corvane {
namespace {

using ReadingError = ThesaurusReader::ReadingError;
using testing::StrEq;
using testing::ThrowsMessage;

std::optional<ReadingError> failure(std::string_view text) {
    try {
        ThesaurusReader().read(text);
    } catch (const CaseException<ReadingError>& e) {
        return e.error();
    }
    return std::nullopt;
}

// name, "[name]" for a header, synonyms in braces, children in parentheses.
std::string shape(const std::vector<KeywordItemRef>& items) {
    std::string text;
    for (const auto& item : items) {
        text += item->isHeader() ? "[" + item->name() + "]" : item->name();
        for (const auto& synonym : item->synonyms())
            text += "{" + synonym + "}";
        if (!item->children().empty()) text += "(" + shape(item->children()) + ")";
        text += ' ';
    }
    return text;
}

TEST(ThesaurusTest, ReadsWritesAndReadsBackTheSameTree) {
    const std::string text = "[People]\n"
                             "\tZoë\n"
                             "\t\t{Zo}\n"
                             "\tAnn\n"
                             "\n"
                             "Places\n"
                             "\t{Locations}\n"
                             "\t{Areas}\n"
                             "\t[Europe]\n"
                             "\t\tParis\n";
    const auto items = ThesaurusReader().read(text);
    EXPECT_EQ(shape(items), "[People](Zoë{Zo} Ann ) Places{Locations}{Areas}([Europe](Paris ) ) ");
    EXPECT_FALSE(items[0]->isPerson());

    items[0]->children()[0]->setIsPerson(true);
    const std::string written = ThesaurusWriter().string(items);
    EXPECT_EQ(written,
              "[People]\n\tAnn\n\tZoë\n\t\t{Zo}\nPlaces\n\t{Areas}\n\t{Locations}\n\t[Europe]\n\t\tParis\n")
        << "sorted by name at each level, synonyms too";
    const auto again = ThesaurusReader().read(written);
    EXPECT_EQ(shape(again), "[People](Ann Zoë{Zo} ) Places{Areas}{Locations}([Europe](Paris ) ) ");
    EXPECT_FALSE(again[0]->children()[1]->isPerson()) << "the text has no mark for people";
    EXPECT_EQ(ThesaurusWriter().string(again), written);

    test::TemporaryFolder folder;
    ThesaurusWriter().write(items, folder / "k.txt");
    struct stat status {};
    ASSERT_EQ(::stat((folder / "k.txt").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    EXPECT_EQ(shape(ThesaurusReader().readAt(folder / "k.txt")), shape(again));
    EXPECT_THAT([] { ThesaurusWriter().data({}); },
                ThrowsMessage<CaseException<ThesaurusWriter::WritingError>>(StrEq("Data are empty")));
}

TEST(ThesaurusTest, LinesReadAsTheLinePatternSays) {
    // A synonym one tab in belongs to the root, whatever came between.
    EXPECT_EQ(shape(ThesaurusReader().read("A\n\tB\n\t\tC\n\t{S}\n")), "A{S}(B(C ) ) ");
    // The depth map keeps the last keyword of every depth: D hangs under B, from the earlier root.
    EXPECT_EQ(shape(ThesaurusReader().read("A\n\tB\nC\n\t\tD\n")), "A(B(D ) ) C ");
    // No name inside the marks: the plain form takes the whole line.
    EXPECT_EQ(shape(ThesaurusReader().read("[]\n{}\n[\n")), "[] {} [ ");
    // "." takes a tab: a line of tabs is a keyword named by its last tab.
    EXPECT_EQ(ThesaurusReader().read("A\n\t\t\n")[0]->children()[0]->name(), "\t");
    // "$" matches before a final carriage return, which "." doesn't take.
    const auto crlf = ThesaurusReader().read("[H]\r\n\tName\r\n");
    EXPECT_EQ(shape(crlf), "[H](Name ) ");
    EXPECT_EQ(ThesaurusReader::capturesMatches("\t[H]"), (std::array<std::string, 4>{"\t", "[", "H", "]"}));
    EXPECT_EQ(ThesaurusReader::capturesMatches("X"), (std::array<std::string, 4>{"", "", "X", ""}))
        << "empty groups that take part count";

    EXPECT_EQ(failure("\r\n"), ReadingError::lineDoesNotMatchPattern);
    EXPECT_EQ(failure("\t\tX\n"), ReadingError::lineIndentationIsInvalid);
    EXPECT_EQ(failure("{S}\n"), ReadingError::lineIndentationIsInvalid);
    EXPECT_EQ(failure("\t\t\n"), ReadingError::lineIndentationIsInvalid) << "a tab named at depth 1";
    EXPECT_EQ(failure(""), ReadingError::rootItemIsMissing);
    EXPECT_EQ(failure("\n\n"), ReadingError::rootItemIsMissing);
    EXPECT_THAT([] { ThesaurusReader().read(std::string_view("\t\tX")); },
                ThrowsMessage<Error>(StrEq("Line indentation is invalid")));
}

} // namespace
} // namespace corvane
