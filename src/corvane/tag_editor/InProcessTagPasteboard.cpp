#include "corvane/tag_editor/InProcessTagPasteboard.hpp"

namespace corvane {

std::optional<std::string> InProcessTagPasteboard::string() const {
    std::lock_guard lock(mutex_);
    return text_;
}

void InProcessTagPasteboard::setString(const std::string& text) {
    std::lock_guard lock(mutex_);
    text_ = text;
}

void InProcessTagPasteboard::clear() {
    std::lock_guard lock(mutex_);
    text_.reset();
}

} // namespace corvane
