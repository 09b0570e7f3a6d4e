#pragma once

#include "corvane/preset_support/PresetEdition.hpp"
#include "corvane/preset_support/PresetItemEntry.hpp"
#include "corvane/tag_editor/TagEditorEditions.hpp"

#include <string>
#include <vector>

namespace corvane {

/// Presets taking effect on one editor: each edition of a preset entry turned into the editor's
/// ordinary operations, so every change goes through `TagEditor::setValue` and enters the
/// edition history. A view like the family accessors: `TagEditorPresets(*editor).apply(entries)`.
///
/// The editions never fail: an unreadable date, a blank search or a missing source value changes
/// nothing or follows the rules below.
class TagEditorPresets : public TagEditorEditions {
public:
    using TagEditorEditions::copyValue;
    using TagEditorEditions::TagEditorEditions;

    /// Puts the text into the tag. A date or time tag reads it as a date edition ("SHIFT(hh: 2)")
    /// and ignores the insertion; an unreadable edition changes nothing. Otherwise `replace` takes
    /// the text; `prepend` and `append` join it to the current value with the tag's separator
    /// (", " for lists and open counts, one blank for fixed counts) on text and number tags, and
    /// replace on tags of other types. The result goes through the tag's converter to `setValue`.
    void useCustomValue(const TagItem& item, const UseCustomValueSettings& settings) const;
    /// The same with the current value of another tag of the file, as stored (`raw`) or as shown
    /// (`pretty`); a source without a value gives the empty text. A date or time target takes the
    /// source's date through `copyDate`, ignoring formatter and insertion.
    void copyValue(const TagItem& item, const CopyTagValueSettings& settings) const;
    /// Clear, restore, a change of case, trimming, or sorting of a list.
    void useCustomAction(const TagItem& item, const UseCustomActionSettings& settings) const;
    /// Replaces every occurrence of the search in the current value (the empty text when there is
    /// none) and stores the result. A blank search changes nothing.
    void searchAndReplace(const TagItem& item, const SearchAndReplaceSettings& settings) const;

    /// One entry, without a session of its own. A tag the catalogue doesn't know is skipped.
    void apply(const PresetItemEntry& entry) const;
    /// The entries in order, in one session of the edition manager: one batch in the history.
    void apply(const std::vector<PresetItemEntry>& entries) const;

    /// The custom values of the entries that their tags can't hold, one error each naming the tag
    /// and the value (see `TagValueChecker`); dates are date editions and are not checked here. A
    /// caller that refuses such a preset before applying it writes nothing the tags can't hold.
    static std::vector<std::string> invalidValues(const std::vector<PresetItemEntry>& entries);

private:
    enum class Insertion { replace, prepend, append };
    /// The same three cases of either settings type.
    template <class E> static Insertion insertionOf(E insertion) {
        return insertion == E::prepend  ? Insertion::prepend
               : insertion == E::append ? Insertion::append
                                        : Insertion::replace;
    }
    void storeText(const TagItem& item, const std::string& text, Insertion insertion) const;
};

} // namespace corvane
