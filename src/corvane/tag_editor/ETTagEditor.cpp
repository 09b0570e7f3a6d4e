#include "corvane/tag_editor/ETTagEditor.hpp"

#include "corvane/helpers/NotificationCenter.hpp"

namespace corvane {

ETTagEditor::ETTagEditor(TagStorage storage) : TagEditor(std::move(storage)) {}

std::shared_ptr<ETTagEditor> ETTagEditor::create(TagStorage storage) {
    return makeShared<ETTagEditor>(std::move(storage));
}

std::shared_ptr<ETTagEditor> ETTagEditor::sharedETEditor() {
    return std::static_pointer_cast<ETTagEditor>(shared_from_this());
}

bool ETTagEditor::recurseSubfolders() const {
    return readStorage([](const TagStorage& s) { return s.recurseSubfolders().value_or(false); });
}

void ETTagEditor::setRecurseSubfolders(bool recurse) {
    atomic().write([&] { nonAtomicStorage().setRecurseSubfolders(recurse); });
    NotificationCenter::defaultCenter().post(
        Notification(std::string(didChangeRecurseSubfoldersNotification), sharedETEditor()));
}

void ETTagEditor::modifyRecurseSubfolders(const std::function<void(bool&)>& modify) {
    bool value = recurseSubfolders();
    modify(value);
    setRecurseSubfolders(value);
}

std::optional<ETPathFilter> ETTagEditor::filePathFilter() const {
    return readStorage([](const TagStorage& s) { return s.filePathFilter(); });
}

void ETTagEditor::setFilePathFilter(std::optional<ETPathFilter> filter) {
    atomic().write([&] { nonAtomicStorage().setFilePathFilter(std::move(filter)); });
    NotificationCenter::defaultCenter().post(
        Notification(std::string(didChangeFilePathFilterNotification), sharedETEditor()));
}

void ETTagEditor::modifyFilePathFilter(const std::function<void(std::optional<ETPathFilter>&)>& modify) {
    std::optional<ETPathFilter> value = filePathFilter();
    modify(value);
    setFilePathFilter(std::move(value));
}

} // namespace corvane
