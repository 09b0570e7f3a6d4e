#include "corvane/utilities/TextLocalizer.hpp"

#include "corvane/utilities/FatalError.hpp"
#include "corvane/utilities/KitToolbox.hpp"

namespace corvane {

TextLocalizer& TextLocalizer::string(LocalizerString key) {
    key_ = std::move(key);
    return *this;
}

TextLocalizer& TextLocalizer::table(std::string table) {
    table_ = std::move(table);
    return *this;
}

TextLocalizer& TextLocalizer::argument(LocalizerArgument argument) {
    args_.push_back(std::move(argument));
    return *this;
}

TextLocalizer& TextLocalizer::arguments(std::vector<LocalizerArgument> arguments) {
    args_ = std::move(arguments);
    return *this;
}

std::string TextLocalizer::localized() const {
    if (!key_) fatalError("No localized string has been set.");
    if (args_.size() >= 5) fatalError("TextLocalizer requires less than 4 arguments.");
    return KitToolbox::localizeWithArguments(key_->rawValue(), table_, args_);
}

} // namespace corvane
