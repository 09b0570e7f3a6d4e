#pragma once

#include "corvane/helpers/AtomicPropertyQueue.hpp"
#include "corvane/helpers/MainQueue.hpp"
#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/helpers/SingleOperationQueue.hpp"
#include "corvane/tag_set/TagSetManager.hpp"
#include "corvane/tag_table/GenericTable.hpp"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {

/// The machinery shared by the library's tables (`TagValueTable`, `TagSetTable`,
/// `PresetEditionTable`): a request goes in, a content is computed off the main thread, and the new
/// content is swapped in on the main thread between a will-reload and a did-reload notification.
///
/// **The host drains the main queue.** Every notification of a table is posted on the main queue's
/// thread (`MainQueue::shared()`), and a reload waits there for its observers: a GUI application
/// drains the queue from its event loop (see `MainQueue::setWakeHook`), a tool or a test drains it
/// with `MainQueue::shared().runUntil(...)`, as `corvane show` does. Until the main queue is
/// drained, a reload doesn't finish and `content()` stays as it was.
///
/// How it runs:
/// - `reload(request)` may be called from any thread. It stores the request (`latestRequest()`) and
///   adds one operation to the table's `SingleOperationQueue`; it returns at once.
/// - Operations run one at a time, in the order added. Each compares its request with the request
///   of the content then in force (not with the previous request): nothing differs, nothing happens
///   and nothing is posted; only the selection differs, the rows are kept and only the selection
///   (and what depends on it) is computed, with `ReloadType::selection`; otherwise the whole
///   content is rebuilt, with `ReloadType::entries`.
/// - `processCount()` counts the reloads in flight; it is changed on the main thread only, so an
///   observer sees `isReloading()` true in a will-notification and false in the did-notification
///   (unless another reload is under way).
/// - `content()` is readable at any time from any thread: building a content holds no lock.
///
/// Derived tables are made by a static `create`, live in a std::shared_ptr, and give their
/// content's request a `diff(other)` that names the fields that differ (`Field::selection` among
/// them). Operations hold the table only while they run: a table dropped by the application ends
/// when its running operation does.
template <class Derived, class Content, class ReloadType>
class ExtendedGenericTable : public std::enable_shared_from_this<Derived> {
public:
    using TableContent = Content;                        ///< the rows and their selection
    using TableRequest = typename Content::TableRequest; ///< what the table is asked to show
    using TableReloadType = ReloadType;                  ///< what a reload changed
    using ContentRef = std::shared_ptr<const Content>;   ///< a shared, immutable content

    /// The user-info key of the reload type in both notifications.
    static constexpr std::string_view reloadTypeKey = "ReloadType";
    /// The reload type of a will- or did-reload notification; nothing without one.
    static std::optional<ReloadType> reloadType(const Notification& note) {
        if (const auto* type = note.userInfoValue<ReloadType>(std::string(reloadTypeKey))) return *type;
        return std::nullopt;
    }

    ExtendedGenericTable(const ExtendedGenericTable&) = delete;
    ExtendedGenericTable& operator=(const ExtendedGenericTable&) = delete;
    virtual ~ExtendedGenericTable() = default;

    /// The content in force: an immutable snapshot, safe to keep and read on any thread.
    ContentRef content() const {
        return atomic_.read([&] { return nonAtomicContent_; });
    }
    /// The newest request, which the content may not have caught up with yet.
    TableRequest latestRequest() const {
        return atomic_.read([&] { return nonAtomicRequest_; });
    }
    /// Asks for a new state; returns at once, the content follows (see the class comment).
    void reload(TableRequest request) {
        atomic_.write([&] {
            nonAtomicRequest_ = std::move(request);
            addDiffReloadToQueue(nonAtomicRequest_);
        });
        static_cast<Derived*>(this)->didStoreRequest();
    }

    /// Reloads in flight. Changed on the main thread only.
    long processCount() const { return processCount_.load(std::memory_order_acquire); }
    /// A will-notification has been posted, its did-notification not yet.
    bool isReloading() const { return processCount() > 0; }

    /// The guard of the request and the content.
    AtomicPropertyQueue& atomic() const { return atomic_; }
    /// The queue that runs the reloads, one at a time.
    SingleOperationQueue& queue() { return queue_; }

