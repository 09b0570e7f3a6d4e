#pragma once

#include "corvane/helpers/AtomicPropertyQueue.hpp"

#include <concepts>
#include <cstdio>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// The optional debug log file. No levels: one line per entry. A new log gets
/// a header (date, application facts, library facts) ending with a line of 40
/// dashes and an empty line; a file that already exists is appended to.
/// ExifTool traffic goes in as lines beginning "EXIFTOOL " and a marker
/// ("ARGS", "IN", "OUT", "ERR"), one line of the log per line of traffic.
/// Any thread may log; appends are serialised by `atomic`.
class KitDebugger {
public:
    /// The kinds of ExifTool traffic a log line records.
    enum class Traffic { arguments, input, output, error };

    /// The logger the library writes to; lives as long as the process.
    static KitDebugger& shared();

    KitDebugger() = default;
    ~KitDebugger();
    KitDebugger(const KitDebugger&) = delete;
    KitDebugger& operator=(const KitDebugger&) = delete;

    /// Whether log lines are being written to the file.
    bool isLogEnabled() const;
    /// Opens (or creates) the file and writes the header; by default
    /// "corvane-debug.log" beside the user defaults. False when it can't be opened.
    bool enableLog(std::optional<std::filesystem::path> url = std::nullopt);
    /// Closes the file; later lines are dropped.
    void disableLog();
    /// The file being written; nothing when the log is off.
    std::optional<std::filesystem::path> logFileURL() const;

    /// The text is only computed when the log is on.
    template <std::invocable F> void log(F&& text) {
        if (isLogEnabled()) appendLogFile(std::string(text()), false);
    }
    void log(std::string_view text) { ///< a text already made
        if (isLogEnabled()) appendLogFile(std::string(text), false);
    }
    /// As log(), and to standard output too (even with the log off).
    template <std::invocable F> void print(F&& text) { appendLogFile(std::string(text()), true); }
    void print(std::string_view text) { appendLogFile(std::string(text), true); } ///< a text already made

    /// ExifTool process traffic.
    template <std::invocable F> void logExifTool(Traffic kind, F&& text) {
        if (isLogEnabled()) appendLogFile(kind, std::string(text()));
    }
    void logExifTool(Traffic kind, std::string_view text) { ///< a text already made
        if (isLogEnabled()) appendLogFile(kind, std::string(text));
    }

    /// Facts about the application shown in the header, by key
    /// ("CFBundleName", "CFBundleIdentifier", "CFBundleExecutable",
    /// "CFBundleLongVersionString", "CFBundleShortVersionString"). By default the
    /// name and the path of the running program.
    void setApplicationInfo(std::map<std::string, std::string> info);
    /// The header written at the top of a new log: the application info, the system and the
    /// library's version.
    std::string buildDebugHeader() const;

    /// The line that ends the header.
    static constexpr std::string_view headerEnd = "\n----------------------------------------\n\n";

private:
    void appendLogFile(const std::string& text, bool alsoToStandardOutput);
    void appendLogFile(Traffic kind, const std::string& text);

    mutable AtomicPropertyQueue atomic_;
    bool debugEnabled_ = false;
    std::FILE* debugFileHandle_ = nullptr;
    std::optional<std::filesystem::path> url_;
    std::map<std::string, std::string> applicationInfo_;
};

} // namespace corvane
