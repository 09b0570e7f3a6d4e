#include "corvane/tag_edition/AbstractTask.hpp"

#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/utilities/FatalError.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <algorithm>

namespace corvane {

namespace {

constexpr std::string_view noErrorsKey = "AbstractTaskNoErrors";

double clampedProgress(double progress) {
    return std::clamp(progress, 0.0, 1.0);
}

} // namespace

std::string AbstractTask::localizedDescription(Status status) {
    switch (status) {
    case Status::pending:
        return KitToolbox::localize("TaskStatusPending");
    case Status::processing:
        return KitToolbox::localize("TaskStatusProcessing");
    case Status::completed:
        return KitToolbox::localize("TaskStatusCompleted");
    case Status::cancelled:
        return KitToolbox::localize("TaskStatusCancelled");
    }
    return {};
}

std::string AbstractTask::errorDescription(const std::exception_ptr& error) {
    if (!error) return {};
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& e) {
        return e.what();
    } catch (...) {
        return "Unknown error";
    }
}

AbstractTask::AbstractTask()
    : creationDate_(Date::now()), engineOption_(KitSettings::shared().engineOption()),
      subprocessQueue_("Corvane.AbstractTask.subprocessQueue", maxConcurrentSubprocesses) {}

AbstractTask::~AbstractTask() = default;

std::string AbstractTask::title() const {
    fatalError("SHOULD BE IMPLEMENTED BY SUBCLASS title");
}

void AbstractTask::internProcess() {
    fatalError("SHOULD BE IMPLEMENTED BY SUBCLASS internProcess()");
}

// --- Guarded state

std::shared_ptr<AbstractTaskDelegate> AbstractTask::delegate() const {
    return atomic_.read([&] { return nonAtomicDelegate_.lock(); });
}

void AbstractTask::setDelegate(std::weak_ptr<AbstractTaskDelegate> delegate) {
    atomic_.write([&] { nonAtomicDelegate_ = std::move(delegate); });
}

std::vector<std::exception_ptr> AbstractTask::errors() const {
    return atomic_.read([&] { return nonAtomicErrors_; });
}

AbstractTask::Status AbstractTask::status() const {
    return atomic_.read([&] { return nonAtomicStatus_; });
}

double AbstractTask::progress() const {
    return atomic_.read([&] { return nonAtomicProgress_; });
}

void AbstractTask::setErrors(std::vector<std::exception_ptr> errors) {
    auto self = sharedSelf();
    atomic_.write([&] {
        nonAtomicErrors_ = std::move(errors);
        AtomicPropertyQueue::mainAsync([self] { self->informsDidUpdateError(); });
    });
}

void AbstractTask::setStatus(Status status) {
    atomic_.write([&] { nonAtomicSetStatus(status); });
}

void AbstractTask::setProgress(double progress) {
    atomic_.write([&] { nonAtomicSetProgress(progress); });
}

void AbstractTask::incrementProgress(double delta) {
    atomic_.write([&] { nonAtomicSetProgress(nonAtomicProgress_ + delta); });
}

void AbstractTask::nonAtomicSetStatus(Status status) {
    nonAtomicStatus_ = status;
    AtomicPropertyQueue::mainAsync([self = sharedSelf()] { self->informsDidUpdateStatus(); });
}

void AbstractTask::nonAtomicSetProgress(double progress) {
    nonAtomicProgress_ = clampedProgress(progress);
    AtomicPropertyQueue::mainAsync([self = sharedSelf()] { self->informsDidProgress(); });
}

std::shared_ptr<AbstractTask> AbstractTask::sharedSelf() {
    auto self = weak_from_this().lock();
    if (!self) fatalError("AbstractTask must be owned by a std::shared_ptr");
    return self;
}

// --- Running

void AbstractTask::perform() {
    // Only the call that moves the task out of `pending` runs it: a task runs at most once, also
    // when `perform()` is called again while it is processing.
    const bool began = atomic_.write([&] {
        const bool wasPending = nonAtomicStatus_ == Status::pending;
        return startProcessing() == Status::processing && wasPending;
    });
    if (!began) return;
    failable([this] { internProcess(); });
    subprocessQueue_.waitUntilAllOperationsAreFinished();
    atomic_.write([&] { return endWithCompletedStatus(); });
}

void AbstractTask::cancel() {
    subprocessQueue_.cancelAllOperations();
    atomic_.write([&] { return endWithCancelledStatus(); });
}

AbstractTask::Status AbstractTask::startProcessing() {
    if (nonAtomicStatus_ == Status::pending) {
        nonAtomicSetStatus(Status::processing);
        nonAtomicSetProgress(0);
    }
    return nonAtomicStatus_;
}

AbstractTask::Status AbstractTask::endWithCancelledStatus() {
    if (nonAtomicStatus_ == Status::pending) nonAtomicSetStatus(Status::cancelled);
    return nonAtomicStatus_;
}

AbstractTask::Status AbstractTask::endWithCompletedStatus() {
    if (nonAtomicStatus_ != Status::completed && nonAtomicStatus_ != Status::cancelled) {
        nonAtomicSetStatus(Status::completed);
        nonAtomicSetProgress(1);
    }
    return nonAtomicStatus_;
}

void AbstractTask::failable(const std::function<void()>& block) {
    try {
        block();
    } catch (...) {
        // Appended in one exclusive pass, so that subprocesses failing at the same moment all
        // keep their error.
        auto error = std::current_exception();
        auto self = sharedSelf();
        atomic_.write([&] {
            nonAtomicErrors_.push_back(std::move(error));
            AtomicPropertyQueue::mainAsync([self] { self->informsDidUpdateError(); });
        });
    }
}

void AbstractTask::addSubprocess(std::function<void()> process) {
    subprocessQueue_.addOperation([this, process = std::move(process)] { failable(process); });
}

// --- Notices, on the main queue

void AbstractTask::informsDidUpdateStatus() {
    auto self = shared_from_this();
    if (auto observer = delegate()) observer->taskDidUpdateStatus(self);
    NotificationCenter::defaultCenter().post(Notification(std::string(didUpdateStatusNotification), self));
}

void AbstractTask::informsDidUpdateError() {
    auto self = shared_from_this();
    if (auto observer = delegate()) observer->taskDidUpdateError(self);
    NotificationCenter::defaultCenter().post(Notification(std::string(didUpdateErrorNotification), self));
}

void AbstractTask::informsDidProgress() {
    auto self = shared_from_this();
    if (auto observer = delegate()) observer->taskDidProgress(self);
    NotificationCenter::defaultCenter().post(Notification(std::string(didProgressNotification), self));
}

// --- Descriptions

std::string AbstractTask::taskDescription() const {
    return title() + " (" + localizedDescription(status()) + ")";
}

std::string AbstractTask::errorsDescription() const {
    const auto count = errors().size();
    // One key for both cases: its plural forms cover the count.
    if (count == 0) return KitToolbox::localize(noErrorsKey);
    return KitToolbox::localize(noErrorsKey, KitToolbox::defaultTable, count);
}

std::string AbstractTask::errorListDescription() const {
    const auto list = errors();
    if (list.empty()) return "- " + KitToolbox::localize(noErrorsKey);
    std::string text;
    for (const auto& error : list) {
        if (!text.empty()) text += '\n';
        text += "- " + errorDescription(error);
    }
    return text;
}

std::string AbstractTask::longDescription() const {
    return taskDescription() + "\n" + errorsDescription();
}

} // namespace corvane
