#pragma once

#include "corvane/utilities/Error.hpp"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace corvane {

/// The JSON form of an enumeration whose cases may carry a value: an object with exactly one key,
/// the case's name. A case without a value maps to an empty object ({"ignore": {}}); a case with
/// one value holds it under "_0" ({"contains": {"_0": "sky"}}). Filters of tables and the Photos
/// profiles store their choices this way, and read them back through `decode`.
class SingleKeyCoding {
public:
    /// Thrown by `decode` for an object with no key or more than one, and for a value that is not
    /// an object (`what()` is `invalidKeyCountMessage`); and by the enumerations' decoders for an
    /// unknown case or a missing value, with a message that says so.
    class TypeMismatch : public Error {
    public:
        TypeMismatch() : Error(std::string(invalidKeyCountMessage)) {}
        /// A mismatch with its own message.
        explicit TypeMismatch(const std::string& message) : Error(message) {}
    };

    /// The message of an object without exactly one key.
    static constexpr std::string_view invalidKeyCountMessage = "Invalid number of keys found, expected one.";

    /// {"<caseName>": {}}.
    static nlohmann::json encode(std::string_view caseName);
    /// {"<caseName>": {"_0": value}}.
    static nlohmann::json encode(std::string_view caseName, nlohmann::json value);
    /// {"<caseName>": {"_0": first, "_1": second}}, a case that carries a pair.
    static nlohmann::json encode(std::string_view caseName, nlohmann::json first, nlohmann::json second);

    /// The case name of an encoded value, with its payload object. Throws TypeMismatch.
    struct Decoded {
        std::string caseName;          ///< the case's name
        const nlohmann::json& payload; ///< the case's name
    };
    static Decoded decode(const nlohmann::json& j); ///< throws TypeMismatch

    /// The value under "_0" (or `key`, "_1" for a pair's second) of a case's payload, as T; throws
    /// TypeMismatch when it is missing or not of that type.
    template <class T> static T associatedValue(const Decoded& decoded, std::string_view key = "_0") {
        auto it = decoded.payload.find(key);
        try {
            if (it != decoded.payload.end()) return it->get<T>();
        } catch (const nlohmann::json::exception&) {
        }
        throw TypeMismatch("The case \"" + decoded.caseName + "\" lacks its value");
    }
};

} // namespace corvane
