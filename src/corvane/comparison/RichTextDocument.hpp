#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// A rich text built run by run and written as RTF 1 text that word processors open: a font table,
/// a colour table, and runs each in one style. Text is UTF-8; line feeds end paragraphs, tabs stay
/// tabs, and every character outside printable ASCII is written as its UTF-16 code units (`\uN?`).
class RichTextDocument {
public:
    /// An RGB colour of the colour table, each component 0 to 255.
    struct Colour {
        std::uint8_t red = 0;   ///< 0 to 255
        std::uint8_t green = 0; ///< 0 to 255
        std::uint8_t blue = 0;  ///< 0 to 255
    };

    /// How a run is written.
    struct Style {
        std::size_t font = 0;   ///< index into the font table
        bool bold = false;      ///< also set for a bold face, for readers without that font
        std::size_t colour = 0; ///< 0: the automatic colour, n: the n-th colour given
        double pointSize = 13;  ///< in points

        friend bool operator==(const Style&, const Style&) = default;
    };

    /// Fonts by their PostScript names ("Menlo", "Menlo-Bold"); colours for indexes 1 and up.
    RichTextDocument(std::vector<std::string> fontNames, std::vector<Colour> colours = {});

    /// Adds a run of `text` (UTF-8) in `style`.
    void append(std::string_view text, const Style& style);
    /// True before the first run.
    bool isEmpty() const { return body_.empty(); }

    /// The whole RTF text (7-bit ASCII).
    std::string rtf() const;

    /// `text` with the RTF escapes: `\` `{` `}` escaped, line feeds as `\par`, tabs as `\tab`, other
    /// characters outside printable ASCII as `\uN?` with N the signed 16-bit code unit, each run of
    /// them in a group (`{\u233?}`).
    static std::string escaped(std::string_view text);

private:
    std::vector<std::string> fontNames_;
    std::vector<Colour> colours_;
    std::string body_;
    Style current_;
    bool hasStyle_ = false;
};

} // namespace corvane
