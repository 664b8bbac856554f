#include "reference/failover/cluster_file.h"

#include <fstream>

namespace reference::failover {
namespace {

constexpr const char* kNobodysAddress = "change_this";

// "activeip = 192.168.1.3/24 # inside" -> "192.168.1.3/24"
std::string ValueOf(const std::string& line, const std::string& key) {
    const std::string text = line.substr(0, line.find('#'));
    const std::size_t equals = text.find('=');
    const std::size_t start = text.find_first_not_of(" \t");
    if (equals == text.npos || text.substr(start, text.find_first_of(" \t=", start) - start) != key)
        return "";
    const std::size_t value = text.find_first_not_of(" \t", equals + 1);
    return value == text.npos ? "" : text.substr(value, text.find_last_not_of(" \t\r") + 1 - value);
}

void Take(std::string& field, const std::string& value) {
    if (!value.empty())
        field = value;
}

} // namespace

std::vector<std::string> Cluster::Addresses() const {
    std::vector<std::string> addresses;
    for (const Channel& channel : channels) {
        if (!channel.active_address.empty() && channel.active_address != kNobodysAddress)
            addresses.push_back(channel.active_address + " dev " + channel.device);
    }
    return addresses;
}

Cluster ReadCluster(const std::string& path) {
    Cluster cluster;
    std::ifstream file(path);
    bool in_channel = false;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("[")) {
            in_channel = line.starts_with("[channel]");
            if (in_channel)
                cluster.channels.emplace_back();
        } else if (in_channel) {
            Take(cluster.channels.back().device, ValueOf(line, "device"));
            Take(cluster.channels.back().active_address, ValueOf(line, "activeip"));
        } else {
            Take(cluster.send_device, ValueOf(line, "device"));
            Take(cluster.interval, ValueOf(line, "interval"));
            const std::string synchronized = ValueOf(line, "syncconnections");
            if (!synchronized.empty())
                cluster.sync_connections = (synchronized[0] | ' ') == 'y';
        }
    }
    if (cluster.send_device.empty() && !cluster.channels.empty())
        cluster.send_device = cluster.channels.front().device;
    return cluster;
}

} // namespace reference::failover
