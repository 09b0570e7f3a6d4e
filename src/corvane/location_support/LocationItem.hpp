#pragma once

#include "corvane/value_models/Location.hpp"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

class LocationItem;
/// The shared handle every saved place lives in.
using LocationItemRef = std::shared_ptr<LocationItem>;

/// One of the user's saved places: a name and a `Location`. Lives in a std::shared_ptr made by
/// `create` (it is the sender of its notifications), but two items with the same name and equal
/// locations are equal, whichever objects they are.
///
/// A new name or location posts `didChangeInfoNotification` on the default notification centre,
/// on the calling thread, with the item as sender and no user info; a change that changes nothing
/// posts nothing. Not locked: the library belongs to the main thread.
///
/// Observers run on the calling thread, which for the library is the host's main thread. Work the
/// library schedules for that thread waits on the main queue, which the host drains
/// (`MainQueue::shared().drain()` in a tool, its event loop woken by `MainQueue::setWakeHook` in an
/// application).
class LocationItem : public std::enable_shared_from_this<LocationItem> {
public:
    /// Posted on a new name or location.
    static constexpr std::string_view didChangeInfoNotification = "LocationItemDidChangeInfoNotification";

    /// A saved place; nothing is posted.
    static LocationItemRef create(std::string name, Location location);
    /// Reads {"name", "location"}: both required, the location with its thirteen keys. Throws
    /// nlohmann::json::exception.
    static LocationItemRef fromJSON(const nlohmann::ordered_json& j);
    /// The JSON form `fromJSON` reads.
    nlohmann::ordered_json toJSON() const;

    virtual ~LocationItem() = default;
    LocationItem(const LocationItem&) = delete;
    LocationItem& operator=(const LocationItem&) = delete;

    /// The place's name, and its position and address. Each setter posts
    /// `didChangeInfoNotification` when the value changes; each `modify` applies `change` to a copy
    /// and sets the result.
    ///@{
    const std::string& name() const { return name_; }
    virtual void setName(std::string name);
    template <class F> void modifyName(F&& change) {
        auto name = name_;
        change(name);
        setName(std::move(name));
    }
    const Location& location() const { return location_; }
    virtual void setLocation(Location location);
    template <class F> void modifyLocation(F&& change) {
        auto location = location_;
        change(location);
        setLocation(std::move(location));
    }
    ///@}

    /// Consistent with ==: the name and the position (so equal items hash alike).
    std::size_t hashValue() const;
    /// Same name and equal location.
    friend bool operator==(const LocationItem& a, const LocationItem& b) {
        return a.name_ == b.name_ && a.location_ == b.location_;
    }

protected:
    /// A saved place; applications call `create`.
    LocationItem(std::string name, Location location)
        : name_(std::move(name)), location_(std::move(location)) {}

private:
    void informsDidChangeInfo();

    std::string name_;
    Location location_;
};

/// Whether the lists hold equal items (by value, not identity) in the same order.
bool equalItems(const std::vector<LocationItemRef>& a, const std::vector<LocationItemRef>& b);

} // namespace corvane

template <> struct std::hash<corvane::LocationItem> {
    std::size_t operator()(const corvane::LocationItem& item) const { return item.hashValue(); }
};
