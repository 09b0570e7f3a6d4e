#include "corvane/photos_scripting/PhotosAppExporter.hpp"

#include "corvane/photos_scripting/detail/ScriptPerforming.hpp"

namespace corvane {

namespace {

// The script's lines are padded with blanks to 40 columns.
std::string padded(std::string_view line, std::size_t blanks) {
    return std::string(line) + std::string(blanks, ' ') + "\n";
}

} // namespace

std::string PhotosAppExporter::generateScript() const {
    std::string script;
    script += padded("tell application \"Photos\"", 13);
    script += padded("  activate", 30);
    script += padded("end tell", 32);
    script += padded("", 40);
    script += padded("delay " + std::to_string(delay_), 21);
    script += padded("", 40);
    script += padded("tell application \"Photos\"", 13);
    script += "  set filenames to { ";
    for (std::size_t i = 0; i < urls_.size(); ++i) {
        if (i) script += ", ";
        script += "POSIX file " + detail::quotedScriptText(urls_[i].string());
    }
    script += " }   \n";
    script += padded("  import filenames", 22);
    script += padded("end tell", 32);
    return script;
}

} // namespace corvane
