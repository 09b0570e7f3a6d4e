#include "corvane/value_models/Country.hpp"

#include "corvane/utilities/Localizer.hpp"
#include "corvane/utilities/StringTables.hpp"

#include <algorithm>
#include <unordered_map>

namespace corvane {

namespace {

struct CountryRow {
    const char* alpha2;
    const char* alpha3;
    const char* numeric;
};

constexpr CountryRow kRows[] = {
#define CORVANE_COUNTRY(name, english, a2, a3, num) {a2, a3, num},
#include "corvane/value_models/CountryTable.inc"
#undef CORVANE_COUNTRY
};

enum RowIndex : size_t {
#define CORVANE_COUNTRY(name, english, a2, a3, num) row_##name,
#include "corvane/value_models/CountryTable.inc"
#undef CORVANE_COUNTRY
    rowCount
};
static_assert(rowCount == 248, "the country table has 248 rows");

std::string upperASCII(std::string_view s) {
    std::string out(s);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c); });
    return out;
}

// Upper-cased codes to rows, built once; a later row replaces an earlier one
// on the same key, so "368" names Ireland and "GU" names Guam.
const std::unordered_map<std::string, size_t>& indexedCases() {
    static const std::unordered_map<std::string, size_t> index = [] {
        std::unordered_map<std::string, size_t> map;
        map.reserve(rowCount * 3);
        const auto& all = Country::allCases();
        for (size_t i = 0; i < all.size(); ++i) {
            map[upperASCII(all[i].alpha2())] = i;
            map[upperASCII(all[i].alpha3())] = i;
            map[upperASCII(all[i].numeric())] = i;
        }
        return map;
    }();
    return index;
}

} // namespace

const std::vector<Country>& Country::allCases() {
    static const std::vector<Country> cases = [] {
        std::vector<Country> all;
        all.reserve(rowCount);
        for (const auto& row : kRows)
            all.emplace_back(row.alpha2, row.alpha3, row.numeric);
        return all;
    }();
    return cases;
}

#define CORVANE_COUNTRY(name, english, a2, a3, num)                                                          \
    const Country& Country::name() {                                                                         \
        return allCases()[row_##name];                                                                       \
    }
#include "corvane/value_models/CountryTable.inc"
#undef CORVANE_COUNTRY

const Country& Country::algeria() {
    static const Country country("DZ", "DZA", "012");
    return country;
}

std::optional<Country> Country::from(std::string_view code) {
    const auto& index = indexedCases();
    auto it = index.find(upperASCII(code));
    if (it == index.end()) return std::nullopt;
    return allCases()[it->second];
}

bool Country::hasCode(std::string_view code) const {
    return code == alpha2_ || code == alpha3_ || code == numeric_;
}

std::string Country::englishName() const {
    const auto* entry =
        StringTables::find(StringTables::english(), StringTables::countryTable, "Country3166a3:" + alpha3_);
    return entry ? entry->text : std::string();
}

std::string Country::localizedName() const {
    // The strings table falls back to English, which names every country of
    // the table; a code outside it comes back as the key itself.
    const std::string key = "Country3166a3:" + alpha3_;
    std::string name = Localizer::shared().text(StringTables::countryTable, key);
    return name.empty() || name == key ? alpha3_ : name;
}

std::string Country::localizedDescription() const {
    return localizedName() + " (" + alpha2_ + ", " + alpha3_ + ", " + numeric_;
}

} // namespace corvane
