#pragma once

#include <memory>
#include <vector>

namespace corvane {

class TagEditor;

// The platform's photo library, as the tasks that write assets need it. An asset's metadata can't
// be written in place: its content is copied to the editor's temporary file, the writers work on
// that file, and the library then imports the result as a new asset and removes the old one.
//
// A host that has a photo library installs its bridge with `setShared` at launch; without one the
// process has no photo library, and every request for it is refused. The calls block their caller
// and are made from tasks, off the main thread.
class PhotoLibrary {
public:
    virtual ~PhotoLibrary() = default;

    // The bridge in use, or nullptr when the process has no photo library (the default).
    static std::shared_ptr<PhotoLibrary> shared();
    // Installs (or, with nullptr, removes) the process-wide bridge.
    static void setShared(std::shared_ptr<PhotoLibrary> library);

    // Whether the process may read and change the library; the platform may ask the user.
    virtual bool requestAuthorization() = 0;

    // Copies the content of each asset editor's source to the editor's temporary URL, so that the
    // writers can work on a file. Editors of plain files are passed over. Throws FileError, naming the
    // asset, when a copy fails.
    virtual void prepareAssetsForUpdate(const std::vector<std::shared_ptr<TagEditor>>& editors);

    // Imports the written temporary file of each asset editor as a new asset, removes the old
    // assets and points each editor at its new asset. Does nothing without asset editors. Throws
    // the platform's error; the old assets stay when the import fails.
    virtual void updateAndReplaceAssets(const std::vector<std::shared_ptr<TagEditor>>& editors) = 0;

    // The asset editors among `editors`, in order.
    static std::vector<std::shared_ptr<TagEditor>>
    assetEditors(const std::vector<std::shared_ptr<TagEditor>>& editors);
};

} // namespace corvane
