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
    // Dotted quads, or "dhcp" in all three. On a slave or trunk interface the address is not written.
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
};

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
