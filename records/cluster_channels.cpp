#include "records/cluster_channels.h"

#include "platform/cluster_file.h"
#include "platform/network.h"

#include <algorithm>

namespace corvanshell {
namespace {

constexpr const char* kPlaceholder = "change_this";

Network ParseEntry(const std::string& entry, const std::string& broadcast) {
    const std::size_t slash = std::min(entry.find('/'), entry.size());
    const std::string prefix = slash < entry.size() ? entry.substr(slash + 1) : "";
    return {entry.substr(0, slash), cidr_to_subnetmask(prefix), broadcast};
}

} // namespace

bool Channel::IsPlaceholder() const {
    return entry == kPlaceholder;
}

bool Channel::HasNetwork() const {
    return !network.netmask.empty() && is_valid_ip(network.address);
}

std::vector<Channel> ReadChannels() {
    const std::vector<std::string> interfaces = failover::get_active_ifaces();
    const std::vector<std::string> entries = failover::get_active_ip();
    const std::vector<std::string> broadcasts = failover::get_active_bcasts();
    std::vector<Channel> channels(std::min({interfaces.size(), entries.size(), broadcasts.size()}));
    for (std::size_t i = 0; i < channels.size(); ++i)
        channels[i] = {interfaces[i], entries[i], ParseEntry(entries[i], broadcasts[i])};
    return channels;
}

} // namespace corvanshell
