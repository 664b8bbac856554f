#include "commands/failover/address_check.h"

#include "commands/arguments/arguments.h"
#include "front/helpers/stream.h"
#include "front/probes/cluster.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "platform/processes.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

namespace failover {
namespace {

constexpr const char* kArping = "/usr/bin/arping";
constexpr const char* kReply = "Unicast reply from ";
constexpr const char* kNoReply = "NA";
constexpr std::size_t kLineSize = 8192;

using Texts = std::vector<std::string>;

struct Channels {
    Texts devices;
    Texts addresses;
};

std::string FirstWord(const std::string& text) {
    const std::size_t start = std::min(text.find_first_not_of(" \t"), text.size());
    return text.substr(start, text.find_first_of(" \t\r\n", start) - start);
}

void TakeLine(const std::string& line, Channels& channels) {
    const std::size_t sign = line.find(" = ");
    if (sign == std::string::npos)
        return;
    const std::string key = FirstWord(line.substr(0, sign));
    const std::string value = FirstWord(line.substr(sign + 3));
    if (key == "device")
        channels.devices.push_back(value);
    else if (key == "activeip")
        channels.addresses.push_back(value.substr(0, value.find('/')));
}

bool ReadChannels(Channels& channels) {
    const char* const path = path_list::failover_settings.c_str();
    const Stream file(std::fopen(path, "re"));
    if (file == nullptr)
        return Refuse(Tr("%s: failed to open file: %s"), path, std::strerror(errno));
    char buffer[kLineSize];
    bool in_channel = false;
    while (std::fgets(buffer, sizeof buffer, file.get()) != nullptr) {
        const std::string line = buffer;
        if (line.starts_with("[sendconfig]"))
            break;
        if (line.starts_with("["))
            in_channel = line.starts_with("[channel]");
        else if (in_channel)
            TakeLine(line, channels);
    }
    return true;
}

// The MAC address in "Unicast reply from 192.0.2.1 [02:00:00:00:00:01]  0.7ms", "" in a line that is no
// reply.
std::string FindMac(const std::string& line) {
    const std::size_t reply = line.find(kReply);
    const std::size_t start = reply == std::string::npos ? reply : line.find('[', reply);
    const std::size_t end = start == std::string::npos ? start : line.find(']', start);
    return end == std::string::npos ? "" : line.substr(start + 1, end - start - 1);
}

// The MAC address that answers for the address on the device. Both come from a file that an administrator
// edits, so they are looked at before they go into a shell line. arping ends with 1 when there is a reply.
bool AskForMac(const std::string& address, const std::string& device, std::string& mac) {
    // /usr/bin/arping -c 3 -D 192.0.2.1 -I eth1
    const std::string line = std::string(kArping) + " -c 3 -D " + address + " -I " + device;
    Texts output;
    int status = -1;
    if (arguments::IsAddress(address) && arguments::IsInterfaceName(device))
        status = corvanshell::run(line.c_str(), output);
    const auto reply = std::find_if(output.begin(), output.end(),
                                    [](const std::string& text) { return !FindMac(text).empty(); });
    if (status != 0 && reply == output.end())
        return Refuse(Tr("failed to run %s"), line);
    mac = reply == output.end() ? kNoReply : FindMac(*reply);
    return true;
}

Texts CollectMacs(const Channels& channels) {
    Texts macs;
    for (std::size_t i = 0; i < channels.addresses.size(); ++i) {
        std::string mac = kNoReply; // also of an address without a device, which makes the counts differ
        const std::string device = i < channels.devices.size() ? channels.devices[i] : "";
        if (device.empty() || AskForMac(channels.addresses[i], device.substr(0, device.find(':')), mac))
            macs.push_back(mac);
    }
    return macs;
}

} // namespace

bool CheckActiveAddresses() {
    if (!IsDisabledOnPassiveNode(""))
        return Refuse(Tr("Use it on passive cluster node only"));
    Channels channels;
    if (!ReadChannels(channels))
        return false;
    if (channels.addresses.empty())
        return Refuse(Tr("active IP not set in failover.ini"));
    PrintInfo(Tr("Address check is in progress ..."));
    const Texts macs = CollectMacs(channels);
    if (macs.size() != channels.devices.size() || macs.size() != channels.addresses.size())
        return Refuse(Tr("mac addresses count doesn't match devices count"));
    PrintInfo(Tr("Interface\tIP-address\tMAC-address"));
    for (std::size_t i = 0; i < macs.size(); ++i)
        PrintInfo("%s\t%s\t%s", channels.devices[i], channels.addresses[i], macs[i]);
    return true;
}

} // namespace failover
