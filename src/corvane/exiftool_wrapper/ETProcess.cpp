#include "corvane/exiftool_wrapper/ETProcess.hpp"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <poll.h>
#include <random>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <unordered_set>

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/utilities/KitDebugger.hpp"

extern char** environ;

namespace corvane {
namespace {

using Clock = std::chrono::steady_clock;

std::mutex executableMutex;
std::filesystem::path executable = "exiftool";

// ---- Arguments -------------------------------------------------------------------------------

// How one argument reaches ExifTool.
enum class Encoding { plainLine, cStringLine, argumentVector };

bool isWordChar(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// ExifTool trims plain argfile lines: leading white space goes, and in "-TAG = value" the blanks
// around the operator and one blank after it go. Such arguments must not be written as plain lines.
bool survivesPlainLine(std::string_view arg) {
    if (arg.empty() || arg.front() == '#' || arg.find_first_of("\r\n") != std::string_view::npos)
        return false;
    const unsigned char first = static_cast<unsigned char>(arg.front());
    if (first == ' ' || first == '\t' || first == '\v' || first == '\f') return false;
    if (arg.front() != '-') return true;
    std::size_t i = 1;
    while (i < arg.size() && (isWordChar(arg[i]) || arg[i] == '-' || arg[i] == ':'))
        ++i;
    if (i == 1) return true;
    if (i < arg.size() && arg[i] == '#') ++i;
    if (i < arg.size() && std::strchr(" \t\v\f", arg[i])) return false;
    if (i < arg.size() && std::strchr("+-<", arg[i]) && i + 1 < arg.size() && arg[i + 1] == '=') ++i;
    if (i < arg.size() && arg[i] == '=') return !(i + 1 < arg.size() && arg[i + 1] == ' ');
    return true;
}

Encoding encodingOf(std::string_view arg) {
    if (survivesPlainLine(arg)) return Encoding::plainLine;
    // ExifTool escapes "$" and "@" in C-string lines and doesn't undo it.
    if (arg.find_first_of("$@") == std::string_view::npos) return Encoding::cStringLine;
    return Encoding::argumentVector;
}

std::string cStringLine(std::string_view arg) {
    std::string line = "#[CSTR]";
    line.reserve(line.size() + arg.size() + 8);
    for (char c : arg) {
        switch (c) {
        case '\\':
            line += "\\\\";
            break;
        case '"':
            line += "\\\"";
            break;
        case '\n':
            line += "\\n";
            break;
        case '\r':
            line += "\\r";
            break;
        case '\t':
            line += "\\t";
            break;
        default:
            line += c;
        }
    }
    return line;
}

// The text that names a target: relative paths that begin like an option get "./" in front
// (ExifTool also reads U+2212 MINUS SIGN as a dash).
std::string targetText(const std::filesystem::path& url) {
    std::string text = url.string();
    if (text.empty() || url.is_absolute()) return text;
    if (text.front() == '-' || text.rfind("\xE2\x88\x92", 0) == 0) return "./" + text;
    return text;
}

// ---- Commands --------------------------------------------------------------------------------

struct Command {
    std::vector<std::string> arguments;
    std::vector<std::string> targets;
    std::vector<std::string> folderTargets;
    bool ignoreMinorErrors = false;
    // Later groups with the same arguments may add their targets to this command.
    bool joinable = false;
};

// Whether the arguments import tag values from a file ("-json=FILE", "-csv=FILE"). ExifTool reads such
// a file once per command and applies to each target the record whose SourceFile names it (plus a
// "*" record, if any), so the outcome for a target doesn't depend on the other targets of the
// command: groups that import from the same file with the same options can share one command even
// when they are meant to run alone. Run apart, each group would read the whole file again.
bool importsRecordsPerTarget(const std::vector<std::string>& arguments) {
    return std::any_of(arguments.begin(), arguments.end(), [](const std::string& argument) {
        return argument.starts_with("-json=") || argument.starts_with("-csv=");
    });
}

std::vector<Command> planCommands(const ETInput& input) {
    std::vector<Command> commands;
    for (const auto& group : input.groups()) {
        auto args = group.commandArguments();
        const bool joinable = group.url && (!group.soloRun || importsRecordsPerTarget(args));
        const bool joins = joinable && !commands.empty() && commands.back().joinable &&
                           commands.back().ignoreMinorErrors == group.ignoreMinorErrors &&
                           commands.back().arguments == args;
        if (!joins) {
            Command command;
            command.arguments = std::move(args);
            command.ignoreMinorErrors = group.ignoreMinorErrors;
            command.joinable = joinable;
            commands.push_back(std::move(command));
        }
        if (group.url) {
            auto text = targetText(*group.url);
            if (pathExtension(*group.url).empty()) commands.back().folderTargets.push_back(text);
            commands.back().targets.push_back(std::move(text));
        }
    }
    return commands;
}

std::string randomToken() {
    std::random_device device;
    std::uniform_int_distribution<unsigned long long> dist;
    char buf[32];
    std::snprintf(buf, sizeof buf, "%016llx", dist(device));
    return buf;
}

// ---- Lines -----------------------------------------------------------------------------------

constexpr std::string_view progressPrefix = "======== ";
// A path with line breaks spreads a progress line over several lines; at most this many.
constexpr int maxProgressLines = 64;

// " [n/N]" at the end of a line.
std::optional<std::pair<long, long>> progressSuffix(std::string_view line) {
    if (line.size() < 6 || line.back() != ']') return std::nullopt;
    std::size_t i = line.size() - 1;
    auto digitsBack = [&](std::size_t end) {
        std::size_t j = end;
        while (j > 0 && line[j - 1] >= '0' && line[j - 1] <= '9')
            --j;
        return j;
    };
    const std::size_t totalStart = digitsBack(i);
    if (totalStart == i || totalStart == 0 || line[totalStart - 1] != '/') return std::nullopt;
    const std::size_t countStart = digitsBack(totalStart - 1);
    if (countStart == totalStart - 1 || countStart < 2 || line[countStart - 1] != '[' ||
        line[countStart - 2] != ' ')
        return std::nullopt;
    const long count =
        std::strtol(std::string(line.substr(countStart, totalStart - 1 - countStart)).c_str(), nullptr, 10);
    const long total = std::strtol(std::string(line.substr(totalStart, i - totalStart)).c_str(), nullptr, 10);
    return std::make_pair(count, total);
}

std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        const auto nl = text.find('\n', start);
        if (nl == std::string_view::npos) {
            lines.push_back(text.substr(start));
            break;
        }
        lines.push_back(text.substr(start, nl - start));
        start = nl + 1;
    }
    return lines;
}

constexpr std::string_view titleStart = "\x1b]0;";

// "n/N" of a window-title report.
std::optional<std::pair<long, long>> titleCounts(std::string_view title) {
    const auto slash = title.find('/');
    if (slash == std::string_view::npos || slash == 0 || slash + 1 >= title.size()) return std::nullopt;
    auto number = [](std::string_view digits) -> std::optional<long> {
        if (digits.size() > 18) return std::nullopt;
        long value = 0;
        for (char c : digits) {
            if (c < '0' || c > '9') return std::nullopt;
            value = value * 10 + (c - '0');
        }
        return value;
    };
    const auto count = number(title.substr(0, slash));
    const auto total = number(title.substr(slash + 1));
    if (!count || !total) return std::nullopt;
    return std::make_pair(*count, *total);
}

// Number of lines, from `index`, that form one progress report; 0 when the line doesn't start one.
std::size_t progressLineSpan(const std::vector<std::string_view>& lines, std::size_t index) {
    if (lines[index].substr(0, progressPrefix.size()) != progressPrefix) return 0;
    for (std::size_t j = index; j < lines.size() && j < index + maxProgressLines; ++j)
        if (progressSuffix(lines[j])) return j - index + 1;
    return 0;
}

bool isSummaryLine(std::string_view line) {
    // "    2 image files read", "    1 files weren't updated due to errors"...
    std::size_t i = 0;
    while (i < line.size() && line[i] == ' ')
        ++i;
    return i > 0 && i < line.size() && line[i] >= '0' && line[i] <= '9';
}

bool isBlank(std::string_view s) {
    return s.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::string_view trimmed(std::string_view s) {
    const auto b = s.find_first_not_of(" \t\r\n");
    if (b == std::string_view::npos) return {};
    const auto e = s.find_last_not_of(" \t\r\n");
    return s.substr(b, e - b + 1);
}

// ---- One run ---------------------------------------------------------------------------------

struct RunState {
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
        void append(std::string_view data) {
            std::string joined;
            if (!carry.empty()) {
                joined = std::move(carry) + std::string(data);
                carry.clear();
                data = joined;
            }
            constexpr std::string_view start = titleStart;
            std::size_t i = 0;
            while (i < data.size()) {
                const auto q = data.find('\x1b', i);
                if (q == std::string_view::npos) {
                    text.append(data.substr(i));
                    return;
                }
                text.append(data.substr(i, q - i));
                const auto rest = data.substr(q);
                if (rest.size() < start.size() && start.starts_with(rest)) {
                    carry = std::string(rest);
                    return;
                }
                if (!rest.starts_with(start)) {
                    text.push_back('\x1b');
                    i = q + 1;
                    continue;
                }
                const auto end = rest.find('\x07', start.size());
                if (end == std::string_view::npos) {
                    // A title is short; anything longer isn't one.
                    if (rest.size() < 256) {
                        carry = std::string(rest);
                        return;
                    }
                    text.push_back('\x1b');
                    i = q + 1;
                    continue;
                }
                if (auto counts = titleCounts(rest.substr(start.size(), end - start.size())))
                    titles.push_back({text.size(), counts->first, counts->second});
                i = q + end + 1;
            }
        }

        // At the end of the stream: a cut title start is text after all.
        void flush() {
            text.append(carry);
            carry.clear();
        }
    };

    std::vector<Command> commands;
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
    bool scan(Stream& s) {
        bool moved = false;
        for (;;) {
            const auto nl = s.text.find('\n', s.scanned);
            // Title reports up to the end of the next line belong to the command under way: a
            // marker line moves on to the next command only after its line break.
            while (s.nextTitle < s.titles.size() &&
                   (nl == std::string::npos || s.titles[s.nextTitle].position <= nl)) {
                const auto& title = s.titles[s.nextTitle++];
                if (s.command < progress.size()) {
                    auto& p = progress[s.command];
                    p.total = std::max<double>(static_cast<double>(title.total), 1);
                    p.done = static_cast<double>(title.count - 1);
                    moved = true;
                }
            }
            if (nl == std::string::npos) break;
            const std::string_view line(s.text.data() + s.scanned, nl - s.scanned);
            s.scanned = nl + 1;
            if (auto k = markerIndex(line)) {
                if (*k < progress.size()) progress[*k].finished = true;
                s.command = *k + 1;
                s.pendingProgressLines = 0;
                moved = true;
                continue;
            }
            const bool starts = line.substr(0, progressPrefix.size()) == progressPrefix;
            if (starts) s.pendingProgressLines = maxProgressLines;
            if (s.pendingProgressLines <= 0) continue;
            --s.pendingProgressLines;
            if (auto counts = progressSuffix(line); counts && s.command < progress.size()) {
                auto& p = progress[s.command];
                p.total = std::max<double>(static_cast<double>(counts->second), 1);
                p.done = static_cast<double>(counts->first - 1);
                s.pendingProgressLines = 0;
                moved = true;
            }
        }
        return moved;
    }
};

// Splits a stream at the run's markers: one text per command. Text after the last marker (a run
// that was killed) goes with the command under way. Progress reports are dropped when asked.
std::vector<std::string> splitAtMarkers(const std::string& text, const RunState& run, bool dropProgress) {
    std::vector<std::string> chunks(std::max<std::size_t>(run.commands.size(), 1));
    const auto lines = splitLines(text);
    std::size_t command = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (auto k = run.markerIndex(lines[i])) {
            command = std::min(*k + 1, chunks.size() - 1);
            continue;
        }
        if (dropProgress) {
            if (auto span = progressLineSpan(lines, i)) {
                i += span - 1;
                continue;
            }
        }
        auto& chunk = chunks[std::min(command, chunks.size() - 1)];
        chunk.append(lines[i]);
        // The last line keeps its missing line feed missing.
        if (i + 1 < lines.size() || (!text.empty() && text.back() == '\n')) chunk.push_back('\n');
    }
    return chunks;
}

