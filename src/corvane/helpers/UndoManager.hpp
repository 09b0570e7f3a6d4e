#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace corvane {

/// Undo and redo stacks of actions, kept for the application (the library
/// itself records nothing on it). Actions registered between
/// beginUndoGrouping() and endUndoGrouping() form one undo step; outside a
/// group every registration is a step of its own. An action registered while
/// undoing goes to the redo stack, while redoing to the undo stack. Any new
/// registration outside undo/redo clears the redo stack. Thread-safe; the
/// actions themselves run outside the lock, on the calling thread.
class UndoManager {
public:
    /// An undo or redo action: runs on the thread that calls `undo()` or `redo()`.
    using Action = std::function<void()>;

    /// Registers the action that undoes what the caller just did; it joins the open group, or is a
    /// step of its own.
    void registerUndo(Action action);
    /// The name of the step being built (shown as "Undo NAME").
    void setActionName(std::string name);

    /// Open and close a group: every action registered in between is one step. Groups nest; the
    /// outermost close ends the step.
    ///@{
    void beginUndoGrouping();
    void endUndoGrouping();
    ///@}
    /// The depth of open groups; 0 outside any.
    int groupingLevel() const;

    /// Whether there is a step to undo, to redo; the names of those steps (empty when none).
    ///@{
    bool canUndo() const;
    bool canRedo() const;
    std::string undoActionName() const;
    std::string redoActionName() const;
    ///@}
    /// True while `undo()` runs its actions; while `redo()` runs its actions.
    ///@{
    bool isUndoing() const;
    bool isRedoing() const;
    ///@}

    /// Runs the actions of the last undo step, in reverse order; what they register becomes the
    /// redo step. Does nothing without a step, while undoing or redoing, or inside an open group.
    void undo();
    /// Runs the actions of the last redo step, in reverse order; what they register becomes the
    /// undo step again.
    void redo();
    /// Empties both stacks.
    void removeAllActions();

    /// Number of undo steps kept; 0 keeps all.
    ///@{
    std::size_t levelsOfUndo() const;
    void setLevelsOfUndo(std::size_t levels);
    ///@}

private:
    struct Step {
        std::string name;
        std::vector<Action> actions; ///< undone in reverse order
    };
    enum class Mode { normal, undoing, redoing };

    void replay(bool undoing);
    void trim();

    mutable std::mutex mutex_;
    std::vector<Step> undoStack_;
    std::vector<Step> redoStack_;
    Step open_;
    int grouping_ = 0;
    Mode mode_ = Mode::normal;
    std::size_t levels_ = 0;
};

} // namespace corvane
