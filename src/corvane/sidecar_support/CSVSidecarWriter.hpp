#pragma once

#include "corvane/sidecar_support/SidecarWriter.hpp"
#include "corvane/utilities/CaseException.hpp"

#include <string_view>

namespace corvane {

/// Writes a CSV sidecar: UTF-8, comma-delimited, one row per tag of the storage (its name, then its
/// current value in the converter's CSV form, empty where the converter gives nothing), rows joined
/// by LF and no header. Fields holding a comma, a quotation mark, CR or LF are quoted.
class CSVSidecarWriter : public SidecarWriter {
public:
    /// Why a sidecar can't be written; `message` gives the text.
    enum class WriteError { dataEncodingFailed };

    /// Thrown by the writer; `what()` is the message of the case.
    using WriteException = CaseException<WriteError>;

    /// WriteException(dataEncodingFailed) when the CSV text can't be produced.
    std::string data(const TagStorage& storage) const override;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(CSVSidecarWriter::WriteError error);

} // namespace corvane
