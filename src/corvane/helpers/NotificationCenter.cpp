#include "corvane/helpers/NotificationCenter.hpp"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <thread>
#include <unordered_map>
#include <vector>

namespace corvane {

namespace {

// One registered observer. `active` and `runners` are guarded by `mutex`, so
// that removal can wait for calls running on other threads.
struct Observer {
    std::uint64_t token = 0;
    std::string name;
    const void* sender = nullptr;
    NotificationCenter::Handler handler;

    std::mutex mutex;
    std::condition_variable idle;
    bool active = true;
    std::vector<std::thread::id> runners;

    // Registers the calling thread as running the handler; false once removed.
    bool enter() {
        std::lock_guard lock(mutex);
        if (!active) return false;
        runners.push_back(std::this_thread::get_id());
        return true;
    }

    void leave() {
        {
            std::lock_guard lock(mutex);
            auto it = std::find(runners.begin(), runners.end(), std::this_thread::get_id());
            if (it != runners.end()) runners.erase(it);
        }
        idle.notify_all();
    }

    // Stops further calls and waits for calls on other threads to end. Calls on
    // this thread (a handler removing itself) are not waited for.
    void deactivate() {
        std::unique_lock lock(mutex);
        active = false;
        const auto self = std::this_thread::get_id();
        idle.wait(lock, [&] {
            return std::all_of(runners.begin(), runners.end(), [&](auto id) { return id == self; });
        });
    }
};

using ObserverRef = std::shared_ptr<Observer>;
using ObserverMap = std::map<std::uint64_t, ObserverRef>; // by token: the order of adding

} // namespace

struct NotificationCenter::State {
    mutable std::shared_mutex mutex;
    std::uint64_t nextToken = 1;
    std::unordered_map<std::string, ObserverMap> byName;
    ObserverMap anyName;
    std::size_t count = 0;

    void remove(const Observer& observer) {
        std::unique_lock lock(mutex);
        ObserverMap* map = &anyName;
        if (!observer.name.empty()) {
            auto it = byName.find(observer.name);
            if (it == byName.end()) return;
            map = &it->second;
        }
        if (map->erase(observer.token)) {
            --count;
            if (!observer.name.empty() && map->empty()) byName.erase(observer.name);
        }
    }
};

struct NoteSubscriber::Link {
    std::weak_ptr<NotificationCenter::State> state;
    ObserverRef observer;
};

NotificationCenter::NotificationCenter() : state_(std::make_shared<State>()) {}

NotificationCenter::~NotificationCenter() = default;

NotificationCenter& NotificationCenter::defaultCenter() {
    // Never destroyed, so subscribers held by other singletons stay valid at exit.
    static auto* center = new NotificationCenter();
    return *center;
}

NoteSubscriber NotificationCenter::subscribe(std::string name, const void* sender, Handler handler) {
    auto observer = std::make_shared<Observer>();
    observer->name = std::move(name);
    observer->sender = sender;
    observer->handler = std::move(handler);
    {
        std::unique_lock lock(state_->mutex);
        observer->token = state_->nextToken++;
        auto& map = observer->name.empty() ? state_->anyName : state_->byName[observer->name];
        map.emplace(observer->token, observer);
        ++state_->count;
    }
    return NoteSubscriber(
        std::make_shared<NoteSubscriber::Link>(NoteSubscriber::Link{state_, std::move(observer)}));
}

void NotificationCenter::post(const Notification& note) {
    // Snapshot of the matching observers, in order of adding, taken under the
    // lock; handlers run outside it so that they may subscribe, cancel or post.
    std::vector<ObserverRef> targets;
    {
        std::shared_lock lock(state_->mutex);
        auto matches = [&](const ObserverRef& o) { return !o->sender || o->sender == note.sender(); };
        auto named = state_->byName.find(note.name());
        const ObserverMap* first = named == state_->byName.end() ? nullptr : &named->second;
        const ObserverMap& second = state_->anyName;
        targets.reserve((first ? first->size() : 0) + second.size());
        auto a = first ? first->begin() : second.end();
        auto aEnd = first ? first->end() : second.end();
        auto b = second.begin();
        while (a != aEnd || b != second.end()) {
            const bool takeA = b == second.end() || (a != aEnd && a->first < b->first);
            const ObserverRef& o = takeA ? (a++)->second : (b++)->second;
            if (matches(o)) targets.push_back(o);
        }
    }
    for (const auto& observer : targets) {
        if (!observer->enter()) continue;
        struct Leave {
            Observer& o;
            ~Leave() { o.leave(); }
        } leave{*observer};
        observer->handler(note);
    }
}

std::size_t NotificationCenter::observerCount() const {
    std::shared_lock lock(state_->mutex);
    return state_->count;
}

void NotificationCenter::detach(NoteSubscriber::Link& link) {
    if (auto state = link.state.lock()) state->remove(*link.observer);
    link.observer->deactivate();
}

bool NotificationCenter::isAttached(const NoteSubscriber::Link& link) {
    std::lock_guard lock(link.observer->mutex);
    return link.observer->active && !link.state.expired();
}

} // namespace corvane
