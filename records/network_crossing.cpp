#include "records/network_crossing.h"

#include "platform/network.h"

#include <algorithm>
#include <cstdint>

namespace corvanshell {
namespace {

constexpr std::int64_t kAllOnes = 0xffffffff;
constexpr int kShortestPrefix = 1;
constexpr int kLongestPrefix = 30;

} // namespace

Network MakeNetwork(const std::string& address, const std::string& netmask) {
    return {address, netmask, getbrcast(address, netmask)};
}

bool Cross(const Network& first, const Network& second) {
    if (first.broadcast == second.broadcast)
        return true;
    if (first.netmask == second.netmask)
        return false;
    const bool first_is_wider = address_to_number(first.netmask) < address_to_number(second.netmask);
    const Network& wide = first_is_wider ? first : second;
    const Network& narrow = first_is_wider ? second : first;
    const std::int64_t last = address_to_number(wide.broadcast);
    const std::int64_t start = last - (kAllOnes - address_to_number(wide.netmask));
    const std::int64_t address = address_to_number(narrow.address);
    return start <= address && address <= last;
}

Network MainNetworkOf(const InterfaceEntry& entry) {
    return {entry.address, entry.netmask, entry.broadcast};
}

std::vector<Network> NetworksOf(const InterfaceEntry& entry) {
    std::vector<Network> networks = AliasNetworksOf(entry);
    networks.insert(networks.begin(), MainNetworkOf(entry));
    return networks;
}

std::vector<Network> AliasNetworksOf(const InterfaceEntry& entry) {
    const std::size_t count =
        std::min({entry.alias_addresses.size(), entry.alias_netmasks.size(), entry.alias_broadcasts.size()});
    std::vector<Network> networks;
    for (std::size_t i = 0; i < count; ++i)
        networks.push_back({entry.alias_addresses[i], entry.alias_netmasks[i], entry.alias_broadcasts[i]});
    return networks;
}

bool IsNetmaskUsable(const std::string& netmask) {
    const int prefix = subnetmask_to_cidr(netmask);
    return kShortestPrefix <= prefix && prefix <= kLongestPrefix;
}

} // namespace corvanshell
