#include "corvane/location_support/GeoNamesGeocoder.hpp"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#ifdef CORVANE_HAVE_GEONAMES
#include <geonames/geonames.h>
#endif

namespace corvane {

namespace {

constexpr double earthRadius = 6'371'000; // metres, mean radius
constexpr double degreesToRadians = M_PI / 180.0;

struct City {
    std::string name;
    std::string state;
    std::string country;
    std::string countryCode;
    std::string timeZone;
    double latitude = 0;
    double longitude = 0;
    unsigned population = 0;
    // The names as compared, folded once at load time rather than on every look-up.
    std::string foldedName;
    std::string foldedState;
    std::string foldedCountry;
    std::string foldedCountryCode;
};

using Point = std::array<double, 3>;

Point unitPoint(double latitude, double longitude) {
    double phi = latitude * degreesToRadians;
    double lambda = longitude * degreesToRadians;
    return {std::cos(phi) * std::cos(lambda), std::cos(phi) * std::sin(lambda), std::sin(phi)};
}

double squaredDistance(const Point& a, const Point& b) {
    double dx = a[0] - b[0], dy = a[1] - b[1], dz = a[2] - b[2];
    return dx * dx + dy * dy + dz * dz;
}

// The cities and their indexes. Immutable after construction.
class CityDatabase {
public:
    static const CityDatabase& shared() {
        static const CityDatabase database; // thread-safe lazy construction
        return database;
    }

    std::size_t size() const { return cities_.size(); }
    const City& city(std::uint32_t index) const { return cities_[index]; }

    // The nearest city and its squared chord distance on the unit sphere.
    std::optional<std::pair<std::uint32_t, double>> nearest(const Point& target) const {
        if (tree_.empty()) return std::nullopt;
        std::uint32_t best = tree_[0];
        double bestDistance = squaredDistance(target, points_[best]);
        search(target, 0, tree_.size(), 0, best, bestDistance);
        return std::make_pair(best, bestDistance);
    }

    const std::vector<std::uint32_t>* citiesNamed(const std::string& folded) const {
        auto it = byName_.find(folded);
        return it == byName_.end() ? nullptr : &it->second;
    }

private:
    CityDatabase() {
        load();
        points_.reserve(cities_.size());
        for (const City& city : cities_)
            points_.push_back(unitPoint(city.latitude, city.longitude));
        tree_.resize(cities_.size());
        std::iota(tree_.begin(), tree_.end(), 0u);
        build(0, tree_.size(), 0);
        for (std::uint32_t i = 0; i < cities_.size(); ++i)
            byName_[cities_[i].foldedName].push_back(i);
    }

    void load() {
#ifdef CORVANE_HAVE_GEONAMES
        auto text = [](const gchar* s) { return s ? std::string(s) : std::string(); };
        int count = geonames_get_n_cities();
        cities_.reserve(count > 0 ? static_cast<std::size_t>(count) : 0);
        for (int i = 0; i < count; ++i) {
            GeonamesCity* c = geonames_get_city(i);
            if (!c) continue;
            City city;
            city.name = text(geonames_city_get_name(c));
            city.state = text(geonames_city_get_state(c));
            city.country = text(geonames_city_get_country(c));
            city.countryCode = text(geonames_city_get_country_code(c));
            city.timeZone = text(geonames_city_get_timezone(c));
            city.latitude = geonames_city_get_latitude(c);
            city.longitude = geonames_city_get_longitude(c);
            city.population = geonames_city_get_population(c);
            geonames_city_free(c);
            city.foldedName = GeoNamesGeocoder::foldedText(city.name);
            city.foldedState = GeoNamesGeocoder::foldedText(city.state);
            city.foldedCountry = GeoNamesGeocoder::foldedText(city.country);
            city.foldedCountryCode = GeoNamesGeocoder::foldedText(city.countryCode);
            cities_.push_back(std::move(city));
        }
#endif
    }

