#include "corvane/sidecar_support/CSVSidecarWriter.hpp"

#include "corvane/csv_support/CSVWriter.hpp"
#include "corvane/csv_support/OutputStream.hpp"
#include "corvane/sidecar_support/JSONSidecarWriter.hpp"

namespace corvane {

std::string_view message(CSVSidecarWriter::WriteError error) {
    switch (error) {
    case CSVSidecarWriter::WriteError::dataEncodingFailed:
        return "Data encoding failed";
    }
    return "Data encoding failed";
}

std::string CSVSidecarWriter::data(const TagStorage& storage) const {
    auto stream = OutputStream::toMemory();
    try {
        CSVWriter writer(stream, ",", CSVWriter::WriteNewline::lf);
        for (const TagName& name : storage.currentTagNames()) {
            auto converter = JSONSidecarWriter::converter(name);
            auto value = converter->csvValueFromNativeValue(DynamicValue(storage.currentValue(name)));
            writer.beginNewRow();
            writer.writeField(name.rawValue());
            writer.writeField(value ? *value : std::string());
        }
    } catch (const CSVWriteException&) {
        throw WriteException(WriteError::dataEncodingFailed);
    }
    // The writer has closed the stream; memory keeps what it took.
    if (stream->status() == OutputStream::Status::error) throw WriteException(WriteError::dataEncodingFailed);
    return std::string(stream->data());
}

} // namespace corvane
