#include "corvane/utilities/KitToolbox.hpp"

#include "corvane/utilities/FatalError.hpp"
#include "corvane/utilities/Localizer.hpp"

namespace corvane {

std::string KitToolbox::localize(std::string_view key, std::string_view table) {
    return Localizer::shared().localize(table.empty() ? defaultTable : table, key, {});
}

std::string KitToolbox::localizeWithArguments(std::string_view key, std::string_view table,
                                              const std::vector<LocalizerArgument>& args) {
    if (args.size() > 4) fatalError("KitToolbox.localize doesn't support more than 4 arguments");
    return Localizer::shared().localize(table.empty() ? defaultTable : table, key, args);
}

} // namespace corvane