    // Implicit k-d tree: the median of [begin, end) sits in the middle, split on axis depth % 3.
    void build(std::size_t begin, std::size_t end, int depth) {
        if (end - begin <= 1) return;
        std::size_t middle = begin + (end - begin) / 2;
        int axis = depth % 3;
        std::nth_element(
            tree_.begin() + begin, tree_.begin() + middle, tree_.begin() + end,
            [&](std::uint32_t a, std::uint32_t b) { return points_[a][axis] < points_[b][axis]; });
        build(begin, middle, depth + 1);
        build(middle + 1, end, depth + 1);
    }

    void search(const Point& target, std::size_t begin, std::size_t end, int depth, std::uint32_t& best,
                double& bestDistance) const {
        if (begin >= end) return;
        std::size_t middle = begin + (end - begin) / 2;
        std::uint32_t node = tree_[middle];
        double d = squaredDistance(target, points_[node]);
        if (d < bestDistance) {
            bestDistance = d;
            best = node;
        }
        int axis = depth % 3;
        double delta = target[axis] - points_[node][axis];
        bool left = delta < 0;
        if (left)
            search(target, begin, middle, depth + 1, best, bestDistance);
        else
            search(target, middle + 1, end, depth + 1, best, bestDistance);
        // The other side can only hold a nearer point if the splitting plane is nearer.
        if (delta * delta < bestDistance) {
            if (left)
                search(target, middle + 1, end, depth + 1, best, bestDistance);
            else
                search(target, begin, middle, depth + 1, best, bestDistance);
        }
    }

    std::vector<City> cities_;
    std::vector<Point> points_;
    std::vector<std::uint32_t> tree_;
    std::unordered_map<std::string, std::vector<std::uint32_t>> byName_;
};

PlaceMark placeMark(const City& city) {
    auto field = [](const std::string& s) {
        return s.empty() ? std::nullopt : std::optional<std::string>(s);
    };
    return PlaceMark(Coordinate(city.latitude, city.longitude), field(city.name), field(city.state),
                     field(city.country), field(city.countryCode), field(city.timeZone));
}

std::vector<std::string> splitWords(const std::string& folded) {
    std::vector<std::string> words;
    std::size_t start = 0;
    while (start < folded.size()) {
        std::size_t end = folded.find(' ', start);
        if (end == std::string::npos) end = folded.size();
        if (end > start) words.push_back(folded.substr(start, end - start));
        start = end + 1;
    }
    return words;
}

bool containsWords(const std::string& haystack, const std::string& needle) {
    if (needle.empty()) return false;
    return (" " + haystack + " ").find(" " + needle + " ") != std::string::npos;
}

} // namespace

bool GeoNamesGeocoder::isAvailable() {
#ifdef CORVANE_HAVE_GEONAMES
    return true;
#else
    return false;
#endif
}

std::size_t GeoNamesGeocoder::prepare() {
    return CityDatabase::shared().size();
}

std::string GeoNamesGeocoder::foldedText(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* nfd = icu::Normalizer2::getNFDInstance(status);
    icu::UnicodeString source =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), int32_t(text.size())));
    icu::UnicodeString decomposed = U_SUCCESS(status) ? nfd->normalize(source, status) : source;
    if (U_FAILURE(status)) decomposed = source;
    decomposed.foldCase();
    icu::UnicodeString folded;
    bool pendingSpace = false;
    for (int32_t i = 0; i < decomposed.length();) {
        UChar32 c = decomposed.char32At(i);
        i += U16_LENGTH(c);
        if (u_charType(c) == U_NON_SPACING_MARK) continue;
        if (u_isalnum(c)) {
            if (pendingSpace && !folded.isEmpty()) folded.append(UChar32(' '));
            pendingSpace = false;
            folded.append(c);
        } else {
            pendingSpace = true;
        }
    }
    std::string result;
    folded.toUTF8String(result);
    return result;
}

