#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// What a write does with the Photoshop IPTC digest, the checksum by which readers tell whether the
/// IPTC block was changed by a program that didn't know about it. The raw value is the stored text.
class IPTCDigestUpdate {
public:
    /// The four choices; the comments give the stored text.
    enum Case : uint8_t {
        ignore,         ///< "ignore": the digest is left as ExifTool leaves it
        delete_,        ///< "delete": the digest is removed
        update,         ///< "update": the digest is recomputed
        updateIfExists, ///< "update_if_exists": recomputed only in files that have one
    };

    constexpr IPTCDigestUpdate() = default;
    /// The choice of this case.
    constexpr IPTCDigestUpdate(Case c) : case_(c) {}

    /// The case; the stored text; the choice a text names (nothing for another).
    ///@{
    constexpr Case value() const { return case_; }
    std::string_view rawValue() const;
    static std::optional<IPTCDigestUpdate> fromRawValue(std::string_view raw);
    ///@}
    /// ignore, delete, update, updateIfExists.
    static const std::vector<IPTCDigestUpdate>& allCases();

    /// The value that a JSON import file gives the digest's tag, if any: "-" to delete it, "new" to
    /// have ExifTool recompute it. `hasDigest` says whether the file holds a digest now.
    std::optional<std::string> jsonValue(bool hasDigest) const;
    /// The same choice as ExifTool command-line arguments.
    std::vector<std::string> exifToolArguments() const;

    /// Same case.
    friend constexpr bool operator==(IPTCDigestUpdate a, IPTCDigestUpdate b) { return a.case_ == b.case_; }

private:
    Case case_ = ignore;
};

} // namespace corvane
