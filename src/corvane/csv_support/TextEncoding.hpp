#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// A character encoding of text files, named as ICU's converters know it.
/// `automatic()` stands for "find out from the bytes".
class TextEncoding {
public:
    /// Encodings by ICU name: UTF-8, US-ASCII, ISO-8859-1, windows-1252, Mac Roman.
    ///@{
    static TextEncoding utf8() { return TextEncoding("UTF-8"); }
    static TextEncoding ascii() { return TextEncoding("US-ASCII"); }
    static TextEncoding isoLatin1() { return TextEncoding("ISO-8859-1"); }
    static TextEncoding windowsCP1252() { return TextEncoding("windows-1252"); }
    static TextEncoding macOSRoman() { return TextEncoding("macintosh"); }
    ///@}
    /// Byte order from the byte-order mark, big-endian without one.
    static TextEncoding utf16() { return TextEncoding("UTF-16"); }
    /// UTF-16 and UTF-32 with a fixed byte order, or (UTF-32) from the byte-order mark.
    ///@{
    static TextEncoding utf16BigEndian() { return TextEncoding("UTF-16BE"); }
    static TextEncoding utf16LittleEndian() { return TextEncoding("UTF-16LE"); }
    static TextEncoding utf32() { return TextEncoding("UTF-32"); }
    static TextEncoding utf32BigEndian() { return TextEncoding("UTF-32BE"); }
    static TextEncoding utf32LittleEndian() { return TextEncoding("UTF-32LE"); }
    ///@}
    /// A byte-order mark decides, then well-formed UTF-8, then ICU's charset detection.
    static TextEncoding automatic() { return TextEncoding(""); }

    /// Any charset name or alias ICU has a converter for; nothing for an unknown one.
    static std::optional<TextEncoding> named(std::string_view charsetName);

    /// The encoding `bytes` most likely use (never automatic()).
    static TextEncoding detect(std::string_view bytes);

    /// The ICU charset name; empty for `automatic()`.
    const std::string& name() const { return name_; }
    /// True for `automatic()`; true for UTF-8 under any of its names.
    ///@{
    bool isAutomatic() const { return name_.empty(); }
    bool isUTF8() const;
    ///@}
    /// Size of the encoding's code unit in bits: 8, 16 or 32 (0 for automatic()).
    int codeUnitBits() const;

    /// Converts `bytes` to UTF-8. Returns nothing when they are not valid text
    /// in this encoding. A leading byte-order mark is kept (for UTF-16 and
    /// UTF-32 without an explicit byte order ICU consumes it).
    std::optional<std::string> decode(std::string_view bytes) const;

    friend bool operator==(const TextEncoding&, const TextEncoding&) = default;

private:
    explicit TextEncoding(std::string name) : name_(std::move(name)) {}

    std::string name_;
};

} // namespace corvane