// Joins the commands' outputs. When each non-empty output is one JSON array, the result is one array
// with their elements in order; otherwise the texts follow each other as they are.
std::string joinOutputs(const std::vector<std::string>& chunks) {
    std::size_t nonEmpty = 0;
    bool allArrays = true;
    for (const auto& c : chunks) {
        const auto t = trimmed(c);
        if (t.empty()) continue;
        ++nonEmpty;
        if (t.front() != '[' || t.back() != ']') allArrays = false;
    }
    std::string out;
    if (nonEmpty <= 1 || !allArrays) {
        for (const auto& c : chunks)
            out += c;
        return out;
    }
    out = "[";
    bool first = true;
    for (const auto& c : chunks) {
        auto t = trimmed(c);
        if (t.empty()) continue;
        const auto inner = trimmed(t.substr(1, t.size() - 2));
        if (inner.empty()) continue;
        if (!first) out += ",\n";
        out.append(inner);
        first = false;
    }
    out += "]\n";
    return out;
}

// Finds the errors and warnings that ExifTool puts in JSON output (read failures go there rather than
// to standard error): a top-level "Error"/"Warning", "ExifTool:Error" with "-G", or an entry of the
// ExifTool group with "-g". Streams through the output without building a document: most files
// carry a warning, so the whole output is read, and a tree of it would cost as much as the storage
// decoding itself. Reports come per record in the order of their keys, a repeated key keeping its
// last value; output that isn't one valid JSON array reports nothing.
class JSONMessageCollector {
public:
    using json = nlohmann::json;

