#pragma once

#include "corvane/tag_editor/TagEditor.hpp"

#include <memory>

namespace corvane {

/// An editor whose values go through the image I/O engine: only tags that have a name there exist
/// for its views. `access` says `n` for every other tag; `canReadValue`, `canEditValue` and
/// `originalValue` still answer from the storage, so the engine's own reads and writes pass.
class CGTagEditor : public TagEditor {
public:
    /// A new editor holding a copy of `storage`.
    static std::shared_ptr<CGTagEditor> create(TagStorage storage);

    /// The storage's access for a tag with an image I/O name, `n` otherwise.
    TagAccess access(const TagName& tagName) const override;

protected:
    /// An editor holding `storage`; applications call `create`.
    explicit CGTagEditor(TagStorage storage);
};

} // namespace corvane
