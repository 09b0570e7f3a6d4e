#pragma once

#include "corvane/comparison/TagComparatorTable.hpp"

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// Writes a comparison as plain text (columns padded with blanks for a monospaced font), as rich
/// text (the same layout in Menlo, headings, names and edited values in bold), or as a delimited
/// file (fields joined by "; ", no quoting). Files are UTF-8 and replaced as a whole; write failures
/// throw FileError.
class TagComparatorExporter {
public:
    /// The three output forms.
    enum class Format { txt, rtf, csv };

    /// Every format, in the order above.
    static constexpr std::array<Format, 3> allFormats() { return {Format::txt, Format::rtf, Format::csv}; }
    /// "txt", "rtf", "csv".
    static std::string_view pathExtension(Format format);
    /// The format of an extension in any case, with or without the dot.
    static std::optional<Format> formatFromPathExtension(std::string_view pathExtension);

    /// Width of the name column and of each value column, in UTF-16 code units.
    ///@{
    static constexpr std::size_t nameWidth = 40;
    static constexpr std::size_t valueWidth = 80;
    ///@}

    /// An exporter of this comparison.
    explicit TagComparatorExporter(TagComparatorTable tagsTable) : tagsTable_(std::move(tagsTable)) {}

    /// The comparison written.
    const TagComparatorTable& tagsTable() const { return tagsTable_; }

    /// The contents of each format; of the given one.
    ///@{
    std::string txtString() const;
    std::string rtfString() const;
    std::string csvString() const;
    std::string exportedString(Format format) const;
    ///@}

    /// Writes the comparison in one format to `url`, replacing the file; throws FileError naming
    /// the file when it can't be written.
    ///@{
    void exportAsTXT(const std::filesystem::path& url) const;
    void exportAsRTF(const std::filesystem::path& url) const;
    void exportAsCSV(const std::filesystem::path& url) const;
    void exportTo(Format format, const std::filesystem::path& url) const;
    ///@}

    /// `text` followed by blanks up to `width` UTF-16 code units; a longer text is kept whole.
    static std::string padded(std::string_view text, std::size_t width);

private:
    TagComparatorTable tagsTable_;
};

} // namespace corvane
