#pragma once

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace corvane {

/// The library's string tables: for each table name ("Localizable", "Sections",
/// "Country3166a3"), the texts by key. An entry has a plain text, used as it
/// stands, and may have plural forms by ICU plural category ("zero", "one",
/// "few", "other"...), chosen when the text is formatted with a count.
///
/// English is compiled in. Translations are ICU resource bundles, one
/// "<locale>.res" per language, made with genrb from the text form that
/// writeTemplate() produces.
class StringTables {
public:
    /// One localised text.
    struct Entry {
        std::string text;                                     ///< the text, with its placeholders
        std::unordered_map<std::string, std::string> plurals; ///< by ICU plural category, if any
    };
    /// A table, by key; the tables, by name.
    ///@{
    using Table = std::unordered_map<std::string, Entry>;
    using Tables = std::unordered_map<std::string, Table>;
    ///@}

    /// The names of the tables the library uses.
    ///@{
    static constexpr std::string_view defaultTable = "Localizable";
    static constexpr std::string_view sectionsTable = "Sections";
    static constexpr std::string_view countryTable = "Country3166a3";
    ///@}

    /// The compiled-in English tables, built once.
    static const Tables& english();

    /// Reads the resource bundle "<directory>/<locale>.res" exactly (no
    /// fallback); nothing when it is absent or unreadable.
    static std::optional<Tables> loadResourceBundle(const std::filesystem::path& directory,
                                                    const std::string& locale);

    /// Writes the English tables as an ICU resource-bundle source named
    /// `locale`, the starting point of a translation (sorted, stable output).
    static void writeTemplate(std::ostream& out, const std::string& locale);

    /// The entry of `key` in `table`; nullptr when absent.
    static const Entry* find(const Tables& tables, std::string_view table, std::string_view key);
};

} // namespace corvane
