#include "records/failover_networks.h"

#include "platform/messages.h"
#include "records/cluster_channels.h"

#include <vector>

namespace corvanshell {
namespace {

// Whether the channel crosses the network, or can't be read and has to count as if it did.
bool Crosses(const Channel& channel, const Network& network) {
    const Network& reserved = channel.network;
    if (reserved.broadcast == network.broadcast)
        return true;
    if (channel.entry.find('/') == std::string::npos) {
        PrintError("%s: failed to get address from failover.ini", channel.interface);
        return true;
    }
    if (reserved.netmask == network.netmask)
        return false;
    if (reserved.netmask.empty() && reserved.address.empty()) {
        PrintError("%s: failed to get address or netmask from failover.ini", channel.interface);
        return true;
    }
    return Cross(reserved, network);
}

} // namespace

std::string FindFailoverNetwork(const std::string& name, const Network& network) {
    for (const Channel& channel : ReadChannels()) {
        if (!channel.IsPlaceholder() && channel.Device() != name && Crosses(channel, network))
            return channel.interface;
    }
    return "";
}

bool FailoverNetworksCross() {
    std::vector<Channel> channels = ReadChannels();
    std::erase_if(channels, [](const Channel& channel) { return channel.IsPlaceholder(); });
    for (std::size_t i = 0; i < channels.size(); ++i) {
        for (std::size_t j = i + 1; j < channels.size(); ++j) {
            if (channels[i].Device() != channels[j].Device() &&
                Cross(channels[i].network, channels[j].network))
                return true;
        }
    }
    return false;
}

} // namespace corvanshell
