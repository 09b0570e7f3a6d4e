#pragma once

#include "corvane/tag_editor/FamilyAccessor.hpp"

namespace corvane {

/// The EXIF thumbnail (ThumbnailImage with ThumbnailLength) and preview (PreviewImage with
/// PreviewImageLength) of an editor: whether the file has one, now or as read, and their removal
/// or restoration. The length tag tells whether an image is there.
class EmbeddedImageAccessor : public FamilyAccessor {
public:
    using FamilyAccessor::FamilyAccessor;

    /// The length tag has a current / original value above 0.
    ///@{
    bool hasCurrentExifThumbnail() const;
    bool hasOriginalExifThumbnail() const;
    ///@}
    /// The two above differ.
    bool isExifThumbnailEdited() const;
    /// Clear / restore the image tag and the length tag, in one session.
    ///@{
    void clearExifThumbnail() const;
    void restoreExifThumbnail() const;
    ///@}

    /// The same for the EXIF preview image: present now, present in the file, edited, cleared or
    /// restored (image and length tags together, in one session).
    ///@{
    bool hasCurrentExifPreview() const;
    bool hasOriginalExifPreview() const;
    bool isExifPreviewEdited() const;
    void clearExifPreview() const;
    void restoreExifPreview() const;
    ///@}

private:
    static bool isPositive(const DynamicValue& value);
};

} // namespace corvane
