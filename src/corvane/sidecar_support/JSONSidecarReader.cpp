#include "corvane/sidecar_support/JSONSidecarReader.hpp"

#include "corvane/converters/DynamicValue.hpp"
#include "corvane/csv_support/detail/Utf8.hpp"
#include "corvane/helpers/JSONInput.hpp"
#include "corvane/sidecar_support/JSONSidecarWriter.hpp"

#include <nlohmann/json.hpp>

namespace corvane {
namespace utf8 = detail::utf8;

std::string_view message(JSONSidecarReader::ReadError error) {
    switch (error) {
    case JSONSidecarReader::ReadError::stringDecodingFailed:
        return "String decoding failed";
    case JSONSidecarReader::ReadError::dataDecodingFailed:
        return "Data decoding failed";
    }
    return "Data decoding failed";
}

SidecarReader::Values JSONSidecarReader::readData(std::string_view data) const {
    // Parse errors (syntax, invalid UTF-8) go to the caller as they are; a number beyond a double
    // ("1e400") is JSON the reader can't hold, the documented decoding failure.
    nlohmann::json root;
    try {
        root = parseJSONInput(data, "JSON sidecar");
    } catch (const nlohmann::json::parse_error&) {
        throw;
    } catch (const nlohmann::json::exception&) {
        throw ReadException(ReadError::dataDecodingFailed);
    }
    if (!root.is_object()) throw ReadException(ReadError::dataDecodingFailed);

    Values result;
    for (const auto& [streamName, members] : root.items()) {
        if (!members.is_object()) continue;
        TagStream stream(streamName);
        for (const auto& [keyName, json] : members.items()) {
            TagName name(stream, TagKey(keyName));
            auto converter = JSONSidecarWriter::converter(name);
            auto string = converter->stringValueFromNativeValue(dynamicValueFromJson(json));
            if (string)
                result.insert_or_assign(std::move(name), std::move(*string));
            else
                result.erase(name);
        }
    }
    return result;
}

SidecarReader::Values JSONSidecarReader::readString(std::string_view string) const {
    if (!utf8::isValid(string)) throw ReadException(ReadError::stringDecodingFailed);
    return readData(string);
}

} // namespace corvane
