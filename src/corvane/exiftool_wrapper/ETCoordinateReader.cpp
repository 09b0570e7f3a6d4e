#include "corvane/exiftool_wrapper/ETCoordinateReader.hpp"

#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/helpers/WhiteSpace.hpp"

#include <charconv>
#include <cmath>
#include <unicode/utf8.h>

namespace corvane {

namespace {

// Ends each file's output, so that a file ExifTool couldn't read (which prints no line) leaves an
// empty section rather than shifting the other files' lines.
constexpr std::string_view sectionEnd = "#corvane-coordinate-end";

// A signed decimal number at the start of `text`, which then moves past it.
std::optional<double> signedNumber(std::string_view& text) {
    if (text.empty() || (text.front() != '+' && text.front() != '-')) return std::nullopt;
    const bool negative = text.front() == '-';
    text.remove_prefix(1);
    double value = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (error != std::errc() || !std::isfinite(value)) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return negative ? -value : value;
}

bool isUTF8(const std::string& bytes) {
    const auto* s = reinterpret_cast<const uint8_t*>(bytes.data());
    const auto length = static_cast<int32_t>(bytes.size());
    for (int32_t i = 0; i < length;) {
        UChar32 c;
        U8_NEXT(s, i, length, c);
        if (c < 0) return false;
    }
    return true;
}

} // namespace

std::string_view message(ETCoordinateReader::ReadError error) {
    using E = ETCoordinateReader::ReadError;
    switch (error) {
    case E::noFileProvided:
        return "No file provided";
    case E::invalidData:
        return "Invalid Data";
    case E::emptyOutput:
        return "Empty output";
    case E::notParsableOutput:
        return "Not parsable output";
    }
    return {};
}

std::optional<Coordinate> ETCoordinateReader::coordinate(std::string_view line) {
    line = trimAsciiWhiteSpace(line);
    const auto latitude = signedNumber(line);
    if (!latitude || line.empty() || line.front() != '\t') return std::nullopt;
    line.remove_prefix(1);
    const auto longitude = signedNumber(line);
    if (!longitude || !line.empty()) return std::nullopt;
    if (std::abs(*latitude) > 90 || std::abs(*longitude) > 180) return std::nullopt;
    return Coordinate(*latitude, *longitude);
}

std::vector<std::optional<Coordinate>> ETCoordinateReader::read() const {
    if (storageSources.empty()) throw ReadException(ReadError::noFileProvided);
    ETInput input;
    input.addArguments(
        storageSources, [this](const TagStorageSource& source, ETInput::ArgumentsMaker& maker) {
            maker.arguments = {
                "-c", "%+.6f", "-T", "-gpslatitude", "-gpslongitude", "-echo3", std::string(sectionEnd)};
            maker.ignoreMinorErrors = ignoreMinorErrors;
            maker.password = source.password();
            maker.url = source.url();
            maker.soloRun = true;
        });
    // On the library's running ExifTool processes, unless the application switched them off: a
    // host that asks for one file's position at a time then pays no ExifTool start for each.
    const auto output = ETProcess::runOnSharedPool(input);
    try {
        output.throwIfErrors();
    } catch (const ETOutputException& e) {
        // Past minor errors, a file ExifTool couldn't read (missing, not a media file) only has no
        // position; the run stands for the others.
        if (!ignoreMinorErrors || e.error() != ETOutputError::exifToolErrors) throw;
    }
    const auto& data = output.data();
    if (data.empty()) throw ReadException(ReadError::emptyOutput);
    if (!isUTF8(data)) throw ReadException(ReadError::invalidData);

    std::vector<std::optional<Coordinate>> coordinates;
    std::optional<Coordinate> current;
    std::string_view rest = data;
    while (!rest.empty()) {
        const auto end = rest.find('\n');
        const auto line = trimAsciiWhiteSpace(rest.substr(0, end));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        if (line == sectionEnd) {
            coordinates.push_back(current);
            current.reset();
        } else if (!line.empty()) {
            current = coordinate(line);
        }
    }
    // Every file's section ends with its marker; fewer means the output isn't what was asked for.
    if (coordinates.size() != storageSources.size()) throw ReadException(ReadError::notParsableOutput);
    return coordinates;
}

} // namespace corvane