    struct Report {
        ETFileMessage::Kind kind;
        std::string text;
        std::optional<std::filesystem::path> path;
    };

    std::vector<Report> takeReports() { return std::move(reports_); }

    bool null() { return scalar(json(nullptr)); }
    bool boolean(bool value) { return scalar(json(value)); }
    bool number_integer(json::number_integer_t value) { return scalar(json(value)); }
    bool number_unsigned(json::number_unsigned_t value) { return scalar(json(value)); }
    bool number_float(json::number_float_t value, const json::string_t&) { return scalar(json(value)); }
    bool binary(json::binary_t&) { return scalar(json()); }
    bool string(json::string_t& value) {
        if (capture_.empty() && depth_ == 2 && key_ == "SourceFile") sourceFile_ = value;
        return scalar(json(std::move(value)));
    }

    bool start_object(std::size_t) { return open(json::object()); }
    bool start_array(std::size_t) { return open(json::array()); }
    bool end_object() { return close(); }
    bool end_array() { return close(); }

    bool key(json::string_t& key) {
        if (!capture_.empty()) {
            captureKey_ = key;
            return true;
        }
        if (depth_ == 2)
            key_ = key;
        else if (depth_ == 3)
            innerKey_ = key;
        return true;
    }

    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) { return false; }

private:
    // Whether the value about to come is a report, and of which kind.
    std::optional<ETFileMessage::Kind> reportKind() const {
        if (skipRecord_) return std::nullopt;
        if (depth_ == 2) {
            if (key_ == "Error" || key_ == "ExifTool:Error") return ETFileMessage::Kind::error;
            if (key_ == "Warning" || key_ == "ExifTool:Warning") return ETFileMessage::Kind::warning;
        } else if (depth_ == 3 && inExifToolGroup_) {
            if (innerKey_ == "Error") return ETFileMessage::Kind::error;
            if (innerKey_ == "Warning") return ETFileMessage::Kind::warning;
        }
        return std::nullopt;
    }

    void store(json value) {
        const auto kind = *reportKind();
        std::string text = value.is_string() ? value.get<std::string>() : value.dump();
        pending_.insert_or_assign(std::make_pair(key_, depth_ == 3 ? innerKey_ : std::string()),
                                  Report{kind, std::move(text), std::nullopt});
    }

    bool scalar(json value) {
        if (!capture_.empty()) {
            insertCaptured(std::move(value));
            return true;
        }
        if (depth_ == 0) return true;
        if (reportKind()) store(std::move(value));
        return true;
    }

    bool open(json container) {
        if (!capture_.empty()) {
            capture_.push_back(std::move(container));
            return true;
        }
        // A structured report value is kept whole, as its text is its JSON.
        if (reportKind()) {
            capture_.push_back(std::move(container));
            return true;
        }
        ++depth_;
        if (depth_ == 2) {
            if (!container.is_object()) {
                skipRecord_ = true;
            } else {
                skipRecord_ = false;
                pending_.clear();
                sourceFile_.reset();
                key_.clear();
            }
        } else if (depth_ == 3) {
            inExifToolGroup_ = container.is_object() && key_.rfind("ExifTool", 0) == 0;
            innerKey_.clear();
        }
        return true;
    }

    bool close() {
        if (!capture_.empty()) {
            json done = std::move(capture_.back());
            capture_.pop_back();
            if (!capture_.empty())
                insertCaptured(std::move(done));
            else
                store(std::move(done));
            return true;
        }
        if (depth_ == 2 && !skipRecord_) {
            for (auto& [keys, report] : pending_) {
                report.path = sourceFile_;
                reports_.push_back(std::move(report));
            }
            pending_.clear();
        }
        if (depth_ == 3) inExifToolGroup_ = false;
        --depth_;
        return true;
    }

    void insertCaptured(json value) {
        auto& container = capture_.back();
        if (container.is_object())
            container[captureKey_] = std::move(value);
        else
            container.push_back(std::move(value));
    }

    int depth_ = 0;
    bool skipRecord_ = false;
    bool inExifToolGroup_ = false;
    std::string key_, innerKey_, captureKey_;
    std::vector<json> capture_;
    std::optional<std::filesystem::path> sourceFile_;
    std::map<std::pair<std::string, std::string>, Report> pending_;
    std::vector<Report> reports_;
};

