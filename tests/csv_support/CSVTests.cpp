// CSV text: the parsing machine, the views and reader over it, and the writer, read back by the reader.
#include "corvane/csv_support/CSVDelimiter.hpp"
#include "corvane/csv_support/CSVParseError.hpp"
#include "corvane/csv_support/CSVReader.hpp"
#include "corvane/csv_support/CSVWriter.hpp"
#include "corvane/csv_support/detail/CSVParsingState.hpp"
#include "corvane/utilities/FileError.hpp"
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <random>
#include <utility>

using namespace corvane;
using corvane::detail::CSVParsingState;
namespace fs = std::filesystem;
using Rows = std::vector<std::vector<std::string>>;
using testing::StrEq;
using testing::ThrowsMessage;

namespace {

Rows parse(std::string_view text, char32_t delimiter = U',') {
    return CSVParsingState::array(text, delimiter);
}

fs::path write(const test::TemporaryFolder& folder, const std::string& name, std::string_view bytes) {
    std::ofstream(folder / name, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return folder / name;
}

// `columns` header names, then `blankRows` empty lines.
std::string wideHeaderOverBlankLines(std::size_t columns, std::size_t blankRows) {
    std::string text;
    for (std::size_t i = 0; i < columns; ++i)
        text += (i ? ",c" : "c") + std::to_string(i);
    return text + std::string(blankRows + 1, '\n');
}

std::string writeRows(const Rows& rows, std::string delimiter = ",",
                      CSVWriter::WriteNewline newline = CSVWriter::WriteNewline::lf,
                      const std::function<bool(std::size_t)>& quoted = {}) {
    auto stream = OutputStream::toMemory();
    {
        CSVWriter writer(stream, std::move(delimiter), newline);
        for (const auto& row : rows)
            writer.writeRow(row, quoted);
    }
    EXPECT_EQ(stream->status(), OutputStream::Status::closed);
    return std::string(stream->data());
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

TEST(CSVViews, NamedRowsAreKeyedByTheFirstRowEnumeratedOnesByIndexAndTheDelimiterIsGuessed) {
    const NamedCSVView view("name,age\nann,31,extra\nbob\n", CSVDelimiter::comma(), true);
    EXPECT_EQ(view.header(), (std::vector<std::string>{"name", "age"}));
    EXPECT_EQ(view.rows(), (std::vector<NamedCSVView::Row>{{{"name", "ann"}, {"age", "31"}},
                                                           {{"name", "bob"}, {"age", ""}}}));
    ASSERT_TRUE(view.columns());
    EXPECT_EQ(view.columns()->at("age"), (std::vector<std::string>{"31", ""}));

    // hasHeader does not change the named view; the row limit counts data rows.
    const NamedCSVView limited("a\n1\n2\n3", CSVDelimiter::comma(), false, false, 2);
    EXPECT_EQ(limited.header(), (std::vector<std::string>{"a"}));
    EXPECT_EQ(limited.rows().size(), 2u);
    EXPECT_FALSE(limited.columns());

    const NamedCSVView empty("", CSVDelimiter::comma(), true);
    EXPECT_TRUE(empty.header().empty());
    EXPECT_TRUE(empty.rows().empty());
    const EnumeratedCSVView withHeader("a,b\n1,2\n3\n", CSVDelimiter::comma(), true, true);
    EXPECT_EQ(withHeader.header(), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(withHeader.rows(), (std::vector<std::vector<std::string>>{{"1", "2"}, {"3"}}));
    EXPECT_EQ(*withHeader.columns(), (EnumeratedCSVView::Columns{{"a", {"1", "3"}}, {"b", {"2", ""}}}));

    // Without a header, columns are named by index and counted from the first row.
    const EnumeratedCSVView noHeader("1,2\n3,4,5\n", CSVDelimiter::comma(), true, false);
    EXPECT_TRUE(noHeader.header().empty());
    EXPECT_EQ(noHeader.rows().size(), 2u);
    EXPECT_EQ(*noHeader.columns(), (EnumeratedCSVView::Columns{{"0", {"1", "3"}}, {"1", {"2", "4"}}}));
    auto guessed = CSVReader<EnumeratedCSVView>::fromString("a;b\n1;2,5\n");
    EXPECT_EQ(guessed.delimiter(), CSVDelimiter::semicolon());
    EXPECT_EQ(guessed.content().rows().front(), (std::vector<std::string>{"1", "2,5"}));

    auto given = CSVReader<EnumeratedCSVView>::fromString("a;b\n1;2,5\n", CSVDelimiter::comma());
    EXPECT_EQ(given.content().header(), (std::vector<std::string>{"a;b"}));
    EXPECT_EQ(given.text(), "a;b\n1;2,5\n");

    EXPECT_THROW(CSVReader<NamedCSVView>::fromString("a\n\"x\"y"), CSVParseError);
}

TEST(CSVReader, EncodingsAreDetectedOrGivenAndByteOrderMarksDropped) {
    test::TemporaryFolder folder;
    auto utf8 = CSVReader<NamedCSVView>::fromFile(write(folder, "bom.csv", "\xEF\xBB\xBFid;v\n1;\xC3\xA9"));
    EXPECT_EQ(utf8.delimiter(), CSVDelimiter::semicolon());
    EXPECT_EQ(utf8.content().header(), (std::vector<std::string>{"id", "v"}));
    EXPECT_EQ(utf8.content().rows().front().at("v"), "\u00E9");

    auto onlyBOM = CSVReader<EnumeratedCSVView>::fromFile(write(folder, "only.csv", "\xEF\xBB\xBF"),
                                                          std::nullopt, TextEncoding::utf8(), false, false);
    EXPECT_TRUE(onlyBOM.content().rows().empty());
    EXPECT_TRUE(onlyBOM.text().empty());

    // UTF-16BE keeps its mark through the converter; the reader drops it.
    const std::string be("\xFE\xFF\0a\0,\0b", 8);
    auto utf16 = CSVReader<EnumeratedCSVView>::fromFile(write(folder, "be.csv", be), std::nullopt,
                                                        TextEncoding::utf16BigEndian(), false, false);
    EXPECT_EQ(utf16.content().rows().front(), (std::vector<std::string>{"a", "b"}));

    const fs::path latin1 = write(folder, "latin1.csv", "name\ncaf\xE9\n");
    auto read = CSVReader<EnumeratedCSVView>::fromFile(latin1, std::nullopt, TextEncoding::isoLatin1());
    EXPECT_EQ(read.content().rows().front().front(), "caf\u00E9");

    // The same bytes are not UTF-8.
    EXPECT_THROW(CSVReader<EnumeratedCSVView>::fromFile(latin1), FileError);
    // A folder opens like a file but can't be read: the system's error, not a stream exception.
    EXPECT_THROW(CSVReader<EnumeratedCSVView>::fromFile(folder.path()), FileError);

    const std::string le("\xFF\xFEx\0,\0y\0", 8);
    auto detected = CSVReader<EnumeratedCSVView>::fromFile(write(folder, "le.csv", le), std::nullopt,
                                                           TextEncoding::automatic(), false, false);
    EXPECT_EQ(detected.content().rows().front(), (std::vector<std::string>{"x", "y"}));

    EXPECT_EQ(TextEncoding::detect("plain,ascii"), TextEncoding::utf8());
    EXPECT_FALSE(TextEncoding::named("no-such-charset"));
}

// Views pad short rows to the header's width: blank lines under a wide header once made a
// 34 KB text take 5 GB. Tables past the cell budget are refused; tables within it, and every row
// limit, read as before.
TEST(CSVViewSize, BlankLinesUnderAWideHeaderAreRefusedAndTheGreatestRowLimitMeansEveryRow) {
    const std::string hostile = wideHeaderOverBlankLines(500, 1'500); // 3.4 KB
    EXPECT_THROW(NamedCSVView(hostile, CSVDelimiter::comma(), false), CSVParseError);
    EXPECT_THROW(EnumeratedCSVView(hostile, CSVDelimiter::comma(), true, true), CSVParseError);
    // Without columns the enumerated view holds the rows as they stand, one empty cell each.
    EXPECT_EQ(EnumeratedCSVView(hostile, CSVDelimiter::comma(), false, true).rows().size(), 1'500u);

    // A table of short rows of a reasonable size is read whole.
    const std::string modest = wideHeaderOverBlankLines(50, 1'000);
    const NamedCSVView view(modest, CSVDelimiter::comma(), true);
    EXPECT_EQ(view.rows().size(), 1'000u);
    EXPECT_EQ(view.columns()->at("c49").size(), 1'000u);
    const std::string text = "a,b\n1,2\n3,4\n";
    EXPECT_EQ(NamedCSVView(text, CSVDelimiter::comma(), false, true, SIZE_MAX).rows().size(), 2u);
    EXPECT_EQ(EnumeratedCSVView(text, CSVDelimiter::comma(), false, true, SIZE_MAX).rows().size(), 2u);
    EXPECT_EQ(EnumeratedCSVView(text, CSVDelimiter::comma(), false, true, SIZE_MAX - 1).rows().size(), 2u);
}

TEST(CSVWriter, NewlinesGoInFrontOfRowsAndFieldsAreQuotedWhereNeeded) {
    EXPECT_EQ(writeRows({}), "");
    EXPECT_EQ(writeRows({{""}}), "");
    EXPECT_EQ(writeRows({{""}, {""}}), "\n");
    EXPECT_EQ(writeRows({{"a", "b"}, {"1", "2"}}), "a,b\n1,2");
    EXPECT_EQ(writeRows({{"a"}, {"b"}}, ",", CSVWriter::WriteNewline::crlf), "a\r\nb");
    EXPECT_EQ(writeRows({{"a", "b"}, {}, {"c"}}), "a,b\nc");

    // Without beginNewRow the same row goes on.
    auto stream = OutputStream::toMemory();
    CSVWriter writer(stream, ";");
    writer.writeField("x");
    writer.writeField("y");
    writer.beginNewRow();
    writer.writeField("z");
    EXPECT_EQ(stream->data(), "x;y\nz");
    EXPECT_EQ(writeRows({{"a\"b", "c,d", "e\nf", "g\rh", "plain"}}),
              "\"a\"\"b\",\"c,d\",\"e\nf\",\"g\rh\",plain");
    EXPECT_EQ(writeRows({{"c,d", "e;f"}}, ";"), "c,d;\"e;f\"");
    EXPECT_EQ(writeRows({{"x", "y"}}, ",", CSVWriter::WriteNewline::lf, [](std::size_t i) { return i == 1; }),
              "x,\"y\"");
    EXPECT_EQ(writeRows({{"a", "b||c"}}, "||"), "a||\"b||c\"");
}

// Byte order and the absence of a mark; the round trip below reads every codec back.
TEST(CSVWriter, WideCodecsWriteTheirByteOrderWithoutAMark) {
    auto encode = [](CSVWriter::WideCodec codec, CSVWriter::WriteEndian endian, std::string_view field) {
        auto stream = OutputStream::toMemory();
        CSVWriter(stream, codec, endian).writeField(field);
        return std::string(stream->data());
    };
    using E = CSVWriter::WriteEndian;
    using C = CSVWriter::WideCodec;
    EXPECT_EQ(encode(C::utf16, E::big, "A"), std::string("\0A", 2));
    EXPECT_EQ(encode(C::utf16, E::unknown, "A"), std::string("A\0", 2));
    EXPECT_EQ(encode(C::utf32, E::little, "\U0001F600"), std::string("\x00\xF6\x01\x00", 4));

    auto latin1 = OutputStream::toMemory();
    CSVWriter(latin1, TextEncoding::isoLatin1()).writeField("caf\u00E9");
    EXPECT_EQ(latin1->data(), "caf\xE9");
    EXPECT_THROW(CSVWriter(OutputStream::toMemory(), TextEncoding::utf16()), std::invalid_argument);
}

TEST(CSVWriter, StreamFailures) {
    EXPECT_THAT([] { CSVWriter writer(OutputStream::toFile("/nonexistent-folder/x.csv")); },
                ThrowsMessage<CSVWriteException>(StrEq("CSV writer cannot open file")));

    // Closing a failed stream, even twice (the writer closes what it was given), keeps the failure.
    auto unopenable = OutputStream::toFile("/nonexistent-folder/x.csv");
    unopenable->open();
    unopenable->close();
    unopenable->close();
    EXPECT_EQ(unopenable->status(), OutputStream::Status::error);
    EXPECT_EQ(unopenable->streamError(), std::errc::no_such_file_or_directory);

    // A stream that is full refuses the unit that does not fit.
    auto small = OutputStream::toBuffer(3);
    CSVWriter writer(small, CSVWriter::WideCodec::utf16, CSVWriter::WriteEndian::big);
    EXPECT_THAT([&] { writer.writeField("ab"); },
                ThrowsMessage<CSVWriteException>(StrEq("CSV writer cannot write stream")));
    EXPECT_EQ(message(CSVWriteError::cannotReadFile), "CSV writer cannot read file");
}

TEST(CSVWriter, RoundTripsThroughTheReaderInEveryCodec) {
    const Rows rows = {{"id", "text", "note"},
                       {"1", "plain", ""},
                       {"2", "comma, inside", "quote \" inside"},
                       {"3", "line\nbreak", "crlf\r\nbreak"},
                       {"4", "  padded", "\u00E9t\u00E9 \U0001F600"},
                       {"", "", ""}};
    test::TemporaryFolder dir;
    using C = CSVWriter::WideCodec;
    using E = CSVWriter::WriteEndian;
    struct Case {
        std::string name;
        std::optional<C> codec; // none: UTF-8
        E endian;
        CSVWriter::WriteNewline newline;
        TextEncoding encoding;
    };
    const auto lf = CSVWriter::WriteNewline::lf;
    const std::vector<Case> cases = {
        {"utf8", std::nullopt, E::unknown, lf, TextEncoding::utf8()},
        {"utf16be", C::utf16, E::big, CSVWriter::WriteNewline::crlf, TextEncoding::utf16BigEndian()},
        {"utf16le", C::utf16, E::little, lf, TextEncoding::utf16LittleEndian()},
        {"utf32be", C::utf32, E::big, lf, TextEncoding::utf32BigEndian()},
        {"utf32le", C::utf32, E::unknown, lf, TextEncoding::utf32LittleEndian()},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const fs::path path = dir / (c.name + ".csv");
        {
            auto stream = OutputStream::toFile(path);
            auto writer = c.codec ? std::make_unique<CSVWriter>(stream, *c.codec, c.endian, ";", c.newline)
                                  : std::make_unique<CSVWriter>(stream, ";", c.newline);
            for (const auto& row : rows)
                writer->writeRow(row, [](std::size_t i) { return i == 0; });
        }
        auto read = CSVReader<EnumeratedCSVView>::fromFile(path, std::nullopt, c.encoding, false, false);
        EXPECT_EQ(read.delimiter(), CSVDelimiter::semicolon());
        // Leading blanks of an unquoted field are dropped; the writer only
        // quotes what needs it, so the padded field loses its blanks.
        Rows expected = rows;
        expected[4][1] = "padded";
        EXPECT_EQ(read.content().rows(), expected);
    }
}
