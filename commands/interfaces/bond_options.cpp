#include "commands/interfaces/bond_options.h"

#include "commands/arguments/arguments.h"
#include "commands/interfaces/bonding_values.h"
#include "commands/interfaces/roles.h"
#include "platform/messages.h"
#include "records/bonding_modes.h"

namespace interfaces {
namespace {

using corvanshell::BondingMode;
using corvanshell::InterfaceEntry;

constexpr const char* kNoPrimary = "none";

// An option whose values are words.
struct WordOption {
    const char* name;
    std::string InterfaceEntry::*value;
    bool BondingMode::*permission; // null when every mode has the option
    const char* modes;             // that permit it
    const WordList& (*words)();
    const char* meaning; // of an unknown word
};

constexpr WordOption kWordOptions[] = {
    {"mode", &InterfaceEntry::bonding_mode, nullptr, "", SelectableBondingModes, "mode"},
    {"ad-select", &InterfaceEntry::bonding_ad_select, &BondingMode::ad_select, "802.3ad", BondingAdSelects,
     "aggregation selection logic"},
    {"lacp-rate", &InterfaceEntry::bonding_lacp_rate, &BondingMode::lacp_rate, "802.3ad", BondingLacpRates,
     "LACPDU packets transmiting rate"}, // spelled so
    {"xmit-hash-policy", &InterfaceEntry::bonding_xmit_hash_policy, &BondingMode::xmit_hash_policy,
     "802.3ad or balance-xor", BondingXmitHashPolicies, "transmit hash policy"},
};

bool CheckApplicable(const InterfaceEdit& bond, const char* option, bool permitted, const char* modes) {
    return permitted ||
           Refuse("%s: %s option is applicable only if bonding mode is %s", bond.Name(), option, modes);
}

bool SetWord(InterfaceEdit& bond, const WordOption& option, const std::string& value) {
    if (option.permission != nullptr &&
        !CheckApplicable(bond, option.name,
                         corvanshell::FindBondingMode(bond.entry.bonding_mode).*option.permission,
                         option.modes))
        return false;
    if (!IsOneOf(option.words(), value))
        return Refuse("%s: unknown bonding %s: %s", bond.Name(), option.meaning, value);
    bond.entry.*option.value = value;
    FillBondWords(bond.entry);
    return true;
}

bool SetMiimon(InterfaceEdit& bond, const std::string& value) {
    const unsigned long interval = arguments::IsNumber(value) ? std::stoul(value) : 0;
    if (interval < corvanshell::kMinimumMiimon || interval > corvanshell::kMaximumMiimon)
        return Refuse("%s: miimon option value is out of range %zu - %zu.", bond.Name(),
                      corvanshell::kMinimumMiimon, corvanshell::kMaximumMiimon);
    bond.entry.bonding_miimon = value;
    return true;
}

bool CheckPrimary(const InterfaceEdit& bond, const std::string& slave) {
    InterfaceEntry entry;
    if (!bond.record.FindInterface(slave, entry))
        return Refuse("%s: slave interface does not exist", slave);
    return CheckSlaveOf(bond.Name(), slave, entry, "primary slave");
}

bool SetPrimary(InterfaceEdit& bond, const std::string& value) {
    if (!CheckApplicable(bond, "primary", corvanshell::FindBondingMode(bond.entry.bonding_mode).primary,
                         "balance-tlb or active-backup"))
        return false;
    if (value != kNoPrimary && !CheckPrimary(bond, value))
        return false;
    bond.entry.bonding_primary = value;
    return true;
}

} // namespace

void FillBondWords(InterfaceEntry& bond) {
    for (const WordOption& option : kWordOptions) {
        if ((bond.*option.value).empty())
            bond.*option.value = option.words().front();
    }
}

bool SetOption(InterfaceEdit& bond, const std::string& option, const std::string& value) {
    if (option == "miimon")
        return SetMiimon(bond, value);
    if (option == "primary")
        return SetPrimary(bond, value);
    for (const WordOption& row : kWordOptions) {
        if (option == row.name)
            return SetWord(bond, row, value);
    }
    return Refuse("%s: unknown bonding option: %s", bond.Name(), option);
}

} // namespace interfaces
