#include "corvane/csv_support/CSVDelimiter.hpp"
#include "corvane/csv_support/CSVParseError.hpp"
#include "corvane/csv_support/detail/CSVParsingState.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <utility>

using namespace corvane;
using corvane::detail::CSVParsingState;
using Rows = std::vector<std::vector<std::string>>;
using testing::StrEq;
using testing::ThrowsMessage;

namespace {
Rows parse(std::string_view text, char32_t delimiter = U',') {
    return CSVParsingState::array(text, delimiter);
}

} // namespace

TEST(CSVParsingState, RowsEndAtEachNewlineAndKeepEmptyFieldsRaggedRowsAndOtherDelimiters) {
    EXPECT_EQ(parse("a,b\n1,2\n"), (Rows{{"a", "b"}, {"1", "2"}}));
    EXPECT_EQ(parse("a,b\r\n1,2\r\n"), (Rows{{"a", "b"}, {"1", "2"}}));
    EXPECT_EQ(parse("a,b\r1,2"), (Rows{{"a", "b"}, {"1", "2"}}));
    // CR LF is one newline; CR CR is two, the second giving an empty row.
    EXPECT_EQ(parse("a\r\r\nb"), (Rows{{"a"}, {""}, {"b"}}));
    EXPECT_EQ(parse("a\n\nb\n"), (Rows{{"a"}, {""}, {"b"}}));
    EXPECT_EQ(parse(""), Rows{});
    EXPECT_EQ(parse("\n"), (Rows{{""}}));
    EXPECT_EQ(parse("a,,c\n,\n"), (Rows{{"a", "", "c"}, {"", ""}}));
    EXPECT_EQ(parse("a,b,\n1"), (Rows{{"a", "b", ""}, {"1"}}));
    EXPECT_EQ(parse("1,2,3\n4\n5,6"), (Rows{{"1", "2", "3"}, {"4"}, {"5", "6"}}));
    // A quoted empty field at the very end still closes the row it is in.
    EXPECT_EQ(parse("a,\"\""), (Rows{{"a", ""}}));
    EXPECT_EQ(parse("\"\""), Rows{});
    EXPECT_EQ(parse("a;b,c\n", U';'), (Rows{{"a", "b,c"}}));
    EXPECT_EQ(parse("\ta\tb", U'\t'), (Rows{{"", "a", "b"}})); // TAB is a delimiter, not a blank
    EXPECT_EQ(parse("a\u00A7\"b\u00A7c\"\u00A7d\u00A2", U'\u00A7'), (Rows{{"a", "b\u00A7c", "d\u00A2"}}));
}

TEST(CSVParsingState, QuotedFieldsKeepDelimitersNewlinesAndQuotesAndPlainFieldsRefuseStrayQuotes) {
    EXPECT_EQ(parse("a,\"b\nc\",d"), (Rows{{"a", "b\nc", "d"}}));
    EXPECT_EQ(parse("\"a\"\"b\""), (Rows{{"a\"b"}}));
    EXPECT_EQ(parse("\"x,\r\ny\"\r\nz"), (Rows{{"x,\r\ny"}, {"z"}}));
    EXPECT_EQ(parse("\"\"\"\"\"\",\"\"\"\""), (Rows{{"\"\"", "\""}}));
    // Blanks after the closing quote are ignored, blanks inside kept.
    EXPECT_EQ(parse("\" a \"  ,b"), (Rows{{" a ", "b"}}));
    // An unterminated quoted field runs to the end of the text.
    EXPECT_EQ(parse("a,\"b\nc"), (Rows{{"a", "b\nc"}}));
    EXPECT_EQ(parse("  x  ,y"), (Rows{{"x  ", "y"}}));
    EXPECT_EQ(parse("\t\u00A0x"), (Rows{{"x"}})); // leading Unicode blanks dropped too
    EXPECT_EQ(parse("a\"\"b,c"), (Rows{{"a\"b", "c"}}));
    EXPECT_THAT([] { parse("a\"b"); }, ThrowsMessage<CSVParseError>(StrEq("Can't have non-quote here: b")));
    EXPECT_THAT([] { parse("\"a\"b"); }, ThrowsMessage<CSVParseError>(StrEq("Can't have non-quote here: b")));
    EXPECT_THAT([] { parse("\"a\"\u00E9"); },
                ThrowsMessage<CSVParseError>(StrEq("Can't have non-quote here: \u00E9")));
    EXPECT_THAT([] { parse("a\",b"); }, ThrowsMessage<CSVParseError>(StrEq("Can't have non-quote here: ,")));
}

