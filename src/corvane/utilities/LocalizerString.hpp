#pragma once

#include <functional>
#include <string>

namespace corvane {

/// A key of the default string table, as a typed value.
class LocalizerString {
public:
    /// The key `rawValue`.
    ///@{
    explicit LocalizerString(std::string rawValue) : rawValue_(std::move(rawValue)) {}
    LocalizerString(const char* rawValue) : rawValue_(rawValue) {}
    ///@}

    /// The key's text.
    const std::string& rawValue() const { return rawValue_; }

    /// The keys the library uses by name.
    ///@{
    static LocalizerString tagComparisonTagsTitle() { return LocalizerString("TagComparisonTagsTitle"); }
    static LocalizerString mediaKindAudio() { return LocalizerString("MediaKindAudio"); }
    static LocalizerString mediaKindImage() { return LocalizerString("MediaKindImage"); }
    static LocalizerString mediaKindMovie() { return LocalizerString("MediaKindMovie"); }
    static LocalizerString mediaKindOther() { return LocalizerString("MediaKindOther"); }
    static LocalizerString languageLocal() { return LocalizerString("LanguageLocal"); }
    static LocalizerString languageGerman() { return LocalizerString("LanguageGerman"); }
    static LocalizerString languageEnglish() { return LocalizerString("LanguageEnglish"); }
    static LocalizerString languageSpanish() { return LocalizerString("LanguageSpanish"); }
    static LocalizerString languageFrench() { return LocalizerString("LanguageFrench"); }
    static LocalizerString languageItalian() { return LocalizerString("LanguageItalian"); }
    ///@}

    friend bool operator==(const LocalizerString&, const LocalizerString&) = default;

private:
    std::string rawValue_;
};

} // namespace corvane

template <> struct std::hash<corvane::LocalizerString> {
    size_t operator()(const corvane::LocalizerString& s) const noexcept {
        return std::hash<std::string>()(s.rawValue());
    }
};
