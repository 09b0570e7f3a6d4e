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
    using Action = std::function<void()>;

    void registerUndo(Action action);
    void setActionName(std::string name);

    void beginUndoGrouping();
    void endUndoGrouping();
    int groupingLevel() const;

    bool canUndo() const;
    bool canRedo() const;
    std::string undoActionName() const;
    std::string redoActionName() const;
    bool isUndoing() const;
    bool isRedoing() const;

    void undo();
    void redo();
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
