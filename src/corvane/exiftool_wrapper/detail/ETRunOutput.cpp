#include "corvane/exiftool_wrapper/detail/ETRunOutput.hpp"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <unordered_set>

#include "corvane/helpers/JSONInput.hpp"
#include "corvane/helpers/WhiteSpace.hpp"
#include "corvane/helpers/detail/JSONText.hpp"

namespace corvane::detail {
namespace {

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

std::string progressFile(const std::vector<std::string_view>& lines, std::size_t index, std::size_t span) {
    std::string text;
    for (std::size_t j = index; j < index + span; ++j) {
        if (j > index) text += '\n';
        text.append(lines[j]);
    }
    text.erase(0, progressPrefix.size());
    text.erase(text.rfind(" ["));
    return text;
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

} // namespace

std::string randomToken() {
    std::random_device device;
    std::uniform_int_distribution<unsigned long long> dist;
    char buf[32];
    std::snprintf(buf, sizeof buf, "%016llx", dist(device));
    return buf;
}

// Appends what was read, taking out the window-title reports of "-progress:%r":
// "ESC ] 0 ; n/N BEL", printed without a line break as each file starts.
void ETRunState::Stream::append(std::string_view data) {
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
void ETRunState::Stream::flush() {
    text.append(carry);
    carry.clear();
}

// Reads the complete lines that arrived since the last call; true when the progress moved.
bool ETRunState::scan(Stream& s) {
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

// Splits a stream at the run's markers: one text per command. Text after the last marker (a run
// that was killed) goes with the command under way. Progress reports are dropped when asked.
std::optional<int> ETRunState::exitStatus(std::string_view text) const {
    std::optional<int> status;
    for (const auto line : splitLines(text)) {
        if (!markerIndex(line)) continue;
        const auto dash = line.find('-', markerPrefix.size());
        if (dash == std::string_view::npos) continue;
        const int value = std::atoi(std::string(line.substr(dash + 1)).c_str());
        if (!status || value != 0) status = value;
    }
    return status;
}

std::vector<std::string> splitAtMarkers(const std::string& text, const ETRunState& run, bool dropProgress,
                                        std::vector<std::string>* progressFiles) {
    std::vector<std::string> chunks(std::max<std::size_t>(run.commands.size(), 1));
    const auto lines = splitLines(text);
    std::size_t command = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (auto k = run.markerIndex(lines[i])) {
            command = std::min(*k + 1, chunks.size() - 1);
            // An ExifTool that stays open answers each command: not part of the output.
            if (run.stayOpen && i + 1 < lines.size() && lines[i + 1].starts_with("{ready") &&
                lines[i + 1].ends_with("}"))
                ++i;
            continue;
        }
        if (dropProgress) {
            if (auto span = progressLineSpan(lines, i)) {
                if (progressFiles) progressFiles->push_back(progressFile(lines, i, span));
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
        const auto t = trimAsciiWhiteSpace(c);
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
        auto t = trimAsciiWhiteSpace(c);
        if (t.empty()) continue;
        const auto inner = trimAsciiWhiteSpace(t.substr(1, t.size() - 2));
        if (inner.empty()) continue;
        if (!first) out += ",\n";
        out.append(inner);
        first = false;
    }
    out += "]\n";
    return out;
}

std::optional<std::string> quoteOutOfRangeNumbers(std::string_view json) {
    std::string out;
    std::size_t copied = 0;
    for (std::size_t i = 0; i < json.size(); ++i) {
        const char c = json[i];
        if (c == '"') {
            i = endOfJSONString(json, i) - 1;
            continue;
        }
        if (c != '-' && (c < '0' || c > '9')) continue;
        std::size_t end = i + 1;
        while (end < json.size() &&
               std::string_view("0123456789.eE+-").find(json[end]) != std::string_view::npos)
            ++end;
        double value = 0;
        const auto result = std::from_chars(json.data() + i, json.data() + end, value);
        if (result.ec == std::errc::result_out_of_range) {
            out.append(json, copied, i - copied);
            out += '"';
            out.append(json, i, end - i);
            out += '"';
            copied = end;
        }
        i = end - 1;
    }
    if (copied == 0) return std::nullopt;
    out.append(json, copied);
    return out;
}

bool takeMinorMark(std::string_view& text) {
    if (text.rfind("[minor] ", 0) != 0 && text.rfind("[Minor] ", 0) != 0) return false;
    text.remove_prefix(8);
    return true;
}

void collectJSONMessages(const std::string& chunk, const ETCommand& command,
                         std::vector<ETFileMessage>& messages, std::vector<ETFileMessage>& excused) {
    if (chunk.find("\"Error\"") == std::string::npos && chunk.find("\"Warning\"") == std::string::npos &&
        chunk.find(":Error\"") == std::string::npos && chunk.find(":Warning\"") == std::string::npos)
        return;
    const auto t = trimAsciiWhiteSpace(chunk);
    if (t.empty() || t.front() != '[') return;
    try {
        checkJSONNesting(t, "ExifTool output");
    } catch (const JSONNestingError&) {
        return; // not ExifTool's reports: the reader refuses it
    }
    JSONMessageCollector collector;
    JSONMessageCollector quotedCollector;
    JSONMessageCollector* reports = &collector;
    if (!nlohmann::json::sax_parse(t, &collector)) {
        // A text printed as a number no double holds: read again with it quoted.
        const auto quoted = quoteOutOfRangeNumbers(t);
        if (!quoted || !nlohmann::json::sax_parse(*quoted, &quotedCollector)) return;
        reports = &quotedCollector;
    }
    for (auto& report : reports->takeReports()) {
        ETFileMessage m;
        m.kind = report.kind;
        std::string_view text = report.text;
        m.minor = takeMinorMark(text);
        m.text = std::string(text);
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
void parseErrorText(const std::string& chunk, const ETCommand& command, std::vector<ETFileMessage>& messages,
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
        m.minor = takeMinorMark(body);
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

} // namespace corvane::detail
