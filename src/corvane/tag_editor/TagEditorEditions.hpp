#pragma once

#include "corvane/tag_editor/FamilyAccessor.hpp"
#include "corvane/tag_value/MediaKind.hpp"
#include "corvane/tag_value/MediaType.hpp"
#include "corvane/tag_value/TagStream.hpp"
#include "corvane/tag_value/TypedTagValue.hpp"
#include "corvane/value_models/Coordinate.hpp"
#include "corvane/value_models/DateEdition.hpp"
#include "corvane/value_models/ExifOrientation.hpp"
#include "corvane/value_models/Location.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace corvane {

/// The width and height of an image, in pixels.
struct ImageSize {
    std::int64_t width = 0;  ///< in pixels
    std::int64_t height = 0; ///< in pixels
    friend bool operator==(const ImageSize&, const ImageSize&) = default;
};

/// The editing operations on one editor above `TagEditor::setValue`: copies between tags (date
/// aware), text changes in place, keyword sorting, date editions, clearing or restoring whole
/// families, the orientation and position of the family the file prefers, and the whole location.
/// Presets, batch commands and views use them; every change ends in `TagEditor::setValue`, so access
/// rules, edited state and the edition history apply as usual.
///
/// A view like the family accessors: `TagEditorEditions(*editor).editDate(edition, names)`. A name
/// without a catalogue item makes every item-based operation do nothing or yield nothing. All runs
/// on the caller's thread; operations of several changes open one edition session.
class TagEditorEditions : public FamilyAccessor {
public:
    /// Views the editor; the editor must outlive the view.
    using FamilyAccessor::FamilyAccessor;
    /// A change of a text, for `transformText`.
    using TextTransform = std::function<std::string(const std::string&)>;

    // --- The file's format
    /// The media type of the file's extension (nothing for an unknown one), and its kind (image,
    /// movie, audio...).
    ///@{
    std::optional<MediaType> type() const;
    std::optional<MediaKind> kind() const;
    ///@}
    /// The format writes and creates QuickTime tags, and is a movie or can't create EXIF tags.
    bool prefersQuicktime() const;

    // --- Values through the converters
    using FamilyAccessor::currentNativeValue;
    using FamilyAccessor::setNativeValue;
    /// The current value of the tag through its item's converter; a typed value set through the
    /// converter. A name without a catalogue item gives nothing and sets nothing.
    ///@{
    DynamicValue currentNativeValue(const TagName& tagName) const;
    void setNativeValue(const DynamicValue& value, const TagName& tagName) const;
    ///@}

    /// Copies the source's current value into the target through both converters; date tags go
    /// through `copyDate`. A source without a value sets nothing.
    void copyValue(const TagName& from, const TagName& to) const;
    void copyValue(const TagItem& from, const TagItem& to) const; ///< the same by item
    /// Copies a date between date tags of any kind. Same kinds copy as they stand; a full date-time
    /// gives its date or its time to a date-only or time-only tag; a date-only source replaces the
    /// date of a full target and keeps its time (midnight when the target is empty); a time-only
    /// source replaces the time of a full target that has a date, and sets nothing otherwise.
    /// Between date-only and time-only tags nothing is copied.
    void copyDate(const TagName& from, const TagName& to) const;
    void copyDate(const TagItem& from, const TagItem& to) const; ///< the same by item

    /// One value for every catalogue tag of the streams, whatever the file holds (what a folder
    /// needs). One session.
    void setValueReferencedTagsOfStreams(const std::optional<std::string>& value,
                                         const std::vector<TagStream>& tagStreams) const;
    /// One value for every tag the editor currently holds in the streams. One session.
    void setValueEvaluatedTagsOfStreams(const std::optional<std::string>& value,
                                        const std::unordered_set<TagStream>& tagStreams) const;
    /// Marks whole families for removal (a folder: every catalogue tag of them) or takes their
    /// edits back.
    void clearValues(const std::vector<TagStream>& tagStreams) const;
    void restoreValues(const std::vector<TagStream>& tagStreams) const; ///< takes the families' edits back

