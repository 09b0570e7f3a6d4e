#pragma once

#include <any>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace corvane {

/// One notification: a name, the object that sent it, and a user-info map.
///
/// The sender is kept two ways. Its identity (an untyped address) is what
/// observers filter on. When the poster hands a std::shared_ptr<T>, the pointer
/// itself is kept too, so an observer that knows T can get the object back with
/// object<T>(); a notification scheduled for later keeps its sender alive until
/// it has been delivered. A raw pointer gives identity only.
///
/// Identity is the address of the sender as the poster's pointer type; with
/// single inheritance it is the same for base and derived pointers.
///
/// Notifications the library schedules for the main thread are delivered only when the host drains
/// the main queue: `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
class Notification {
public:
    /// Values under text keys, each of any type.
    using UserInfo = std::map<std::string, std::any>;

    /// A notification `name` from `sender` (an identity only, never read) with `userInfo`.
    explicit Notification(std::string name, const void* sender = nullptr, UserInfo userInfo = {})
        : name_(std::move(name)), sender_(sender), userInfo_(std::move(userInfo)) {}

    /// The same with a shared object as sender: the notification keeps it alive, and `object<T>()`
    /// gives it back.
    template <class T>
    Notification(std::string name, std::shared_ptr<T> object, UserInfo userInfo = {})
        : name_(std::move(name)), sender_(static_cast<const void*>(object.get())),
          userInfo_(std::move(userInfo)) {
        if (object) object_ = std::move(object);
    }

    /// The name, the sender's identity, the user info.
    ///@{
    const std::string& name() const { return name_; }
    const void* sender() const { return sender_; }
    const UserInfo& userInfo() const { return userInfo_; }
    ///@}

    /// The sender as std::shared_ptr<T> when it was posted as exactly that type
    /// (or as std::shared_ptr<const T> for a const T); null otherwise.
    template <class T> std::shared_ptr<T> object() const {
        if (auto p = std::any_cast<std::shared_ptr<T>>(&object_)) return *p;
        if constexpr (std::is_const_v<T>) {
            if (auto p = std::any_cast<std::shared_ptr<std::remove_const_t<T>>>(&object_)) return *p;
        }
        return nullptr;
    }

    /// Whether the user info has `key`.
    bool hasUserInfo(const std::string& key) const { return userInfo_.find(key) != userInfo_.end(); }

    /// The user-info value under `key` if it is there and of type T; null otherwise.
    template <class T> const T* userInfoValue(const std::string& key) const {
        auto it = userInfo_.find(key);
        return it == userInfo_.end() ? nullptr : std::any_cast<T>(&it->second);
    }

private:
    std::string name_;
    const void* sender_ = nullptr;
    std::any object_;
    UserInfo userInfo_;
};

} // namespace corvane
