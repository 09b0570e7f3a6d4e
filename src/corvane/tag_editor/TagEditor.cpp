#include "corvane/tag_editor/TagEditor.hpp"

#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/tag_edition/EditionManager.hpp"

#include <cstdio>

namespace corvane {

TagEditor::TagEditor(TagStorage storage)
    : nonAtomicStorage_(std::move(storage)),
      hashValue_(std::hash<std::filesystem::path::string_type>()(nonAtomicStorage_.source().url().native())) {
}

std::shared_ptr<TagEditor> TagEditor::create(TagStorage storage) {
    return makeShared<TagEditor>(std::move(storage));
}

// --- Reading

EditionManager& TagEditor::manager() const {
    return EditionManager::shared();
}

TagStorage TagEditor::storage() const {
    return readStorage([](const TagStorage& s) { return s; });
}

TagStorageSource TagEditor::source() const {
    return readStorage([](const TagStorage& s) { return s.source(); });
}

std::filesystem::path TagEditor::temporaryURL() const {
    return readStorage([](const TagStorage& s) { return s.temporaryURL(); });
}

std::string TagEditor::pathDescription() const {
    return readStorage([](const TagStorage& s) { return s.pathDescription(); });
}

std::string TagEditor::filename() const {
    return readStorage([](const TagStorage& s) { return s.nameDescription(); });
}

std::optional<MediaType> TagEditor::mediaType() const {
    return readStorage([](const TagStorage& s) { return s.mediaType(); });
}

bool TagEditor::isFolder() const {
    return readStorage([](const TagStorage& s) { return s.isFolder(); });
}

bool TagEditor::isAsset() const {
    return readStorage([](const TagStorage& s) { return s.isAsset(); });
}

bool TagEditor::isEdited() const {
    return readStorage([](const TagStorage& s) { return s.isEdited(); });
}

TagStorage::Streams TagEditor::originalStreams() const {
    return readStorage([](const TagStorage& s) { return s.originalStreams(); });
}

std::vector<TagName> TagEditor::originalTagNames() const {
    return readStorage([](const TagStorage& s) { return s.originalTagNames(); });
}

std::vector<TagName> TagEditor::writtenTagNames() const {
    return readStorage([](const TagStorage& s) { return s.writtenTagNames(); });
}

std::vector<TagName> TagEditor::currentTagNames() const {
    return readStorage([](const TagStorage& s) { return s.currentTagNames(); });
}

TagAccess TagEditor::access(const TagName& tagName) const {
    return readStorage([&](const TagStorage& s) { return s.access(tagName); });
}

bool TagEditor::canReadValue(const TagName& tagName) const {
    return readStorage([&](const TagStorage& s) { return s.canReadValue(tagName); });
}

bool TagEditor::canEditValue(const TagName& tagName) const {
    return readStorage([&](const TagStorage& s) { return s.canEditValue(tagName); });
}

bool TagEditor::isValueEdited(const TagName& tagName) const {
    return readStorage([&](const TagStorage& s) { return s.isValueEdited(tagName); });
}

std::optional<std::string> TagEditor::originalValue(const TagName& tagName) const {
    return readStorage([&](const TagStorage& s) { return s.originalValue(tagName); });
}

std::optional<std::string> TagEditor::writtenValue(const TagName& tagName) const {
    return readStorage([&](const TagStorage& s) { return s.writtenValue(tagName); });
}

std::optional<std::string> TagEditor::currentValue(const TagName& tagName) const {
    return readStorage([&](const TagStorage& s) { return s.currentValue(tagName); });
}

std::string TagEditor::debugDescription() const {
    return readStorage([](const TagStorage& s) { return s.debugDescription(); });
}

void TagEditor::debugPrint() const {
    const std::string text = debugDescription();
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

// --- Frames

void TagEditor::performEdit(const TagName& tagName, const std::function<bool(TagStorage&)>& change) {
    // The session stays balanced also when the storage operation throws.
    EditionManager& editions = manager();
    EditionManager::Session session(editions);
    const bool changed = atomic_.write([&] { return change(nonAtomicStorage_); });
    if (changed) editions.registerTag(shared_from_this(), tagName);
}

void TagEditor::performListEdit(const std::function<std::vector<TagName>(TagStorage&)>& change) {
    EditionManager& editions = manager();
    EditionManager::Session session(editions);
    const std::vector<TagName> names = atomic_.write([&] { return change(nonAtomicStorage_); });
    if (names.empty()) return;
    const std::shared_ptr<TagEditor> self = shared_from_this();
    for (const TagName& name : names)
        editions.registerTag(self, name);
}

// --- Changing

void TagEditor::setValue(const std::optional<std::string>& value, const TagName& tagName) {
    performEdit(tagName, [&](TagStorage& s) { return s.setValue(value, tagName); });
}

void TagEditor::setOriginalValue(const std::optional<std::string>& value, const TagName& tagName) {
    performEdit(tagName, [&](TagStorage& s) { return s.setOriginalValue(value, tagName); });
}

void TagEditor::unsafeSetValue(const std::optional<std::string>& value, const TagName& tagName) {
    performEdit(tagName, [&](TagStorage& s) { return s.unsafeSetValue(value, tagName); });
}

void TagEditor::forceValue(const TagName& tagName) {
    performEdit(tagName, [&](TagStorage& s) {
        if (!s.canEditValue(tagName)) return false;
        // Straight into the written values: the comparison with the original is what this skips.
        return s.unsafeSetValue(s.currentValue(tagName).value_or(std::string()), tagName);
    });
}

void TagEditor::updateSource(const TagStorageSource& source) {
    atomic_.write([&] { nonAtomicStorage_ = nonAtomicStorage_.movedTo(source); });
    NotificationCenter::defaultCenter().post(
        Notification(std::string(didChangeSourceNotification), shared_from_this()));
}

TagStorage TagEditor::flushChanges() {
    std::optional<TagStorage> before;
    performListEdit([&](TagStorage& s) {
        before.emplace(s);
        return s.flushChanges();
    });
    return std::move(*before);
}

void TagEditor::reloadValues(const TagStorage& storage) {
    performListEdit([&](TagStorage& s) { return s.reloadValues(storage); });
}

void TagEditor::cleanStorage(const std::vector<TagStream>& streams) {
    performListEdit([&](TagStorage& s) { return s.cleanStorage(streams); });
}

} // namespace corvane
