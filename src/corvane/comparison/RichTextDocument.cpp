#include "corvane/comparison/RichTextDocument.hpp"

#include "corvane/csv_support/detail/Utf8.hpp"

#include <cmath>

namespace corvane {
namespace utf8 = detail::utf8;

RichTextDocument::RichTextDocument(std::vector<std::string> fontNames, std::vector<Colour> colours)
    : fontNames_(std::move(fontNames)), colours_(std::move(colours)) {}

namespace {

void appendUnit(std::string& out, std::uint16_t unit) {
    // RTF takes a signed 16-bit number; the '?' is the replacement for readers without Unicode.
    out += "\\u";
    out += std::to_string(static_cast<int>(static_cast<std::int16_t>(unit)));
    out += '?';
}

} // namespace

std::string RichTextDocument::escaped(std::string_view text) {
    std::string out;
    out.reserve(text.size() + text.size() / 8);
    // Runs of \uN? go in a group of their own: some readers skip the whole word after \uN instead of
    // one character, and the group's end bounds that word to the '?'.
    bool inUnicodeGroup = false;
    auto closeGroup = [&] {
        if (inUnicodeGroup) out += '}';
        inUnicodeGroup = false;
    };
    auto appendUnits = [&](char32_t scalar) {
        if (!inUnicodeGroup) out += '{';
        inUnicodeGroup = true;
        if (scalar < 0x10000) {
            appendUnit(out, static_cast<std::uint16_t>(scalar));
        } else {
            char32_t v = scalar - 0x10000;
            appendUnit(out, static_cast<std::uint16_t>(0xD800 + (v >> 10)));
            appendUnit(out, static_cast<std::uint16_t>(0xDC00 + (v & 0x3FF)));
        }
    };
    for (std::size_t i = 0; i < text.size();) {
        std::size_t start = i;
        char32_t scalar = utf8::decode(text, i);
        if (scalar >= 0x20 && scalar < 0x7F) {
            closeGroup();
            if (scalar == U'\\' || scalar == U'{' || scalar == U'}') out += '\\';
            out += text[start];
            continue;
        }
        switch (scalar) {
        case U'\t':
            closeGroup();
            out += "\\tab ";
            break;
        case U'\n':
            closeGroup();
            out += "\\par\n";
            break;
        case U'\r':
            closeGroup();
            // CR LF is one line end.
            if (!(i < text.size() && text[i] == '\n')) out += "\\par\n";
            break;
        default:
            appendUnits(scalar);
            break;
        }
    }
    closeGroup();
    return out;
}

void RichTextDocument::append(std::string_view text, const Style& style) {
    if (text.empty()) return;
    if (!hasStyle_ || !(style == current_)) {
        // \plain resets the character formatting, so each run states all of its own.
        body_ += "\\plain\\f" + std::to_string(style.font);
        body_ += "\\fs" + std::to_string(static_cast<long>(std::lround(style.pointSize * 2)));
        if (style.bold) body_ += "\\b";
        body_ += "\\cf" + std::to_string(style.colour);
        body_ += ' ';
        current_ = style;
        hasStyle_ = true;
    }
    body_ += escaped(text);
}

std::string RichTextDocument::rtf() const {
    std::string out = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n{\\fonttbl";
    for (std::size_t i = 0; i < fontNames_.size(); ++i)
        out += "{\\f" + std::to_string(i) + "\\fmodern\\fcharset0 " + escaped(fontNames_[i]) + ";}";
    out += "}\n{\\colortbl;";
    for (const auto& c : colours_)
        out += "\\red" + std::to_string(c.red) + "\\green" + std::to_string(c.green) + "\\blue" +
               std::to_string(c.blue) + ";";
    out += "}\n\\pard\\plain\n";
    out += body_;
    out += "\n}\n";
    return out;
}

} // namespace corvane
