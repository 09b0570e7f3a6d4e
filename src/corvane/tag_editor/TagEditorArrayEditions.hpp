#pragma once

#include "corvane/helpers/ConcurrentPerform.hpp"
#include "corvane/preset_support/PresetItemEntry.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_editor/TagEditorEditions.hpp"
#include "corvane/tag_editor/TagPasteboard.hpp"
#include "corvane/tag_value/TagPair.hpp"
#include "corvane/tag_value/TypedTagValue.hpp"
#include "corvane/value_models/Coordinate.hpp"
#include "corvane/value_models/DateEdition.hpp"
#include "corvane/value_models/DateTime.hpp"
#include "corvane/value_models/ExifOrientation.hpp"
#include "corvane/value_models/GPSLocation.hpp"
#include "corvane/value_models/Location.hpp"
#include "corvane/value_models/TextLocation.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace corvane {

/// The editing operations on a selection of editors: what a batch command, a preset or a view
/// applies to several files at once.
///
/// Writers go through `editConcurrently`: one session of the edition manager around the whole
/// batch, the editors changed in parallel (each guards itself; the manager takes registrations from
/// any thread). Family getters gather every editor's answer and give it only when all editors
/// agree; otherwise, or for an empty selection, nothing.
class TagEditorArrayEditions {
public:
    /// The editors the operations apply to, and a change run on one of them.
    ///@{
    using Editors = std::vector<TagEditorRef>;
    using Block = std::function<void(TagEditor&)>;
    ///@}

    /// The operations on `editors`; an empty list makes every getter answer nothing.
    explicit TagEditorArrayEditions(Editors editors) : editors_(std::move(editors)) {}

    /// The editors, in the order given.
    const Editors& editors() const { return editors_; }

    /// Runs `block` once per editor, concurrently, inside one session. The block must not throw.
    void editConcurrently(const Block& block) const;

    /// The answer of `get` when every editor gives the same one (which may be nothing).
    template <class T, class F> std::optional<T> commonValue(F&& get) const {
        if (editors_.empty()) return std::nullopt;
        auto values = parallelMapToSet<std::unordered_set>(
            editors_, [&](const TagEditorRef& editor) -> std::optional<T> { return get(*editor); });
        if (values.size() != 1) return std::nullopt;
        return *values.begin();
    }

    // --- Values on every editor
    /// Each name with its text (nothing restores, the empty text clears).
    void setValues(const std::unordered_map<TagName, std::optional<std::string>>& values) const;
    /// The text (nothing restores, the empty text clears) on every named tag; edits forced so that
    /// the next save writes them; every tag of the families cleared, or restored to its original; a
    /// date edition on the named tags.
    ///@{
    void setValue(const std::optional<std::string>& value, const std::vector<TagName>& tagNames) const;
    void forceValues(const std::vector<TagName>& tagNames) const;
    void clearValues(const std::vector<TagStream>& tagStreams) const;
    void restoreValues(const std::vector<TagStream>& tagStreams) const;
    void applyDateEdition(const DateEdition& edition, const std::vector<TagName>& tagNames) const;
    ///@}
    /// The edition on every date or time tag that each editor holds, outside the file-system family
    /// (whose dates belong to the file, not to its metadata), or only in `tagStreams` when given.
    void applyDateEditionToDateTags(const DateEdition& edition,
                                    const std::vector<TagStream>& tagStreams = {}) const;

    /// A preset's entries on every editor, each editor's changes in order.
    void applyPresetEntries(const std::vector<PresetItemEntry>& entries) const;

    // --- Questions: true if any editor says so
    /// True when any editor has a current, original or written value for one of the names; has the
    /// tag edited; can edit the tag.
    ///@{
    bool haveValues(const std::vector<TagName>& tagNames) const;
    bool haveOriginalValues(const std::vector<TagName>& tagNames) const;
    bool haveWrittenValues(const std::vector<TagName>& tagNames) const;
    bool isValueEdited(const TagName& tagName) const;
    bool canEditValue(const TagName& tagName) const;
    ///@}
    /// The distinct texts over the editors; the second one counts an editor without a value as
    /// the empty text.
    std::set<std::string> originalValues(const TagName& tagName) const;
    /// Like `originalValues`, with an editor without a value counted as the empty text.
    std::set<std::string> currentOrEmptyValues(const TagName& tagName) const;

