#include "corvane/helpers/UndoManager.hpp"

#include <stdexcept>

namespace corvane {

void UndoManager::registerUndo(Action action) {
    std::lock_guard lock(mutex_);
    if (grouping_ > 0 || mode_ != Mode::normal) {
        open_.actions.push_back(std::move(action));
        return;
    }
    undoStack_.push_back(Step{{}, {std::move(action)}});
    redoStack_.clear();
    trim();
}

void UndoManager::setActionName(std::string name) {
    std::lock_guard lock(mutex_);
    if (grouping_ > 0 || mode_ != Mode::normal)
        open_.name = std::move(name);
    else if (!undoStack_.empty())
        undoStack_.back().name = std::move(name);
}

void UndoManager::beginUndoGrouping() {
    std::lock_guard lock(mutex_);
    ++grouping_;
}

void UndoManager::endUndoGrouping() {
    std::lock_guard lock(mutex_);
    if (grouping_ == 0) throw std::logic_error("endUndoGrouping without beginUndoGrouping");
    if (--grouping_ > 0 || mode_ != Mode::normal) return;
    if (!open_.actions.empty()) {
        undoStack_.push_back(std::move(open_));
        redoStack_.clear();
        trim();
    }
    open_ = Step{};
}

int UndoManager::groupingLevel() const {
    std::lock_guard lock(mutex_);
    return grouping_;
}

bool UndoManager::canUndo() const {
    std::lock_guard lock(mutex_);
    return !undoStack_.empty();
}

bool UndoManager::canRedo() const {
    std::lock_guard lock(mutex_);
    return !redoStack_.empty();
}

std::string UndoManager::undoActionName() const {
    std::lock_guard lock(mutex_);
    return undoStack_.empty() ? std::string() : undoStack_.back().name;
}

std::string UndoManager::redoActionName() const {
    std::lock_guard lock(mutex_);
    return redoStack_.empty() ? std::string() : redoStack_.back().name;
}

bool UndoManager::isUndoing() const {
    std::lock_guard lock(mutex_);
    return mode_ == Mode::undoing;
}

bool UndoManager::isRedoing() const {
    std::lock_guard lock(mutex_);
    return mode_ == Mode::redoing;
}

void UndoManager::undo() {
    replay(true);
}
void UndoManager::redo() {
    replay(false);
}

void UndoManager::replay(bool undoing) {
    Step step;
    {
        std::lock_guard lock(mutex_);
        auto& from = undoing ? undoStack_ : redoStack_;
        if (from.empty() || mode_ != Mode::normal || grouping_ > 0) return;
        step = std::move(from.back());
        from.pop_back();
        mode_ = undoing ? Mode::undoing : Mode::redoing;
        open_ = Step{step.name, {}};
    }
    for (auto it = step.actions.rbegin(); it != step.actions.rend(); ++it)
        (*it)();
    std::lock_guard lock(mutex_);
    // What the actions registered while replaying is the opposite step.
    if (!open_.actions.empty()) (undoing ? redoStack_ : undoStack_).push_back(std::move(open_));
    open_ = Step{};
    mode_ = Mode::normal;
    trim();
}

void UndoManager::removeAllActions() {
    std::lock_guard lock(mutex_);
    undoStack_.clear();
    redoStack_.clear();
}

std::size_t UndoManager::levelsOfUndo() const {
    std::lock_guard lock(mutex_);
    return levels_;
}

void UndoManager::setLevelsOfUndo(std::size_t levels) {
    std::lock_guard lock(mutex_);
    levels_ = levels;
    trim();
}

void UndoManager::trim() {
    if (levels_ > 0 && undoStack_.size() > levels_)
        undoStack_.erase(undoStack_.begin(),
                         undoStack_.begin() + static_cast<std::ptrdiff_t>(undoStack_.size() - levels_));
}

} // namespace corvane
