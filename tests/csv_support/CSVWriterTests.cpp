#include "corvane/csv_support/CSVReader.hpp"
#include "corvane/csv_support/CSVWriter.hpp"
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace corvane;
namespace fs = std::filesystem;
using Rows = std::vector<std::vector<std::string>>;
using testing::StrEq;
using testing::ThrowsMessage;

namespace {

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
