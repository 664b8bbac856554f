#pragma once

#include <map>
#include <string>

// The configuration file of the L2OverIP driver, /mnt/main/etc/l2overip.conf:
//
//     mode = switch
//     mac_ttl = 300
//     device = eth1
//     unsolicited_frames = drop
//     local_port = 1, 203.0.113.2
//     remote_port = 2, 198.51.100.7        (one line for each remote port)
//
// The lines may stand below "[options]". An option without a value has no line.

struct L2OverIpConfig {
    std::string mode;    // "switch" when on
    std::string mac_ttl; // life of an entry of the MAC table
    std::string device;  // the internal interface whose frames are taken; "" or "none" when unset
    std::string unsolicited_frames;
    std::string local_num; // this appliance's port: a decimal number and an IPv4 address
    std::string local_ip;
    std::map<unsigned long, std::string> remote_ports; // the other ends' addresses, by port number
};

// Reads the file. False, reported and with `config` as it was, when it can't be read or is malformed.
[[nodiscard]] bool L2OverIpRead(L2OverIpConfig& config);

// Writes the file, has a driver that is in switch mode read it, and renews its guard. A failure is reported;
// one behind the writing leaves the new file without a new guard.
[[nodiscard]] bool L2OverIpWrite(const L2OverIpConfig& config);

// One of the six single options by its name, "" for an unknown name.
std::string L2OverIpGet(const L2OverIpConfig& config, const std::string& option);

// Whether the driver could work with this configuration. The first thing that is missing is reported.
[[nodiscard]] bool L2OverIpCheck(const L2OverIpConfig& config);

// Whether L2OverIP takes the frames of this interface. A file that can't be opened means no, without a word.
[[nodiscard]] bool IsL2OverIpSwitchOn(const std::string& interface);

// Whether no host can have the address: multicast, or 0 or 255 at its end, whatever the netmask. Throws
// std::system_error for what is no IPv4 address.
[[nodiscard]] bool IsBroadcastLike(const std::string& address);
