#include "corvane/exiftool_wrapper/ETMetadataCleaner.hpp"

#include "corvane/exiftool_wrapper/ETProcess.hpp"

namespace corvane {

std::string_view message(ETMetadataCleaner::ReadError error) {
    switch (error) {
    case ETMetadataCleaner::ReadError::noFileProvided:
        return "No file provided";
    }
    return {};
}

void ETMetadataCleaner::clean() const {
    if (storageSources.empty()) throw ReadException(ReadError::noFileProvided);
    ETInput input;
    input.addArguments(storageSources,
                       [this](const TagStorageSource& source, ETInput::ArgumentsMaker& maker) {
                           maker.arguments.push_back("-all=");
                           maker.correction = enableCorrection;
                           maker.ignoreMinorErrors = ignoreMinorErrors;
                           // In place: the file keeps its inode, extended attributes, owner and mode.
                           maker.overwriteInPlace = overrideInPlace;
                           maker.password = source.password();
                           maker.url = source.url();
                           maker.soloRun = true;
                       });
    ETProcess::runOnSharedPool(input).throwIfErrors();
}

} // namespace corvane
