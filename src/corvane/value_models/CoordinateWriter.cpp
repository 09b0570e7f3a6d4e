#include "corvane/value_models/CoordinateWriter.hpp"

#include "corvane/utilities/FatalError.hpp"

#include <charconv>
#include <cmath>

namespace corvane {

namespace {

std::string signText(bool sign, bool negative) {
    return negative ? "-" : (sign ? "+" : "");
}

} // namespace

std::string CoordinateWriter::pad(bool sign, double value, int padding, int precision) {
    const std::string signPart = signText(sign, !(value >= 0));
    const double magnitude = std::fabs(value);
    // 2^63 is the first double beyond a 64-bit integer.
    if (!std::isfinite(magnitude) || magnitude >= 9223372036854775808.0) {
        fatalError("CoordinateWriter: " + std::to_string(value) + " can't be written as degrees");
    }
    const auto integer = static_cast<long long>(magnitude);
    // Zeros are counted before rounding: 9.999999 at padding 2 is "010.00000".
    const int digits = static_cast<int>(std::log10(integer < 2 ? 1.0 : static_cast<double>(integer))) + 1;
    std::string out = signPart;
    if (padding > digits) out.append(static_cast<size_t>(padding - digits), '0');
    char buf[400];
    auto [end, ec] =
        std::to_chars(buf, buf + sizeof buf, magnitude, std::chars_format::fixed, std::max(precision, 0));
    out.append(buf, end);
    return out;
}

std::string CoordinateWriter::pad(bool sign, long long value, int padding) {
    std::string out = signText(sign, value < 0);
    const unsigned long long magnitude =
        value < 0 ? 0ULL - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
    const std::string digits = std::to_string(magnitude);
    if (padding > static_cast<int>(digits.size()))
        out.append(static_cast<size_t>(padding) - digits.size(), '0');
    return out + digits;
}

CoordinateWriter::Axis CoordinateWriter::axis(const Latitude& l) const {
    return {l.value(),
            l.degrees(),
            l.minutes(),
            l.seconds(),
            std::string(Latitude::rawValue(l.reference())),
            latitudePadding,
            latitudePrecision,
            2};
}

CoordinateWriter::Axis CoordinateWriter::axis(const Longitude& l) const {
    return {l.value(),
            l.degrees(),
            l.minutes(),
            l.seconds(),
            std::string(Longitude::rawValue(l.reference())),
            longitudePadding,
            longitudePrecision,
            3};
}

std::string CoordinateWriter::iso6709(const Axis& a) const {
    return pad(true, a.value, a.isoPadding, a.precision);
}

std::string CoordinateWriter::DDddddd(const Axis& a) const {
    return pad(displaysSymbol, a.value, a.padding, a.precision) + unit(degUnit);
}

std::string CoordinateWriter::preDDddddd(const Axis& a) const {
    return pre(a, pad(displaysSymbol, std::fabs(a.value), a.padding, a.precision) + unit(degUnit));
}

std::string CoordinateWriter::postDDddddd(const Axis& a) const {
    return post(a, pad(displaysSymbol, std::fabs(a.value), a.padding, a.precision) + unit(degUnit));
}

std::string CoordinateWriter::DDMMmmm(const Axis& a) const {
    return pad(displaysSymbol, static_cast<long long>(a.degrees), a.padding) + unit(degUnit) + sp() +
           pad(displaysSymbol, a.minutes, 2, 4) + unit(minUnit);
}

std::string CoordinateWriter::DDMMSSs(const Axis& a) const {
    return pad(displaysSymbol, static_cast<long long>(a.degrees), a.padding) + unit(degUnit) + sp() +
           pad(displaysSymbol, static_cast<long long>(a.minutes), 2) + unit(minUnit) + sp() +
           pad(displaysSymbol, a.seconds, 2, 1) + unit(secUnit);
}

std::string CoordinateWriter::pre(const Axis& a, const std::string& body) const {
    return a.letter + sp() + body;
}
std::string CoordinateWriter::post(const Axis& a, const std::string& body) const {
    return body + sp() + a.letter;
}

std::string CoordinateWriter::pair(const std::string& latitude, const std::string& longitude) const {
    return latitude + (displaysSeparator ? separator : std::string()) + longitude;
}

// MARK: - Public notations

std::string CoordinateWriter::iso6709(const Latitude& l) const {
    return iso6709(axis(l));
}
std::string CoordinateWriter::iso6709(const Longitude& l) const {
    return iso6709(axis(l));
}
std::string CoordinateWriter::iso6709(const Coordinate& c) const {
    return iso6709(c.latitude()) + iso6709(c.longitude()) + "/";
}

std::string CoordinateWriter::DDddddd(const Latitude& l) const {
    return DDddddd(axis(l));
}
std::string CoordinateWriter::DDddddd(const Longitude& l) const {
    return DDddddd(axis(l));
}
std::string CoordinateWriter::DDddddd(const Coordinate& c) const {
    return pair(DDddddd(c.latitude()), DDddddd(c.longitude()));
}

std::string CoordinateWriter::preDDddddd(const Latitude& l) const {
    return preDDddddd(axis(l));
}
std::string CoordinateWriter::preDDddddd(const Longitude& l) const {
    return preDDddddd(axis(l));
}
std::string CoordinateWriter::preDDddddd(const Coordinate& c) const {
    return pair(preDDddddd(c.latitude()), preDDddddd(c.longitude()));
}

std::string CoordinateWriter::postDDddddd(const Latitude& l) const {
    return postDDddddd(axis(l));
}
std::string CoordinateWriter::postDDddddd(const Longitude& l) const {
    return postDDddddd(axis(l));
}
std::string CoordinateWriter::postDDddddd(const Coordinate& c) const {
    return pair(postDDddddd(c.latitude()), postDDddddd(c.longitude()));
}

std::string CoordinateWriter::preDDMMmmm(const Latitude& l) const {
    return pre(axis(l), DDMMmmm(axis(l)));
}
std::string CoordinateWriter::preDDMMmmm(const Longitude& l) const {
    return pre(axis(l), DDMMmmm(axis(l)));
}
std::string CoordinateWriter::preDDMMmmm(const Coordinate& c) const {
    return pair(preDDMMmmm(c.latitude()), preDDMMmmm(c.longitude()));
}

std::string CoordinateWriter::postDDMMmmm(const Latitude& l) const {
    return post(axis(l), DDMMmmm(axis(l)));
}
std::string CoordinateWriter::postDDMMmmm(const Longitude& l) const {
    return post(axis(l), DDMMmmm(axis(l)));
}
std::string CoordinateWriter::postDDMMmmm(const Coordinate& c) const {
    return pair(postDDMMmmm(c.latitude()), postDDMMmmm(c.longitude()));
}

std::string CoordinateWriter::preDDMMSSs(const Latitude& l) const {
    return pre(axis(l), DDMMSSs(axis(l)));
}
std::string CoordinateWriter::preDDMMSSs(const Longitude& l) const {
    return pre(axis(l), DDMMSSs(axis(l)));
}
std::string CoordinateWriter::preDDMMSSs(const Coordinate& c) const {
    return pair(preDDMMSSs(c.latitude()), preDDMMSSs(c.longitude()));
}

std::string CoordinateWriter::postDDMMSSs(const Latitude& l) const {
    return post(axis(l), DDMMSSs(axis(l)));
}
std::string CoordinateWriter::postDDMMSSs(const Longitude& l) const {
    return post(axis(l), DDMMSSs(axis(l)));
}
std::string CoordinateWriter::postDDMMSSs(const Coordinate& c) const {
    return pair(postDDMMSSs(c.latitude()), postDDMMSSs(c.longitude()));
}

} // namespace corvane