    // --- Text in place. Text tags only (string kinds); list tags are changed element by element.
    /// Changes the current text of a text tag (each element of a list tag) through `transform`.
    void transformText(const TagItem& item, const TextTransform& transform) const;
    /// Unicode case mapping (root locale).
    void lowercaseText(const TagItem& item) const;
    void uppercaseText(const TagItem& item) const; ///< the same, to upper case
    /// Every word's first letter in upper case, the rest in lower case.
    void capitalizeText(const TagItem& item) const;
    /// White space and line breaks at both ends.
    void trimWhitespacesText(const TagItem& item) const;
    /// The text operations on a plain text, as the tag operations above apply them.
    ///@{
    static std::string lowercased(const std::string& text);
    static std::string uppercased(const std::string& text);
    static std::string capitalized(const std::string& text);
    static std::string trimmed(const std::string& text);
    ///@}

    /// Stable sort of a list tag's elements in plain (code point) order; other tags are left alone.
    void ascendingSortKeywords(const TagItem& item) const;
    void descendingSortKeywords(const TagItem& item) const; ///< the same, in descending order

    // --- Dates
    /// Applies a date edition to a date or time tag; other tags are left alone. `select` sets the
    /// date the edition names, `update` replaces the named fields of the current date, `shift` moves
    /// it; these two set nothing on a tag without a date. `restore` and `remove` use the markers.
    void editDate(const DateEdition& edition, const TagItem& item) const;
    /// The same on each name, in one session. A date tag and its time tag (IPTC's date and time
    /// pairs, the GPS date and time stamps) are updated or shifted as one moment when either is
    /// named and both have values, so that a time moved past midnight moves its day too.
    void editDate(const DateEdition& edition, const std::vector<TagName>& tagNames) const;

    /// The source's current value in the target's canonical form, for use in the target.
    std::optional<std::string> rawValue(const TagName& of, const TagName& forTag) const;
    /// The source's display form: choice titles, exposure times as fractions, reals without
    /// trailing zeros (see detail/PrettyText).
    std::optional<std::string> prettyValue(const TagName& of, const TagName& forTag) const;

    // --- Orientation of the family the file prefers (QuickTime VideoOrientation or EXIF Orientation)
    /// The orientation tag of the family the file prefers.
    const TagItem& orientationItem() const;
    /// Its current and original values, 1 to 8 (1 when absent or unreadable).
    ///@{
    int orientationValue() const;
    int originalOrientationValue() const;
    ///@}
    /// Clamped to 1...8.
    void setOrientationValue(int value) const;
    /// The same as an `ExifOrientation`, and its setter.
    ///@{
    ExifOrientation orientation() const;
    ExifOrientation originalOrientation() const;
    void setOrientation(ExifOrientation orientation) const;
    ///@}
    /// Mirror the image left to right or top to bottom, or turn it a quarter to the left or right,
    /// by changing the orientation value.
    ///@{
    void horizontalFlipOrientation() const;
    void verticalFlipOrientation() const;
    void rotateLeftOrientation() const;
    void rotateRightOrientation() const;
    ///@}

    // --- Position and place across the families
    /// QuickTime first, then EXIF, then XMP; each needs both axes.
    std::optional<Coordinate> gpsCoordinate() const;
    /// EXIF, XMP and QuickTime, each where the format can write that family. One session.
    void setGPSCoordinate(const TypedTagValue<Coordinate>& value) const;
    /// The whole place: EXIF GPS, IPTC text, XMP GPS, XMP text, QuickTime GPS and the QuickTime
    /// location name (the formatted address). One session.
    void setLocation(const TypedTagValue<Location>& value) const;

    /// The first pair of TagName::imageSizePairs() with both numbers.
    std::optional<ImageSize> imageSize() const;

    /// A tag counts as text for the text operations.
    static bool isTextType(TagType type);

private:
    /// Updates or shifts a date tag and its time tag as one moment; false when the edition or the
    /// values don't allow it (then each tag is edited alone).
    bool editDatePair(const DateEdition& edition, const TagItem& dateItem, const TagItem& timeItem) const;

    bool canWriteFamily(const TagStream& stream) const;
    std::optional<ImageSize> imageSize(const TagName& width, const TagName& height) const;
    void sortKeywords(const TagItem& item, bool ascending) const;
};

} // namespace corvane
