#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// An ISO 3166-1 country: its alpha-2, alpha-3 and numeric codes. The rows of
/// the table, their order and their few irregularities live in CountryTable.inc.
class Country {
public:
    Country() = default;
    /// A country of these ISO 3166-1 codes.
    Country(std::string alpha2, std::string alpha3, std::string numeric)
        : alpha2_(std::move(alpha2)), alpha3_(std::move(alpha3)), numeric_(std::move(numeric)) {}

    /// The ISO 3166-1 codes: alpha-2 ("FR"), alpha-3 ("FRA"), numeric ("250").
    ///@{
    const std::string& alpha2() const { return alpha2_; }
    const std::string& alpha3() const { return alpha3_; }
    const std::string& numeric() const { return numeric_; }
    ///@}

    // One constant per country: Country::afghanistan(), Country::france()...
#define CORVANE_COUNTRY(name, english, a2, a3, num) static const Country& name();
#include "corvane/value_models/CountryTable.inc"
#undef CORVANE_COUNTRY
    /// Kept out of allCases(), but still a constant.
    static const Country& algeria();

    /// Every country of the table, in the alphabetical order of the English names.
    static const std::vector<Country>& allCases();

    /// The country with this alpha-2, alpha-3 or numeric code, in any case.
    /// Built once: a later row replaces an earlier one on the same code.
    static std::optional<Country> from(std::string_view code);

    /// True if `code` is one of the three codes exactly (case-sensitive).
    bool hasCode(std::string_view code) const;

    /// The name in the user's language, from the "Country3166a3" strings table
    /// (key "Country3166a3:" + alpha3); the alpha3 code for a country not in it.
    std::string localizedName() const;
    /// localizedName, " (", alpha2, ", ", alpha3, ", ", numeric. No closing bracket.
    std::string localizedDescription() const;
    /// The English text of the same strings table (empty for a country not in it).
    std::string englishName() const;

    friend bool operator==(const Country&, const Country&) = default;

private:
    std::string alpha2_;
    std::string alpha3_;
    std::string numeric_;
};

} // namespace corvane

template <> struct std::hash<corvane::Country> {
    size_t operator()(const corvane::Country& c) const noexcept {
        return std::hash<std::string>()(c.alpha2() + c.alpha3() + c.numeric());
    }
};
