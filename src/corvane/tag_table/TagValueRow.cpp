#include "corvane/tag_table/TagValueRow.hpp"

#include "corvane/helpers/ConcurrentPerform.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include <algorithm>
#include <set>

namespace corvane {

namespace {

// What a run of editors says about one tag.
struct Reading {
    std::set<std::string> values;
    bool isEdited = false;
    bool canBeEdited = true;

    void read(const TagEditor& editor, const TagName& name) {
        values.insert(editor.currentValue(name).value_or(std::string()));
        if (!isEdited) isEdited = editor.isValueEdited(name);
        if (canBeEdited) canBeEdited = editor.canEditValue(name);
    }
    void merge(Reading& other) {
        values.merge(other.values);
        isEdited = isEdited || other.isEdited;
        canBeEdited = canBeEdited && other.canBeEdited;
    }
};

// Editors per thread below which splitting costs more than it saves.
constexpr std::size_t editorsPerSlice = 512;

Reading readAll(const TagValueRow::Editors& editors, const TagName& name, bool split) {
    const std::size_t slices = split ? std::min<std::size_t>(16, editors.size() / editorsPerSlice) : 0;
    Reading total;
    if (slices < 2) {
        for (const auto& editor : editors)
            total.read(*editor, name);
        return total;
    }
    std::vector<Reading> readings(slices);
    concurrentPerform(slices, [&](std::size_t slice) {
        const std::size_t first = editors.size() * slice / slices,
                          last = editors.size() * (slice + 1) / slices;
        for (std::size_t i = first; i < last; ++i)
            readings[slice].read(*editors[i], name);
    });
    for (auto& reading : readings)
        total.merge(reading);
    return total;
}

} // namespace

TagValueRow::TagValueRow(std::shared_ptr<const Editors> editors, const TagItem& tagItem, bool splitEditors)
    : tagItem_(&tagItem), editors_(std::move(editors)), isSupported_(tagItem.type().isSupported()) {
    Reading reading = readAll(*editors_, tagItem.name(), splitEditors);
    string_ = MultiValuedString(reading.values);
    isEdited_ = reading.isEdited;
    canBeEdited_ = reading.canBeEdited;
}

} // namespace corvane
