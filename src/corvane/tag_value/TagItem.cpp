#include "corvane/tag_value/TagItem.hpp"

#include "corvane/converters/ArrayValueConverter.hpp"
#include "corvane/tag_value/TagCatalogue.hpp"
#include "corvane/tag_value/detail/DynamicTagItems.hpp"
#include "corvane/utilities/FatalError.hpp"

#include <array>

namespace corvane {

namespace {

bool isOpenCount(std::optional<int> count) {
    return !count || *count == -1;
}

// Array converters over each type's converter, built once for the two
// separators that catalogue entries use: TagItem::converter() never allocates.
struct ArrayConverters {
    std::array<ValueConverterRef, TagType::caseCount> commaSeparated;
    std::array<ValueConverterRef, TagType::caseCount> blankSeparated;

    ArrayConverters() {
        for (int i = 0; i < TagType::caseCount; ++i) {
            ValueConverterRef element = TagType(static_cast<TagType::Case>(i)).converter();
            commaSeparated[i] = std::make_shared<const ArrayValueConverter>(element, ",");
            blankSeparated[i] = std::make_shared<const ArrayValueConverter>(element, " ");
        }
    }

    static const ArrayConverters& shared() {
        static const ArrayConverters converters;
        return converters;
    }
};

} // namespace

TagItem::TagItem(TagName name, TagType type, std::optional<int> count, bool isWritable, bool isList,
                 std::string displayName, std::vector<Choice> choices, bool hasOpenChoices)
    : name_(std::move(name)), type_(type), count_(count), isWritable_(isWritable), isList_(isList),
      displayName_(std::move(displayName)), choices_(std::move(choices)), hasOpenChoices_(hasOpenChoices) {}

TagItem::Arrangement TagItem::arrangement() const {
    if (isOpenCount(count_)) return Arrangement::dynamicSequence;
    if (*count_ >= 2 && type_.isNumber()) return Arrangement::staticSequence;
    return Arrangement::singleValue;
}

bool TagItem::isInSequence() const {
    return arrangement() != Arrangement::singleValue;
}

bool TagItem::holdsBlankSeparatedNumbers() const {
    // ExifTool prints an open count of numbers ("8 8 8") with blanks, as it does a fixed count;
    // a comma array would read that text as one number.
    if (isList_ || !type_.isNumber()) return false;
    return isOpenCount(count_) || *count_ >= 2;
}

std::string TagItem::valueSeparator() const {
    return isOpenCount(count_) && !holdsBlankSeparatedNumbers() ? ", " : " ";
}

ValueConverterRef TagItem::converter() const {
    if (holdsBlankSeparatedNumbers()) return ArrayConverters::shared().blankSeparated[type_.ordinal()];
    if (isList_ || isOpenCount(count_)) return ArrayConverters::shared().commaSeparated[type_.ordinal()];
    return type_.converter();
}

DynamicValue TagItem::nativeValueFromStringValue(const std::optional<std::string>& value) const {
    return converter()->nativeValueFromStringValue(value);
}

std::optional<std::string> TagItem::stringValueFromNativeValue(const DynamicValue& value) const {
    return converter()->stringValueFromNativeValue(value);
}

const std::vector<const TagItem*>& TagItem::allCases() {
    return TagCatalogue::shared().items();
}

const TagItem* TagItem::find(const TagName& name) {
    return find(name.stream().rawValue(), name.key().rawValue());
}

const TagItem* TagItem::find(std::string_view stream, std::string_view key) {
    if (const TagItem* item = TagCatalogue::shared().find(stream, key)) return item;
    // Names made from a file's content: languages of alternative texts, and names read before.
    return detail::DynamicTagItems::shared().find(stream, key);
}

const TagItem& TagItem::require(std::string_view stream, std::string_view key) {
    const TagItem* item = find(stream, key);
    if (!item) fatalError("Tag catalogue has no entry " + std::string(stream) + ":" + std::string(key));
    return *item;
}

} // namespace corvane
