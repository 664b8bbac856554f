#include "commands/failover/addresses.h"

#include "platform/messages.h"
#include "platform/path_list.h"
#include "records/address_checks.h"
#include "records/cluster_channels.h"

#include <algorithm>
#include <vector>

namespace failover {
namespace {

using corvanshell::CConfStruct;
using corvanshell::Channel;
using Channels = std::vector<Channel>;

constexpr const char* kFailed = "failover address validation failed";

// Whether somebody has configured the channel's address.
bool HasAddress(const Channel& channel) {
    return !channel.entry.empty() && !channel.IsPlaceholder();
}

// Reads the channels that can be checked.
bool ReadAddresses(Channels& channels) {
    Channels read = corvanshell::ReadChannels();
    if (std::all_of(read.begin(), read.end(),
                    [](const Channel& channel) { return channel.interface.empty(); }))
        return Refuse(Tr("failover address validation: cannot find active ifaces in failover.ini"));
    if (std::any_of(read.begin(), read.end(),
                    [](const Channel& channel) { return HasAddress(channel) && !channel.HasNetwork(); }))
        return Refuse(Tr("failover address validation: cannot calculate broadcasts for failover active ip "
                         "addresses"));
    // A channel without its address, or its interface, counts for the other alone.
    if (std::any_of(read.begin(), read.end(), [](const Channel& channel) {
            return channel.interface.empty() != channel.entry.empty();
        }))
        return Refuse(Tr("failover address validation: active IP address count does not match active "
                         "interfaces count in failover.ini"));
    channels = std::move(read);
    return true;
}

bool CrossNothing(const CConfStruct& record, const Channels& channels) {
    return std::all_of(channels.begin(), channels.end(), [&](const Channel& channel) {
        const corvanshell::Network& network = channel.network;
        return !HasAddress(channel) ||
               CheckAddressCrossing(record, channel.interface, network.address, network.broadcast,
                                    network.netmask, true) == corvanshell::kNoCrossing;
    });
}

} // namespace

bool ValidateFailoverAddresses() {
    Channels channels;
    if (!ReadAddresses(channels))
        return false;
    const CConfStruct record(path_list::local_settings, true);
    // An empty one would cross nothing.
    return (record.CheckRead() && CrossNothing(record, channels)) || Refuse(Tr(kFailed));
}

bool ValidateFailoverAddresses(const CConfStruct& record) {
    Channels channels;
    return ReadAddresses(channels) && (CrossNothing(record, channels) || Refuse(Tr(kFailed)));
}

} // namespace failover