void collectJSONMessages(const std::string& chunk, const Command& command,
                         std::vector<ETFileMessage>& messages, std::vector<ETFileMessage>& excused) {
    if (chunk.find("\"Error\"") == std::string::npos && chunk.find("\"Warning\"") == std::string::npos &&
        chunk.find(":Error\"") == std::string::npos && chunk.find(":Warning\"") == std::string::npos)
        return;
    const auto t = trimmed(chunk);
    if (t.empty() || t.front() != '[') return;
    JSONMessageCollector collector;
    if (!nlohmann::json::sax_parse(t, &collector)) return;
    for (auto& report : collector.takeReports()) {
        ETFileMessage m;
        m.kind = report.kind;
        m.text = std::move(report.text);
        if (m.text.rfind("[minor] ", 0) == 0 || m.text.rfind("[Minor] ", 0) == 0) {
            m.minor = true;
            m.text.erase(0, 8);
        }
        m.path = std::move(report.path);
        if (m.kind == ETFileMessage::Kind::error && command.ignoreMinorErrors)
            excused.push_back(std::move(m));
        else
            messages.push_back(std::move(m));
    }
}

// Parses the standard error of one command: "Error: TEXT - PATH" and "Warning: [minor] TEXT - PATH"
// reports, with the path matched against the command's targets (a path may hold " - " or line breaks);
// progress and summary lines are skipped, anything else is unknown.
void parseErrorText(const std::string& chunk, const Command& command, std::vector<ETFileMessage>& messages,
                    std::vector<std::string>& unknown) {
    const auto lines = splitLines(chunk);
    const std::unordered_set<std::string_view> files(command.targets.begin(), command.targets.end());
    std::vector<std::string_view> multiLineTargets;
    for (const auto& t : command.targets)
        if (t.find('\n') != std::string::npos) multiLineTargets.push_back(t);

    // Offsets of each line in the chunk, to match paths that run over several lines.
    std::vector<std::size_t> offsets;
    offsets.reserve(lines.size());
    for (const auto& l : lines)
        offsets.push_back(static_cast<std::size_t>(l.data() - chunk.data()));

    for (std::size_t i = 0; i < lines.size(); ++i) {
        const auto line = lines[i];
        if (auto span = progressLineSpan(lines, i)) {
            i += span - 1;
            continue;
        }
        if (isBlank(line) || isSummaryLine(line)) continue;
        ETFileMessage m;
        std::string_view body;
        if (line.rfind("Error: ", 0) == 0) {
            m.kind = ETFileMessage::Kind::error;
            body = line.substr(7);
        } else if (line.rfind("Warning: ", 0) == 0) {
            m.kind = ETFileMessage::Kind::warning;
            body = line.substr(9);
        } else {
            unknown.emplace_back(line);
            continue;
        }
        if (body.rfind("[minor] ", 0) == 0 || body.rfind("[Minor] ", 0) == 0) {
            m.minor = true;
            body.remove_prefix(8);
        }
        // Find the " - " after which a target (or a file inside a folder target) begins.
        std::optional<std::size_t> split;
        std::size_t extraLines = 0;
        for (auto q = body.find(" - "); q != std::string_view::npos && !split; q = body.find(" - ", q + 1)) {
            const auto candidate = body.substr(q + 3);
            if (files.contains(candidate)) {
                split = q;
                break;
            }
            for (const auto& folder : command.folderTargets) {
                if (candidate.size() > folder.size() && candidate.substr(0, folder.size()) == folder &&
                    (candidate[folder.size()] == '/' || folder.back() == '/')) {
                    split = q;
                    break;
                }
            }
            if (split) break;
            const std::size_t at = offsets[i] + static_cast<std::size_t>(candidate.data() - line.data());
            for (const auto& t : multiLineTargets) {
                if (chunk.compare(at, t.size(), t) == 0 &&
                    (at + t.size() == chunk.size() || chunk[at + t.size()] == '\n')) {
                    split = q;
                    extraLines = static_cast<std::size_t>(std::count(t.begin(), t.end(), '\n'));
                    m.path = std::filesystem::path(std::string(t));
                    break;
                }
            }
        }
        if (!split) {
            // Not one of the targets: ExifTool's messages rarely hold " - ", paths more often do.
            if (auto q = body.find(" - "); q != std::string_view::npos) split = q;
        }
        if (split) {
            m.text = std::string(body.substr(0, *split));
            if (!m.path) m.path = std::filesystem::path(std::string(body.substr(*split + 3)));
        } else {
            m.text = std::string(body);
        }
        i += extraLines;
        messages.push_back(std::move(m));
    }
}

