#include "corvane/exiftool_wrapper/ETLanguage.hpp"

#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "corvane/utilities/KitToolbox.hpp"
#include "corvane/utilities/Localizer.hpp"

#include <unicode/locid.h>

#include <array>
#include <mutex>

namespace corvane {

namespace {

struct LanguageInfo {
    std::string_view raw;
    std::string_view etName;
    std::string_view displayName; // in the language itself, as ExifTool lists it
    std::string_view key;
};

constexpr std::array<LanguageInfo, 20> infos{{
    {"local", "", "", "LanguageLocal"},
    {"cs", "cs", "Čeština", "LanguageCzech"},
    {"de", "de", "Deutsch", "LanguageGerman"},
    {"en", "en", "English", "LanguageEnglish"},
    {"en_ca", "en-ca", "Canadian English", "LanguageEnglishCA"},
    {"en_gb", "en-gb", "British English", "LanguageEnglishGB"},
    {"es", "es", "Español", "LanguageSpanish"},
    {"fi", "fi", "Suomi", "LanguageFinnish"},
    {"fr", "fr", "Français", "LanguageFrench"},
    {"it", "it", "Italiano", "LanguageItalian"},
    {"ja", "ja", "日本語", "LanguageJapanese"},
    {"ko", "ko", "한국어", "LanguageKorean"},
    {"nl", "nl", "Nederlands", "LanguageDutch"},
    {"pl", "pl", "Polski", "LanguagePolish"},
    {"ru", "ru", "Русский", "LanguageRussian"},
    {"sk", "sk", "Slovenčina", "LanguageSlovak"},
    {"sv", "sv", "Svenska", "LanguageSwedish"},
    {"tr", "tr", "Türkçe", "LanguageTurkish"},
    {"zh_cn", "zh-cn", "简体中文", "LanguageChineseCN"},
    {"zh_tw", "zh-tw", "繁體中文", "LanguageChineseTW"},
}};

const LanguageInfo& info(ETLanguage l) {
    return infos[l.value()];
}

std::mutex keyMutex;
std::string& userLanguageKeyStorage() {
    static std::string key = "QRVUserLanguage";
    return key;
}

} // namespace

const std::vector<ETLanguage>& ETLanguage::allCases() {
    static const std::vector<ETLanguage> all = [] {
        std::vector<ETLanguage> v;
        for (std::size_t i = 0; i < infos.size(); ++i)
            v.emplace_back(static_cast<Case>(i));
        return v;
    }();
    return all;
}

std::optional<ETLanguage> ETLanguage::fromRawValue(std::string_view raw) {
    for (std::size_t i = 0; i < infos.size(); ++i)
        if (infos[i].raw == raw) return ETLanguage(static_cast<Case>(i));
    return std::nullopt;
}

std::string_view ETLanguage::rawValue() const {
    return info(*this).raw;
}
std::string_view ETLanguage::etName() const {
    return info(*this).etName;
}
std::string_view ETLanguage::localizationKey() const {
    return info(*this).key;
}

std::string ETLanguage::name() const {
    if (case_ == local) return KitToolbox::localize("LanguageLocalValue");
    return std::string(info(*this).displayName);
}

std::string ETLanguage::title() const {
    if (etName().empty()) return name();
    return name() + " (" + std::string(etName()) + ")";
}

std::string ETLanguage::localizedName() const {
    return KitToolbox::localize(localizationKey());
}

const std::unordered_map<std::string, ETLanguage>& ETLanguage::equivalenceTable() {
    static const std::unordered_map<std::string, ETLanguage> table{
        {"cs", cs},         {"de", de},         {"en", en},       {"en_CA", en_ca}, {"en_GB", en_gb},
        {"en_IE", en_gb},   {"es", es},         {"fi", fi},       {"fr", fr},       {"it", it},
        {"ja", ja},         {"ko", ko},         {"nl", nl},       {"pl", pl},       {"ru", ru},
        {"sk", sk},         {"sv", sv},         {"tr", tr},       {"zh", zh_cn},    {"zh_CN", zh_cn},
        {"zh_SG", zh_cn},   {"zh_Hans", zh_cn}, {"zh_TW", zh_tw}, {"zh_HK", zh_tw}, {"zh_MO", zh_tw},
        {"zh_Hant", zh_tw},
    };
    return table;
}

std::optional<ETLanguage> ETLanguage::forLocale(std::string_view localeIdentifier) {
    icu::Locale locale(std::string(localeIdentifier).c_str());
    const std::string language = locale.getLanguage();
    const std::string script = locale.getScript();
    const std::string country = locale.getCountry();
    std::vector<std::string> candidates;
    if (!country.empty()) candidates.push_back(language + "_" + country);
    if (!script.empty()) candidates.push_back(language + "_" + script);
    candidates.push_back(language);
    const auto& table = equivalenceTable();
    for (const auto& c : candidates)
        if (auto it = table.find(c); it != table.end()) return it->second;
    return std::nullopt;
}

ETLanguage ETLanguage::equivalentLanguage() const {
    if (case_ != local) return *this;
    return forLocale(Localizer::shared().language()).value_or(en);
}

std::string ETLanguage::userLanguageKey() {
    std::lock_guard lock(keyMutex);
    return userLanguageKeyStorage();
}

void ETLanguage::setUserLanguageKey(std::string key) {
    std::lock_guard lock(keyMutex);
    userLanguageKeyStorage() = std::move(key);
}

ETLanguage ETLanguage::userLanguage() {
    auto stored = KitSettings::shared().userDefaults()->string(userLanguageKey());
    if (!stored) return local;
    return fromRawValue(*stored).value_or(local);
}

void ETLanguage::setUserLanguage(ETLanguage language) {
    auto& center = NotificationCenter::defaultCenter();
    center.post(std::string(willChangeUserLangageNotification));
    KitSettings::shared().userDefaults()->set(userLanguageKey(), std::string(language.rawValue()));
    center.post(std::string(didChangeUserLangageNotification));
}

} // namespace corvane
