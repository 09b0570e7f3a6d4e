#pragma once

#include "corvane/helpers/IndexSet.hpp"
#include "corvane/helpers/Notification.hpp"

#include <nlohmann/json_fwd.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

struct ThesaurusItem;
class KeywordItem;
/// The shared handle every keyword lives in.
using KeywordItemRef = std::shared_ptr<KeywordItem>;

/// One keyword of the user's keyword tree: a name, two flags, synonyms and child keywords. Equal
/// only to itself; lives in a std::shared_ptr made by `create`.
///
/// Every change that changes something is announced on the default notification centre, on the
/// calling thread, with the item as sender: a new name, flag or synonym list posts
/// `didChangeInfoNotification` (no user info); a change of the children posts
/// `didChangeChildrenNotification` with the `ChildrenEdition` under `childrenEditionKey`, which tells
/// an outline view exactly which rows to insert, remove or reload. Not locked: the library belongs
/// to the main thread.
///
/// Observers run on the calling thread, which for the library is the host's main thread. Work the
/// library schedules for that thread waits on the main queue, which the host drains
/// (`MainQueue::shared().drain()` in a tool, its event loop woken by `MainQueue::setWakeHook` in an
/// application).
class KeywordItem : public std::enable_shared_from_this<KeywordItem> {
public:
    /// Rows inserted: `indexes` are their places in the new list.
    struct InsertChildren {
        IndexSet indexes; ///< rows, in ascending order
        friend bool operator==(const InsertChildren&, const InsertChildren&) = default;
    };
    /// Rows removed: `indexes` were their places in the old list.
    struct RemoveChildren {
        IndexSet indexes; ///< rows, in ascending order
        friend bool operator==(const RemoveChildren&, const RemoveChildren&) = default;
    };
    /// The whole list changed: reload every row.
    struct ReloadChildren {
        friend bool operator==(const ReloadChildren&, const ReloadChildren&) = default;
    };
    /// What a didChangeChildren notification says changed.
    using ChildrenEdition = std::variant<InsertChildren, RemoveChildren, ReloadChildren>;

    /// Posted on a new name, flag or synonym list; on a change of the children, with the edition
    /// under `childrenEditionKey`.
    ///@{
    static constexpr std::string_view didChangeInfoNotification = "KeywordItemDidChangeInfoNotification";
    static constexpr std::string_view didChangeChildrenNotification =
        "KeywordItemDidChangeChildrenNotification";
    static constexpr std::string_view childrenEditionKey = "ChildrenEdition";
    ///@}
    /// The edition carried by a didChangeChildren notification; nothing for any other one.
    static std::optional<ChildrenEdition> childrenEdition(const Notification& note);

    /// A keyword that is neither header nor person, without synonyms or children.
    static KeywordItemRef create(std::string name);
    /// The tree read from a thesaurus text, converted node by node.
    static KeywordItemRef create(const ThesaurusItem& thesaurusItem);
    /// Reads {"name", "is_header", "is_person", "synonyms", "children"}; every key is required and
    /// of its type, or nlohmann::json::exception is thrown.
    static KeywordItemRef fromJSON(const nlohmann::ordered_json& j);
    /// The JSON form `fromJSON` reads, children included.
    nlohmann::ordered_json toJSON() const;

    virtual ~KeywordItem() = default;
    KeywordItem(const KeywordItem&) = delete;
    KeywordItem& operator=(const KeywordItem&) = delete;

    /// The keyword's text, whether it is a header (a group heading) and whether it
    /// names a person, and its synonyms. Each setter posts `didChangeInfoNotification` when the
    /// value changes; each `modify` applies `change` to a copy and sets the result.
    ///@{
    const std::string& name() const { return name_; }
    virtual void setName(std::string name);
    template <class F> void modifyName(F&& change) { setName(modified(name_, change)); }
    bool isHeader() const { return isHeader_; }
    virtual void setIsHeader(bool isHeader);
    template <class F> void modifyIsHeader(F&& change) { setIsHeader(modified(isHeader_, change)); }
    bool isPerson() const { return isPerson_; }
    virtual void setIsPerson(bool isPerson);
    template <class F> void modifyIsPerson(F&& change) { setIsPerson(modified(isPerson_, change)); }
    const std::vector<std::string>& synonyms() const { return synonyms_; }
    virtual void setSynonyms(std::vector<std::string> synonyms);
    template <class F> void modifySynonyms(F&& change) { setSynonyms(modified(synonyms_, change)); }
    ///@}
    /// A change counts when the list holds other objects, whatever their contents; it reloads.
    ///@{
    const std::vector<KeywordItemRef>& children() const { return children_; }
    virtual void setChildren(std::vector<KeywordItemRef> children);
    ///@}
    /// Applies `change` to a copy of the children and sets the result.
    template <class F> void modifyChildren(F&& change) { setChildren(modified(children_, change)); }

    /// Inserts before `index` (at most the count: past the end is a programming error).
    virtual void insertChildren(std::vector<KeywordItemRef> children, std::size_t index);
    /// An empty set does nothing.
    virtual void removeChildren(const IndexSet& indexes);
    /// Whether `item` is a child or any deeper descendant.
    virtual bool hasChild(const KeywordItemRef& item) const;
    /// Removes `item` wherever it stands among the descendants; each parent that loses it informs.
    virtual void removeChild(const KeywordItemRef& item);
    /// Calls `visit` on every descendant, parents before their children (the item itself excluded).
    virtual void transformChildren(const std::function<void(const KeywordItemRef&)>& visit);
    /// The number of all descendants.
    virtual std::size_t countChildren() const;
    /// Posts `didChangeChildrenNotification` with `edition`.
    virtual void informsDidChangeChildren(ChildrenEdition edition);

protected:
    /// A plain keyword; applications call `create`.
    explicit KeywordItem(std::string name) : name_(std::move(name)) {}

private:
    template <class T, class F> static T modified(const T& value, F& change) {
        T copy = value;
        change(copy);
        return copy;
    }
    void informsDidChangeInfo();

    std::string name_;
    bool isHeader_ = false;
    bool isPerson_ = false;
    std::vector<std::string> synonyms_;
    std::vector<KeywordItemRef> children_;
};

} // namespace corvane
