#pragma once

#include "corvane/exiftool_wrapper/ETPathFilter.hpp"
#include "corvane/tag_editor/TagEditor.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace corvane {

/// An editor whose values go through ExifTool. It also serves folders, for which it keeps whether
/// writing descends into subfolders and which file types it touches.
///
/// The two folder settings are changed in one exclusive pass, then a notification is posted
/// synchronously on the calling thread, with the editor (as std::shared_ptr<ETTagEditor>) as
/// object. They open no session of the edition manager: they are no tag values.
///
/// Observers run on the posting thread, for this library the host's main thread. Work the library
/// schedules for that thread waits until the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
class ETTagEditor : public TagEditor {
public:
    /// The name's spelling is part of the interface that hosts observe.
    static constexpr std::string_view didChangeRecurseSubfoldersNotification =
        "ETTagEditorDidChangeRecurseSuboldersNotification";
    /// Posted by `setFilePathFilter`, with the editor as object.
    static constexpr std::string_view didChangeFilePathFilterNotification =
        "ETTagEditorDidChangeFilePathFilterNotification";

    /// A new editor holding a copy of `storage`.
    static std::shared_ptr<ETTagEditor> create(TagStorage storage);

    /// The storage's setting; never set reads as false.
    virtual bool recurseSubfolders() const;
    /// Stores the setting (as present) and posts `didChangeRecurseSubfoldersNotification`.
    virtual void setRecurseSubfolders(bool recurse);
    /// Reads, changes and sets again through the two accessors above.
    void modifyRecurseSubfolders(const std::function<void(bool&)>& modify);

    /// The storage's filter of the files a folder write touches; none for every file.
    virtual std::optional<ETPathFilter> filePathFilter() const;
    /// Stores the filter and posts `didChangeFilePathFilterNotification`.
    virtual void setFilePathFilter(std::optional<ETPathFilter> filter);
    /// Reads, changes and sets again through the two accessors above.
    void modifyFilePathFilter(const std::function<void(std::optional<ETPathFilter>&)>& modify);

protected:
    /// An editor holding `storage`; applications call `create`.
    explicit ETTagEditor(TagStorage storage);

    /// The editor as a shared pointer, for the notifications' object.
    std::shared_ptr<ETTagEditor> sharedETEditor();
};

} // namespace corvane
