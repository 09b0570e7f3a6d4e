#pragma once

#include "corvane/helpers/AtomicPropertyQueue.hpp"
#include "corvane/helpers/UndoManager.hpp"
#include "corvane/tag_value/MediaType.hpp"
#include "corvane/utilities/EngineOption.hpp"
#include "corvane/utilities/UserDefaults.hpp"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// The process-wide settings of the library, set up once by the application at
/// launch. Every field is read in a shared pass and written in an exclusive
/// pass of `atomic`.
class KitSettings {
public:
    /// The settings every part of the library reads; lives as long as the process.
    static KitSettings& shared();

    KitSettings();
    KitSettings(const KitSettings&) = delete;
    KitSettings& operator=(const KitSettings&) = delete;

    /// The formats the library accepts; by default every format of the table.
    ///@{
    MediaType::Set supportedFileTypes() const;
    void setSupportedFileTypes(MediaType::Set types);
    ///@}

    /// Kept for the application; nothing in the library records on it.
    ///@{
    std::shared_ptr<UndoManager> undoManager() const;
    void setUndoManager(std::shared_ptr<UndoManager> manager);
    ///@}

    /// Where every key of the library is stored; the standard defaults unless set.
    ///@{
    std::shared_ptr<UserDefaults> userDefaults() const;
    void setUserDefaults(std::shared_ptr<UserDefaults> defaults);
    ///@}

    /// The engines that may be used: by default every engine this build offers. Setting an engine
    /// the build doesn't offer leaves it out.
    ///@{
    EngineOption engineOption() const;
    void setEngineOption(EngineOption option);
    ///@}
    /// The engines this build offers: all of them when built with exiv2; without it, all but the
    /// image I/O engine (`coreImage`).
    static EngineOption availableEngineOption();

    /// Further ExifTool arguments kept for the application; the engines don't read them.
    ///@{
    std::vector<std::string> extraArguments() const;
    void setExtraArguments(std::vector<std::string> arguments);
    ///@}

    /// Written to XMP:XMPToolkit with every ExifTool write: the library's name and version
    /// ("Corvane 0.1.0") unless the application sets its own; empty deletes the tag.
    ///@{
    std::string xmpToolkit() const;
    void setXmpToolkit(std::string toolkit);
    ///@}

    /// How many ExifTool processes the library keeps running between runs, shared by its readers
    /// and writers (see ETProcessPool::shared()): by default one per processor. 0 switches them off:
    /// every run then starts an ExifTool of its own.
    ///@{
    std::size_t exifToolProcessCount() const;
    void setExifToolProcessCount(std::size_t count);
    ///@}
    /// Across how many of those processes one large batch is split, each taking contiguous pieces
    /// of its files in turn, the results merged in the batch's order: by default one per processor;
    /// 1 (or 0) never splits.
    ///@{
    std::size_t exifToolBatchSplit() const;
    void setExifToolBatchSplit(std::size_t count);
    ///@}

    /// Folder of translations of the string tables ("<language>.res" files);
    /// empty for the default search path (see Localizer).
    ///@{
    std::filesystem::path localizationDirectory() const;
    void setLocalizationDirectory(std::filesystem::path directory);
    ///@}
    /// The language of user-visible texts, as a locale identifier ("fr_CA");
    /// empty for the process's locale.
    ///@{
    std::string localizationLanguage() const;
    void setLocalizationLanguage(std::string language);
    ///@}

    /// The guard of the fields.
    AtomicPropertyQueue& atomic() const { return atomic_; }

private:
    mutable AtomicPropertyQueue atomic_;
    // None: every format of the table, made when asked for rather than with the settings, which a
    // program about to start ExifTool reads first thing.
    std::optional<MediaType::Set> nonAtomicSupportedFileTypes_;
    std::shared_ptr<UndoManager> nonAtomicUndoManager_;
    std::shared_ptr<UserDefaults> nonAtomicUserDefaults_;
    EngineOption nonAtomicEngineOption_ = availableEngineOption();
    std::vector<std::string> nonAtomicExtraArguments_;
    std::string nonAtomicXMPToolkit_;
    std::size_t nonAtomicExifToolProcessCount_;
    std::size_t nonAtomicExifToolBatchSplit_;
    std::filesystem::path nonAtomicLocalizationDirectory_;
    std::string nonAtomicLocalizationLanguage_;
};

} // namespace corvane
