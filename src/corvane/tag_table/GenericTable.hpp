#pragma once

#include "corvane/helpers/Notification.hpp"
#include "corvane/tag_table/GenericTableContent.hpp"

#include <concepts>
#include <memory>
#include <optional>
#include <string_view>

namespace corvane {

/// What a view binds to: a table whose `content()` it shows, which it asks for a new state with
/// `reload(request)`, and whose will- and did-reload notifications bracket every change of content.
/// The notifications carry under `reloadTypeKey` ("ReloadType") what changed, so that a view
/// redraws no more than it must. `latestRequest()` may be ahead of `content()->request()` while a
/// reload is under way.
///
/// The notifications are posted on the main queue's thread: the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
template <class T>
concept GenericTable = GenericTableContent<typename T::TableContent> &&
    requires(T& table, const typename T::TableContent::TableRequest& request, const Notification& note) {
    typename T::TableReloadType;
    { table.content() } -> std::same_as<std::shared_ptr<const typename T::TableContent>>;
    { table.latestRequest() } -> std::same_as<typename T::TableContent::TableRequest>;
    table.reload(request);
    { T::willReloadNotification } -> std::convertible_to<std::string_view>;
    { T::didReloadNotification } -> std::convertible_to<std::string_view>;
    { T::reloadTypeKey } -> std::convertible_to<std::string_view>;
    { T::reloadType(note) } -> std::same_as<std::optional<typename T::TableReloadType>>;
};

} // namespace corvane
