#include "corvane/converters/DynamicValue.hpp"

#include <nlohmann/json.hpp>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace corvane {

namespace {

// Shortest round-trip text in whichever of fixed and exponent notation is
// shorter ("1.5", "3", "1e+16"), the usual printed form of a number object.
std::string shortestGeneralText(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    char buf[64];
    auto res = std::to_chars(buf, buf + sizeof buf, value);
    return std::string(buf, res.ptr);
}

std::string quoted(const std::string& s) {
    std::string out = "\"";
    for (char c : s) {
        if (c == '"' || c == '\\') out += '\\';
        out += c;
    }
    out += '"';
    return out;
}

} // namespace

Number Number::fromDouble(double d) {
    int64_t i = 0;
    if (std::isnan(d))
        i = 0;
    else if (d >= 9223372036854775807.0)
        i = std::numeric_limits<int64_t>::max();
    else if (d <= -9223372036854775808.0)
        i = std::numeric_limits<int64_t>::min();
    else
        i = static_cast<int64_t>(d);
    return Number(Kind::real, i, d);
}

std::string Number::description() const {
    switch (kind_) {
    case Kind::boolean:
        return integer_ != 0 ? "1" : "0";
    case Kind::integer:
        return std::to_string(integer_);
    case Kind::real:
        return shortestGeneralText(double_);
    }
    return {};
}

std::string shortestDoubleText(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    char buf[64];
    double magnitude = std::fabs(value);
    // Exponent form above 2^53 (where not every integer is representable) and
    // below 1e-4; plain decimal with at least one fractional digit otherwise.
    if (magnitude > 9007199254740992.0 || (magnitude != 0.0 && magnitude < 1e-4)) {
        auto res = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::scientific);
        std::string text(buf, res.ptr);
        // to_chars writes "1e+16" and "1e-05"; keep at least two exponent digits.
        auto e = text.find('e');
        std::string mantissa = text.substr(0, e);
        char sign = text[e + 1];
        std::string digits = text.substr(e + 2);
        while (digits.size() < 2)
            digits.insert(digits.begin(), '0');
        return mantissa + "e" + sign + digits;
    }
    auto res = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::fixed);
    std::string text(buf, res.ptr);
    if (text.find('.') == std::string::npos) text += ".0";
    return text;
}

std::string DynamicValue::description() const {
    struct Printer {
        std::string operator()(std::monostate) const { return {}; }
        std::string operator()(bool b) const { return b ? "true" : "false"; }
        std::string operator()(int64_t i) const { return std::to_string(i); }
        std::string operator()(uint64_t u) const { return std::to_string(u); }
        std::string operator()(double d) const { return shortestDoubleText(d); }
        std::string operator()(const Number& n) const { return n.description(); }
        std::string operator()(const std::string& s) const { return s; }
        std::string operator()(const StringArray& a) const {
            std::string out = "[";
            for (size_t i = 0; i < a.size(); ++i) {
                if (i) out += ", ";
                out += quoted(a[i]);
            }
            return out + "]";
        }
        std::string operator()(const DynamicArray& a) const {
            std::string out = "[";
            for (size_t i = 0; i < a.size(); ++i) {
                if (i) out += ", ";
                out += a[i].is<std::string>() ? quoted(*a[i].stringValue()) : a[i].description();
            }
            return out + "]";
        }
        std::string operator()(const Date& d) const { return d.description(); }
        std::string operator()(const PartialDate& d) const {
            char buf[80];
            std::snprintf(buf, sizeof buf, "%04lld:%02lld:%02lld", static_cast<long long>(d.year),
                          static_cast<long long>(d.month), static_cast<long long>(d.day));
            return buf;
        }
        std::string operator()(const PartialTime& t) const {
            char buf[80];
            std::snprintf(buf, sizeof buf, "%02lld:%02lld:%02lld", static_cast<long long>(t.hour),
                          static_cast<long long>(t.minute), static_cast<long long>(t.second));
            return buf;
        }
        std::string operator()(const Country& c) const { return c.alpha2(); }
        std::string operator()(const OtherValue& o) const { return o.text; }
    };
    return std::visit(Printer{}, storage);
}

