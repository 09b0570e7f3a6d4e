#pragma once

#include "corvane/utilities/LocalizerArgument.hpp"
#include "corvane/utilities/StringTables.hpp"

#include <filesystem>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Turns string-table keys into texts in the user's language.
///
/// Language: KitSettings' localizationLanguage, or else the process's locale as
/// ICU sees it. Translations: "<locale>.res" resource bundles, tried from the
/// most specific form of the language to the bare language ("fr_CA", then
/// "fr"), in KitSettings' localizationDirectory, or else in
/// "<executable folder>/../share/corvane/locale", "/usr/local/share/corvane/locale"
/// and "/usr/share/corvane/locale". A key missing from a translation falls back
/// to English; a key missing from English gives the key itself.
///
/// Formats are printf-like: %@ and %s (text), %d %i %u %ld %lu %lld (integers),
/// %f %e %g with flags, width and precision, positional %1$@, and %%. An entry
/// with plural forms chooses its form by the first integer argument, with the
/// ICU plural rules of the text's language (an explicit "zero" form for 0).
class Localizer {
public:
    /// The localiser the library uses; lives as long as the process.
    static Localizer& shared();

    /// The text of `key` in `table`, not formatted.
    std::string text(std::string_view table, std::string_view key);
    /// The text of `key` in `table`, formatted with `args` when there are any.
    std::string localize(std::string_view table, std::string_view key,
                         const std::vector<LocalizerArgument>& args);

    /// The language in force and the translation files found for it, most
    /// specific first (for diagnostics).
    std::string language();
    /// The translation files loaded for it.
    std::vector<std::filesystem::path> loadedFiles();

    /// Forgets loaded translations, so that changed files are read again.
    void reset();

    /// `format` with `args` put in, by the printf-like rules above.
    static std::string format(std::string_view format, const std::vector<LocalizerArgument>& args);
    /// The folders searched for translations when `KitSettings` names none, in order.
    static std::vector<std::filesystem::path> defaultDirectories();
    /// "fr_CA" -> {"fr_CA", "fr"}; "zh_Hant_TW" -> {"zh_Hant_TW", "zh_Hant", "zh"}.
    static std::vector<std::string> fallbackChain(std::string_view locale);

private:
    struct Translation {
        std::string locale;
        std::filesystem::path file;
        StringTables::Tables tables;
    };
    struct State {
        std::filesystem::path directory;
        std::string requestedLanguage;
        std::string language;
        std::vector<Translation> chain;
    };

    std::shared_ptr<const State> current();
    static std::shared_ptr<const State> load(std::filesystem::path directory, std::string requestedLanguage);
    static const std::string& selectForm(const StringTables::Entry& entry, const std::string& locale,
                                         const std::vector<LocalizerArgument>& args);

    std::mutex mutex_;
    std::shared_ptr<const State> state_;
};

} // namespace corvane
