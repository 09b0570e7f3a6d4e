#include "Output.hpp"

#include "corvane/csv_support/CSVDelimiter.hpp"
#include "corvane/csv_support/CSVParseError.hpp"
#include "corvane/csv_support/EnumeratedCSVView.hpp"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane::cli {

namespace fs = std::filesystem;

namespace {
std::atomic<bool> quietOutput{false};
} // namespace

void setQuiet(bool quiet) {
    quietOutput = quiet;
}
bool isQuiet() {
    return quietOutput;
}

Reporter::Reporter() : isTerminal_(isatty(STDERR_FILENO) == 1) {}

void Reporter::error(const std::string& text) {
    clearProgress();
    std::cerr << "corvane: " << text << '\n';
    ++errorCount_;
}

void Reporter::fileError(const fs::path& path, const std::string& text) {
    error(path.string() + ": " + text);
}

void Reporter::fileError(const fs::path& path, std::size_t line, const std::string& text) {
    error(path.string() + ":" + std::to_string(line) + ": " + text);
}

void Reporter::usageError(const std::string& text) {
    clearProgress();
    std::cerr << "corvane: " << text << '\n';
    ++usageErrorCount_;
}

void Reporter::warning(const fs::path& path, const std::string& text) {
    if (isQuiet()) return;
    clearProgress();
    std::cerr << "corvane: " << path.string() << ": warning: " << text << '\n';
}

void Reporter::fileNote(const fs::path& path, const std::string& text) {
    if (isQuiet()) return;
    clearProgress();
    std::cerr << "corvane: " << path.string() << ": " << text << '\n';
}

int Reporter::exitCode() const {
    if (usageErrorCount_) return exitUsage;
    return errorCount_ ? exitFileFailed : exitSuccess;
}

void Reporter::progress(const std::string& label, double fraction, Clock::time_point start,
                        std::size_t fileCount) {
    if (!isTerminal_ || Clock::now() - start < std::chrono::milliseconds(400)) return;
    fraction = std::clamp(fraction, 0.0, 1.0);
    std::cerr << '\r' << label << ' ';
    if (fileCount)
        std::cerr << static_cast<std::size_t>(std::floor(fraction * static_cast<double>(fileCount))) << '/'
                  << fileCount << (fileCount == 1 ? " file" : " files");
    else
        std::cerr << static_cast<int>(fraction * 100) << '%';
    std::cerr << "\033[K" << std::flush;
    shown_ = true;
}

void Reporter::clearProgress() {
    if (!shown_) return;
    std::cerr << "\r\033[K" << std::flush;
    shown_ = false;
}

std::string readableReason(const std::exception& error) {
    std::string text = error.what();
    for (auto at = text.find("[json.exception."); at != std::string::npos;
         at = text.find("[json.exception.", at)) {
        const auto close = text.find("] ", at);
        if (close == std::string::npos) break;
        text.erase(at, close + 2 - at);
    }
    return text;
}

namespace {

// The line of the first CSV quoting fault in `text`: the shortest run of whole lines that fails
// with the same message (a fault stays once its line is in).
std::optional<std::size_t> csvFaultLine(const std::string& text, const std::string& message) {
    std::vector<std::size_t> lineEnds;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] == '\n') lineEnds.push_back(i + 1);
    if (lineEnds.empty() || lineEnds.back() != text.size()) lineEnds.push_back(text.size());
    const CSVDelimiter delimiter = CSVDelimiter::guessed(text);
    auto failsAlike = [&](std::size_t lines) {
        try {
            EnumeratedCSVView(std::string_view(text).substr(0, lineEnds[lines - 1]), delimiter, false, false,
                              std::nullopt);
        } catch (const CSVParseError& e) {
            return message == e.what();
        }
        return false;
    };
    std::size_t low = 1, high = lineEnds.size();
    if (!failsAlike(high)) return std::nullopt;
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        if (failsAlike(middle))
            high = middle;
        else
            low = middle + 1;
    }
    return low;
}

} // namespace

std::string inputFailure(const fs::path& file, const std::exception& error, const std::string& expected) {
    const std::string not_ = expected.empty() ? "" : "not " + expected + ": ";
    if (const auto* parse = dynamic_cast<const nlohmann::json::parse_error*>(&error)) {
        // "parse error at line 3, column 10: syntax error while parsing ..."
        std::string text = readableReason(*parse);
        if (text.starts_with("parse error at line ")) {
            text.erase(0, std::string_view("parse error at line ").size());
            const auto comma = text.find(", column ");
            if (comma != std::string::npos)
                return file.string() + ":" + text.substr(0, comma) + ": " + not_ + "JSON syntax error at" +
                       text.substr(comma + 1);
        }
        return file.string() + ": " + not_ + "JSON syntax error (" + text + ")";
    }
    if (const auto* csv = dynamic_cast<const CSVParseError*>(&error)) {
        std::ifstream in(file, std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(in), {}};
        const auto line = csvFaultLine(text, csv->what());
        const std::string reason = csv->kind() == CSVParseError::Case::quotation
                                       ? std::string("misplaced quotation mark (") + csv->what() + ")"
                                       : std::string(csv->what());
        // Appended to: GCC 12 warns, wrongly (-Wrestrict), on ":" + text.
        std::string where = file.string();
        if (line) {
            where += ':';
            where += std::to_string(*line);
        }
        return where + ": " + not_ + reason;
    }
    if (dynamic_cast<const nlohmann::json::exception*>(&error))
        return file.string() + ": " + not_ + "unexpected content (" + readableReason(error) + ")";
    std::string text = readableReason(error);
    // A library message names the file already: it goes first, once.
    if (text.starts_with(file.string() + ": ")) text.erase(0, file.string().size() + 2);
    if (!not_.empty() && text.starts_with(not_)) text.erase(0, not_.size());
    // A JSON syntax error that a reader passed on as text keeps its line.
    if (const auto at = text.find("parse error at line "); at != std::string::npos) {
        const std::string rest = text.substr(at + std::string_view("parse error at line ").size());
        const auto comma = rest.find(", column ");
        if (comma != std::string::npos)
            return file.string() + ":" + rest.substr(0, comma) + ": " + not_ + "JSON syntax error at" +
                   rest.substr(comma + 1);
    }
    // The JSON library's complaints about kinds of values: the content isn't what was expected.
    if (text.starts_with("type must be ") || text.starts_with("key '") || text.starts_with("cannot use "))
        return file.string() + ": " + not_ + "unexpected content (" + text + ")";
    return file.string() + ": " + not_ + text;
}

} // namespace corvane::cli
