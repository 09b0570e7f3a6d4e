#pragma once

// The arguments of an ExifTool run as the lines of an argument file ("-@"): each argument encoded so
// that ExifTool reads it back unchanged, targets that can't be taken for options, and the grouping of
// an input's groups into ExifTool commands.

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "corvane/exiftool_wrapper/ETInput.hpp"

namespace corvane::detail {

// How one argument reaches ExifTool. ExifTool trims plain lines (leading white space, blanks around
// the operator of "-TAG = value") and skips "#" lines, so such arguments go as "#[CSTR]" lines; and
// since it escapes "$" and "@" in those without undoing it, an argument needing both can only go in
// the process's argument vector.
enum class ArgumentEncoding { plainLine, cStringLine, argumentVector };
ArgumentEncoding argumentEncoding(std::string_view argument);

// "#[CSTR]" followed by the argument with C escapes.
std::string cStringLine(std::string_view argument);

// The text that names a target: relative paths that begin like an option get "./" in front
// (ExifTool also reads U+2212 MINUS SIGN as a dash).
std::string targetText(const std::filesystem::path& url);

// One ExifTool command: its options and arguments, then its targets.
struct ETCommand {
    std::vector<std::string> arguments;
    std::vector<std::string> targets;
    std::vector<std::string> folderTargets;
    bool ignoreMinorErrors = false;
    // Later groups with the same arguments may add their targets to this command.
    bool joinable = false;
};

// The input's groups as commands: groups that may share a command (see ETInput) and have the same
// arguments are joined.
std::vector<ETCommand> planCommands(const ETInput& input);

// Whether a command with these arguments imports its values from a file of records, one per target
// ("-json=FILE", "-csv=FILE"): ExifTool reads the whole file for each command.
bool importsRecordsPerTarget(const std::vector<std::string>& arguments);

// The "-progress" form of a command with these arguments (see the definition for why it varies).
std::string progressOption(const std::vector<std::string>& arguments);

// The encoded arguments of a run, in order: argument-file texts, and between them the arguments that
// no line can hold.
class ETArgumentFile {
public:
    struct Part {
        // An argument for the argument vector; otherwise the text of an argument file.
        bool inVector = false;
        std::string text;
    };

    void add(const std::string& argument);
    const std::vector<Part>& parts() const { return parts_; }
    // Every argument in order, passwords masked: for logs and ETOutput::arguments().
    const std::vector<std::string>& logged() const { return logged_; }
    // Whether every argument became a line, so that the run can be sent through one stream.
    bool fitsInLines() const;

private:
    std::vector<Part> parts_;
    std::vector<std::string> logged_;
    bool maskNext_ = false;
};

// Adds the commands of a run: each command's progress option, arguments and targets, then its end
// marker echoed to both streams ("-echo3", "-echo4"), commands separated by "-execute".
void addRunArguments(ETArgumentFile& file, const std::vector<ETCommand>& commands,
                     const std::function<std::string(std::size_t)>& marker);

} // namespace corvane::detail
