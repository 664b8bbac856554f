#include "reference/failover/daemon_files.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <unistd.h>

namespace reference::failover {
namespace {

// Nodes without an active address agree on their roles all the same, and keepalived wants one.
constexpr const char* kNoAddress = "        127.0.0.51/32 dev lo\n";

struct RoleSettings {
    const char* priority; // near the highest, so that the other node follows at once
    const char* preempt;
    const char* patience; // for the other node to be heard, before a start
};

RoleSettings SettingsOf(Role role) {
    switch (role) {
    case Role::kActive:
        return {"254", "", ""};
    case Role::kPassive:
        return {"252", "    nopreempt\n", "    vrrp_startup_delay 10\n"};
    default:
        return {"253", "    nopreempt\n", ""};
    }
}

} // namespace

std::string AdvertsText(const Cluster& cluster, Role role) {
    const auto [priority, preempt, patience] = SettingsOf(role);
    std::string addresses;
    for (const std::string& address : cluster.Addresses())
        addresses += "        " + address + "\n";
    std::set<std::string> devices;
    for (const Cluster::Channel& channel : cluster.channels)
        devices.insert(channel.device);
    std::string tracked;
    for (const std::string& device : devices)
        tracked += "        " + device + "\n";
    return "global_defs {\n    vrrp_version 3\n    vrrp_notify_fifo " + std::string(kEvents) + "\n" +
           patience + "}\nvrrp_instance cluster {\n    state BACKUP\n    interface " + cluster.send_device +
           "\n    virtual_router_id 51\n    priority " + priority + "\n    advert_int " + cluster.interval +
           "\n" + preempt + "    track_interface {\n" + tracked + "    }\n    virtual_ipaddress {\n" +
           (addresses.empty() ? kNoAddress : addresses) + "    }\n}\n";
}

std::string ConnectionsText(const Cluster& cluster, const std::string& own_address) {
    return "Sync {\n    Mode FTFW {\n    }\n    Multicast {\n        IPv4_address 225.0.0.50\n        Group "
           "3780\n"
           "        IPv4_interface " +
           own_address + "\n        Interface " + cluster.send_device +
           "\n        Checksum on\n    }\n}\nGeneral {\n    HashSize 32768\n    HashLimit 131072\n"
           "    LockFile /run/failover/conntrackd.lock\n    UNIX {\n        Path "
           "/run/failover/conntrackd.ctl\n"
           "    }\n    Filter From Kernelspace {\n        Protocol Accept {\n            TCP\n            "
           "UDP\n"
           "            ICMP\n        }\n        Address Ignore {\n            IPv4_address 127.0.0.1\n"
           "            IPv4_address " +
           own_address + "\n        }\n    }\n}\n";
}

bool ReplaceFile(const std::string& path, const std::string& text) {
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
    const std::string temporary = path + ".new";
    const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (file < 0)
        return false;
    const bool written =
        write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size()) && fsync(file) == 0;
    const bool closed = close(file) == 0;
    if (written && closed && rename(temporary.c_str(), path.c_str()) == 0)
        return true;
    unlink(temporary.c_str());
    return false;
}

} // namespace reference::failover
