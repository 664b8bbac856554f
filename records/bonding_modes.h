#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace corvanshell {

// Milliseconds between two looks at a slave's link.
constexpr std::size_t kMinimumMiimon = 1;
constexpr std::size_t kMaximumMiimon = 1000;

// A mode of a bond, and the options that have a meaning in it. "miimon" has one in every mode.
struct BondingMode {
    const char* name;
    bool selectable; // no command selects "balance-alb", and a file that holds it is honoured
    bool ad_select = false;
    bool lacp_rate = false;
    bool primary = false;
    bool xmit_hash_policy = false;
};

// All modes, in the order in which they are offered.
std::span<const BondingMode> BondingModes();

// The mode of that name; for an unknown one a mode without a name that permits no option.
const BondingMode& FindBondingMode(const std::string& name);

} // namespace corvanshell
