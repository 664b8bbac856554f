#include "commands/l2overip/commands.h"
#include "shell/families.h"

namespace shell {
namespace {

using namespace l2overip;
using Text = const std::string&;

constexpr Command kCommands[] = {
    {"l2overip", "layer-2 traffic over IP"},
    {"l2overip show config", "shows the settings", [] { return Show("config"); }, kShows},
    {"l2overip show status",
     "shows what the driver does; this and the following need a driver in switch mode",
     [] { return Show("status"); }, kShows},
    {"l2overip show port-table", "shows the ports that the driver knows", [] { return Show("port-table"); },
     kShows},
    {"l2overip show mac-address-table", "shows the MAC address table of the virtual switch",
     [] { return Show("mac-address-table"); }, kShows},
    {"l2overip show mac-hash-stats", "shows statistics of the MAC hash",
     [] { return Show("mac-hash-stats"); }, kShows},
    {"l2overip show clone-fabric-stats", "shows statistics of the clone fabric",
     [] { return Show("clone-fabric-stats"); }, kShows},
    {"l2overip show vswitch-stats", "shows statistics of the virtual switch",
     [] { return Show("vswitch-stats"); }, kShows},
    {"l2overip show", "settings, and what the driver does"},
    {"l2overip interface <interface>", "names the internal interface; a ppp interface is refused",
     kCall<&SetInterface>},
    {"l2overip local port <number> <address>",
     "sets this appliance's port: a static address of another interface", kCall<&SetLocalPort>},
    {"l2overip remote port", "ports of other ends"},
    {"l2overip remote", "other ends"},
    {"l2overip remote port delete <number>",
     "removes the port, after a question; in switch mode one has to stay", kCall<&DeleteRemotePort>},
    {"l2overip remote port <number> <address>", "adds the port of another end, or moves it to a new address",
     kCall<&SetRemotePort>},
    {"l2overip mac-ttl <number>", "sets how long an entry of the MAC table lives", kCall<&SetMacTtl>},
    {"l2overip unsolicited-frames <text>", "sets what happens to unsolicited frames",
     kCall<&SetUnsolicitedFrames>},
    {"l2overip mode", "whether the driver works; not on a passive cluster node"},
    {"l2overip mode switch", "starts the driver, when its configuration is complete"},
    {"l2overip mode off", "stops using the driver"},
    {"l2overip mode <switch|off>",
     "switch starts the driver with a complete configuration; not on a passive cluster node",
     kCall<&SetMode>},
};

} // namespace

std::span<const Command> L2OverIpCommands() {
    return kCommands;
}

} // namespace shell