    // --- Families
    /// The location and coordinate of each family (`gpsCoordinate`: QuickTime first, then EXIF,
    /// then XMP) when every editor agrees, and their setters on every editor. A setter given a
    /// `TypedTagValue` leaves, clears or sets the tags as the value says.
    ///@{
    std::optional<GPSLocation> exifGPSLocation() const;
    std::optional<GPSLocation> xmpGPSLocation() const;
    std::optional<GPSLocation> quicktimeGPSLocation() const;
    std::optional<TextLocation> iptcTextLocation() const;
    std::optional<TextLocation> xmpTextLocation() const;
    std::optional<Coordinate> exifGPSCoordinate() const;
    std::optional<Coordinate> xmpGPSCoordinate() const;
    std::optional<Coordinate> quicktimeGPSCoordinate() const;
    std::optional<Coordinate> gpsCoordinate() const;
    void setExifGPSLocation(const TypedTagValue<GPSLocation>& value) const;
    void setXmpGPSLocation(const TypedTagValue<GPSLocation>& value) const;
    void setQuicktimeGPSLocation(const TypedTagValue<GPSLocation>& value) const;
    void setIptcTextLocation(const TypedTagValue<TextLocation>& value) const;
    void setXmpTextLocation(const TypedTagValue<TextLocation>& value) const;
    void setGPSCoordinate(const TypedTagValue<Coordinate>& value) const;
    ///@}

    /// Each family accessor of one editor, on the selection: a getter answers when all editors
    /// agree, a predicate when any editor says so, a setter or a turn applies to every editor.
    ///@{
    std::optional<Latitude> exifGPSLatitude() const;
    std::optional<Longitude> exifGPSLongitude() const;
    std::optional<Altitude> exifGPSAltitude() const;
    std::optional<double> exifGPSImgDirection() const;
    std::optional<PartialDate> exifGPSDateStamp() const;
    std::optional<PartialTime> exifGPSTimeStamp() const;
    std::optional<DateTime> exifGPSStamp() const;
    std::optional<Date> exifDateTimeOriginal() const;
    std::optional<Date> exifCreateDate() const;
    void setExifGPSLatitude(const TypedTagValue<Latitude>& value) const;
    void setExifGPSLongitude(const TypedTagValue<Longitude>& value) const;
    void setExifGPSAltitude(const TypedTagValue<Altitude>& value) const;
    void setExifGPSImgDirection(const TypedTagValue<double>& value) const;
    void setExifGPSCoordinate(const TypedTagValue<Coordinate>& value) const;
    void setExifGPSCoordinate(const TypedTagValue<GPSLocation>& value) const;
    void setExifGPSDateStamp(const TypedTagValue<PartialDate>& value) const;
    void setExifGPSTimeStamp(const TypedTagValue<PartialTime>& value) const;
    void setExifGPSStamp(const TypedTagValue<DateTime>& value) const;
    bool oneOrMoreExifLocationTagsAreEdited() const;
    bool hasOneOrMoreExifLocationValues() const;
    ///@}

    /// XMP position and place, as for EXIF above; each like the `XMPAccessor` function of the same
    /// name.
    ///@{
    std::optional<Latitude> xmpGPSLatitude() const;
    std::optional<Longitude> xmpGPSLongitude() const;
    std::optional<Altitude> xmpGPSAltitude() const;
    std::optional<DateTime> xmpGPSDateTime() const;
    void setXmpGPSLatitude(const TypedTagValue<Latitude>& value) const;
    void setXmpGPSLongitude(const TypedTagValue<Longitude>& value) const;
    void setXmpGPSAltitude(const TypedTagValue<Altitude>& value) const;
    void setXmpGPSCoordinate(const TypedTagValue<Coordinate>& value) const;
    void setXmpGPSCoordinate(const TypedTagValue<GPSLocation>& value) const;
    void setXmpGPSDateTime(const TypedTagValue<DateTime>& value) const;
    std::optional<std::string> xmpLocationName() const;
    std::optional<std::string> xmpLocationCity() const;
    std::optional<std::string> xmpLocationState() const;
    std::optional<std::string> xmpCountryName() const;
    std::optional<std::string> xmpCountryCode() const;
    void setXmpLocationName(const TypedTagValue<std::string>& value) const;
    void setXMPLocationCity(const TypedTagValue<std::string>& value) const;
    void setXmpLocationState(const TypedTagValue<std::string>& value) const;
    void setXMPCountryName(const TypedTagValue<std::string>& value) const;
    void setXmpCountryCode(const TypedTagValue<std::string>& value) const;
    bool oneOrMoreXmpLocationTagsAreEdited() const;
    bool hasOneOrMoreXmpLocationValues() const;
    ///@}

    /// IPTC place fields, as for EXIF above; each like the `IPTCAccessor` function of the same
    /// name.
    ///@{
    std::optional<std::string> iptcSubLocation() const;
    std::optional<std::string> iptcCity() const;
    std::optional<std::string> iptcProvince_State() const;
    std::optional<std::string> iptcLocationName() const;
    std::optional<std::string> iptcLocationCode() const;
    void setIptcSubLocation(const TypedTagValue<std::string>& value) const;
    void setIptcCity(const TypedTagValue<std::string>& value) const;
    void setIptcProvince_State(const TypedTagValue<std::string>& value) const;
    void setIptcLocationName(const TypedTagValue<std::string>& value) const;
    void setIptcLocationCode(const TypedTagValue<std::string>& value) const;
    bool oneOrMoreIptcLocationTagsAreEdited() const;
    bool hasOneOrMoreIptcLocationValues() const;
    ///@}

