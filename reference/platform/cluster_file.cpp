#include "platform/cluster_file.h"

#include "files.h"
#include "text.h"

#include "platform/log.h"
#include "platform/network.h"
#include "platform/path_list.h"

#include <cerrno>
#include <cstring>
#include <string_view>

namespace {

constexpr std::size_t file_limit = 1024 * 1024;

struct Channel {
    std::string device;
    std::string activeip;
};

// A comment stands on a line of its own, or behind a value and a blank.
std::string_view without_comment(std::string_view line) {
    for (std::size_t i = 0; i < line.size(); ++i)
        if ((line[i] == '#' || line[i] == ';') && (i == 0 || line[i - 1] == ' ' || line[i - 1] == '\t'))
            return reference::trim(line.substr(0, i));
    return line;
}

void take_value(Channel& channel, std::string_view line) {
    const std::size_t sign = line.find('=');
    if (sign == std::string_view::npos)
        return;
    const std::string_view key = reference::trim(line.substr(0, sign));
    const std::string_view value = reference::trim(line.substr(sign + 1));
    if (key == "device")
        channel.device = value;
    else if (key == "activeip")
        channel.activeip = value;
}

// The [channel] sections in file order; none when the file can't be read.
std::vector<Channel> read_channels() {
    std::vector<Channel> channels;
    std::string text;
    if (const int error = reference::read_text(path_list::failover_settings, file_limit, text)) {
        if (error != ENOENT)
            shell_log_error("%s: failed to read: %s", path_list::failover_settings.c_str(),
                            std::strerror(error));
        return channels;
    }
    bool in_channel = false;
    for (const std::string& raw : reference::split_lines(text)) {
        const std::string_view line = without_comment(reference::trim(raw));
        if (line.starts_with('[')) {
            in_channel = line == "[channel]";
            if (in_channel)
                channels.emplace_back();
        } else if (in_channel) {
            take_value(channels.back(), line);
        }
    }
    return channels;
}

std::vector<std::string> list_of(std::string Channel::*field) {
    std::vector<std::string> values;
    for (Channel& channel : read_channels())
        values.push_back(std::move(channel.*field));
    return values;
}

std::string broadcast_of(const std::string& address) {
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
    return list_of(&Channel::device);
}

std::vector<std::string> get_active_ip() {
    return list_of(&Channel::activeip);
}

std::vector<std::string> get_active_bcasts() {
    std::vector<std::string> broadcasts = get_active_ip();
    for (std::string& address : broadcasts)
        address = broadcast_of(address);
    return broadcasts;
}

} // namespace failover
