#pragma once

#include "corvane/converters/ValueConverter.hpp"
#include "corvane/sidecar_support/SidecarWriter.hpp"
#include "corvane/utilities/CaseException.hpp"

#include <string_view>

namespace corvane {

/// Writes a JSON sidecar: one object with a member per tag family, each an object with a member per
/// tag, whose value is what the tag's converter makes of its current string (a number, a Boolean, a
/// string or an array; null where the converter gives nothing). Pretty-printed, members sorted.
class JSONSidecarWriter : public SidecarWriter {
public:
    /// Why a sidecar can't be written; `message` gives the text.
    enum class WriteError { dataEncodingFailed, dataValidationFailed };

    /// Thrown by the writer; `what()` is the message of the case.
    using WriteException = CaseException<WriteError>;

    /// WriteException(dataValidationFailed) when a value can't be represented in JSON (text that
    /// isn't UTF-8, a NaN or infinite number), WriteException(dataEncodingFailed) when serialising fails.
    std::string data(const TagStorage& storage) const override;

    /// The converter the sidecars use for a tag: the catalogue item's converter, or for a tag the
    /// catalogue doesn't know, that of a plain text value, so that its value passes unchanged.
    static ValueConverterRef converter(const TagName& name);
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(JSONSidecarWriter::WriteError error);

} // namespace corvane
