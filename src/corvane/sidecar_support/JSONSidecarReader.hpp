#pragma once

#include "corvane/sidecar_support/SidecarReader.hpp"
#include "corvane/utilities/CaseException.hpp"

#include <string_view>

namespace corvane {

/// Reads a JSON sidecar: one object whose members are tag families ("EXIF"), each an object whose
/// members are the family's tags ("Make") with a JSON number, Boolean, string or array as value.
/// Members of any order are accepted; a family member that is not an object is skipped, and a tag
/// whose value its converter can't read (null among them) is left out.
class JSONSidecarReader : public SidecarReader {
public:
    /// Why a sidecar can't be read; `message` gives the text.
    enum class ReadError { stringDecodingFailed, dataDecodingFailed };

    /// Thrown by the reader; `what()` is the message of the case.
    using ReadException = CaseException<ReadError>;

    /// Throws nlohmann::json::parse_error for text that isn't JSON (invalid UTF-8 included),
    /// JSONNestingError for JSON nested too deep, and ReadException(dataDecodingFailed) for JSON
    /// whose root isn't an object or that holds a number beyond a double ("1e400").
    Values readData(std::string_view data) const override;
    /// ReadException(stringDecodingFailed) for text that isn't UTF-8, then as `readData`.
    Values readString(std::string_view string) const override;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(JSONSidecarReader::ReadError error);

} // namespace corvane
