#pragma once

// Reading what an ExifTool run prints: its progress reports, the markers that end each command, the
// errors and warnings on standard error and in JSON output.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/exiftool_wrapper/detail/ETArgumentFile.hpp"

namespace corvane::detail {

// A random hexadecimal token, for markers that no file's output can imitate.
std::string randomToken();

// The state of one run's two streams while it runs: their text, where each stream stands among the
// run's commands, and each command's progress.
struct ETRunState {
    struct CommandProgress {
        double done = 0;
        double total = 1;
        bool finished = false;
    };
    struct Stream {
        int fd = -1;
        std::string text;
        std::size_t scanned = 0;
        std::size_t command = 0;
        int pendingProgressLines = 0;
        // Window-title progress reports taken out of the text: where they stood, "n/N".
        struct Title {
            std::size_t position;
            long count, total;
        };
        std::vector<Title> titles;
        std::size_t nextTitle = 0;
        // The start of a title report cut by the end of a read.
        std::string carry;

        // Appends what was read, taking out the window-title reports of "-progress:%r":
        // "ESC ] 0 ; n/N BEL", printed without a line break as each file starts.
        void append(std::string_view data);

        // At the end of the stream: a cut title start is text after all.
        void flush();
    };

    std::vector<ETCommand> commands;
    std::vector<CommandProgress> progress;
    std::string token;
    Stream out, err;

    // "{ready-TOKEN-", made once: every output line is tested against it.
    std::string markerPrefix;

    void setToken(std::string text) {
        token = std::move(text);
        markerPrefix = "{ready-" + token + "-";
    }

    std::string marker(std::size_t k) const { return markerPrefix + std::to_string(k) + "}"; }
    // The marker with the command's exit status in it, as "-echo3" expands "${status}".
    std::string statusMarker(std::size_t k) const { return markerPrefix + std::to_string(k) + "-${status}}"; }

    // The streams come from an ExifTool that stays open, which prints "{ready}" after each command.
    bool stayOpen = false;

    // The exit status of the run from the status markers in its output, as ExifTool exits with:
    // the last that isn't 0, else 0; none when the output holds no status marker.
    std::optional<int> exitStatus(std::string_view text) const;

    std::optional<std::size_t> markerIndex(std::string_view line) const {
        const std::string_view prefix = markerPrefix;
        if (line.size() <= prefix.size() + 1 || line.substr(0, prefix.size()) != prefix || line.back() != '}')
            return std::nullopt;
        return std::strtoul(std::string(line.substr(prefix.size())).c_str(), nullptr, 10);
    }

    double fraction() const {
        double done = 0, total = 0;
        for (const auto& p : progress) {
            total += p.total;
            done += p.finished ? p.total : std::min(p.done, p.total);
        }
        return total > 0 ? done / total : 1.0;
    }

    // Reads the complete lines that arrived since the last call; true when the progress moved.
    bool scan(Stream& s);
};

// Splits a stream at the run's markers: one text per command. Text after the last marker (a run
// that was killed) goes with the command under way. Progress reports are dropped when asked, and
// the files they name added to `progressFiles` when given.
std::vector<std::string> splitAtMarkers(const std::string& text, const ETRunState& run, bool dropProgress,
                                        std::vector<std::string>* progressFiles = nullptr);

// Joins the commands' outputs. When each non-empty output is one JSON array, the result is one array
// with their elements in order; otherwise the texts follow each other as they are.
std::string joinOutputs(const std::vector<std::string>& chunks);

// ExifTool prints any value that looks like a number without quotes, so a text such as "1e400" in a
// file comes out as a number no double holds, which JSON parsers refuse. Returns the JSON text with
// every such number quoted (read as the text it is), or nothing when the text holds none.
std::optional<std::string> quoteOutOfRangeNumbers(std::string_view json);

// Takes ExifTool's mark of a minor error or warning ("[minor] " or "[Minor] ") off the front of
// `text`; whether it was there.
bool takeMinorMark(std::string_view& text);

// Finds the errors and warnings that ExifTool puts in JSON output: errors of commands that ignore
// minor errors go to `excused`.
void collectJSONMessages(const std::string& chunk, const ETCommand& command,
                         std::vector<ETFileMessage>& messages, std::vector<ETFileMessage>& excused);

// Parses the standard error of one command: "Error: TEXT - PATH" and "Warning: [minor] TEXT - PATH"
// reports, with the path matched against the command's targets (a path may hold " - " or line breaks);
// progress and summary lines are skipped, anything else is unknown.
void parseErrorText(const std::string& chunk, const ETCommand& command, std::vector<ETFileMessage>& messages,
                    std::vector<std::string>& unknown);

} // namespace corvane::detail
