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
///
/// The two notifications are posted on the calling thread by `setUserLanguage`, with no sender.
/// Work the library schedules for the main thread waits on the main queue, which the host drains
/// (`MainQueue::shared().drain()` in a tool, its event loop woken by `MainQueue::setWakeHook` in an
/// application).
class ETLanguage {
public:
    /// The languages, by raw value; `local` first.
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
    /// The language of this case; its case.
    ///@{
    constexpr ETLanguage(Case c) : case_(c) {}
    constexpr Case value() const { return case_; }
    ///@}

    /// Every language, `local` first.
    static const std::vector<ETLanguage>& allCases();
    /// The language of a raw value ("en_gb"); nothing for another text.
    static std::optional<ETLanguage> fromRawValue(std::string_view raw);

    /// The case name ("en_gb"); ExifTool's code ("en-gb"), empty for local.
    ///@{
    std::string_view rawValue() const;
    std::string_view etName() const;
    ///@}
    /// Display name in the language itself; for local the localised "LanguageLocalValue".
    std::string name() const;
    /// name, " (", etName, ")"; local has no code and gives its name alone.
    std::string title() const;
    /// Key of the localised name in the string table ("LanguageGerman").
    std::string_view localizationKey() const;
    /// The name in the user's language, from the string table.
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
    /// Replaces the key of the user defaults that holds the choice.
    static void setUserLanguageKey(std::string key);
    /// The language chosen by the user (`local` when none is stored); storing a new one posts the
    /// will- and did-change notifications around the change.
    ///@{
    static ETLanguage userLanguage();
    static void setUserLanguage(ETLanguage language);
    ///@}

    /// Posted before and after the user's language changes, with no sender and no user info.
    ///@{
    static constexpr std::string_view willChangeUserLangageNotification =
        "QRVUserLanguageWillChangeNotification";
    static constexpr std::string_view didChangeUserLangageNotification =
        "QRVUserLanguageDidChangeNotification";
    ///@}

    /// Same case.
    friend constexpr bool operator==(ETLanguage a, ETLanguage b) { return a.case_ == b.case_; }

private:
    Case case_ = local;
};

} // namespace corvane

template <> struct std::hash<corvane::ETLanguage> {
    size_t operator()(corvane::ETLanguage l) const noexcept { return static_cast<size_t>(l.value()); }
};