TEST(CSVParsingState, StartAtRowLimitAndRowsBeforeAFailure) {
    const std::string text = "h1,h2\n\"a\nb\",1\nc,2\nd,3";
    EXPECT_EQ(CSVParsingState::array(text, U',', 0, 1), (Rows{{"h1", "h2"}}));
    EXPECT_EQ(CSVParsingState::array(text, U',', 1, 2), (Rows{{"a\nb", "1"}, {"c", "2"}}));
    EXPECT_EQ(CSVParsingState::array(text, U',', 3), (Rows{{"d", "3"}}));
    EXPECT_EQ(CSVParsingState::array(text, U',', 1, 0), Rows{});
    EXPECT_EQ(CSVParsingState::array(text, U',', 9), Rows{});
    Rows rows;
    EXPECT_THROW(CSVParsingState::enumArray("a,b\n1,2\nx\"y\n3,4", U',', 0, std::nullopt,
                                            [&](std::vector<std::string>&& row) { rows.push_back(row); }),
                 CSVParseError);
    EXPECT_EQ(rows, (Rows{{"a", "b"}, {"1", "2"}}));
}

// No state flag set is a state the machine never reaches: its generic error, not a silent skip.
TEST(CSVParsingState, AChangeOutsideEveryStateFailsWithTheGenericError) {
    CSVParsingState state(U',');
    state.atFieldStart = state.inPlainField = state.inQuotedField = false;
    EXPECT_THAT([&] { state.change("a"); }, ThrowsMessage<CSVParseError>(StrEq("me_irl")));
}

TEST(CSVParsingState, EnumDictFollowsTheHeader) {
    const std::vector<std::string> header = {"a", "b", "a"};
    std::vector<std::unordered_map<std::string, std::string>> rows;
    CSVParsingState::enumDict(
        header, "1,2,3,4\n5", U',', std::nullopt, [&](auto&& row) { rows.push_back(row); }, 0);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0], (std::unordered_map<std::string, std::string>{{"a", "3"}, {"b", "2"}}));
    EXPECT_EQ(rows[1], (std::unordered_map<std::string, std::string>{{"a", ""}, {"b", ""}}));
    EXPECT_TRUE(CSVParsingState::dictionary({}, {"x"}).empty());
}

TEST(CSVDelimiter, GuessedFromTheFirstLineOutsideQuotesAndRawValues) {
    EXPECT_EQ(CSVDelimiter::guessed("a;b,c"), CSVDelimiter::semicolon());
    EXPECT_EQ(CSVDelimiter::guessed("\"a,b\";c"), CSVDelimiter::semicolon());
    EXPECT_EQ(CSVDelimiter::guessed("abc"), CSVDelimiter::comma());
    EXPECT_EQ(CSVDelimiter::guessed("a b\nc;d"), CSVDelimiter::comma());
    EXPECT_EQ(CSVDelimiter::guessed(" \n\n\tb;c"), CSVDelimiter::tab());
    EXPECT_EQ(CSVDelimiter::guessed("  \r\n x\ty,z"), CSVDelimiter::tab());
    EXPECT_EQ(CSVDelimiter::guessed(""), CSVDelimiter::comma());
    EXPECT_EQ(CSVDelimiter::character(U'\u00A7').rawString(), "\u00A7");
}

// The bulk parser skips over runs of field content; driving the machine one
// character at a time through change() must give the same rows and failures.
TEST(CSVParsingState, BulkParserAgreesWithCharacterByCharacterMachine) {
    const std::vector<std::string> alphabet = {"a",  "b",  " ",  "\"",     ",",
                                               "\r", "\n", "\t", "\u00E9", "\u00A0"};
    std::mt19937 rng(7);
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        const int length = static_cast<int>(rng() % 24);
        for (int i = 0; i < length; ++i)
            text += alphabet[rng() % alphabet.size()];

        Rows reference;
        std::string referenceError;
        {
            CSVParsingState state(U',');
            std::vector<std::string> fields;
            std::string field;
            state.appendCharacter = [&](std::string_view c) { field += c; };
            state.endField = [&] { fields.push_back(std::exchange(field, {})); };
            state.endRow = [&] {
                fields.push_back(std::exchange(field, {}));
                reference.push_back(std::exchange(fields, {}));
            };
            try {
                for (std::size_t i = 0; i < text.size();) {
                    std::size_t len = (static_cast<unsigned char>(text[i]) >= 0x80) ? 2 : 1;
                    if (text.compare(i, 2, "\r\n") == 0) len = 2;
                    state.change(std::string_view(text).substr(i, len));
                    i += len;
                }
                if (!field.empty() || !fields.empty()) state.endRow();
            } catch (const CSVParseError& e) {
                referenceError = e.what();
            }
        }

        Rows bulk;
        std::string bulkError;
        try {
            CSVParsingState::enumArray(text, U',', 0, std::nullopt,
                                       [&](std::vector<std::string>&& row) { bulk.push_back(row); });
        } catch (const CSVParseError& e) {
            bulkError = e.what();
        }
        ASSERT_EQ(bulk, reference) << "text: " << text;
        ASSERT_EQ(bulkError, referenceError) << "text: " << text;
    }
}
