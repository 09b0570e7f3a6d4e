#pragma once

#include "corvane/utilities/KitSettings.hpp"
#include "corvane/utilities/UserDefaults.hpp"
#include "support/TemporaryFolder.hpp"

#include <memory>

namespace corvane::test {

// Points the library's settings at a fresh defaults file in a temporary folder for as long as the
// object lives, then back at the previous defaults, whatever way the test ends.
class ScratchDefaults {
public:
    ScratchDefaults() { KitSettings::shared().setUserDefaults(defaults); }
    ~ScratchDefaults() { KitSettings::shared().setUserDefaults(previous_); }
    ScratchDefaults(const ScratchDefaults&) = delete;
    ScratchDefaults& operator=(const ScratchDefaults&) = delete;

    TemporaryFolder folder;
    std::shared_ptr<UserDefaults> defaults = std::make_shared<UserDefaults>(folder / "defaults.json");

private:
    std::shared_ptr<UserDefaults> previous_ = KitSettings::shared().userDefaults();
};

} // namespace corvane::test
