#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace corvane {

/// The file types to touch in a folder, as a list of path extensions.
/// Extensions are kept upper-cased and without a leading dot, in the order given, without repeats;
/// matching ignores case. ExifTool receives them as "-ext" options (see `exifToolArguments()`).
class ETPathFilter {
public:
    ETPathFilter() = default;
    /// A filter of these extensions (any case, with or without the dot; blanks and repeats
    /// dropped).
    ///@{
    explicit ETPathFilter(const std::vector<std::string>& extensions);
    ETPathFilter(std::initializer_list<std::string_view> extensions);
    ///@}

    /// The extensions, upper-cased, without dots, in insertion order.
    const std::vector<std::string>& extensions() const { return extensions_; }
    bool isEmpty() const { return extensions_.empty(); } ///< no extension: every file passes

    /// Adds one extension ("jpg", ".JPG" and "Jpg" are the same); a blank or repeated one is ignored.
    void addExtension(std::string_view extension);

    /// True when the URL's upper-cased path extension is one of the list. A URL without extension
    /// never matches.
    bool matches(const std::filesystem::path& url) const;

    /// The URLs that match, in their order.
    std::vector<std::filesystem::path> filter(const std::vector<std::filesystem::path>& urls) const;

    /// ExifTool's options for the list: "-ext", EXT for each extension. Empty for an empty filter
    /// (ExifTool then processes every supported type).
    std::vector<std::string> exifToolArguments() const;

    /// Upper-cases ASCII letters and strips one leading dot: the form in which extensions are kept.
    static std::string normalizedExtension(std::string_view extension);

    /// Same extensions.
    friend bool operator==(const ETPathFilter& a, const ETPathFilter& b) { return a.lookup_ == b.lookup_; }

private:
    std::vector<std::string> extensions_;
    std::unordered_set<std::string> lookup_;
};

} // namespace corvane
