#pragma once

#include "corvane/helpers/NoteSubscriber.hpp"
#include "corvane/helpers/NotificationCenter.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {

// The notifications of one name posted on the default centre while it lives, in order.
class NoteRecorder {
public:
    explicit NoteRecorder(std::string_view name)
        : subscriber_(NotificationCenter::defaultCenter().subscribe(
              std::string(name), [this](const Notification& note) { notes.push_back(note); })) {}
    std::vector<Notification> notes;

private:
    NoteSubscriber subscriber_;
};

} // namespace corvane::test
