#pragma once

#include "corvane/tag_value/MediaKind.hpp"
#include "corvane/tag_value/TagAccess.hpp"
#include "corvane/tag_value/TagStream.hpp"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace corvane {

/// A file format the library knows: its key (the extension in upper case), its
/// medium and what may be done with each metadata family in it. Immutable;
/// copies share one record. Equality and hashing take the format alone.
class MediaType {
public:
    /// The rights on each family; a set of formats.
    ///@{
    using AccessMap = std::unordered_map<TagStream, TagAccess>;
    using Set = std::unordered_set<MediaType>;
    ///@}

    /// The format is upper-cased; a family absent from access counts as n.
    MediaType(std::string_view format, MediaKind kind, AccessMap access);

    /// The format key ("JPG"), the medium, and the rights on each family the format lists.
    ///@{
    const std::string& format() const { return data_->format; }
    MediaKind kind() const { return data_->kind; }
    const AccessMap& access() const { return data_->access; }
    ///@}
    /// The rights on one family, n when the format does not list it.
    TagAccess access(const TagStream& stream) const;

    /// Same format.
    bool is(const MediaType& other) const { return format() == other.format(); }
    /// True when the format equals the text, upper-cased.
    bool isFormat(std::string_view text) const;
    ///@{
    /// The same for a C string and a std::string.
    bool isFormat(const char* text) const { return isFormat(std::string_view(text)); }
    bool isFormat(const std::string& text) const { return isFormat(std::string_view(text)); }
    ///@}
    /// True when the format equals the path's extension, upper-cased.
    bool isFormat(const std::filesystem::path& url) const;

    /// Look-ups through the index; lower- and mixed-case keys find the same
    /// record, nothing else is normalised. An unknown key gives nothing.
    static std::optional<MediaType> type(std::string_view extension);
    /// The same for a C string and a std::string.
    ///@{
    static std::optional<MediaType> type(const char* extension) { return type(std::string_view(extension)); }
    static std::optional<MediaType> type(const std::string& extension) {
        return type(std::string_view(extension));
    }
    ///@}
    /// By the path's extension; a path without one is a folder (the file system
    /// is not asked).
    static std::optional<MediaType> type(const std::filesystem::path& url);
    /// Every record whose kind is one of the given ones.
    static Set types(const std::vector<MediaKind>& kinds);

    /// typeFolder, then every format in declaration order.
    static const std::vector<MediaType>& allCases();
    /// Format key to record, built once from allCases on first use.
    static const std::unordered_map<std::string, MediaType>& indexedTypes();

    /// The upper-cased extension of a path, as the look-ups use it ("" for none).
    static std::string pathFormatKey(const std::filesystem::path& url);
    /// Upper-casing as the look-ups do it: ASCII fast, other text through ICU.
    static std::string formatKey(std::string_view text);

    /// Same format.
    friend bool operator==(const MediaType& a, const MediaType& b) { return a.is(b); }

    /// A folder: empty format, kind other, rwc for every family of TagStream::allCases().
    static const MediaType& typeFolder();
    // One constant per format, in allCases order, each built on first use: type<constant>() for
    // each row of MediaTypes.inc ("DVR-MS" is typeDVR_MS, "360" type360).
#define CORVANE_MEDIA_TYPE(constant, ...) static const MediaType& type##constant();
#include "corvane/tag_value/MediaTypes.inc"
#undef CORVANE_MEDIA_TYPE

private:
    struct Data {
        std::string format;
        MediaKind kind;
        AccessMap access;
    };
    std::shared_ptr<const Data> data_;
};

} // namespace corvane

template <> struct std::hash<corvane::MediaType> {
    size_t operator()(const corvane::MediaType& t) const noexcept {
        return std::hash<std::string>()(t.format());
    }
};