struct ArgumentPlan {
    // Files to remove after the run.
    std::vector<std::filesystem::path> files;
    // argv after the program: "-@ FILE" pairs and arguments that no argfile line can hold.
    std::vector<std::string> vector;
    // Every argument in order, passwords masked.
    std::vector<std::string> logged;

    ~ArgumentPlan() {
        std::error_code ec;
        for (const auto& f : files)
            std::filesystem::remove(f, ec);
    }
};

bool writeWhole(int fd, const std::string& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        const auto n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    return true;
}

bool flushArgfile(ArgumentPlan& plan, std::string& text) {
    if (text.empty()) return true;
    const auto url = temporaryURL("args");
    std::error_code ec;
    std::filesystem::create_directories(url.parent_path(), ec);
    // Private: the file may hold passwords.
    const int fd = ::open(url.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0) return false;
    plan.files.push_back(url);
    const bool ok = writeWhole(fd, text);
    if (::close(fd) != 0 || !ok) return false;
    plan.vector.emplace_back("-@");
    plan.vector.push_back(url.string());
    text.clear();
    return true;
}

// "-progress" prints a line per file, but also makes ExifTool flush its standard output at every
// printed line: a write, and a wake-up of this process, per line of JSON, which costs more than
// reading the file. A command that prints JSON ("-j") therefore asks for the window-title form
// instead, which reports each file read as "n/N" on standard error and leaves the output buffered.
// ExifTool gives that form only while reading, so any other command keeps "-progress".
std::string progressOption(const std::vector<std::string>& arguments) {
    const bool printsJSON = std::any_of(arguments.begin(), arguments.end(), [](const std::string& a) {
        std::string lower = a;
        std::transform(lower.begin(), lower.end(), lower.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        return lower == "-j" || lower == "-json" || lower == "-j+" || lower == "-json+";
    });
    return printsJSON ? "-progress:%r" : "-progress";
}

bool buildArguments(const RunState& run, ArgumentPlan& plan) {
    std::string text;
    bool maskNext = false;
    auto add = [&](const std::string& arg) -> bool {
        plan.logged.push_back(maskNext ? std::string("********") : arg);
        maskNext = arg == "-password";
        switch (encodingOf(arg)) {
        case Encoding::plainLine:
            text += arg;
            text += '\n';
            return true;
        case Encoding::cStringLine:
            text += cStringLine(arg);
            text += '\n';
            return true;
        case Encoding::argumentVector:
            // Stays in order: the argfile so far is read first, then this argument.
            if (!flushArgfile(plan, text)) return false;
            plan.vector.push_back(arg);
            return true;
        }
        return false;
    };
    for (std::size_t k = 0; k < run.commands.size(); ++k) {
        const auto& command = run.commands[k];
        // Files over 4 GB are read and written whole, not cut off at their first large atom.
        bool ok = add(progressOption(command.arguments)) && add("-api") && add("LargeFileSupport=1");
        for (const auto& a : command.arguments)
            ok = ok && add(a);
        for (const auto& t : command.targets)
            ok = ok && add(t);
        const auto marker = run.marker(k);
        ok = ok && add("-echo3") && add(marker) && add("-echo4") && add(marker);
        if (k + 1 < run.commands.size()) ok = ok && add("-execute");
        if (!ok) return false;
    }
    return flushArgfile(plan, text);
}

void killGroup(pid_t pid) {
    // ExifTool runs in a process group of its own: whatever it started goes too.
    if (::kill(-pid, SIGKILL) != 0) ::kill(pid, SIGKILL);
}

} // namespace

