#include "corvane/value_models/Country.hpp"

#include "corvane/utilities/Localizer.hpp"

#include <algorithm>
#include <unordered_map>

namespace corvane {

namespace {

struct CountryRow {
    const char* english;
    const char* alpha2;
    const char* alpha3;
    const char* numeric;
};

constexpr CountryRow kRows[] = {
#define CORVANE_COUNTRY(name, english, a2, a3, num) {english, a2, a3, num},
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

const std::unordered_map<std::string, const char*>& englishNamesByAlpha3() {
    static const std::unordered_map<std::string, const char*> names = [] {
        std::unordered_map<std::string, const char*> map;
        map.reserve(rowCount + 1);
        for (const auto& row : kRows)
            map.emplace(row.alpha3, row.english);
        map.emplace("DZA", "Algeria");
        return map;
    }();
    return names;
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
    const auto& names = englishNamesByAlpha3();
    auto it = names.find(alpha3_);
    return it == names.end() ? std::string() : std::string(it->second);
}

std::string Country::localizedName() const {
    // The "Country3166a3" strings table; a key it lacks comes back as the key
    // itself, in which case the English name of the row stands in.
    std::string key = "Country3166a3:" + alpha3_;
    std::string name = Localizer::shared().text("Country3166a3", key);
    if (name.empty() || name == key) {
        std::string english = englishName();
        return english.empty() ? alpha3_ : english;
    }
    return name;
}

std::string Country::localizedDescription() const {
    return localizedName() + " (" + alpha2_ + ", " + alpha3_ + ", " + numeric_;
}

} // namespace corvane