    /// QuickTime position and place name, as for EXIF above; each like the `QuickTimeAccessor`
    /// function of the same name.
    ///@{
    void setQuicktimeGPSCoordinate(const TypedTagValue<Coordinate>& value) const;
    void setQuicktimeGPSCoordinate(const TypedTagValue<GPSLocation>& value) const;
    std::optional<std::string> quicktimeLocationName() const;
    void setQuicktimeLocationName(const std::optional<std::string>& value) const;
    void setQuicktimeLocationName(const TypedTagValue<TextLocation>& value) const;
    bool oneOrMoreQuicktimeLocationTagsAreEdited() const;
    bool hasOneOrMoreQuicktimeLocationValues() const;
    ///@}

    /// EXIF and QuickTime orientation: the getters when every editor agrees (value 1 to 8, or the
    /// `ExifOrientation`), the setters and turns on every editor; each like the
    /// `OrientationAccessor` function of the same name.
    ///@{
    std::optional<int> exifOrientationValue() const;
    std::optional<int> originalExifOrientationValue() const;
    std::optional<ExifOrientation> exifOrientation() const;
    std::optional<ExifOrientation> originalExifOrientation() const;
    void setExifOrientationValue(int value) const;
    void setExifOrientation(ExifOrientation orientation) const;
    void horizontalFlipExifOrientation() const;
    void verticalFlipExifOrientation() const;
    void rotateLeftExifOrientation() const;
    void rotateRightExifOrientation() const;
    std::optional<int> quicktimeOrientationValue() const;
    std::optional<int> originalQuicktimeOrientationValue() const;
    std::optional<ExifOrientation> quicktimeOrientation() const;
    std::optional<ExifOrientation> originalQuicktimeOrientation() const;
    void setQuicktimeOrientationValue(int value) const;
    void setQuicktimeOrientation(ExifOrientation orientation) const;
    void horizontalFlipQuicktimeOrientation() const;
    void verticalFlipQuicktimeOrientation() const;
    void rotateLeftQuicktimeOrientation() const;
    void rotateRightQuicktimeOrientation() const;
    ///@}

    /// The EXIF thumbnail and preview image: present now, present in the file, edited (when any
    /// editor says so); cleared or restored on every editor.
    ///@{
    bool hasCurrentExifThumbnail() const;
    bool hasOriginalExifThumbnail() const;
    bool isExifThumbnailEdited() const;
    void clearExifThumbnail() const;
    void restoreExifThumbnail() const;
    bool hasCurrentExifPreview() const;
    bool hasOriginalExifPreview() const;
    bool isExifPreviewEdited() const;
    void clearExifPreview() const;
    void restoreExifPreview() const;
    ///@}

    /// The GPS part from EXIF, else XMP, else QuickTime; the text part from IPTC, else XMP.
    std::optional<Location> location() const;
    /// The GPS part into EXIF, XMP and QuickTime and the text part into IPTC and XMP, on every
    /// editor.
    void setLocation(const TypedTagValue<Location>& value) const;

    // --- Orientation, each editor in the family its file prefers
    /// Value 1 to 8 and the turns, each editor in the family its file prefers (QuickTime
    /// VideoOrientation for movies, EXIF Orientation otherwise).
    ///@{
    void setOrientationValue(int value) const;
    void horizontalFlipOrientation() const;
    void verticalFlipOrientation() const;
    void rotateLeftOrientation() const;
    void rotateRightOrientation() const;
    ///@}

    // --- Copy and paste
    /// The pairs on which all editors agree (a tag without a value counts as the empty text),
    /// handed to the pasteboard and returned.
    std::vector<TagPair> copyTags(const std::vector<TagName>& tagNames,
                                  TagPasteboard& pasteboard = *TagPasteboard::shared()) const;
    /// The same over the catalogue's items of each stream, in order.
    std::vector<TagPair> copyTags(const std::vector<TagStream>& tagStreams,
                                  TagPasteboard& pasteboard = *TagPasteboard::shared()) const;
    /// The pasteboard's pairs whose names are among `tagNames`, through `setValues`.
    void pasteTags(const std::vector<TagName>& tagNames,
                   TagPasteboard& pasteboard = *TagPasteboard::shared()) const;
    /// Every pasteboard pair, normalised by its item's converter; with `clearOther`, the tags each
    /// editor holds in the pairs' families are cleared first.
    void pasteTags(bool clearOther, TagPasteboard& pasteboard = *TagPasteboard::shared()) const;

private:
    bool anyEditor(const std::function<bool(const TagEditor&)>& predicate) const;

    Editors editors_;
};

} // namespace corvane
