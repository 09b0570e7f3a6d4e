#include "corvane/exiftool_wrapper/ETInput.hpp"

namespace corvane {

std::vector<std::string> ETInput::ArgumentsMaker::optionArguments() const {
    std::vector<std::string> args;
    if (language) {
        const auto code = language->equivalentLanguage().etName();
        if (!code.empty()) {
            args.emplace_back("-lang");
            args.emplace_back(code);
        }
    }
    if (password) {
        args.emplace_back("-password");
        args.push_back(*password);
    }
    if (ignoreMinorErrors) args.emplace_back("-m");
    if (shortTags) args.emplace_back("-s");
    if (rawValues) args.emplace_back("-n");
    if (noComposite) args.emplace_back("-e");
    if (rawLocation) {
        // Signed decimal degrees with a plain dot: what the coordinate parser reads back exactly.
        args.emplace_back("-c");
        args.emplace_back("%+.8f");
    }
    if (correction) args.emplace_back("-F");
    if (overwriteInPlace)
        args.emplace_back("-overwrite_original_in_place");
    else if (overwriteOriginal)
        args.emplace_back("-overwrite_original");
    if (recurseSubfolders) args.emplace_back("-r");
    if (filePathFilter) {
        auto ext = filePathFilter->exifToolArguments();
        args.insert(args.end(), ext.begin(), ext.end());
    }
    return args;
}

std::vector<std::string> ETInput::ArgumentsMaker::commandArguments() const {
    auto args = optionArguments();
    args.insert(args.end(), arguments.begin(), arguments.end());
    return args;
}

} // namespace corvane
