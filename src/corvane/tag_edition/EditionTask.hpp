#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

class TagEditor;

/// A block of editing run as a task on the manager's edition queue. The block runs inside one
/// session of `EditionManager::shared()`, so all its changes reach the views as one flush.
class EditionTask : public AbstractTask {
public:
    /// A change run once; a change run on one editor.
    ///@{
    using Edition = std::function<void()>;
    using EditorEdition = std::function<void(const std::shared_ptr<TagEditor>&)>;
    ///@}

    /// A task can't run without its block.
    EditionTask() = delete;
    /// A task titled `label` (the default title without one) that runs `edition` once.
    EditionTask(std::optional<std::string> label, Edition edition);
    /// No label; `edition` runs once per editor, the editors in parallel.
    EditionTask(std::vector<std::shared_ptr<TagEditor>> editors, EditorEdition edition);

    /// The label given.
    const std::optional<std::string>& label() const { return label_; }

    Priority priority() const override { return Priority::edition; }
    /// The label, or "Untitled Edition".
    std::string title() const override;

protected:
    void internProcess() override;

private:
    const std::optional<std::string> label_;
    const Edition edition_;
};

} // namespace corvane
