#pragma once

#include "corvane/value_models/Coordinate.hpp"
#include "corvane/value_models/Latitude.hpp"
#include "corvane/value_models/Longitude.hpp"

#include <string>

namespace corvane {

/// Writes latitudes, longitudes and coordinates as text in seven notations.
/// The default output of each notation reads back through CoordinateParser.
/// Numbers always use a full stop as decimal mark, whatever the locale.
///
/// Seconds, minutes and degrees are rounded separately and never carry:
/// 59.96 seconds are written "60.0" and the minutes stay as they are.
class CoordinateWriter {
public:
    std::string separator = ", ";  ///< between latitude and longitude
    std::string numberComma = "."; ///< kept with the settings; no notation reads it
    std::string space = " ";       ///< between the parts of one axis
    std::string degUnit = "°";     ///< the units of degrees, minutes and seconds
    std::string minUnit = "'";     ///< see `degUnit`
    std::string secUnit = "\"";    ///< see `degUnit`
    int latitudePadding = 1;       ///< minimal digits of the integer degrees
    int longitudePadding = 1;      ///< see `latitudePadding`
    int latitudePrecision = 5;     ///< decimals of decimal degrees and ISO 6709
    int longitudePrecision = 5;    ///< see `latitudePrecision`
    bool displaysSymbol = false;   ///< "+" before positive numbers
    bool displaysSeparator = true; ///< between latitude and longitude
    bool displaysSpaces = true;    ///< between the parts of one axis
    bool displaysUnits = true;     ///< the degree, minute and second units

    CoordinateWriter() = default;

    /// ISO 6709: "+40.20000", "-075.50000"; a coordinate closes with "/".
    ///@{
    std::string iso6709(const Latitude& latitude) const;
    std::string iso6709(const Longitude& longitude) const;
    std::string iso6709(const Coordinate& coordinate) const;
    ///@}
    /// Signed decimal degrees: "-5.25000°".
    ///@{
    std::string DDddddd(const Latitude& latitude) const;
    std::string DDddddd(const Longitude& longitude) const;
    std::string DDddddd(const Coordinate& coordinate) const;
    ///@}
    /// Hemisphere letter first: "S 5.25000°".
    ///@{
    std::string preDDddddd(const Latitude& latitude) const;
    std::string preDDddddd(const Longitude& longitude) const;
    std::string preDDddddd(const Coordinate& coordinate) const;
    ///@}
    /// Hemisphere letter last: "5.25000° S".
    ///@{
    std::string postDDddddd(const Latitude& latitude) const;
    std::string postDDddddd(const Longitude& longitude) const;
    std::string postDDddddd(const Coordinate& coordinate) const;
    ///@}
    /// Degrees and decimal minutes: "S 33° 52.1280'".
    ///@{
    std::string preDDMMmmm(const Latitude& latitude) const;
    std::string preDDMMmmm(const Longitude& longitude) const;
    std::string preDDMMmmm(const Coordinate& coordinate) const;
    ///@}
    /// The same with the hemisphere letter last.
    ///@{
    std::string postDDMMmmm(const Latitude& latitude) const;
    std::string postDDMMmmm(const Longitude& longitude) const;
    std::string postDDMMmmm(const Coordinate& coordinate) const;
    ///@}
    /// Degrees, minutes and decimal seconds: "S 33° 52' 07.7\"".
    ///@{
    std::string preDDMMSSs(const Latitude& latitude) const;
    std::string preDDMMSSs(const Longitude& longitude) const;
    std::string preDDMMSSs(const Coordinate& coordinate) const;
    ///@}
    /// The same with the hemisphere letter last.
    ///@{
    std::string postDDMMSSs(const Latitude& latitude) const;
    std::string postDDMMSSs(const Longitude& longitude) const;
    std::string postDDMMSSs(const Coordinate& coordinate) const;
    ///@}

    /// A double with its sign, zero-padded integer digits and `precision`
    /// decimals. A value that is not finite or exceeds a 64-bit integer is a
    /// programming fault and stops the process.
    static std::string pad(bool sign, double value, int padding, int precision);
    /// An integer with its sign, zero-padded to `padding` digits.
    static std::string pad(bool sign, long long value, int padding);

private:
    /// The parts of one axis, whichever it is.
    struct Axis {
        double value, degrees, minutes, seconds;
        std::string letter;
        int padding, precision, isoPadding;
    };
    Axis axis(const Latitude& latitude) const;
    Axis axis(const Longitude& longitude) const;

    std::string iso6709(const Axis& a) const;
    std::string DDddddd(const Axis& a) const;
    std::string preDDddddd(const Axis& a) const;
    std::string postDDddddd(const Axis& a) const;
    std::string DDMMmmm(const Axis& a) const;
    std::string DDMMSSs(const Axis& a) const;
    std::string pre(const Axis& a, const std::string& body) const;
    std::string post(const Axis& a, const std::string& body) const;
    std::string pair(const std::string& latitude, const std::string& longitude) const;

    std::string sp() const { return displaysSpaces ? space : std::string(); }
    std::string unit(const std::string& u) const { return displaysUnits ? u : std::string(); }
};

} // namespace corvane