ObjectValue objectValueFromDynamicValue(const DynamicValue& value) {
    if (auto b = value.boolValue()) return Number::fromBool(*b);
    if (auto i = value.intValue()) return Number::fromInteger(*i);
    if (auto u = value.uintValue()) {
        if (*u <= static_cast<uint64_t>(std::numeric_limits<int64_t>::max()))
            return Number::fromInteger(static_cast<int64_t>(*u));
        return Number::fromDouble(static_cast<double>(*u));
    }
    if (auto d = value.doubleValue()) return Number::fromDouble(*d);
    if (auto strings = value.stringArrayValue()) {
        DynamicArray out(strings->begin(), strings->end());
        return out;
    }
    if (auto array = value.arrayValue()) {
        DynamicArray out;
        out.reserve(array->size());
        for (const auto& element : *array)
            out.push_back(objectValueFromDynamicValue(element));
        return out;
    }
    return value;
}

nlohmann::json toJson(const DynamicValue& value) {
    using nlohmann::json;
    struct Writer {
        json operator()(std::monostate) const { return nullptr; }
        json operator()(bool b) const { return b; }
        json operator()(int64_t i) const { return i; }
        json operator()(uint64_t u) const { return u; }
        json operator()(double d) const { return std::isfinite(d) ? json(d) : json(nullptr); }
        json operator()(const Number& n) const {
            switch (n.kind()) {
            case Number::Kind::boolean:
                return n.boolValue();
            case Number::Kind::integer:
                return n.integerValue();
            case Number::Kind::real:
                return std::isfinite(n.doubleValue()) ? json(n.doubleValue()) : json(nullptr);
            }
            return nullptr;
        }
        json operator()(const std::string& s) const { return s; }
        json operator()(const StringArray& a) const { return a; }
        json operator()(const DynamicArray& a) const {
            json out = json::array();
            for (const auto& element : a)
                out.push_back(toJson(element));
            return out;
        }
        // Dates and their parts are written as their printed text.
        json operator()(const Date& d) const { return d.description(); }
        json operator()(const PartialDate& d) const { return DynamicValue(d).description(); }
        json operator()(const PartialTime& t) const { return DynamicValue(t).description(); }
        json operator()(const Country& c) const { return c.alpha2(); }
        json operator()(const OtherValue& o) const { return o.text; }
    };
    return std::visit(Writer{}, value.storage);
}

namespace {

// Arrays within arrays deeper than any tag value: the conversion recurses, and a tree parsed
// without a nesting check (10,000 brackets in a 19 KB value) would exhaust the stack.
constexpr int maxArrayNesting = 64;

DynamicValue fromJson(const nlohmann::json& j, int depth) {
    using nlohmann::json;
    switch (j.type()) {
    case json::value_t::null:
    case json::value_t::discarded:
        return {};
    case json::value_t::boolean:
        return Number::fromBool(j.get<bool>());
    case json::value_t::number_integer:
        return Number::fromInteger(j.get<int64_t>());
    case json::value_t::number_unsigned: {
        auto u = j.get<uint64_t>();
        if (u <= static_cast<uint64_t>(std::numeric_limits<int64_t>::max()))
            return Number::fromInteger(static_cast<int64_t>(u));
        return Number::fromDouble(static_cast<double>(u));
    }
    case json::value_t::number_float:
        return Number::fromDouble(j.get<double>());
    case json::value_t::string:
        return j.get<std::string>();
    case json::value_t::array: {
        if (depth >= maxArrayNesting) return {};
        DynamicArray out;
        out.reserve(j.size());
        for (const auto& element : j)
            out.push_back(fromJson(element, depth + 1));
        return out;
    }
    case json::value_t::object:
    case json::value_t::binary:
        // Printing recurses as deep as the object goes.
        if (depth >= maxArrayNesting) return {};
        return OtherValue{j.dump()};
    }
    return {};
}

} // namespace

// An array or object nested more than maxArrayNesting arrays deep gives nothing.
DynamicValue dynamicValueFromJson(const nlohmann::json& j) {
    return fromJson(j, 0);
}

} // namespace corvane
