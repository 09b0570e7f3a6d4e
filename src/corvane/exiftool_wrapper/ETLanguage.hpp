#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

/// A language of ExifTool's output (`exiftool -lang`), or `local`: the language
/// of the user's system, resolved to one of ExifTool's through the equivalence
/// table. The raw value is the case name ("en_gb"); etName() is ExifTool's code
/// ("en-gb"), empty for local.
class ETLanguage {
public:
    enum Case : std::uint8_t {
        local,
        cs,
        de,
        en,
        en_ca,
        en_gb,
        es,
        fi,
        fr,
        it,
        ja,
        ko,
        nl,
        pl,
        ru,
        sk,
        sv,
        tr,
        zh_cn,
        zh_tw
    };

    constexpr ETLanguage() = default;
    constexpr ETLanguage(Case c) : case_(c) {}
    constexpr Case value() const { return case_; }

    static const std::vector<ETLanguage>& allCases();
    static std::optional<ETLanguage> fromRawValue(std::string_view raw);

    std::string_view rawValue() const;
    std::string_view etName() const;
    /// Display name in the language itself; for local the localised "LanguageLocalValue".
    std::string name() const;
    /// name, " (", etName, ")"; local has no code and gives its name alone.
    std::string title() const;
    /// Key of the localised name in the string table ("LanguageGerman").
    std::string_view localizationKey() const;
    std::string localizedName() const;

    /// The language that stands for this one: local resolves to the ExifTool
    /// language of the process's locale (English when none fits); every other
    /// language stands for itself.
    ETLanguage equivalentLanguage() const;
    /// Locale identifiers ("fr", "en_GB", "zh_Hant"...) to ExifTool languages.
    static const std::unordered_map<std::string, ETLanguage>& equivalenceTable();
    /// The ExifTool language for a locale identifier, trying it from the most
    /// specific form to the bare language; nothing when none fits.
    static std::optional<ETLanguage> forLocale(std::string_view localeIdentifier);

    /// The user's chosen output language, kept in KitSettings' user defaults.
    static std::string userLanguageKey();
    static void setUserLanguageKey(std::string key);
    static ETLanguage userLanguage();
    static void setUserLanguage(ETLanguage language);

    static constexpr std::string_view willChangeUserLangageNotification =
        "QRVUserLanguageWillChangeNotification";
    static constexpr std::string_view didChangeUserLangageNotification =
        "QRVUserLanguageDidChangeNotification";

    friend constexpr bool operator==(ETLanguage a, ETLanguage b) { return a.case_ == b.case_; }

private:
    Case case_ = local;
};

} // namespace corvane

template <> struct std::hash<corvane::ETLanguage> {
    size_t operator()(corvane::ETLanguage l) const noexcept { return static_cast<size_t>(l.value()); }
};
