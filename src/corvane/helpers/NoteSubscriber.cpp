#include "corvane/helpers/NoteSubscriber.hpp"

#include "corvane/helpers/NotificationCenter.hpp"

namespace corvane {

NoteSubscriber& NoteSubscriber::operator=(NoteSubscriber&& other) noexcept {
    if (this != &other) {
        cancel();
        link_ = std::move(other.link_);
    }
    return *this;
}

NoteSubscriber::~NoteSubscriber() {
    cancel();
}

void NoteSubscriber::cancel() {
    if (auto link = std::move(link_)) NotificationCenter::detach(*link);
}

bool NoteSubscriber::isActive() const {
    return link_ && NotificationCenter::isAttached(*link_);
}

} // namespace corvane
