#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "corvane/exiftool_wrapper/ETLanguage.hpp"
#include "corvane/exiftool_wrapper/ETPathFilter.hpp"

namespace corvane {

class ETProcess;

/// What one ExifTool run does: an ordered list of argument groups, each acting on one file or folder,
/// plus the callbacks of the run. Consecutive groups that may share a command and have the same options
/// are run together: those with `soloRun` false, and those that import their values from the same
/// file ("-json=FILE", "-csv=FILE"), since ExifTool applies each target's own record of that file.
/// Every other group is a command of its own within the same ExifTool process.
class ETInput {
public:
    /// A callback of the run, given the process that runs it.
    using Handler = std::function<void(ETProcess&)>;

    /// The description of one group. The flags map to ExifTool's documented options, in this order on
    /// the command line:
    ///   language          -lang CODE          output language of descriptions and values
    ///   password          -password PWD       password of protected files (PDF)
    ///   ignoreMinorErrors -m                  minor errors become warnings, the run goes on
    ///   shortTags         -s                  tag names instead of descriptions
    ///   rawValues         -n                  values without print conversion
    ///   noComposite       -e                  no composite tags
    ///   rawLocation       -c %+.8f            GPS coordinates as signed decimal degrees
    ///   correction        -F                  fix the base of maker-note offsets while writing
    ///   overwriteOriginal -overwrite_original replace the file, no "_original" copy
    ///   overwriteInPlace  -overwrite_original_in_place  copy the result into the same file, which
    ///                                         keeps its inode, extended attributes, owner and mode
    ///   recurseSubfolders -r                  descend into the subfolders of a folder
    ///   filePathFilter    -ext EXT ...        only these file types when scanning a folder
    /// then `arguments` as they stand, then `url`.
    struct ArgumentsMaker {
        std::vector<std::string> arguments; ///< extra arguments, after the options
        /// Output language; none keeps ExifTool's default (English). `local` goes as the language that
        /// stands for the user's locale.
        std::optional<ETLanguage> language;
        bool recurseSubfolders = false;             ///< "-r": descend into subfolders
        std::optional<ETPathFilter> filePathFilter; ///< "-ext": only these file types in a folder
        bool shortTags = false;                     ///< "-s": tag names, not descriptions
        bool rawValues = false;                     ///< "-n": values without print conversion
        bool noComposite = false;                   ///< "-e": no composite tags
        bool correction = false;                    ///< "-F": fix maker-note offsets
        bool ignoreMinorErrors = false;             ///< "-m": minor errors become warnings
        bool overwriteOriginal = false;             ///< "-overwrite_original"
        bool overwriteInPlace = false;              ///< "-overwrite_original_in_place"
        bool rawLocation = false;                   ///< "-c %+.8f": signed decimal degrees
        /// When false, the group may share one ExifTool command with its neighbours (see the class
        /// comment).
        bool soloRun = true;
        std::optional<std::string> password; ///< "-password": for protected files
        /// The target file or folder; none for a group of arguments alone.
        std::optional<std::filesystem::path> url;

        /// The options of the flags, in the order above (without `arguments` and `url`).
        std::vector<std::string> optionArguments() const;
        /// optionArguments() followed by `arguments`: what ExifTool receives before the target.
        std::vector<std::string> commandArguments() const;
    };

    ETInput() = default;

    /// For each item, in order: a fresh maker, the block, and the group it describes is appended.
    /// An exception thrown by the block leaves at once; groups appended before it stay.
    template <typename Items, typename Block> void addArguments(const Items& items, Block&& block) {
        for (const auto& item : items) {
            ArgumentsMaker maker;
            block(item, maker);
            groups_.push_back(std::move(maker));
        }
    }
    /// Appends one group.
    void addGroup(ArgumentsMaker group) { groups_.push_back(std::move(group)); }

    /// The groups, in order; true when there is none.
    ///@{
    const std::vector<ArgumentsMaker>& groups() const { return groups_; }
    bool isEmpty() const { return groups_.empty(); }
    ///@}

    /// Called when the run starts, whenever its progress changes, and when it has ended (also after a
    /// failure), on the thread that executes the run.
    ///@{
    Handler onStartHandler;
    Handler onProgressHandler;
    Handler onEndHandler;
    ///@}

    /// Wall-clock limit of the run; none means the process's default (see ETProcess::defaultTimeLimit).
    std::optional<std::chrono::milliseconds> timeLimit;

private:
    std::vector<ArgumentsMaker> groups_;
};

} // namespace corvane
