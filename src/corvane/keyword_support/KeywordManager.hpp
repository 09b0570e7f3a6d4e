#pragma once

#include "corvane/helpers/IndexSet.hpp"
#include "corvane/helpers/Notification.hpp"
#include "corvane/keyword_support/KeywordItem.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

/// The user's keyword library: the root keywords and the selected one.
///
/// Kept with the user defaults (`KitSettings::userDefaults()`): `saveToDefaults` writes the library
/// as a JSON file named after `keywordsUserDefaultsKey` ("QRVeywords.data") beside the defaults
/// file, atomically and readable by its owner only, and only when that file can't be written
/// stores the same text under the key itself. `loadFromDefaults` reads from wherever it finds it.
///
/// Every change that changes something posts `didChangeItemsNotification` on the default
/// notification centre, on the calling thread, with the manager as sender and the `ItemEdition`
/// under `itemEditionKey`. Changes inside a keyword are posted by the keyword (see KeywordItem).
/// Not locked: the library belongs to the main thread.
class KeywordManager : public std::enable_shared_from_this<KeywordManager> {
public:
    struct InsertItems {
        IndexSet indexes;
        friend bool operator==(const InsertItems&, const InsertItems&) = default;
    };
    struct RemoveItems {
        IndexSet indexes;
        friend bool operator==(const RemoveItems&, const RemoveItems&) = default;
    };
    struct ReloadItems {
        friend bool operator==(const ReloadItems&, const ReloadItems&) = default;
    };
    struct ReloadSelection {
        friend bool operator==(const ReloadSelection&, const ReloadSelection&) = default;
    };
    using ItemEdition = std::variant<InsertItems, RemoveItems, ReloadItems, ReloadSelection>;

    static constexpr std::string_view didChangeItemsNotification = "KeywordManagerDidChangeItemsNotification";
    static constexpr std::string_view itemEditionKey = "ItemEdition";
    static constexpr std::string_view keywordsUserDefaultsKey = "QRVeywords";
    /// The edition carried by a didChangeItems notification; nothing for any other one.
    static std::optional<ItemEdition> itemEdition(const Notification& note);

    /// The application's library.
    static const std::shared_ptr<KeywordManager>& shared();
    /// An empty library of its own (for tools and tests).
    static std::shared_ptr<KeywordManager> create();

    virtual ~KeywordManager() = default;
    KeywordManager(const KeywordManager&) = delete;
    KeywordManager& operator=(const KeywordManager&) = delete;

    const std::vector<KeywordItemRef>& items() const { return items_; }
    /// A change counts when the list holds other objects, whatever their contents; it reloads.
    virtual void setItems(std::vector<KeywordItemRef> items);
    template <class F> void modifyItems(F&& change) {
        auto items = items_;
        change(items);
        setItems(std::move(items));
    }
    const KeywordItemRef& selectedItem() const { return selectedItem_; }
    /// Informs with reloadSelection when another object (or none instead of one) is selected.
    virtual void setSelectedItem(KeywordItemRef item);
    template <class F> void modifySelectedItem(F&& change) {
        auto item = selectedItem_;
        change(item);
        setSelectedItem(std::move(item));
    }

    /// Inserts roots before `index` (at most the count: past the end is a programming error).
    virtual void insertItems(std::vector<KeywordItemRef> items, std::size_t index);
    /// An empty set does nothing.
    virtual void removeItems(const IndexSet& indexes);
    /// Removes `item` wherever it stands in the forest: the manager informs for a root, the parent
    /// keyword for a descendant.
    virtual void removeItem(const KeywordItemRef& item);
    /// Calls `visit` on every keyword, each root before its descendants.
    virtual void transformItems(const std::function<void(const KeywordItemRef&)>& visit);
    /// The number of all keywords, roots and descendants.
    virtual std::size_t countItemsAndChildren() const;
    virtual void informsDidChangeItems(ItemEdition edition);

    /// Replaces the items by the stored library when it holds other objects. Nothing stored leaves
    /// them as they are; a stored library that can't be read throws KeywordFile::DecodingError (or
    /// JSONNestingError, or FileError for an unreadable file) and changes nothing.
    virtual void loadFromDefaults();
    /// Stores the items. Throws FileError only when neither the file nor the defaults can
    /// take them.
    virtual void saveToDefaults() const;

protected:
    KeywordManager() = default;

private:
    std::vector<KeywordItemRef> items_;
    KeywordItemRef selectedItem_;
};

using KeywordManagerRef = std::shared_ptr<KeywordManager>;

} // namespace corvane
