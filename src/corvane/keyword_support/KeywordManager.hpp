#pragma once

#include "corvane/helpers/ItemListManager.hpp"
#include "corvane/keyword_support/KeywordItem.hpp"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

class KeywordManager;
/// The list machinery the keyword library is made of.
using KeywordManagerBase =
    ItemListManager<KeywordManager, KeywordItem,
                    std::variant<ItemListEditions::InsertItems, ItemListEditions::RemoveItems,
                                 ItemListEditions::ReloadItems, ItemListEditions::ReloadSelection>>;

/// The user's keyword library: the root keywords and the selected one.
///
/// Kept with the user defaults as "QRVeywords.data" beside the defaults file (see
/// ItemListManager), with its notifications posted as described there. A list or selection
/// counts as changed when it holds other objects, whatever their contents. Changes inside a
/// keyword are posted by the keyword (see KeywordItem). Not locked: the library belongs to the
/// main thread.
///
/// Observers run on the posting thread, for this library the host's main thread. Work the library
/// schedules for that thread waits until the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
class KeywordManager : public KeywordManagerBase {
public:
    /// Posted on every change of the list or the selection, with the edition under
    /// `itemEditionKey`.
    ///@{
    static constexpr std::string_view didChangeItemsNotification = "KeywordManagerDidChangeItemsNotification";
    static constexpr std::string_view itemEditionKey = "ItemEdition";
    ///@}
    /// The key of the user defaults the library is stored under (also as `userDefaultsKey`, the
    /// name the list machinery reads).
    ///@{
    static constexpr std::string_view keywordsUserDefaultsKey = "QRVeywords";
    static constexpr std::string_view userDefaultsKey = keywordsUserDefaultsKey;
    ///@}

    /// The application's library.
    static const std::shared_ptr<KeywordManager>& shared();
    /// An empty library of its own (for tools and tests).
    static std::shared_ptr<KeywordManager> create();

    /// Removes `item` wherever it stands in the forest: the manager informs for a root, the parent
    /// keyword for a descendant.
    virtual void removeItem(const KeywordItemRef& item);
    /// Calls `visit` on every keyword, each root before its descendants.
    virtual void transformItems(const std::function<void(const KeywordItemRef&)>& visit);
    /// The number of all keywords, roots and descendants.
    virtual std::size_t countItemsAndChildren() const;

protected:
    KeywordManager() = default;

private:
    friend KeywordManagerBase;
    static bool sameItems(const std::vector<KeywordItemRef>& a, const std::vector<KeywordItemRef>& b) {
        return a == b;
    }
    static bool sameSelection(const KeywordItemRef& a, const KeywordItemRef& b) { return a == b; }
    /// Throws KeywordFile::DecodingError or JSONNestingError.
    static std::vector<KeywordItemRef> decodeItems(const std::string& bytes, const std::string& source);
    /// Throws KeywordFile::DepthError.
    static std::string encodeItems(const std::vector<KeywordItemRef>& items);
};

/// The shared handle the library lives in.
using KeywordManagerRef = std::shared_ptr<KeywordManager>;

} // namespace corvane
