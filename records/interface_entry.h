#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace corvanshell {

// One interface of the network record: the keys <NAME>_<FIELD> of the file.
struct InterfaceEntry {
    bool up = false;
    std::string vlan;   // VLAN ID of a VLAN child, "" otherwise
    std::string parent; // interface that carries the VLAN child
    // Dotted quads, or "dhcp" in all three. On a slave or trunk interface no address is written.
    std::string address;
    std::string netmask;
    std::string broadcast;
    // Three parallel lists: element i of each describes alias i.
    std::vector<std::string> alias_addresses;
    std::vector<std::string> alias_netmasks;
    std::vector<std::string> alias_broadcasts;
    std::string speed; // "auto" or Mbit/s
    std::string duplex;
    std::string autoneg;
    std::string mtu;             // "auto" or bytes
    std::string interface_class; // "access", "trunk" or "slave"
    bool dhcp_route = false;     // what a DHCP lease also brings
    bool dhcp_dns = false;
    bool dhcp_ntp = false;
    std::string dhcp_metric;
    // The bond that the interface belongs to; a bond has its own name here.
    std::string master;
    std::string bonding_mode; // the options of a bond, by their own names
    std::string bonding_miimon;
    std::string bonding_ad_select;
    std::string bonding_lacp_rate;
    std::string bonding_primary; // a slave's name, "none" or ""
    std::string bonding_xmit_hash_policy;
};

// Words in the place of an address or a class.
inline const std::string kDhcpAddress = "dhcp";
inline const std::string kAccessClass = "access";
inline const std::string kTrunkClass = "trunk";
inline const std::string kSlaveClass = "slave";

bool IsDhcpConfigured(const InterfaceEntry& entry);
// Whether it has an address, "dhcp" among them.
bool HasAddress(const InterfaceEntry& entry);
// Forgets address, netmask and broadcast, and those of the aliases.
void ClearAddresses(InterfaceEntry& entry);
// Whether the entry of that name is a bond.
bool IsBond(const std::string& name, const InterfaceEntry& entry);

// What a new interface starts with: class "access", down, no address, link settings left to the hardware.
InterfaceEntry MakeInterfaceEntry();

// Whether the key's beginning makes it an interface's key.
bool IsInterfaceKey(const std::string& key);

// Stores one field, given by its name in the file. `tokens` are the words behind the value. False for an
// unknown field. Throws boost::bad_lexical_cast when "UP" is neither 0 nor 1.
bool SetInterfaceField(InterfaceEntry& entry, const std::string& field, const std::string& value,
                       const std::vector<std::string>& tokens);

// Brings what a file left open to one form: a class, speed "auto" or a speed with its duplex, autoneg "on" or
// "off".
void Normalise(InterfaceEntry& entry);

// Writes the entry's lines, `name` in lower case.
void WriteInterface(std::ostream& output, const std::string& name, const InterfaceEntry& entry);

} // namespace corvanshell
