#include "commands/interfaces/bond_options.h"

#include "commands/arguments/arguments.h"
#include "commands/interfaces/bonding_values.h"
#include "commands/interfaces/roles.h"
#include "platform/console.h"

namespace interfaces {
namespace {

using corvanshell::InterfaceEntry;

constexpr const char* kNoPrimary = "none";

// An option whose values are words.
struct WordOption {
    const char* name;
    std::string InterfaceEntry::*value;
    bool BondingPermissions::*permission; // null when every mode has the option
    const char* modes;                    // that permit it
    const WordList& (*words)();
    const char* meaning; // of an unknown word
};

constexpr WordOption kWordOptions[] = {
    {"mode", &InterfaceEntry::bonding_mode, nullptr, "", BondingModes, "mode"},
    {"ad-select", &InterfaceEntry::bonding_ad_select, &BondingPermissions::ad_select, "802.3ad",
     BondingAdSelects, "aggregation selection logic"},
    {"lacp-rate", &InterfaceEntry::bonding_lacp_rate, &BondingPermissions::lacp_rate, "802.3ad",
     BondingLacpRates, "LACPDU packets transmiting rate"}, // spelled so
    {"xmit-hash-policy", &InterfaceEntry::bonding_xmit_hash_policy, &BondingPermissions::xmit_hash_policy,
     "802.3ad or balance-xor", BondingXmitHashPolicies, "transmit hash policy"},
};

bool CheckApplicable(const InterfaceEdit& bond, const char* option, bool permitted, const char* modes) {
    if (!permitted)
        shell_print_error("%s: %s option is applicable only if bonding mode is %s", bond.CName(), option,
                          modes);
    return permitted;
}

bool SetWord(InterfaceEdit& bond, const WordOption& option, const std::string& value) {
    if (option.permission != nullptr &&
        !CheckApplicable(bond, option.name, PermittedOptions(bond.entry.bonding_mode).*option.permission,
                         option.modes))
        return false;
    if (!IsOneOf(option.words(), value)) {
        shell_print_error("%s: unknown bonding %s: %s", bond.CName(), option.meaning, value.c_str());
        return false;
    }
    bond.entry.*option.value = value;
    FillBondWords(bond.entry);
    return true;
}

bool SetMiimon(InterfaceEdit& bond, const std::string& value) {
    const unsigned long interval = arguments::IsNumber(value) ? std::stoul(value) : 0;
    if (interval < kMinimumMiimon || interval > kMaximumMiimon) {
        shell_print_error("%s: miimon option value is out of range %zu - %zu.", bond.CName(), kMinimumMiimon,
                          kMaximumMiimon);
        return false;
    }
    bond.entry.bonding_miimon = value;
    return true;
}

bool CheckPrimary(const InterfaceEdit& bond, const std::string& slave) {
    InterfaceEntry entry;
    if (!bond.record.FindInterface(slave, entry)) {
        shell_print_error("%s: slave interface does not exist", slave.c_str());
        return false;
    }
    if (!CheckSlaveClass(slave, entry))
        return false;
    if (entry.master == bond.Name())
        return true;
    shell_print_error("%s: primary slave interface has unexpected bond master interface: %s", slave.c_str(),
                      MasterText(entry));
    return false;
}

bool SetPrimary(InterfaceEdit& bond, const std::string& value) {
    if (!CheckApplicable(bond, "primary", PermittedOptions(bond.entry.bonding_mode).primary,
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
    shell_print_error("%s: unknown bonding option: %s", bond.CName(), option.c_str());
    return false;
}

} // namespace interfaces
