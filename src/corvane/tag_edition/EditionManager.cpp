#include "corvane/tag_edition/EditionManager.hpp"

#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/utilities/FatalError.hpp"

#include <string>
#include <utility>

namespace corvane {

EditionManager& EditionManager::shared() {
    // Never destroyed: jobs still waiting on the main queue at exit refer to it.
    static EditionManager* manager = new EditionManager();
    return *manager;
}

bool EditionManager::isInSession() const {
    return atomic_.read([&] { return nonAtomicSessionCount_ > 0; });
}

void EditionManager::beginSession() {
    atomic_.write([&] {
        if (++nonAtomicSessionCount_ == 1)
            AtomicPropertyQueue::mainAsync([this] { post(didBeginSessionNotification); });
    });
}

void EditionManager::endSession() {
    atomic_.write([&] {
        if (nonAtomicSessionCount_ == 0)
            fatalError("EditionManager.endSession() called without an open session");
        if (--nonAtomicSessionCount_ > 0) return;
        // Every outermost session ends with one flush, also an empty one, so that a view can
        // rely on it.
        nonAtomicFlush();
        AtomicPropertyQueue::mainAsync([this] { post(didEndSessionNotification); });
    });
}

void EditionManager::registerTag(const std::shared_ptr<TagEditor>& editor, const TagName& tagName) {
    atomic_.write([&] {
        nonAtomicHistory_.registerTag(editor, tagName);
        if (++nonAtomicRegistrationCount_ > registrationLimit) nonAtomicFlush();
    });
}

void EditionManager::nonAtomicFlush() {
    nonAtomicRegistrationCount_ = 0;
    AtomicPropertyQueue::mainAsync(
        [this, history = std::exchange(nonAtomicHistory_, HistoryEdition())]() mutable {
            informsDidFlushHistory(std::move(history));
        });
}

void EditionManager::informsDidFlushHistory(HistoryEdition history) {
    Notification::UserInfo userInfo;
    userInfo.emplace(std::string(historyEditionKey), std::move(history));
    NotificationCenter::defaultCenter().post(Notification(
        std::string(didFlushHistoryNotification), static_cast<const void*>(this), std::move(userInfo)));
}

void EditionManager::post(std::string_view name) {
    NotificationCenter::defaultCenter().post(Notification(std::string(name), static_cast<const void*>(this)));
}

const HistoryEdition* EditionManager::history(const Notification& note) {
    return note.userInfoValue<HistoryEdition>(std::string(historyEditionKey));
}

} // namespace corvane
