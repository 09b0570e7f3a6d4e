// What the benchmarks share: a small sample image and plain ExifTool runs to compare against.
#pragma once

#include "corvane/exiftool_wrapper/ETProcess.hpp"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace corvane::bench {

// Wall-clock seconds of a piece of work.
inline double timed(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The median of the rounds' times: one round slowed by the machine's other work doesn't count.
inline double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const auto n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

// An 8x8 grey baseline JFIF JPEG.
inline const std::vector<std::uint8_t>& sampleJPEG() {
    static const std::vector<std::uint8_t> bytes = {
        0xFF, 0xD8, 0xFF, 0xE0, 0x00, 0x10, 0x4A, 0x46, 0x49, 0x46, 0x00, 0x01, 0x01, 0x00, 0x00, 0x01,
        0x00, 0x01, 0x00, 0x00, 0xFF, 0xDB, 0x00, 0x43, 0x00, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01,
        0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01,
        0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01,
        0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01,
        0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0xFF, 0xC0, 0x00, 0x0B, 0x08, 0x00,
        0x08, 0x00, 0x08, 0x01, 0x01, 0x11, 0x00, 0xFF, 0xC4, 0x00, 0x14, 0x00, 0x01, 0x00, 0x00, 0x00,
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xFF, 0xC4, 0x00,
        0x14, 0x10, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
        0x00, 0x00, 0x00, 0xFF, 0xDA, 0x00, 0x08, 0x01, 0x01, 0x00, 0x00, 0x3F, 0x00, 0x3F, 0xFF, 0xD9};
    return bytes;
}

inline void writeSampleJPEG(const std::filesystem::path& path) {
    const auto& bytes = sampleJPEG();
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

// Appends the text as one single-quoted shell word.
inline void appendQuoted(std::string& command, const std::string& text) {
    command.push_back('\'');
    for (char c : text) {
        if (c == '\'')
            command.append("'\\''");
        else
            command.push_back(c);
    }
    command.push_back('\'');
}

// Runs ExifTool with the arguments on its command line, reading all its output as the engines do;
// gives the number of bytes read. Throws when it fails.
inline std::size_t runExifTool(const std::vector<std::string>& arguments) {
    std::string command;
    appendQuoted(command, ETProcess::executableURL().string());
    for (const auto& argument : arguments) {
        command.push_back(' ');
        appendQuoted(command, argument);
    }
    command.append(" 2>/dev/null");
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) throw std::runtime_error("can't start exiftool");
    std::size_t total = 0;
    char buffer[1 << 16];
    std::size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0)
        total += n;
    const int status = pclose(pipe);
    if (status != 0) throw std::runtime_error("exiftool failed with status " + std::to_string(status));
    return total;
}

} // namespace corvane::bench
