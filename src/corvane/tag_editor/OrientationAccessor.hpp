#pragma once

#include "corvane/tag_editor/FamilyAccessor.hpp"
#include "corvane/value_models/ExifOrientation.hpp"

namespace corvane {

/// The orientation kept in one integer tag (EXIF Orientation, QuickTime VideoOrientation): the raw
/// number, the `ExifOrientation` it names, and the four turns. EXIFAccessor and QuickTimeAccessor
/// hand their orientation operations to it; TagEditorEditions picks the family the file prefers.
class OrientationAccessor : public FamilyAccessor {
public:
    /// The orientation held in `item` of the editor; the editor must outlive the view.
    OrientationAccessor(TagEditor& editor, const TagItem& item) : FamilyAccessor(editor), item_(item) {}

    /// The orientation tag.
    const TagItem& item() const { return item_; }

    /// The integer through the converter; 1 when absent or unreadable. Out-of-range numbers stay
    /// as they are ("9" reads 9).
    int orientationValue() const;
    int originalOrientationValue() const; ///< the same for the value read from the file
    /// The case the value names; an out-of-range value gives `horizontal`.
    ExifOrientation orientation() const;
    ExifOrientation originalOrientation() const; ///< the same for the value read from the file

    /// The decimal text of the number, written as given.
    void setOrientationValue(int value) const;
    void setOrientation(ExifOrientation orientation) const; ///< the number of the case
    /// The same, with the number clamped to 1...8 first.
    void setClampedOrientationValue(int value) const;

    /// Mirror left to right, mirror top to bottom, turn a quarter to the left, to the right: the
    /// value becomes the orientation that results.
    ///@{
    void horizontalFlipOrientation() const;
    void verticalFlipOrientation() const;
    void rotateLeftOrientation() const;
    void rotateRightOrientation() const;
    ///@}

    /// The value as an orientation, `horizontal` when out of range.
    static ExifOrientation orientation(int value);

private:
    int valueOf(const DynamicValue& value) const;

    const TagItem& item_;
};

} // namespace corvane
