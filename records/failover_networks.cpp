#include "records/failover_networks.h"

#include "platform/cluster_file.h"
#include "platform/console.h"
#include "platform/network.h"

#include <algorithm>
#include <vector>

namespace corvanshell {
namespace {

// What stands for an address that nobody has configured yet.
constexpr const char* kPlaceholder = "change_this";

struct FailoverEntry {
    std::string interface;
    std::string address; // "<address>/<prefix length>"
    std::string broadcast;
};

std::vector<FailoverEntry> ReadEntries() {
    const std::vector<std::string> interfaces = failover::get_active_ifaces();
    const std::vector<std::string> addresses = failover::get_active_ip();
    const std::vector<std::string> broadcasts = failover::get_active_bcasts();
    std::vector<FailoverEntry> entries(std::min({interfaces.size(), addresses.size(), broadcasts.size()}));
    for (std::size_t i = 0; i < entries.size(); ++i)
        entries[i] = {interfaces[i], addresses[i], broadcasts[i]};
    return entries;
}

Network NetworkOf(const FailoverEntry& entry) {
    const std::size_t sign = std::min(entry.address.find('/'), entry.address.size());
    const std::string prefix = sign < entry.address.size() ? entry.address.substr(sign + 1) : "";
    return {entry.address.substr(0, sign), cidr_to_subnetmask(prefix), entry.broadcast};
}

// Whether the entry crosses the network, or can't be read and has to count as if it did.
bool Crosses(const FailoverEntry& entry, const Network& network) {
    if (entry.broadcast == network.broadcast)
        return true;
    if (entry.address.find('/') == std::string::npos) {
        shell_print_error("%s: failed to get address from failover.ini", entry.interface.c_str());
        return true;
    }
    const Network reserved = NetworkOf(entry);
    if (reserved.netmask == network.netmask && !reserved.netmask.empty())
        return false;
    if (reserved.netmask.empty() && reserved.address.empty()) {
        shell_print_error("%s: failed to get address or netmask from failover.ini", entry.interface.c_str());
        return true;
    }
    return Cross(reserved, network);
}

} // namespace

std::string FindFailoverNetwork(const std::string& name, const Network& network) {
    for (const FailoverEntry& entry : ReadEntries()) {
        if (entry.address == kPlaceholder || entry.interface.substr(0, entry.interface.find(':')) == name)
            continue;
        if (Crosses(entry, network))
            return entry.interface;
    }
    return "";
}

bool FailoverNetworksCross() {
    std::vector<FailoverEntry> entries = ReadEntries();
    std::erase_if(entries, [](const FailoverEntry& entry) { return entry.address == kPlaceholder; });
    for (std::size_t i = 0; i < entries.size(); ++i) {
        for (std::size_t j = i + 1; j < entries.size(); ++j) {
            if (Cross(NetworkOf(entries[i]), NetworkOf(entries[j])))
                return true;
        }
    }
    return false;
}

} // namespace corvanshell
