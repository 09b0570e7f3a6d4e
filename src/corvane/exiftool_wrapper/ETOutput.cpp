#include "corvane/exiftool_wrapper/ETOutput.hpp"

namespace corvane {

std::string_view message(ETOutputError error) {
    switch (error) {
    case ETOutputError::executableNotFound:
        return "ExifTool executable not found";
    case ETOutputError::launchFailed:
        return "ExifTool could not be launched";
    case ETOutputError::argumentFileCreationFailed:
        return "ExifTool argument file creation failed";
    case ETOutputError::timedOut:
        return "ExifTool did not finish in time";
    case ETOutputError::cancelled:
        return "ExifTool run was cancelled";
    case ETOutputError::abnormalTermination:
        return "ExifTool terminated abnormally";
    case ETOutputError::exifToolErrors:
        return "ExifTool reported errors";
    case ETOutputError::exifToolFailed:
        return "ExifTool failed";
    }
    return "ExifTool failed";
}

std::string ETFileMessage::description() const {
    std::string out = kind == Kind::error ? "Error: " : "Warning: ";
    if (minor) out += "[minor] ";
    out += text;
    if (path) {
        out += " - ";
        out += path->string();
    }
    return out;
}

ETOutputException::ETOutputException(ETOutputError error, std::vector<ETFileMessage> errors)
    : Error(std::string(message(error))), error_(error), fileErrors_(std::move(errors)) {}

std::string ETOutputException::details() const {
    std::string out = what();
    for (const auto& e : fileErrors_) {
        out += '\n';
        out += e.description();
    }
    return out;
}

std::vector<ETFileMessage> ETOutput::errors() const {
    std::vector<ETFileMessage> out;
    for (const auto& m : messages_)
        if (m.kind == ETFileMessage::Kind::error) out.push_back(m);
    return out;
}

std::vector<ETFileMessage> ETOutput::warnings() const {
    std::vector<ETFileMessage> out;
    for (const auto& m : messages_)
        if (m.kind == ETFileMessage::Kind::warning) out.push_back(m);
    return out;
}

void ETOutput::throwIfErrors() const {
    if (processError_) throw ETOutputException(*processError_, errors());
    auto errs = errors();
    if (!errs.empty()) throw ETOutputException(ETOutputError::exifToolErrors, std::move(errs));
    // A non-zero status without any report: ExifTool stopped for a reason it printed otherwise
    // (1 also flags excused read errors, 2 files that failed an "-if" condition).
    if (exitStatus_ && *exitStatus_ != 0 && excusedErrors_.empty() &&
        (*exitStatus_ > 2 || !unknownLines_.empty()))
        throw ETOutputException(ETOutputError::exifToolFailed, {});
}

std::optional<std::string> ETOutput::joinUnknownErrors() const {
    std::string out;
    if (processError_) out = message(*processError_);
    for (const auto& line : unknownLines_) {
        if (!out.empty()) out += '\n';
        out += line;
    }
    if (out.empty()) return std::nullopt;
    return out;
}

} // namespace corvane
