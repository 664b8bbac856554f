#include "records/interface_entry.h"

#include "records/bonding_modes.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/lexical_cast.hpp>
#include <ostream>

namespace corvanshell {
namespace {

using Words = std::vector<std::string>;

constexpr const char* kNamePrefixes[] = {"ETH", "BOND", "WLAN", "CDC-MODEM"};

struct Field {
    const char* name;
    const char* written; // the key's end as it is written, tabs included
    void (*set)(InterfaceEntry& entry, const std::string& value, const Words& tokens);
    // The text behind the key.
    std::string (*get)(const InterfaceEntry& entry);
    bool (*is_written)(const std::string& name, const InterfaceEntry& entry);
};

bool Always(const std::string& /*name*/, const InterfaceEntry& /*entry*/) {
    return true;
}

bool IsVlan(const std::string& /*name*/, const InterfaceEntry& entry) {
    return !entry.vlan.empty();
}

bool HasMaster(const std::string& /*name*/, const InterfaceEntry& entry) {
    return !entry.master.empty();
}

bool HasMiimon(const std::string& name, const InterfaceEntry& entry) {
    unsigned long interval = 0;
    return IsBond(name, entry) && boost::conversion::try_lexical_convert(entry.bonding_miimon, interval) &&
           interval >= kMinimumMiimon && interval <= kMaximumMiimon;
}

template <bool BondingMode::*option>
bool HasOption(const std::string& name, const InterfaceEntry& entry) {
    return IsBond(name, entry) && FindBondingMode(entry.bonding_mode).*option;
}

bool HasPrimary(const std::string& name, const InterfaceEntry& entry) {
    return HasOption<&BondingMode::primary>(name, entry) && entry.bonding_primary != "none";
}

bool ReadSwitch(const std::string& value) {
    return value == "1" || boost::iequals(value, "on") || boost::iequals(value, "yes") ||
           boost::iequals(value, "true");
}

std::string WriteSwitch(bool on) {
    return on ? "1" : "0";
}

template <std::string InterfaceEntry::*text>
void SetText(InterfaceEntry& entry, const std::string& value, const Words& /*tokens*/) {
    entry.*text = value;
}

template <std::string InterfaceEntry::*text>
void SetLower(InterfaceEntry& entry, const std::string& value, const Words& /*tokens*/) {
    entry.*text = boost::to_lower_copy(value);
}

template <std::string InterfaceEntry::*text>
std::string GetText(const InterfaceEntry& entry) {
    return entry.*text;
}

template <bool InterfaceEntry::*flag>
void SetSwitch(InterfaceEntry& entry, const std::string& value, const Words& /*tokens*/) {
    entry.*flag = ReadSwitch(value);
}

template <bool InterfaceEntry::*flag>
std::string GetSwitch(const InterfaceEntry& entry) {
    return WriteSwitch(entry.*flag);
}

// A main value with the aliases' values behind it.
template <std::string InterfaceEntry::*text, Words InterfaceEntry::*aliases>
void SetList(InterfaceEntry& entry, const std::string& value, const Words& tokens) {
    entry.*text = value;
    entry.*aliases = tokens;
}

template <std::string InterfaceEntry::*text, Words InterfaceEntry::*aliases>
std::string GetList(const InterfaceEntry& entry) {
    std::string result = entry.*text;
    for (const std::string& alias : entry.*aliases)
        result += " " + alias;
    return result;
}

void SetUp(InterfaceEntry& entry, const std::string& value, const Words& /*tokens*/) {
    // The conversion takes a sign before the digit as well.
    if (value.starts_with('+') || value.starts_with('-'))
        throw boost::bad_lexical_cast();
    entry.up = !value.empty() && boost::lexical_cast<bool>(value);
}

void SetSpeed(InterfaceEntry& entry, const std::string& value, const Words& tokens) {
    entry.speed = value;
    if (!tokens.empty())
        entry.duplex = tokens.front();
}

std::string GetSpeed(const InterfaceEntry& entry) {
    return entry.duplex.empty() ? entry.speed : entry.speed + " " + entry.duplex;
}

// A trunk or slave interface has no addresses. An alias alone would be read back as the main address.
std::string GetAddresses(const InterfaceEntry& entry) {
    if (entry.interface_class == kTrunkClass || entry.interface_class == kSlaveClass)
        return "";
    return GetList<&InterfaceEntry::address, &InterfaceEntry::alias_addresses>(entry);
}

std::string GetClass(const InterfaceEntry& entry) {
    return entry.interface_class.empty() ? "access" : entry.interface_class;
}

// In the order in which they are written.
constexpr Field kFields[] = {
    {"UP", "_UP\t\t", SetUp, GetSwitch<&InterfaceEntry::up>, Always},
    {"VLAN", "_VLAN\t", SetText<&InterfaceEntry::vlan>, GetText<&InterfaceEntry::vlan>, IsVlan},
    {"PARENT", "_PARENT\t", SetLower<&InterfaceEntry::parent>, GetText<&InterfaceEntry::parent>, IsVlan},
    {"IP", "_IP\t\t", SetList<&InterfaceEntry::address, &InterfaceEntry::alias_addresses>, GetAddresses,
     Always},
    {"MASK", "_MASK\t", SetList<&InterfaceEntry::netmask, &InterfaceEntry::alias_netmasks>,
     GetList<&InterfaceEntry::netmask, &InterfaceEntry::alias_netmasks>, Always},
    {"BROADCAST", "_BROADCAST\t", SetList<&InterfaceEntry::broadcast, &InterfaceEntry::alias_broadcasts>,
     GetList<&InterfaceEntry::broadcast, &InterfaceEntry::alias_broadcasts>, Always},
    {"SPEED", "_SPEED\t", SetSpeed, GetSpeed, Always},
    {"AUTONEG", "_AUTONEG\t", SetText<&InterfaceEntry::autoneg>, GetText<&InterfaceEntry::autoneg>, Always},
    {"MTU", "_MTU\t", SetText<&InterfaceEntry::mtu>, GetText<&InterfaceEntry::mtu>, Always},
    {"CLASS", "_CLASS\t", SetLower<&InterfaceEntry::interface_class>, GetClass, Always},
    {"DHCP_ROUTE", "_DHCP_ROUTE\t", SetSwitch<&InterfaceEntry::dhcp_route>,
     GetSwitch<&InterfaceEntry::dhcp_route>, Always},
    {"DHCP_DNS", "_DHCP_DNS\t", SetSwitch<&InterfaceEntry::dhcp_dns>, GetSwitch<&InterfaceEntry::dhcp_dns>,
     Always},
    {"DHCP_NTP", "_DHCP_NTP\t", SetSwitch<&InterfaceEntry::dhcp_ntp>, GetSwitch<&InterfaceEntry::dhcp_ntp>,
     Always},
    {"DHCP_METRIC", "_DHCP_METRIC\t", SetText<&InterfaceEntry::dhcp_metric>,
     GetText<&InterfaceEntry::dhcp_metric>, Always},
    {"MASTER", "_MASTER\t", SetLower<&InterfaceEntry::master>, GetText<&InterfaceEntry::master>, HasMaster},
    {"BONDING_MODE", "_BONDING_MODE\t", SetText<&InterfaceEntry::bonding_mode>,
     GetText<&InterfaceEntry::bonding_mode>, IsBond},
    {"BONDING_MIIMON", "_BONDING_MIIMON\t", SetText<&InterfaceEntry::bonding_miimon>,
     GetText<&InterfaceEntry::bonding_miimon>, HasMiimon},
    {"BONDING_AD_SELECT", "_BONDING_AD_SELECT\t", SetText<&InterfaceEntry::bonding_ad_select>,
     GetText<&InterfaceEntry::bonding_ad_select>, HasOption<&BondingMode::ad_select>},
    {"BONDING_LACP_RATE", "_BONDING_LACP_RATE\t", SetText<&InterfaceEntry::bonding_lacp_rate>,
     GetText<&InterfaceEntry::bonding_lacp_rate>, HasOption<&BondingMode::lacp_rate>},
    {"BONDING_PRIMARY", "_BONDING_PRIMARY\t", SetLower<&InterfaceEntry::bonding_primary>,
     GetText<&InterfaceEntry::bonding_primary>, HasPrimary},
    {"BONDING_XMIT_HASH_POLICY", "_BONDING_XMIT_HASH_POLICY\t",
     SetText<&InterfaceEntry::bonding_xmit_hash_policy>, GetText<&InterfaceEntry::bonding_xmit_hash_policy>,
     HasOption<&BondingMode::xmit_hash_policy>},
};

} // namespace

bool IsDhcpConfigured(const InterfaceEntry& entry) {
    return entry.address == kDhcpAddress;
}

bool HasAddress(const InterfaceEntry& entry) {
    return !entry.address.empty() && entry.address != "0.0.0.0";
}

void ClearAddresses(InterfaceEntry& entry) {
    for (std::string* text : {&entry.address, &entry.netmask, &entry.broadcast})
        text->clear();
    for (Words* list : {&entry.alias_addresses, &entry.alias_netmasks, &entry.alias_broadcasts})
        list->clear();
}

bool IsBond(const std::string& name, const InterfaceEntry& entry) {
    return !name.empty() && entry.master == name;
}

InterfaceEntry MakeInterfaceEntry() {
    InterfaceEntry entry;
    entry.interface_class = kAccessClass;
    entry.speed = "auto";
    entry.autoneg = "on";
    entry.mtu = "auto";
    return entry;
}

bool IsInterfaceKey(const std::string& key) {
    for (const char* prefix : kNamePrefixes) {
        if (key.starts_with(prefix))
            return true;
    }
    return false;
}

bool SetInterfaceField(InterfaceEntry& entry, const std::string& field, const std::string& value,
                       const Words& tokens) {
    for (const Field& row : kFields) {
        if (field != row.name)
            continue;
        row.set(entry, value, tokens);
        return true;
    }
    return false;
}

void Normalise(InterfaceEntry& entry) {
    if (entry.interface_class.empty())
        entry.interface_class = "access";
    if (entry.speed.empty())
        entry.speed = "auto";
    if (entry.speed != "auto" && entry.duplex.empty())
        entry.duplex = "full";
    if (entry.autoneg == "auto")
        entry.autoneg = "on";
    else if (entry.autoneg.empty())
        entry.autoneg = "off";
}

void WriteInterface(std::ostream& output, const std::string& name, const InterfaceEntry& entry) {
    const std::string prefix = boost::to_upper_copy(name);
    for (const Field& row : kFields) {
        if (row.is_written(name, entry))
            output << prefix << row.written << row.get(entry) << '\n';
    }
}

} // namespace corvanshell
