#pragma once

#include "corvane/utilities/LocalizerArgument.hpp"
#include "corvane/utilities/LocalizerString.hpp"
#include "corvane/utilities/StringTables.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Localisation of the library's texts (see Localizer for languages, files and
/// formats). Up to four formatting arguments; more is a programming fault.
class KitToolbox {
public:
    /// The table keys are looked up in unless another is named.
    static constexpr std::string_view defaultTable = StringTables::defaultTable;

    /// The text of `key` in `table` as it stands.
    static std::string localize(std::string_view key, std::string_view table = defaultTable);

    /// The text of `key` in `table`, formatted with the arguments.
    template <class... Args>
    requires(sizeof...(Args) >= 1 &&
             (std::constructible_from<LocalizerArgument, Args> && ...)) static std::string
        localize(std::string_view key, std::string_view table, Args&&... args) {
        static_assert(sizeof...(Args) <= 4, "KitToolbox.localize doesn't support more than 4 arguments");
        return localizeWithArguments(key, table, {LocalizerArgument(std::forward<Args>(args))...});
    }

    /// As above with a list built at run time; more than 4 arguments stop the process.
    static std::string localizeWithArguments(std::string_view key, std::string_view table,
                                             const std::vector<LocalizerArgument>& args);
};

/// The short form: a key of the default table, with its arguments.
template <class... Args> std::string TL(const LocalizerString& key, Args&&... args) {
    if constexpr (sizeof...(Args) == 0)
        return KitToolbox::localize(key.rawValue());
    else
        return KitToolbox::localize(key.rawValue(), KitToolbox::defaultTable, std::forward<Args>(args)...);
}

} // namespace corvane