// ---- ETProcess -------------------------------------------------------------------------------

ETProcess::ETProcess() = default;
ETProcess::~ETProcess() = default;

std::filesystem::path ETProcess::executableURL() {
    std::lock_guard lock(executableMutex);
    return executable;
}

void ETProcess::setExecutableURL(const std::filesystem::path& url) {
    std::lock_guard lock(executableMutex);
    executable = url;
}

std::chrono::milliseconds ETProcess::defaultTimeLimit(std::size_t fileCount, std::size_t folderCount) {
    using namespace std::chrono;
    return duration_cast<milliseconds>(minutes(10) + seconds(2) * fileCount + minutes(10) * folderCount);
}

ETOutput ETProcess::output() const {
    std::lock_guard lock(stateMutex_);
    return output_;
}

void ETProcess::publish(const ETOutput& state) {
    std::lock_guard lock(stateMutex_);
    output_ = state;
}

void ETProcess::cancel() {
    if (running_.load()) cancelRequested_.store(true);
}

ETOutput ETProcess::run(const ETInput& input) {
    ETProcess process;
    return process.execute(input);
}

ETOutput ETProcess::execute(const ETInput& input) {
    std::lock_guard runLock(runMutex_);
    cancelRequested_.store(false);
    running_.store(true);
    progress_.store(0);

    RunState run;
    run.commands = planCommands(input);
    run.setToken(randomToken());
    std::size_t fileCount = 0, folderCount = 0;
    for (const auto& c : run.commands) {
        run.progress.push_back({0, static_cast<double>(std::max<std::size_t>(c.targets.size(), 1)), false});
        folderCount += c.folderTargets.size();
        fileCount += c.targets.size() - c.folderTargets.size();
    }

    ETOutput state;
    publish(state);
    if (input.onStartHandler) input.onStartHandler(*this);

    auto setProgress = [&](double p) {
        if (p == progress_.load()) return;
        progress_.store(p);
        state.progress_ = p;
        {
            std::lock_guard lock(stateMutex_);
            output_.progress_ = p;
        }
        if (input.onProgressHandler) input.onProgressHandler(*this);
    };
    auto finish = [&]() -> ETOutput {
        state.finished_ = true;
        publish(state);
        running_.store(false);
        if (input.onEndHandler) input.onEndHandler(*this);
        return state;
    };

    // Nothing to do: ExifTool isn't started.
    if (run.commands.empty()) {
        setProgress(1);
        return finish();
    }

    ArgumentPlan plan;
    if (!buildArguments(run, plan)) {
        state.processError_ = ETOutputError::argumentFileCreationFailed;
        return finish();
    }
    state.arguments_ = plan.logged;
    publish(state);

    int outPipe[2], errPipe[2];
    if (::pipe2(outPipe, O_CLOEXEC) != 0) {
        state.processError_ = ETOutputError::launchFailed;
        return finish();
    }
    if (::pipe2(errPipe, O_CLOEXEC) != 0) {
        ::close(outPipe[0]);
        ::close(outPipe[1]);
        state.processError_ = ETOutputError::launchFailed;
        return finish();
    }

    const auto program = executableURL().string();
    std::vector<std::string> argvText;
    argvText.push_back(program);
    argvText.insert(argvText.end(), plan.vector.begin(), plan.vector.end());
    std::vector<char*> argv;
    for (auto& a : argvText)
        argv.push_back(a.data());
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, outPipe[1], 1);
    posix_spawn_file_actions_adddup2(&actions, errPipe[1], 2);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t defaults, mask;
    sigemptyset(&mask);
    sigemptyset(&defaults);
    for (int sig : {SIGPIPE, SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGCHLD})
        sigaddset(&defaults, sig);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setsigmask(&attributes, &mask);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    pid_t pid = 0;
    const int spawned =
        program.find('/') == std::string::npos
            ? ::posix_spawnp(&pid, program.c_str(), &actions, &attributes, argv.data(), environ)
            : ::posix_spawn(&pid, program.c_str(), &actions, &attributes, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    ::close(outPipe[1]);
    ::close(errPipe[1]);
    if (spawned != 0) {
        ::close(outPipe[0]);
        ::close(errPipe[0]);
        state.processError_ = spawned == ENOENT || spawned == EACCES ? ETOutputError::executableNotFound
                                                                     : ETOutputError::launchFailed;
        return finish();
    }

    run.out.fd = outPipe[0];
    run.err.fd = errPipe[0];
    for (int fd : {run.out.fd, run.err.fd})
        ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);

    const auto limit = input.timeLimit ? *input.timeLimit : defaultTimeLimit(fileCount, folderCount);
    const auto deadline = Clock::now() + limit;
    std::optional<ETOutputError> killedFor;

    // Reads what is there; false once the stream has ended.
    auto drain = [&run](RunState::Stream& s) {
        char buffer[65536];
        for (;;) {
            const auto n = ::read(s.fd, buffer, sizeof buffer);
            if (n > 0) {
                // Only standard error carries title reports; standard output may be binary data.
                if (&s == &run.err)
                    s.append(std::string_view(buffer, static_cast<std::size_t>(n)));
                else
                    s.text.append(buffer, static_cast<std::size_t>(n));
                continue;
            }
            if (n < 0 && errno == EINTR) continue;
            if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return true;
            ::close(s.fd);
            s.fd = -1;
            return false;
        }
    };
    auto pump = [&](Clock::time_point until) {
        while (run.out.fd >= 0 || run.err.fd >= 0) {
            const auto now = Clock::now();
            if (now >= until) return false;
            pollfd fds[2];
            nfds_t count = 0;
            for (auto* s : {&run.out, &run.err})
                if (s->fd >= 0) fds[count++] = {s->fd, POLLIN, 0};
            const auto wait = std::min<long long>(
                100, std::chrono::duration_cast<std::chrono::milliseconds>(until - now).count() + 1);
            const int ready = ::poll(fds, count, static_cast<int>(wait));
            if (ready < 0 && errno != EINTR) return false;
            for (nfds_t i = 0; i < count && ready > 0; ++i) {
                if (!(fds[i].revents & (POLLIN | POLLHUP | POLLERR))) continue;
                auto& s = fds[i].fd == run.out.fd ? run.out : run.err;
                drain(s);
            }
            const bool movedOut = run.scan(run.out);
            const bool movedErr = run.scan(run.err);
            if (movedOut || movedErr) setProgress(run.fraction());
            if (cancelRequested_.load()) return false;
        }
        return true;
    };

    int status = 0;
    bool reaped = false;
    if (pump(deadline)) {
        // Both streams ended: ExifTool is exiting. It still gets its deadline to do so.
        while (!reaped) {
            const auto r = ::waitpid(pid, &status, WNOHANG);
            if (r == pid || (r < 0 && errno != EINTR)) {
                reaped = r == pid;
                break;
            }
            if (cancelRequested_.load() || Clock::now() >= deadline) break;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
    if (!reaped) {
        killedFor = cancelRequested_.load() ? ETOutputError::cancelled : ETOutputError::timedOut;
        killGroup(pid);
        while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
        }
        // Keep what was written before the end; a child that kept the pipes open gets a moment only.
        pump(Clock::now() + std::chrono::seconds(1));
        for (auto* s : {&run.out, &run.err})
            if (s->fd >= 0) {
                ::close(s->fd);
                s->fd = -1;
            }
    }

    if (killedFor)
        state.processError_ = killedFor;
    else if (WIFEXITED(status))
        state.exitStatus_ = WEXITSTATUS(status);
    else
        state.processError_ = ETOutputError::abnormalTermination;

    run.err.flush();
    const auto outChunks = splitAtMarkers(run.out.text, run, true);
    const auto errChunks = splitAtMarkers(run.err.text, run, false);
    state.data_ = joinOutputs(outChunks);
    for (const auto& c : errChunks)
        state.errorText_ += c;
    for (std::size_t k = 0; k < run.commands.size(); ++k) {
        parseErrorText(errChunks[k], run.commands[k], state.messages_, state.unknownLines_);
        collectJSONMessages(outChunks[k], run.commands[k], state.messages_, state.excusedErrors_);
    }
    if (!state.processError_) setProgress(1);
    return finish();
}

void ETProcess::debugProcessOutputIfEnabled() const {
    auto& debugger = KitDebugger::shared();
    if (!debugger.isLogEnabled()) return;
    const auto state = output();
    debugger.logExifTool(KitDebugger::Traffic::arguments, [&] {
        std::string line;
        for (const auto& a : state.arguments()) {
            if (!line.empty()) line += ' ';
            line += a;
        }
        return line;
    });
    debugger.logExifTool(KitDebugger::Traffic::error,
                         [&] { return "Error: " + state.joinUnknownErrors().value_or(std::string()); });
    debugger.logExifTool(KitDebugger::Traffic::output, [&] { return "Output: " + state.data(); });
}

} // namespace corvane
