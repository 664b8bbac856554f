#include "units/snmp/cluster_contexts.h"

#include "front/probes/cluster.h"
#include "platform/ini.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "units/snmp/cluster_settings.h"
#include "units/snmp/engine_state.h"

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
        LogError("Failed to parse %s, %s", path_list::failover_settings, failure.what());
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
        LogError("SNMP: %s: failed to get the interface's address: %s", device, std::strerror(error));
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
    LogInfo("Generate context and communities for cluster monitoring");
    // Compared as texts, so that "9" stands behind "10". Kept: the other node compares so, too.
    const bool local_is_second = LastPiece(addresses.active) <= LastPiece(addresses.local);
    bool done = AddClusterNode({addresses.local, local_is_second ? "Node2" : "Node1", ""});
    done = AddClusterNode({addresses.active, local_is_second ? "Node1" : "Node2", ""}) && done;
    return SetSystemCommunity(GenerateRandomString(kSystemCommunityLength)) && done;
}

bool AreFirstNodes(const std::vector<ClusterNode>& nodes, const Addresses& addresses) {
    const auto end = nodes.begin() + std::min<std::ptrdiff_t>(std::ssize(nodes), 2);
    const auto is_node = [&](const std::string& address) {
        return std::any_of(nodes.begin(), end,
                           [&](const ClusterNode& node) { return node.address == address; });
    };
    return is_node(addresses.local) && is_node(addresses.active);
}

// On the active node the first two nodes are this one and the one at the active address. Each step is done
// whatever became of the one before. Whether there was anything to do.
bool RenewContexts(const std::vector<ClusterNode>& nodes) {
    const Addresses addresses;
    // An interface that is down for a moment must not cost the communities that the administrator has set.
    if (addresses.active.empty() || addresses.local.empty())
        return Refuse(
            "SNMP: the addresses of the cluster are unknown, its monitoring contexts stay as they are");
    if (AreFirstNodes(nodes, addresses))
        return false;
    if (!nodes.empty())
        (void)EraseClusterNodes();
    (void)SetClusterV2Mode("off");
    (void)AddContexts(addresses);
    return true;
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

bool SettleClusterContexts(const settings::File& file) {
    const std::vector<ClusterNode> nodes = ReadClusterSettings(file).nodes;
    const bool active = IsClusterActive();
    if (GetClusterMode() == 1)
        return active && RenewContexts(nodes);
    // A state that is left of an earlier cluster makes no contexts, only to have them erased.
    if (!nodes.empty())
        (void)EraseClusterNodes(); // reported
    return !nodes.empty();
}

} // namespace snmp
