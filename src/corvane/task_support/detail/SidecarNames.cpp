#include "corvane/task_support/detail/SidecarNames.hpp"

#include <algorithm>
#include <cctype>
#include <random>

namespace corvane::detail {

std::string asciiLowercased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string asciiUppercased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

std::filesystem::path scratchURLBeside(const std::filesystem::path& destination) {
    static thread_local std::mt19937_64 generator{std::random_device{}()};
    std::string name = "."; // appended to: GCC 12 warns, wrongly (-Wrestrict), on "." + text
    name += destination.stem().string();
    name += ".corvane-";
    name += std::to_string(generator() % 1000000000);
    name += destination.extension().string();
    return destination.parent_path() / name;
}

} // namespace corvane::detail
