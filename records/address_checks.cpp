#include "records/address_checks.h"

#include "platform/messages.h"
#include "platform/network.h"
#include "platform/processes.h"
#include "records/failover_networks.h"
#include "records/network_crossing.h"

#include <algorithm>
#include <vector>

namespace corvanshell {
namespace {

constexpr const char* kModemPrefix = "cdc-modem";
constexpr const char* kIp = "/bin/ip";
constexpr const char* kUnreadableOutput = "failed to parse application output /bin/ip";
constexpr const char* kNetmaskRule = "netmask must be in CIDR range from 1 to 30";

// The interfaces that a proposed network is held against.
enum class Others { kUp, kAll };

std::string BaseName(const std::string& name) {
    return name.substr(0, name.find(':'));
}

// The names in the order of the walks, from the last to the first.
std::vector<std::string> NamesFromLast(const CConfStruct& record) {
    std::vector<std::string> names;
    for (auto entry = record.Interfaces().rbegin(); entry != record.Interfaces().rend(); ++entry)
        names.push_back(entry->first);
    return names;
}

// What stands between two marks; "" without the first, the rest of the line without the second.
std::string Between(const std::string& line, const std::string& first, const std::string& second) {
    const std::size_t place = line.find(first);
    if (place == std::string::npos)
        return "";
    const std::size_t start = place + first.size();
    return line.substr(start, line.find(second, start) - start);
}

// The network of an "inet <address>/<prefix length> brd <broadcast> scope ..." line of ip(8).
bool ParseNetwork(const std::string& name, const std::string& line, Network& network) {
    const std::string address = Between(line, "inet ", " brd ");
    const std::size_t sign = address.find('/');
    if (sign == std::string::npos)
        return Refuse(Tr("%s: %s: cannot find address or netmask"), name, kUnreadableOutput);
    network = {address.substr(0, sign), cidr_to_subnetmask(address.substr(sign + 1)),
               Between(line, " brd ", " scope ")};
    if (network.broadcast.empty())
        return Refuse(Tr("%s: %s: one or more parameters are missing"), name, kUnreadableOutput);
    return true;
}

Crossing LiveNetworksCross(const std::string& name, const Network& proposed) {
    if (name.starts_with(kModemPrefix) && !IsInterfaceAvailable(name))
        return kNoCrossing;
    ShellProcess process({kIp, "addr", "show", name});
    process.Run();
    if (process.Error()) {
        PrintError(Tr("%s: failed to get interface address: %s"), name, process.Error().message());
        return kCrossingFailure;
    }
    for (const std::string& line : process.Output()) {
        if (line.find("inet ") == std::string::npos || line.find(" brd ") == std::string::npos)
            continue;
        Network live;
        if (!ParseNetwork(name, line, live))
            return kCrossingFailure;
        if (Cross(proposed, live))
            return kCrossing;
    }
    return kNoCrossing;
}

Crossing ReportCrossing(const std::string& name, const Network& proposed, const std::string& other,
                        const char* source) {
    PrintError("broadcast %s on interface %s crossing with %s%s", proposed.broadcast, name, other, source);
    return kCrossing;
}

// The one walk behind both checks of a proposed network.
Crossing CheckCrossing(const CConfStruct& record, const std::string& full_name, const Network& proposed,
                       bool include_dhcp, Others others) {
    const std::string name = BaseName(full_name);
    const std::string reserved = FindFailoverNetwork(name, proposed);
    if (!reserved.empty()) {
        InterfaceEntry entry;
        const bool up = record.FindInterface(BaseName(reserved), entry) && entry.up;
        if (others == Others::kAll || up)
            return ReportCrossing(name, proposed, reserved, " from failover.ini");
    }
    for (const std::string& other : NamesFromLast(record)) {
        const InterfaceEntry& entry = record.Interfaces().at(other);
        if (other == name || (others == Others::kUp && !entry.up) ||
            (!include_dhcp && IsDhcpConfigured(entry)))
            continue;
        const Crossing crossing = InterfaceCrosses(other, entry, proposed);
        if (crossing == kCrossing)
            return ReportCrossing(name, proposed, other, "");
        if (crossing == kCrossingFailure)
            return kCrossingFailure;
    }
    return kNoCrossing;
}

void TakeDown(CConfStruct& record, const std::string& name, InterfaceEntry entry) {
    entry.up = false;
    record.AddInterface(name, entry, true);
}

void CheckAliasNetmasks(CConfStruct& record, const std::string& name, const InterfaceEntry& entry) {
    const std::vector<Network> aliases = AliasNetworksOf(entry);
    for (std::size_t i = 0; i < aliases.size(); ++i) {
        if (IsNetmaskUsable(aliases[i].netmask))
            continue;
        TakeDown(record, name, entry);
        PrintWarning(Tr("alias %s:%d on interface %s has invalid netmask and going down:\n%s please "
                        "fix it before activating this one"),
                     name, static_cast<int>(i), name, aliases[i].netmask);
        PrintWarning(Tr("%s"), kNetmaskRule);
    }
}

// Whether one of the interface's networks crosses another of an interface that is up.
bool HasCrossing(const CConfStruct& record, const std::string& name, const InterfaceEntry& entry) {
    if (!IsDhcpConfigured(entry) && CheckAgainstUp(record, name, MainNetworkOf(entry), false) != kNoCrossing)
        return true;
    const std::vector<Network> aliases = AliasNetworksOf(entry);
    return std::any_of(aliases.begin(), aliases.end(), [&](const Network& alias) {
        return CheckAgainstUp(record, name, alias, true) != kNoCrossing;
    });
}

bool IsNetworkUsable(const CConfStruct& record, const std::string& name, const Network& network) {
    return IsNetmaskUsable(network.netmask) && CheckAgainstUp(record, name, network, true) == kNoCrossing;
}

bool AreNetworksUsable(const CConfStruct& record, const std::string& name, const InterfaceEntry& entry) {
    const std::vector<Network> aliases = AliasNetworksOf(entry);
    return std::all_of(aliases.begin(), aliases.end(),
                       [&](const Network& alias) { return IsNetworkUsable(record, name, alias); }) &&
           IsNetworkUsable(record, name, MainNetworkOf(entry));
}

} // namespace

void CheckNetmasks(CConfStruct& record) {
    for (const std::string& name : NamesFromLast(record)) {
        const InterfaceEntry entry = record.Interfaces().at(name);
        if (!entry.up || entry.netmask.empty() || IsDhcpConfigured(entry))
            continue;
        if (IsNetmaskUsable(entry.netmask)) {
            CheckAliasNetmasks(record, name, entry);
            continue;
        }
        PrintWarning(Tr("interface %s has invalid netmask and going down: %s please fix it before "
                        "activating this one"),
                     name, entry.netmask);
        PrintWarning(Tr("%s"), kNetmaskRule);
        TakeDown(record, name, entry);
    }
}

void CheckBroadcasts(CConfStruct& record) {
    for (const std::string& name : NamesFromLast(record)) {
        const InterfaceEntry entry = record.Interfaces().at(name);
        if (entry.up && !entry.broadcast.empty() && HasCrossing(record, name, entry))
            TakeDown(record, name, entry);
    }
}

Crossing InterfaceCrosses(const std::string& name, const InterfaceEntry& entry, const Network& proposed) {
    if (IsDhcpConfigured(entry))
        return LiveNetworksCross(BaseName(name), proposed);
    for (const Network& network : NetworksOf(entry)) {
        if (Cross(proposed, network))
            return kCrossing;
    }
    return kNoCrossing;
}

Crossing CheckAgainstUp(const CConfStruct& record, const std::string& name, const Network& proposed,
                        bool include_dhcp) {
    return CheckCrossing(record, name, proposed, include_dhcp, Others::kUp);
}

Crossing CheckAgainstAll(const CConfStruct& record, const std::string& name, const Network& proposed,
                         bool include_dhcp) {
    return CheckCrossing(record, name, proposed, include_dhcp, Others::kAll);
}

Crossing NetworksCross(const std::string& name, const InterfaceEntry& entry, const std::string& address,
                       const std::string& broadcast, const std::string& netmask) {
    return InterfaceCrosses(name, entry, {address, netmask, broadcast});
}

Crossing CheckInterfaceCrossing(const CConfStruct& record, const std::string& name,
                                const std::string& address, const std::string& broadcast,
                                const std::string& netmask, bool include_dhcp) {
    return CheckAgainstUp(record, name, {address, netmask, broadcast}, include_dhcp);
}

Crossing CheckAddressCrossing(const CConfStruct& record, const std::string& name, const std::string& address,
                              const std::string& broadcast, const std::string& netmask, bool include_dhcp) {
    return CheckAgainstAll(record, name, {address, netmask, broadcast}, include_dhcp);
}

std::string FindFailoverCrossing(const std::string& name, const std::string& address,
                                 const std::string& broadcast, const std::string& netmask) {
    return FindFailoverNetwork(BaseName(name), {address, netmask, broadcast});
}

bool CheckInterfaceUp(const CConfStruct& record, const std::string& full_name) {
    const std::string name = BaseName(full_name);
    InterfaceEntry entry;
    if (!record.FindInterface(name, entry))
        return false;
    if (!IsDhcpConfigured(entry) && !entry.address.empty() && !AreNetworksUsable(record, name, entry))
        return false;
    if (FailoverNetworksCross())
        return Refuse(Tr("failed to check broadcasts crossing: interfaces configured in failover.ini have "
                         "crossing networks"));
    return true;
}

} // namespace corvanshell
