#pragma once

#include "corvane/helpers/NoteSubscriber.hpp"
#include "corvane/helpers/NotificationCenter.hpp"

#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace corvane::test {

// The notifications of one name posted on the default centre while it lives, in order.
class NoteRecorder {
public:
    explicit NoteRecorder(std::string_view name)
        : subscriber_(NotificationCenter::defaultCenter().subscribe(
              std::string(name), [this](const Notification& note) { notes.push_back(note); })) {}
    std::vector<Notification> notes;

    // What `read` makes of each note, in order: e.g. the edition each one carries.
    template <class Read> auto each(Read read) const {
        std::vector<std::invoke_result_t<Read, const Notification&>> list;
        for (const auto& note : notes)
            list.push_back(read(note));
        return list;
    }

private:
    NoteSubscriber subscriber_;
};

} // namespace corvane::test
