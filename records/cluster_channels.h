#pragma once

#include "records/network_crossing.h"

#include <string>
#include <vector>

namespace corvanshell {

// One [channel] of the cluster file: an interface, and the address that the active node holds on it.
struct Channel {
    std::string interface; // as it stands, so that an alias is "eth0:1"; "" when the section names none
    std::string entry;     // "<address>/<prefix length>" as it stands, "" when the section has none
    // What the entry says. Without a "/" and a prefix length the netmask is empty, and the broadcast of what
    // is no network is the entry itself.
    Network network;

    // Whether nobody has configured the address yet: the text "change_this" stands for it.
    bool IsPlaceholder() const;
    // Whether the entry is an address with a prefix length.
    bool HasNetwork() const;
    // The interface without its alias.
    std::string Device() const { return interface.substr(0, interface.find(':')); }
};

// The channels in file order, placeholders among them; none when the file can't be read.
std::vector<Channel> ReadChannels();

} // namespace corvanshell
