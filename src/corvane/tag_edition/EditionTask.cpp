#include "corvane/tag_edition/EditionTask.hpp"

#include "corvane/helpers/ConcurrentPerform.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <utility>

namespace corvane {

namespace {

// Runs `edition` on every editor in parallel; `internProcess()` holds the session around it.
EditionTask::Edition editConcurrently(std::vector<std::shared_ptr<TagEditor>> editors,
                                      EditionTask::EditorEdition edition) {
    return [editors = std::move(editors), edition = std::move(edition)] {
        concurrentPerform(editors.size(), [&](std::size_t i) { edition(editors[i]); });
    };
}

} // namespace

EditionTask::EditionTask(std::optional<std::string> label, Edition edition)
    : label_(std::move(label)), edition_(std::move(edition)) {}

EditionTask::EditionTask(std::vector<std::shared_ptr<TagEditor>> editors, EditorEdition edition)
    : edition_(editConcurrently(std::move(editors), std::move(edition))) {}

std::string EditionTask::title() const {
    return label_ ? *label_ : KitToolbox::localize("UntitledEditionTask");
}

void EditionTask::internProcess() {
    // The session ends also when the block throws, so that the history is still flushed.
    EditionManager::Session session(EditionManager::shared());
    if (edition_) edition_();
}

} // namespace corvane
