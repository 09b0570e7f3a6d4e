#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace corvane::test {

// The bytes of a file as a string; empty when it can't be read. Tests compare them before and
// after an operation that must leave the file as it was.
inline std::string fileBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

} // namespace corvane::test
