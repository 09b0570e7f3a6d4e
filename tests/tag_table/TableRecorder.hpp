// Records the will- and did-reload notifications of one table as they reach the main thread, for
// the table tests.

#pragma once

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/helpers/NotificationCenter.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace corvane::test {

template <class Table> class TableRecorder {
public:
    struct Event {
        bool isWill;
        typename Table::ReloadType type;
        bool isReloading; // as the observer saw it
        bool onMainThread;
    };

    explicit TableRecorder(const std::shared_ptr<Table>& table) : table_(table) {
        auto& center = NotificationCenter::defaultCenter();
        for (bool isWill : {true, false})
            subscribers_.push_back(center.subscribe(
                std::string(isWill ? Table::willReloadNotification : Table::didReloadNotification),
                table.get(), [this, isWill](const Notification& note) {
                    auto type = Table::reloadType(note);
                    ASSERT_TRUE(type.has_value()) << "every reload notification carries its type";
                    events_.push_back({isWill, *type, table_->isReloading(), isMainThread()});
                }));
    }

    // Drains the main queue until the table is idle, and hands over the events since the last call.
    std::vector<Event> drain() {
        EXPECT_TRUE(table_->drainUntilIdle(std::chrono::seconds(20)));
        return std::exchange(events_, {});
    }

private:
    std::shared_ptr<Table> table_;
    std::vector<Event> events_; // main thread only
    std::vector<NoteSubscriber> subscribers_;
};

} // namespace corvane::test
