#pragma once

#include <functional>
#include <optional>
#include <string>

namespace corvane {

/// A place as text: the address fields of the IPTC and XMP location tags.
/// Fields holding nothing but white space are kept as absent.
class TextLocation {
public:
    /// One address field; absent when unknown.
    using Field = std::optional<std::string>;

    /// A place of these fields; fields of white space only are kept as absent.
    explicit TextLocation(Field placeName = std::nullopt, Field streetName = std::nullopt,
                          Field streetNumber = std::nullopt, Field city = std::nullopt,
                          Field state = std::nullopt, Field zipCode = std::nullopt,
                          Field countryName = std::nullopt, Field countryCode = std::nullopt);

    /// The address fields: place name (a building, a landmark), street name and number, city, state
    /// or province, zip code, country name and its ISO code.
    ///@{
    const Field& placeName() const { return placeName_; }
    const Field& streetName() const { return streetName_; }
    const Field& streetNumber() const { return streetNumber_; }
    const Field& city() const { return city_; }
    const Field& state() const { return state_; }
    const Field& zipCode() const { return zipCode_; }
    const Field& countryName() const { return countryName_; }
    const Field& countryCode() const { return countryCode_; }
    ///@}

    /// True when every field is absent.
    bool isEmpty() const;

    /// "Louvre, 99 Rue de Rivoli, Paris France FR": place; number and street;
    /// city, state, zip code, country and code.
    std::string formattedAddress() const;
    /// Number and street; city, state and country.
    std::string shortFormattedAddress() const;

    /// The values of the IPTC location tags. The sub-location is the place name,
    /// or else the street number and name.
    Field iptcSublocation() const;
    /// The other IPTC fields, one to one from the address.
    ///@{
    const Field& iptcCity() const { return city_; }
    const Field& iptcProvinceState() const { return state_; }
    const Field& iptcCountryName() const { return countryName_; }
    const Field& iptcCountryCode() const { return countryCode_; }
    ///@}

    /// Nothing for a string of white space only, the string as it is otherwise.
    static Field nonBlank(const Field& text);

    friend bool operator==(const TextLocation&, const TextLocation&) = default;

private:
    Field placeName_;
    Field streetName_;
    Field streetNumber_;
    Field city_;
    Field state_;
    Field zipCode_;
    Field countryName_;
    Field countryCode_;
};

} // namespace corvane

template <> struct std::hash<corvane::TextLocation> {
    size_t operator()(const corvane::TextLocation& t) const noexcept {
        size_t h = 0;
        for (const auto* f : {&t.placeName(), &t.streetName(), &t.streetNumber(), &t.city(), &t.state(),
                              &t.zipCode(), &t.countryName(), &t.countryCode()})
            h = h * 31 + (*f ? std::hash<std::string>()(**f) : 7);
        return h;
    }
};