    /// For tools and tests, which have no event loop: drains the main queue on the calling thread
    /// (the main thread) until every reload asked for so far has ended and nothing is left on the
    /// main queue, or until `timeout` has passed. True when the table is idle.
    bool drainUntilIdle(MainQueue::Clock::duration timeout) {
        MainQueue& main = MainQueue::shared();
        return main.runUntil([&] { return queue_.operationCount() == 0 && main.pendingCount() == 0; },
                             timeout);
    }

protected:
    /// Computes the first content on the calling thread; nothing is posted.
    explicit ExtendedGenericTable(TableRequest request)
        : queue_("Corvane.TableQueue"), nonAtomicRequest_(request),
          nonAtomicContent_(std::make_shared<const Content>(request)) {}

    /// Called by `reload` after the request is stored, outside the exclusive pass; tables that
    /// follow their request's objects hook in here.
    void didStoreRequest() {}

    /// Only inside a pass of `atomic()`.
    TableRequest& nonAtomicRequest() { return nonAtomicRequest_; }
    ContentRef& nonAtomicContent() { return nonAtomicContent_; } ///< only inside a pass of `atomic()`

    /// Adds the operation that diffs `request` against the content in force when it runs.
    void addDiffReloadToQueue(TableRequest request) {
        addOperation([request = std::move(request)](Derived& table) { table.diffReload(request); });
    }

    /// Adds the operation that rebuilds the whole content for `request`.
    void addFullReloadToQueue(TableRequest request) {
        addOperation([request = std::move(request)](Derived& table) { table.fullReload(request); });
    }

    /// Adds `body` to the queue; it runs with the table held, or not at all if the table is gone.
    void addOperation(std::function<void(Derived&)> body) {
        queue_.addOperation([weak = this->weak_from_this(), body = std::move(body)] {
            if (auto table = weak.lock()) body(*table);
        });
    }

    /// The handler of `TagSetManager::didEditSetsNotification` for tables whose request has a
    /// domain: an edit of that domain's set rebuilds the whole content, for the stored request with
    /// its selection cleared. The cleared copy isn't stored, so `latestRequest()` keeps the old
    /// selection.
    void reloadForEditedTagSet(const Notification& note) {
        const auto domain = TagSetManager::domain(note);
        atomic_.write([&] {
            if (!domain || *domain != nonAtomicRequest_.domain()) return;
            TableRequest request = nonAtomicRequest_;
            request.selection = IndexSet();
            addFullReloadToQueue(std::move(request));
        });
    }

    /// On the main thread: one more reload in flight, then the will-notification.
    void beginReload(const ReloadType& type) {
        safeSyncInMain([&] {
            processCount_.fetch_add(1, std::memory_order_acq_rel);
            informsWillReload(type);
        });
    }

    /// On the main thread: the content stored, one reload less, then the did-notification.
    void endReload(ContentRef content, const ReloadType& type) {
        safeSyncInMain([&] {
            atomic_.write([&] { nonAtomicContent_ = std::move(content); });
            processCount_.fetch_sub(1, std::memory_order_acq_rel);
            informsDidReload(type);
        });
    }

    /// Posts the will-reload notification with the reload type; on the main thread.
    void informsWillReload(const ReloadType& type) { post(Derived::willReloadNotification, type); }
    /// Posts the did-reload notification with the reload type; on the main thread.
    void informsDidReload(const ReloadType& type) { post(Derived::didReloadNotification, type); }

private:
    void diffReload(const TableRequest& request) {
        const ContentRef current = content();
        const auto fields = request.diff(current->request());
        if (fields.empty()) return;
        if (fields == std::set{TableRequest::Field::selection}) {
            beginReload(ReloadType::selection);
            endReload(std::make_shared<const Content>(current->reselected(request)), ReloadType::selection);
            return;
        }
        fullReload(request);
    }

    void fullReload(const TableRequest& request) {
        beginReload(ReloadType::entries);
        endReload(std::make_shared<const Content>(request), ReloadType::entries);
    }

    void post(std::string_view name, const ReloadType& type) {
        NotificationCenter::defaultCenter().post(
            Notification(std::string(name), this->shared_from_this(), {{std::string(reloadTypeKey), type}}));
    }

    mutable AtomicPropertyQueue atomic_;
    SingleOperationQueue queue_;
    TableRequest nonAtomicRequest_;
    ContentRef nonAtomicContent_;
    std::atomic<long> processCount_{0};
};

} // namespace corvane
