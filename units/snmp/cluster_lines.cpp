#include "units/snmp/cluster_lines.h"

#include "front/helpers/text.h"
#include "platform/messages.h"
#include "units/snmp/agent_settings.h"
#include "units/snmp/cluster_contexts.h"
#include "units/snmp/cluster_settings.h"
#include "units/snmp/daemon_lines.h"
#include "units/snmp/users.h"

#include <algorithm>
#include <arpa/inet.h>
#include <bit>
#include <netinet/in.h>

namespace snmp {
namespace {

using settings::File;

constexpr const char* kSubject = "cluster monitoring";

std::string Subject(const ClusterNode& node) {
    return "cluster node " + node.address;
}

// "<network>/<prefix length>" of the interface between the nodes, "" when it is unknown.
std::string FindClusterNetwork() {
    const std::string device = ReadFailoverDevice();
    in_addr address{};
    in_addr netmask{};
    if (inet_aton(GetInterfaceAddress(device).c_str(), &address) == 0 ||
        inet_aton(GetInterfaceNetmask(device).c_str(), &netmask) == 0)
        return "";
    address.s_addr &= netmask.s_addr;
    return std::string(inet_ntoa(address)) + "/" + std::to_string(std::popcount(netmask.s_addr));
}

// Without a network the community would be open to everybody, and the other lines do without it.
bool WriteSystemCommunity(const ClusterSettings& cluster, std::FILE* out) {
    const std::string network = FindClusterNetwork();
    if (network.empty()) {
        PrintError("SNMP: cluster monitoring: the network between the nodes is unknown");
        return true;
    }
    return WriteLine(out, kSubject, {"rocommunity ", Word(cluster.system_community), " ", Word(network)});
}

bool WriteV2Access(const ClusterSettings& cluster, std::FILE* out) {
    bool done = WriteLine(out, kSubject, {"view nodev included .1.3"});
    for (const ClusterNode& node : cluster.nodes)
        done = WriteLine(out, Subject(node),
                         {"com2sec -Cn ", Quoted(node.context), " noUser default ", Word(node.community)}) &&
               done;
    done = WriteLine(out, kSubject, {"group noGroup v1 noUser\ngroup noGroup v2c noUser"}) && done;
    for (const ClusterNode& node : cluster.nodes)
        done = WriteLine(out, Subject(node),
                         {"access noGroup ", Word(node.context), " any noauth exact nodev none none"}) &&
               done;
    return done;
}

// What asks a user's own access at the active address.
bool WriteUserProxies(const ClusterSettings& cluster, const File& file, std::FILE* out) {
    const std::string active = ReadFailoverActiveIp();
    const ClusterNode& second = cluster.nodes.back();
    const std::string& context = active == second.address ? second.context : cluster.nodes.front().context;
    bool done = true;
    for (const auto& [user, sends_traps, receivers] : ListUserEntries(file)) {
        if (user.read != "on")
            continue;
        std::vector<Piece> line = {"proxy  -Cn ",   Quoted(context),  " -v3 -u ",
                                   Word(user.name), " -a ",           Word(ToUpper(user.auth_type)),
                                   " -A ",          Quoted(user.pass)};
        if (user.encryption == "on")
            line.insert(line.end(), {" -x AES -X ", Quoted(user.priv_key), " -l authPriv "});
        else
            line.emplace_back(" -l authNoPriv ");
        line.insert(line.end(), {Word(active), ":", Word(GetSetting(file, kPort)), " .1.3"});
        done = WriteLine(out, "user " + user.name, line) && done;
    }
    return done;
}

} // namespace

bool WriteClusterLines(const File& file, std::FILE* out) {
    ClusterSettings cluster = ReadClusterSettings(file);
    if (cluster.nodes.empty())
        return true;
    // Two nodes are meant to be there; one alone gets its lines as well.
    cluster.nodes.resize(std::min<std::size_t>(cluster.nodes.size(), 2));
    bool done = WriteSystemCommunity(cluster, out);
    for (const ClusterNode& node : cluster.nodes)
        done = WriteLine(out, Subject(node),
                         {"proxy -Cn ", Quoted(node.context), " -v2c -c ", Word(cluster.system_community),
                          " ", Word(node.address), ":", Word(GetSetting(file, kPort)), " .1.3"}) &&
               done;
    if (cluster.v2_mode && IsOn(file, kV2Mode))
        done = WriteV2Access(cluster, out) && done;
    if (IsOn(file, kV3Mode))
        done = WriteUserProxies(cluster, file, out) && done;
    return done;
}

} // namespace snmp
