#pragma once

#include "corvane/tag_editor/TagPasteboard.hpp"

#include <mutex>

namespace corvane {

/// A pasteboard that lives in the process: one text, guarded by a mutex. The default of
/// `TagPasteboard::shared()` where no platform pasteboard is set, and the pasteboard of tools and
/// tests.
class InProcessTagPasteboard : public TagPasteboard {
public:
    std::optional<std::string> string() const override;
    void setString(const std::string& text) override;
    /// Empties the pasteboard.
    void clear();

private:
    mutable std::mutex mutex_;
    std::optional<std::string> text_;
};

} // namespace corvane