std::optional<PlaceMark> GeoNamesGeocoder::reverseGeocode(const Coordinate& coordinate) const {
    const auto& database = CityDatabase::shared();
    auto found = database.nearest(unitPoint(coordinate.latitude().value(), coordinate.longitude().value()));
    if (!found) return std::nullopt;
    // Chord length to arc length on the sphere.
    double chord = std::sqrt(found->second);
    double distance = 2 * std::asin(std::min(1.0, chord / 2)) * earthRadius;
    if (distance > maximumDistance_) return std::nullopt;
    return placeMark(database.city(found->first));
}

std::optional<PlaceMark> GeoNamesGeocoder::geocodeAddress(std::string_view address) const {
    const auto& database = CityDatabase::shared();

    // The address in parts ("Paris, Île-de-France, France") and as words ("Paris France FR").
    std::vector<std::string> parts;
    {
        std::size_t start = 0;
        while (start <= address.size()) {
            std::size_t end = address.find_first_of(",;\n", start);
            if (end == std::string_view::npos) end = address.size();
            std::string part = foldedText(address.substr(start, end - start));
            if (!part.empty()) parts.push_back(std::move(part));
            start = end + 1;
        }
    }
    std::string whole = foldedText(address);
    std::vector<std::string> words = splitWords(whole);
    if (words.empty()) return std::nullopt;

    // Candidate cities with the strength of their name match: a whole part beats a run of words.
    std::unordered_map<std::uint32_t, int> candidates;
    auto consider = [&](const std::string& name, int strength) {
        if (const auto* found = database.citiesNamed(name))
            for (std::uint32_t index : *found) {
                int& s = candidates[index];
                s = std::max(s, strength);
            }
    };
    for (const auto& part : parts)
        consider(part, 2);
    constexpr std::size_t longestName = 5;
    for (std::size_t begin = 0; begin < words.size(); ++begin) {
        std::string run;
        for (std::size_t n = 0; n < longestName && begin + n < words.size(); ++n) {
            if (n) run += ' ';
            run += words[begin + n];
            consider(run, 1);
        }
    }

    std::optional<std::uint32_t> best;
    std::pair<int, unsigned> bestScore{-1, 0};
    for (const auto& [index, strength] : candidates) {
        const City& city = database.city(index);
        int score = strength * 4;
        // A named state: the address holds its name, or a part is the start of it
        // ("Île-de-France" for "Île-de-France Region").
        bool stateNamed = containsWords(whole, city.foldedState);
        for (const auto& part : parts)
            if (!stateNamed && part.size() >= 3 && part != city.foldedName &&
                city.foldedState.rfind(part, 0) == 0)
                stateNamed = true;
        if (stateNamed) score += 2;
        if (containsWords(whole, city.foldedCountry) ||
            (!city.foldedCountryCode.empty() && containsWords(whole, city.foldedCountryCode) &&
             words.size() > 1))
            score += 2;
        std::pair<int, unsigned> key{score, city.population};
        if (key > bestScore) {
            bestScore = key;
            best = index;
        }
    }
    if (best) return placeMark(database.city(*best));

#ifdef CORVANE_HAVE_GEONAMES
    // Last resort: the library's own search (names containing the text), most populous first.
    std::vector<std::string> queries = parts;
    queries.push_back(whole);
    for (const auto& query : queries) {
        guint length = 0;
        GError* error = nullptr;
        gint* results =
            geonames_query_cities_sync(query.c_str(), GEONAMES_QUERY_DEFAULT, &length, nullptr, &error);
        if (error) g_error_free(error);
        std::optional<std::uint32_t> first;
        if (results && length > 0 && results[0] >= 0 && std::size_t(results[0]) < database.size())
            first = std::uint32_t(results[0]);
        g_free(results);
        if (first) return placeMark(database.city(*first));
    }
#endif
    return std::nullopt;
}

} // namespace corvane
