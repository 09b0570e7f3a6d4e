#include "corvane/exiftool_wrapper/detail/ETArgumentFile.hpp"

#include <algorithm>
#include <cctype>
#include <cstring>

#include "corvane/helpers/FileSystemHelpers.hpp"

namespace corvane::detail {
namespace {

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

} // namespace

ArgumentEncoding argumentEncoding(std::string_view arg) {
    if (survivesPlainLine(arg)) return ArgumentEncoding::plainLine;
    // ExifTool escapes "$" and "@" in C-string lines and doesn't undo it.
    if (arg.find_first_of("$@") == std::string_view::npos) return ArgumentEncoding::cStringLine;
    return ArgumentEncoding::argumentVector;
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

bool importsRecordsPerTarget(const std::vector<std::string>& arguments) {
    return std::any_of(arguments.begin(), arguments.end(), [](const std::string& argument) {
        return argument.starts_with("-json=") || argument.starts_with("-csv=");
    });
}

std::vector<ETCommand> planCommands(const ETInput& input) {
    std::vector<ETCommand> commands;
    for (const auto& group : input.groups()) {
        auto args = group.commandArguments();
        const bool joinable = group.url && (!group.soloRun || importsRecordsPerTarget(args));
        const bool joins = joinable && !commands.empty() && commands.back().joinable &&
                           commands.back().ignoreMinorErrors == group.ignoreMinorErrors &&
                           commands.back().arguments == args;
        if (!joins) {
            ETCommand command;
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

void ETArgumentFile::add(const std::string& argument) {
    logged_.push_back(maskNext_ ? std::string("********") : argument);
    maskNext_ = argument == "-password";
    const auto encoding = argumentEncoding(argument);
    if (encoding == ArgumentEncoding::argumentVector) {
        // Stays in order: the lines so far are read first, then this argument.
        parts_.push_back({true, argument});
        return;
    }
    if (parts_.empty() || parts_.back().inVector) parts_.push_back({false, {}});
    auto& text = parts_.back().text;
    text += encoding == ArgumentEncoding::plainLine ? argument : cStringLine(argument);
    text += '\n';
}

bool ETArgumentFile::fitsInLines() const {
    return std::none_of(parts_.begin(), parts_.end(), [](const Part& p) { return p.inVector; });
}

void addRunArguments(ETArgumentFile& file, const std::vector<ETCommand>& commands,
                     const std::function<std::string(std::size_t)>& marker) {
    for (std::size_t k = 0; k < commands.size(); ++k) {
        const auto& command = commands[k];
        file.add(progressOption(command.arguments));
        // Files over 4 GB are read and written whole, not cut off at their first large atom.
        file.add("-api");
        file.add("LargeFileSupport=1");
        for (const auto& a : command.arguments)
            file.add(a);
        for (const auto& t : command.targets)
            file.add(t);
        const auto text = marker(k);
        file.add("-echo3");
        file.add(text);
        file.add("-echo4");
        file.add(text);
        if (k + 1 < commands.size()) file.add("-execute");
    }
}

} // namespace corvane::detail
