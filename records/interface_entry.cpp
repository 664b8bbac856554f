#include "records/interface_entry.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/lexical_cast.hpp>
#include <functional>
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
    bool (*is_written)(const InterfaceEntry& entry);
};

bool Always(const InterfaceEntry& /*entry*/) {
    return true;
}

bool IsVlan(const InterfaceEntry& entry) {
    return !entry.vlan.empty();
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

// A trunk or slave interface has no main address of its own.
std::string GetAddresses(const InterfaceEntry& entry) {
    InterfaceEntry shown = entry;
    if (entry.interface_class == "trunk" || entry.interface_class == "slave")
        shown.address.clear();
    return GetList<&InterfaceEntry::address, &InterfaceEntry::alias_addresses>(shown);
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
};

} // namespace

InterfaceEntry MakeInterfaceEntry() {
    InterfaceEntry entry;
    entry.interface_class = "access";
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
        if (row.is_written(entry))
            output << prefix << row.written << row.get(entry) << '\n';
    }
}

} // namespace corvanshell
