#pragma once

#include <string>
#include <vector>

namespace reference::failover {

// What /etc/failover.ini says of a pair of nodes.
struct Cluster {
    struct Channel {
        std::string device;
        std::string active_address; // "192.168.1.3/24", or "change_this"
    };

    std::vector<Channel> channels;
    std::string send_device;      // where the nodes hear each other
    std::string interval = "0.2"; // seconds between two adverts of the active node
    bool sync_connections = false;

    // "dev eth0"; the words of ip(8) for each active address that is configured
    std::vector<std::string> Addresses() const;
};

// Without `device` in [sendconfig] the first channel's device is taken; without a channel there is none.
Cluster ReadCluster(const std::string& path);

} // namespace reference::failover
