#include "units/snmp/cluster_contexts.h"

#include "front/probes/cluster.h"
#include "platform/ini.h"
#include "platform/log.h"
#include "platform/path_list.h"
#include "units/snmp/cluster_settings.h"
#include "units/snmp/engine_state.h"
#include "units/snmp/settings_access.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <exception>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace snmp {
namespace {

constexpr std::size_t kSystemCommunityLength = 18;

std::string ReadFailoverKey(const char* key) {
    try {
        return Ini(path_list::failover_settings).Get("sendconfig", key);
    } catch (const std::exception& failure) {
        shell_log_error("Failed to parse %s, %s", path_list::failover_settings.c_str(), failure.what());
        return "";
    }
}

std::string AskInterface(const std::string& device, unsigned long question) {
    ifreq request{};
    device.copy(request.ifr_name, IFNAMSIZ - 1);
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const bool answered = descriptor >= 0 && ioctl(descriptor, question, &request) == 0;
    const int error = errno;
    if (descriptor >= 0)
        close(descriptor);
    if (!answered) {
        shell_log_error("SNMP: %s: failed to get the interface's address: %s", device.c_str(),
                        std::strerror(error));
        return "";
    }
    sockaddr_in address{};
    std::memcpy(&address, &request.ifr_addr, sizeof address);
    return inet_ntoa(address.sin_addr);
}

std::string LastPiece(const std::string& address) {
    return address.substr(address.rfind('.') + 1);
}

// The two addresses of the cluster, as this node sees them.
struct Addresses {
    std::string active = ReadFailoverActiveIp();
    std::string local = GetInterfaceAddress(ReadFailoverDevice());
};

bool AddContexts(const Addresses& addresses) {
    shell_log_info("Generate context and communities for cluster monitoring");
    // Compared as texts, so that "9" stands behind "10". Kept: the other node compares so, too.
    const bool local_is_second = LastPiece(addresses.active) <= LastPiece(addresses.local);
    return AddClusterNode({addresses.local, local_is_second ? "Node2" : "Node1", ""}) &&
           AddClusterNode({addresses.active, local_is_second ? "Node1" : "Node2", ""}) &&
           SetSystemCommunity(GenerateRandomString(kSystemCommunityLength));
}

bool AreFirstNodes(const std::vector<ClusterNode>& nodes, const Addresses& addresses) {
    const auto end = nodes.begin() + std::min<std::ptrdiff_t>(std::ssize(nodes), 2);
    const auto is_node = [&](const std::string& address) {
        return std::any_of(nodes.begin(), end,
                           [&](const ClusterNode& node) { return node.address == address; });
    };
    return is_node(addresses.local) && is_node(addresses.active);
}

// On the active node the first two nodes are this one and the one at the active address.
bool CheckContexts() {
    const Addresses addresses;
    // An interface that is down for a moment must not cost the communities that the administrator has set.
    if (addresses.active.empty() || addresses.local.empty())
        return Fail(
            "SNMP: the addresses of the cluster are unknown, its monitoring contexts stay as they are");
    const std::vector<ClusterNode> nodes = ReadClusterSettings().nodes;
    if (AreFirstNodes(nodes, addresses))
        return true;
    if (!nodes.empty() && !EraseClusterNodes())
        return false;
    return SetClusterV2Mode("off") && AddContexts(addresses);
}

} // namespace

std::string ReadFailoverActiveIp() {
    return ReadFailoverKey("activeip");
}

std::string ReadFailoverDevice() {
    return ReadFailoverKey("device");
}

std::string GetInterfaceAddress(const std::string& device) {
    return AskInterface(device, SIOCGIFADDR);
}

std::string GetInterfaceNetmask(const std::string& device) {
    return AskInterface(device, SIOCGIFNETMASK);
}

bool GenerateClusterContexts() {
    return AddContexts(Addresses());
}

bool SettleClusterContexts() {
    const bool checked = !IsClusterActive() || CheckContexts();
    return (GetClusterMode() == 1 || EraseClusterNodes()) && checked;
}

} // namespace snmp
