#pragma once

#include "corvane/utilities/Date.hpp"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// The attributes that belong to the file system rather than to the file's
/// metadata: creation date, modification date and Finder tags. An absent field
/// was not read, and is left untouched on writing.
///
/// Where they live on Linux:
/// - the modification date is the file's mtime, to the nanosecond;
/// - the creation date is the file's birth time (statx) unless one was written,
///   which is kept in the extended attribute "user.corvane.creationdate" as an
///   ISO 8601 UTC text ("2024-05-01T12:00:00.250000Z"), since Linux cannot set a
///   birth time; a written date is read in preference to the birth time;
/// - Finder tags are the freedesktop "user.xdg.tags" attribute that Linux file
///   managers show: tags joined by commas, with "," in a tag written "\," and
///   "\" written "\\". On reading, blanks around each tag are dropped, and so
///   are empty tags.
class FinderResources {
public:
    /// The extended attributes that hold the creation date and the tags.
    ///@{
    static constexpr const char* creationDateAttribute = "user.corvane.creationdate";
    static constexpr const char* tagsAttribute = "user.xdg.tags";
    ///@}

    FinderResources() = default;

    /// The creation date (kept in the extended attribute; the file system has no settable one) and
    /// the modification date (the file's mtime, to the nanosecond); absent when not read or not to
    /// write.
    ///@{
    const std::optional<Date>& createDate() const { return createDate_; }
    void setCreateDate(std::optional<Date> date) { createDate_ = date; }
    const std::optional<Date>& modifyDate() const { return modifyDate_; }
    void setModifyDate(std::optional<Date> date) { modifyDate_ = date; }
    ///@}
    /// An empty list is not absent: writing it removes every tag.
    ///@{
    const std::optional<std::vector<std::string>>& finderTags() const { return finderTags_; }
    void setFinderTags(std::optional<std::vector<std::string>> tags) { finderTags_ = std::move(tags); }
    ///@}

    /// True when no field is set.
    bool isEmpty() const { return !createDate_ && !modifyDate_ && !finderTags_; }

    /// Fills each field that the file has, asking the file system afresh (no
    /// cache). A file without tags or without any creation date leaves those
    /// fields as they are. Throws FileError when the file
    /// cannot be examined (missing, no permission), with this record unchanged.
    void read(const std::filesystem::path& url);

    /// Stores the fields that are set; absent ones are not touched. Each
    /// attribute is stored on its own, so that one the file system refuses (a
    /// volume without extended attributes) costs no other: every one that can be
    /// stored is, then the first failure is thrown as a
    /// FileError naming the attribute.
    void write(const std::filesystem::path& url) const;

    /// The "user.xdg.tags" text of a list and back (see above).
    static std::string encodeTags(const std::vector<std::string>& tags);
    /// The list a "user.xdg.tags" text holds.
    static std::vector<std::string> decodeTags(std::string_view text);
    /// The text of a stored creation date and back; nothing for an unreadable text.
    static std::string encodeDate(Date date);
    static std::optional<Date> decodeDate(std::string_view text); ///< see `encodeDate`

    friend bool operator==(const FinderResources&, const FinderResources&) = default;

private:
    std::optional<Date> createDate_;
    std::optional<Date> modifyDate_;
    std::optional<std::vector<std::string>> finderTags_;
};

} // namespace corvane
