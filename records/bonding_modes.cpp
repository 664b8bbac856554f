#include "records/bonding_modes.h"

#include <algorithm>

namespace corvanshell {
namespace {

constexpr BondingMode kModes[] = {
    {"balance-rr", true},
    {.name = "balance-xor", .selectable = true, .xmit_hash_policy = true},
    {.name = "balance-tlb", .selectable = true, .primary = true},
    {.name = "balance-alb", .selectable = false, .primary = true},
    {.name = "active-backup", .selectable = true, .primary = true},
    {"broadcast", true},
    {.name = "802.3ad", .selectable = true, .ad_select = true, .lacp_rate = true, .xmit_hash_policy = true},
};

constexpr BondingMode kUnknown = {"", false};

} // namespace

std::span<const BondingMode> BondingModes() {
    return kModes;
}

const BondingMode& FindBondingMode(const std::string& name) {
    const auto* const mode = std::find_if(std::begin(kModes), std::end(kModes),
                                          [&](const BondingMode& known) { return name == known.name; });
    return mode != std::end(kModes) ? *mode : kUnknown;
}

} // namespace corvanshell
