#include "platform/cluster_file.h"

#include "files.h"
#include "ini_text.h"

#include "platform/messages.h"
#include "platform/network.h"
#include "platform/path_list.h"

#include <cerrno>
#include <cstring>

namespace {

struct Channel {
    std::string device;
    std::string activeip;
};

// The [channel] sections in file order; none when the file can't be read.
std::vector<Channel> ReadChannels() {
    std::vector<Channel> channels;
    std::string text;
    if (const int error =
            linux_platform::ReadText(path_list::failover_settings, linux_platform::ini_limit, text)) {
        if (error != ENOENT)
            LogError("%s: failed to read: %s", path_list::failover_settings, std::strerror(error));
        return channels;
    }
    std::size_t ignored = 0; // what is no line of a channel is no matter of ours
    for (const linux_platform::IniSection& section : linux_platform::ParseIni(text, ignored))
        if (section.name == "channel")
            channels.push_back({section.get("device"), section.get("activeip")});
    return channels;
}

std::vector<std::string> ListOf(std::string Channel::*field) {
    std::vector<std::string> values;
    for (Channel& channel : ReadChannels())
        values.push_back(std::move(channel.*field));
    return values;
}

std::string BroadcastOf(const std::string& address) {
    const std::size_t slash = address.find('/');
    if (slash == std::string::npos)
        return address;
    const std::string netmask = corvanshell::cidr_to_subnetmask(address.substr(slash + 1));
    const std::string broadcast = corvanshell::getbrcast(address.substr(0, slash), netmask);
    return broadcast.empty() ? address : broadcast;
}

} // namespace

namespace failover {

std::vector<std::string> get_active_ifaces() {
    return ListOf(&Channel::device);
}

std::vector<std::string> get_active_ip() {
    return ListOf(&Channel::activeip);
}

std::vector<std::string> get_active_bcasts() {
    std::vector<std::string> broadcasts = get_active_ip();
    for (std::string& address : broadcasts)
        address = BroadcastOf(address);
    return broadcasts;
}

} // namespace failover
