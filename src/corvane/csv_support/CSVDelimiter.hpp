#pragma once

#include <array>
#include <string>
#include <string_view>

namespace corvane {

/// The separator of a CSV table: one of the three usual ones, or any other character.
class CSVDelimiter {
public:
    /// Which separator: one of the usual three, or another character.
    enum class Case { character, comma, semicolon, tab };

    /// The usual separators, and any other character.
    ///@{
    static constexpr CSVDelimiter comma() { return CSVDelimiter(Case::comma, U','); }
    static constexpr CSVDelimiter semicolon() { return CSVDelimiter(Case::semicolon, U';'); }
    static constexpr CSVDelimiter tab() { return CSVDelimiter(Case::tab, U'\t'); }
    static constexpr CSVDelimiter character(char32_t c) { return CSVDelimiter(Case::character, c); }
    ///@}

    /// The plain case for ",", ";" and TAB, `character` for anything else.
    static constexpr CSVDelimiter fromRawValue(char32_t c) {
        switch (c) {
        case U',':
            return comma();
        case U';':
            return semicolon();
        case U'\t':
            return tab();
        default:
            return character(c);
        }
    }

    /// The delimiters `guessed` looks for, in this order.
    static constexpr std::array<CSVDelimiter, 3> recognized() { return {comma(), tab(), semicolon()}; }

    /// The first recognized delimiter outside quotes on the first line of `text`, else comma.
    static CSVDelimiter guessed(std::string_view text);

    /// The case; the character.
    ///@{
    constexpr Case kind() const { return case_; }
    constexpr char32_t rawValue() const { return raw_; }
    ///@}
    /// The raw character as UTF-8.
    std::string rawString() const;

    friend constexpr bool operator==(const CSVDelimiter&, const CSVDelimiter&) = default;

private:
    constexpr CSVDelimiter(Case c, char32_t raw) : case_(c), raw_(raw) {}

    Case case_;
    char32_t raw_;
};

} // namespace corvane
