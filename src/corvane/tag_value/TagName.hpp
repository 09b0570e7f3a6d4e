#pragma once

#include "corvane/tag_value/TagKey.hpp"
#include "corvane/tag_value/TagStream.hpp"

#include <nlohmann/json_fwd.hpp>

#include <atomic>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

class TagItem;

/// A tag's full name: its family and its key, written "EXIF:Artist".
class TagName {
public:
    TagName() : hash_(hashOf(stream_, key_)) {}
    /// The name of `key` in the family `stream`; no check against the catalogue.
    TagName(TagStream stream, TagKey key)
        : stream_(std::move(stream)), key_(std::move(key)), hash_(hashOf(stream_, key_)) {}
    /// A copy keeps the catalogue entry already found for the name.
    ///@{
    TagName(const TagName& other)
        : stream_(other.stream_), key_(other.key_), hash_(other.hash_), item_(other.cachedItem()) {}
    TagName(TagName&& other) noexcept
        : stream_(std::move(other.stream_)), key_(std::move(other.key_)), hash_(other.hash_),
          item_(other.cachedItem()) {}
    TagName& operator=(const TagName& other) {
        stream_ = other.stream_;
        key_ = other.key_;
        hash_ = other.hash_;
        item_.store(other.cachedItem(), std::memory_order_release);
        return *this;
    }
    TagName& operator=(TagName&& other) noexcept {
        stream_ = std::move(other.stream_);
        key_ = std::move(other.key_);
        hash_ = other.hash_;
        item_.store(other.cachedItem(), std::memory_order_release);
        return *this;
    }
    ///@}

    /// Parses "Stream:Key"; anything else gives no name.
    static std::optional<TagName> fromRawValue(std::string_view text);

    /// The family ("EXIF"), the key ("Artist"), and both as written, "EXIF:Artist".
    ///@{
    const TagStream& stream() const { return stream_; }
    const TagKey& key() const { return key_; }
    std::string rawValue() const;
    ///@}

    /// The name with an empty family and key, which no tag has; `isEmpty()` tells it.
    ///@{
    static const TagName empty;
    bool isEmpty() const { return stream_.rawValue().empty() && key_.rawValue().empty(); }
    ///@}

    /// Names with different hashes differ: most unequal names are told apart without their texts.
    friend bool operator==(const TagName& a, const TagName& b) {
        return a.hash_ == b.hash_ && a.stream_ == b.stream_ && a.key_ == b.key_;
    }
    /// By stream text, then key text.
    friend std::strong_ordering operator<=>(const TagName& a, const TagName& b) {
        if (auto c = a.stream_.rawValue() <=> b.stream_.rawValue(); c != 0) return c;
        return a.key_.rawValue() <=> b.key_.rawValue();
    }

    /// The catalogue entry of this name, or nullptr.
    const TagItem* item() const;
    /// Counterparts in the ExifTool and image I/O vocabularies.
    ///@{
    std::optional<TagName> etName() const;
    std::optional<TagName> cgName() const;
    ///@}

    /// Whether the family is one of the catalogue, one of maker notes; the name with a maker's
    /// family folded to MakerNotes.
    ///@{
    bool isInG0Stream() const { return stream_.isG0Stream(); }
    bool isInMakerStream() const { return stream_.isMakerStream(); }
    TagName makerFamilyFixed() const { return TagName(stream_.makerFamilyFixed(), key_); }
    ///@}

    /// Each family's tags that go together: GPS coordinates with their references, GPS date and
    /// time stamps, place as text, thumbnail and preview, the location tags of each family (their
    /// union in `locationTagNames`), QuickTime artwork, and the iTunes MOVI tags.
    /// Tag-name groups, built once.
    ///@{
    static const std::vector<TagName>& exifGPSCoordinatesTagNames();
    static const std::vector<TagName>& exifGPSDateStampTagNames();
    static const std::vector<TagName>& exifLocationTagNames();
    static const std::vector<TagName>& exifThumbnailTagNames();
    static const std::vector<TagName>& iptcGPSAddressTagNames();
    static const std::vector<TagName>& iptcLocationTagNames();
    static const std::vector<TagName>& xmpGPSCoordinatesTagNames();
    static const std::vector<TagName>& xmpGPSDateStampTagNames();
    static const std::vector<TagName>& xmpGPSAddressTagNames();
    static const std::vector<TagName>& xmpLocationTagNames();
    static const std::vector<TagName>& quicktimeGPSCoordinatesTagNames();
    static const std::vector<TagName>& quicktimeLocationTagNames();
    static const std::vector<TagName>& quicktimeArtworkTagNames();
    static const std::vector<TagName>& locationTagNames();
    static const std::vector<TagName>& iTunMOVITagNames();
    ///@}
    /// (width, height) pairs in the order TagEditor::imageSize() tries them.
    static const std::vector<std::pair<TagName, TagName>>& imageSizePairs();

    /// The hash of both texts, computed once: names are looked up in the value maps of every
    /// storage, often thousands of times for one row of a table.
    std::size_t hash() const { return hash_; }

private:
    static std::size_t hashOf(const TagStream& stream, const TagKey& key) {
        const std::size_t h = std::hash<std::string>()(stream.rawValue());
        return h ^ (std::hash<std::string>()(key.rawValue()) + 0x9e3779b97f4a7c15ULL + (h << 6) + (h >> 2));
    }

    const TagItem* cachedItem() const { return item_.load(std::memory_order_acquire); }

    TagStream stream_;
    TagKey key_;
    std::size_t hash_;
    // The catalogue's entry once `item()` has found it (catalogue entries live as long as the
    // program): a tag's name is looked up again at every step of showing its value, and a lookup
    // searches the catalogue's text.
    mutable std::atomic<const TagItem*> item_{nullptr};
};

inline const TagName TagName::empty{};

/// A name stands in JSON as its raw value, "EXIF:Artist"; any other JSON is a
/// type error (nlohmann::json::type_error or std::invalid_argument).
void to_json(nlohmann::json& j, const TagName& name);
void from_json(const nlohmann::json& j, TagName& name); ///< see `to_json`

} // namespace corvane

template <> struct std::hash<corvane::TagName> {
    size_t operator()(const corvane::TagName& n) const noexcept { return n.hash(); }
};
