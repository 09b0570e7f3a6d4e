#include "corvane/preset_support/TagEditorPresets.hpp"

#include "corvane/helpers/WhiteSpace.hpp"
#include "corvane/helpers/detail/TextReplacement.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_value/TagValueChecker.hpp"
#include "corvane/tag_value/TypedTagValue.hpp"

namespace corvane {
using detail::TextReplacement;

void TagEditorPresets::storeText(const TagItem& item, const std::string& text, Insertion insertion) const {
    std::string value = text;
    // Joining makes sense for text and numbers (a list, or a fixed count of numbers); any other
    // kind of tag takes the given value as it is.
    const bool joins = isTextType(item.type()) || item.type().isNumber();
    if (insertion != Insertion::replace && joins) {
        const std::string current = currentString(item).value_or(std::string());
        if (text.empty())
            value = current;
        else if (!current.empty())
            value = insertion == Insertion::prepend ? text + item.valueSeparator() + current
                                                    : current + item.valueSeparator() + text;
    }
    // A value the checker accepts is written in its canonical form, so "1/500" reaches an exposure
    // time as the command line writes it. A text that the converter refuses (letters for a number)
    // gives nothing, which restores the tag, as any setter handed nothing does.
    if (auto checked = TagValueChecker::check(item, value); checked.isValid() && !value.empty())
        value = std::move(checked.text);
    editor().setValue(item.stringValueFromNativeValue(DynamicValue(std::move(value))), item.name());
}

void TagEditorPresets::useCustomValue(const TagItem& item, const UseCustomValueSettings& settings) const {
    if (item.type().isDateTimeOrPartial()) {
        if (auto edition = DateEdition::fromDescription(settings.value)) editDate(*edition, item);
        return;
    }
    storeText(item, settings.value, insertionOf(settings.insertion));
}

void TagEditorPresets::copyValue(const TagItem& item, const CopyTagValueSettings& settings) const {
    if (item.type().isDateTimeOrPartial()) {
        copyDate(settings.tagName, item.name());
        return;
    }
    const auto source = settings.formatter == CopyTagValueSettings::Formatter::pretty
                            ? prettyValue(settings.tagName, item.name())
                            : rawValue(settings.tagName, item.name());
    storeText(item, source.value_or(std::string()), insertionOf(settings.insertion));
}

void TagEditorPresets::useCustomAction(const TagItem& item, const UseCustomActionSettings& settings) const {
    using Action = UseCustomActionSettings::Action;
    switch (settings.action) {
    case Action::removeCurrentValue:
        editor().setValue(TagValueClear, item.name());
        break;
    case Action::restoreOriginalValue:
        editor().setValue(TagValueRestore, item.name());
        break;
    case Action::lowercaseText:
        lowercaseText(item);
        break;
    case Action::uppercaseText:
        uppercaseText(item);
        break;
    case Action::capitalizeText:
        capitalizeText(item);
        break;
    case Action::trimWhitespacesText:
        trimWhitespacesText(item);
        break;
    case Action::sortInAscendingOrder:
        ascendingSortKeywords(item);
        break;
    case Action::sortInDescendingOrder:
        descendingSortKeywords(item);
        break;
    }
}

void TagEditorPresets::searchAndReplace(const TagItem& item, const SearchAndReplaceSettings& settings) const {
    if (isUnicodeWhiteSpace(settings.search)) return;
    TextReplacement::Options options = 0;
    if (settings.ignoreCase) options |= TextReplacement::caseInsensitive;
    if (settings.ignoreDiacritic) options |= TextReplacement::diacriticInsensitive;
    if (settings.ignoreWidth) options |= TextReplacement::widthInsensitive;
    if (settings.useRegex) options |= TextReplacement::regularExpression;
    const std::string current = currentString(item).value_or(std::string());
    const std::string replaced =
        TextReplacement::replacingOccurrences(current, settings.search, settings.value, options);
    editor().setValue(item.stringValueFromNativeValue(DynamicValue(replaced)), item.name());
}

void TagEditorPresets::apply(const PresetItemEntry& entry) const {
    const TagItem* item = entry.tagName().item();
    if (!item) return;
    std::visit(
        [&](const auto& settings) {
            using T = std::decay_t<decltype(settings)>;
            if constexpr (std::is_same_v<T, UseCustomActionSettings>)
                useCustomAction(*item, settings);
            else if constexpr (std::is_same_v<T, CopyTagValueSettings>)
                copyValue(*item, settings);
            else if constexpr (std::is_same_v<T, UseCustomValueSettings>)
                useCustomValue(*item, settings);
            else if constexpr (std::is_same_v<T, SearchAndReplaceSettings>)
                searchAndReplace(*item, settings);
            // keep the current value: nothing to do
        },
        entry.edition().value());
}

std::vector<std::string> TagEditorPresets::invalidValues(const std::vector<PresetItemEntry>& entries) {
    std::vector<std::string> found;
    for (const PresetItemEntry& entry : entries) {
        const TagItem* item = entry.tagName().item();
        const auto* custom = entry.edition().getIf<UseCustomValueSettings>();
        if (!item || !custom || item->type().isDateTimeOrPartial()) continue;
        // A prepended or appended text must be a valid value on its own: an element of a list,
        // a number of a sequence.
        if (auto checked = TagValueChecker::check(*item, custom->value); !checked.isValid())
            found.push_back(std::move(checked.error));
    }
    return found;
}

void TagEditorPresets::apply(const std::vector<PresetItemEntry>& entries) const {
    EditionManager::Session session(editor().manager());
    for (const PresetItemEntry& entry : entries)
        apply(entry);
}

} // namespace corvane
