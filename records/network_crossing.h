#pragma once

#include "records/interface_entry.h"

#include <string>
#include <vector>

namespace corvanshell {

// A network as settings name it, in dotted quads: what travels behind the operations that are given an
// address, a netmask and a broadcast.
struct Network {
    std::string address;
    std::string netmask;
    std::string broadcast;

    bool operator==(const Network&) const = default;
};

// The network of the pair with its broadcast, which is empty when either is malformed.
Network MakeNetwork(const std::string& address, const std::string& netmask);

// Networks with one broadcast cross; otherwise those with one netmask do not. Of two others they cross when
// the address of the narrower lies in the wider, from its network address to its broadcast.
[[nodiscard]] bool Cross(const Network& first, const Network& second);

// The interface's networks: the main one and those of the aliases that stand in all three lists.
Network MainNetworkOf(const InterfaceEntry& entry);
std::vector<Network> NetworksOf(const InterfaceEntry& entry);
std::vector<Network> AliasNetworksOf(const InterfaceEntry& entry);

// Whether the netmask's prefix length is 1 to 30.
[[nodiscard]] bool IsNetmaskUsable(const std::string& netmask);

} // namespace corvanshell
