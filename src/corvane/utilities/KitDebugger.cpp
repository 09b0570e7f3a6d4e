#include "corvane/utilities/KitDebugger.hpp"

#include "corvane/Version.hpp"
#include "corvane/utilities/Date.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "corvane/utilities/UserDefaults.hpp"

#include <array>
#include <system_error>

namespace corvane {

namespace fs = std::filesystem;

namespace {

constexpr std::array<std::string_view, 5> infoKeys{"CFBundleName", "CFBundleIdentifier", "CFBundleExecutable",
                                                   "CFBundleLongVersionString", "CFBundleShortVersionString"};

std::map<std::string, std::string> defaultApplicationInfo() {
    std::map<std::string, std::string> info;
    std::error_code ec;
    const fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (!ec) {
        info["CFBundleName"] = exe.filename().string();
        info["CFBundleExecutable"] = exe.string();
    }
    return info;
}

std::map<std::string, std::string> frameworkInfo() {
    return {{"CFBundleName", "Corvane"},
            {"CFBundleIdentifier", "corvane"},
            {"CFBundleLongVersionString",
             std::string(CORVANE_VERSION) + " (C++" + std::to_string(__cplusplus / 100 % 100) + ")"},
            {"CFBundleShortVersionString", CORVANE_VERSION}};
}

void appendBlock(std::string& out, std::string_view title, const std::map<std::string, std::string>& info) {
    out += title;
    for (auto key : infoKeys)
        if (auto it = info.find(std::string(key)); it != info.end())
            out.append(key).append(": ").append(it->second).append("\n");
}

const char* marker(KitDebugger::Traffic kind) {
    switch (kind) {
    case KitDebugger::Traffic::arguments:
        return "ARGS";
    case KitDebugger::Traffic::input:
        return "IN";
    case KitDebugger::Traffic::output:
        return "OUT";
    case KitDebugger::Traffic::error:
        return "ERR";
    }
    return "OUT";
}

} // namespace

KitDebugger& KitDebugger::shared() {
    static auto* debugger = new KitDebugger();
    return *debugger;
}

KitDebugger::~KitDebugger() {
    disableLog();
}

bool KitDebugger::isLogEnabled() const {
    return atomic_.read([&] { return debugEnabled_; });
}

std::optional<fs::path> KitDebugger::logFileURL() const {
    return atomic_.read([&] { return url_; });
}

void KitDebugger::setApplicationInfo(std::map<std::string, std::string> info) {
    atomic_.write([&] { applicationInfo_ = std::move(info); });
}

std::string KitDebugger::buildDebugHeader() const {
    auto app = atomic_.read([&] { return applicationInfo_; });
    if (app.empty()) app = defaultApplicationInfo();
    std::string header = "Date: " + Date::now().description() + "\n";
    appendBlock(header, "\nInformation about the application:\n", app);
    appendBlock(header, "\nInformation about the framework:\n", frameworkInfo());
    header += headerEnd;
    return header;
}

bool KitDebugger::enableLog(std::optional<fs::path> url) {
    const fs::path path = url ? *url
                              : KitSettings::shared()
                                    .userDefaults()
                                    ->preferenceFileURL("corvane-debug")
                                    .replace_extension(".log");
    const std::string header = buildDebugHeader();
    return atomic_.write([&] {
        if (debugFileHandle_) std::fclose(debugFileHandle_);
        debugFileHandle_ = nullptr;
        debugEnabled_ = false;
        url_.reset();
        std::error_code ec;
        if (path.has_parent_path()) fs::create_directories(path.parent_path(), ec);
        std::FILE* file = std::fopen(path.c_str(), "a");
        if (!file) return false;
        std::fwrite(header.data(), 1, header.size(), file);
        std::fflush(file);
        debugFileHandle_ = file;
        debugEnabled_ = true;
        url_ = path;
        return true;
    });
}

void KitDebugger::disableLog() {
    atomic_.write([&] {
        if (debugFileHandle_) std::fclose(debugFileHandle_);
        debugFileHandle_ = nullptr;
        debugEnabled_ = false;
        url_.reset();
    });
}

void KitDebugger::appendLogFile(const std::string& text, bool alsoToStandardOutput) {
    atomic_.write([&] {
        if (alsoToStandardOutput) {
            std::fwrite(text.data(), 1, text.size(), stdout);
            std::fputc('\n', stdout);
            std::fflush(stdout);
        }
        if (!debugEnabled_ || !debugFileHandle_) return;
        std::fwrite(text.data(), 1, text.size(), debugFileHandle_);
        std::fputc('\n', debugFileHandle_);
        std::fflush(debugFileHandle_);
    });
}

void KitDebugger::appendLogFile(Traffic kind, const std::string& text) {
    // One log line per line of traffic, each with its prefix.
    std::string lines;
    const std::string prefix = std::string("EXIFTOOL ") + marker(kind) + " ";
    std::size_t start = 0;
    do {
        std::size_t end = text.find('\n', start);
        std::string_view line(text.data() + start, (end == std::string::npos ? text.size() : end) - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.append(prefix).append(line).append("\n");
        start = end == std::string::npos ? text.size() + 1 : end + 1;
    } while (start < text.size());
    atomic_.write([&] {
        if (!debugEnabled_ || !debugFileHandle_) return;
        std::fwrite(lines.data(), 1, lines.size(), debugFileHandle_);
        std::fflush(debugFileHandle_);
    });
}

} // namespace corvane
