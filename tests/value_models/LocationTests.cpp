#include "ZoneGuard.hpp"

#include "corvane/value_models/Location.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace corvane;

namespace {

TextLocation louvre() {
    return TextLocation("Louvre", "Rue de Rivoli", "99", "Paris", std::nullopt, std::nullopt, "France", "FR");
}

} // namespace

TEST(TextLocationAddress, BlankFieldsAreAbsentAndFormsCollapseWhiteSpace) {
    const TextLocation t(std::nullopt, std::nullopt, std::nullopt, "  ");
    EXPECT_TRUE(t.isEmpty());
    EXPECT_FALSE(t.city());
    EXPECT_EQ(t.formattedAddress(), "");
    EXPECT_EQ(t.shortFormattedAddress(), "");
    EXPECT_TRUE(TextLocation(" \n\t\u00a0").isEmpty());
    EXPECT_EQ(TextLocation(" Paris ").placeName(), " Paris ");
    EXPECT_EQ(louvre().formattedAddress(), "Louvre, 99 Rue de Rivoli, Paris France FR");
    EXPECT_EQ(louvre().shortFormattedAddress(), "99 Rue de Rivoli, Paris France");
    const TextLocation messy(" Tour\n\nEiffel", std::nullopt, std::nullopt, "Paris", "  Île-de-France");
    EXPECT_EQ(messy.formattedAddress(), "Tour Eiffel, Paris Île-de-France");
    EXPECT_EQ(louvre().iptcSublocation(), "Louvre");
    EXPECT_EQ(TextLocation(std::nullopt, "Downing St", "10").iptcSublocation(), "10 Downing St");
    EXPECT_EQ(TextLocation(std::nullopt, "Downing St").iptcSublocation(), "Downing St");
    EXPECT_FALSE(TextLocation().iptcSublocation());
    EXPECT_EQ(louvre().iptcCountryCode(), "FR");
    EXPECT_FALSE(louvre().iptcProvinceState());
}

// The views keep what the parts hold; what they add is the stamp taken off and the empty defaults.
TEST(LocationViews, GpsAndTextRoundTripAndPlatformFixesConvert) {
    ZoneGuard zone("Europe/Paris");
    const GPSLocation gps(Coordinate(48.8606, 2.3376), Altitude(-12.5), 270.0,
                          DateTime(2021, 7, 14, 10, 0, 0));
    const Location location(gps, louvre());
    EXPECT_EQ(location.gpsLocation(), gps);
    EXPECT_EQ(location.textLocation(), louvre());
    EXPECT_FALSE(location.withNoStamp().stamp());
    EXPECT_EQ(location.withNoStamp().city(), "Paris");
    const Location bare(gps.coordinate());
    EXPECT_EQ(bare.gpsLocation(), GPSLocation(gps.coordinate()));
    EXPECT_TRUE(bare.textLocation().isEmpty());

    PlatformLocation fix;
    fix.coordinate = {45.0, 5.0};
    fix.altitude = 210;
    fix.horizontalAccuracy = 5;
    fix.timestamp = Date(1600000000);
    const GPSLocation fromFix(fix);
    EXPECT_EQ(fromFix,
              GPSLocation(Coordinate(45.0, 5.0), Altitude(210), std::nullopt, DateTime(Date(1600000000))));
    const PlatformLocation back = fromFix.platformLocation();
    EXPECT_EQ(back.coordinate, fix.coordinate);
    EXPECT_EQ(back.horizontalAccuracy, 0) << "the accuracy isn't kept";
    EXPECT_EQ(GPSLocation(Coordinate(1, 2)).platformLocation().altitude, 0);
}

TEST(LocationJson, WritesAndRequiresAllThirteenKeys) {
    Location location(48.5, 2.25);
    location.setCity("Paris");
    location.setStamp(Date(978307200 + 100.5));
    const nlohmann::json json = location;
    EXPECT_EQ(json, nlohmann::json::parse(R"({"latitude": 48.5, "longitude": 2.25, "altitude": null,
        "stamp": 100.5, "direction": null, "place_name": null, "street_name": null, "street_number": null,
        "city": "Paris", "state": null, "zip_code": null, "country_name": null, "country_code": null})"));
    // Reading back is the place file's round trip. A missing key, and a latitude that is text or null, are
    // refused.
    using Change = std::pair<const char*, std::optional<nlohmann::json>>;
    for (const auto& [key, value] :
         {Change{"stamp", std::nullopt}, {"latitude", "1"}, {"latitude", nullptr}}) {
        nlohmann::json broken = Location(1, 2).toJson();
        value ? void(broken[key] = *value) : void(broken.erase(key));
        EXPECT_THROW((void)broken.get<Location>(), nlohmann::json::exception) << key;
    }
}
