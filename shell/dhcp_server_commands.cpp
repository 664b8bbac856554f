#include "platform/messages.h"
#include "platform/network.h"
#include "shell/families.h"
#include "shell/removal.h"
#include "shell/values.h"
#include "units/dhcp_server/hosts.h"
#include "units/dhcp_server/list_options.h"
#include "units/dhcp_server/model/area.h"
#include "units/dhcp_server/model/gates.h"
#include "units/dhcp_server/model/paths.h"
#include "units/dhcp_server/report.h"
#include "units/dhcp_server/reset.h"
#include "units/dhcp_server/single_options.h"
#include "units/dhcp_server/subnets.h"
#include "units/dhcp_server/unit.h"

#include <memory>
#include <sstream>

namespace shell {
namespace {

using namespace settings::dhcp_server;
using Text = const std::string&;

// The place that the words of "<area>" name; without words it is the whole unit.
std::unique_ptr<Area> MakeArea(const std::string& text) {
    std::istringstream words(text);
    std::string kind;
    std::string name;
    words >> kind >> name;
    if (kind == "interface")
        return std::make_unique<LocalSubnet>(name);
    if (kind == "host")
        return std::make_unique<Host>(text.substr(text.find(' ') + 1));
    if (kind != "subnet")
        return std::make_unique<Area>();
    std::string netmask;
    words >> netmask;
    return std::make_unique<RemoteSubnet>(name, netmask);
}

} // namespace

// Only the patterns with a subnet give the action one.
template <class Place>
struct PlaceArgument {
    explicit PlaceArgument(const std::string& text) : area(MakeArea(text)) {}
    operator const Place&() const { return dynamic_cast<const Place&>(*area); }
    std::unique_ptr<Area> area;
};

template <>
struct Argument<const Area&> : PlaceArgument<Area> {
    using PlaceArgument::PlaceArgument;
};
template <>
struct Argument<const Subnet&> : PlaceArgument<Subnet> {
    using PlaceArgument::PlaceArgument;
};

namespace {

// The types of options that go by their number.
constexpr char kIp[] = "ip";
constexpr char kAscii[] = "ascii";
constexpr char kHex[] = "hex";

template <const char* type>
constexpr auto kSetCustom =
    [](const Area& area, Text number, Text value) { return SetCustomOption(area, number, type, value); };

constexpr auto kSetNamed = [](const Area& area, Text name, Text value) {
    return SetNamedOption(area, name.c_str(), name.c_str(), value);
};

bool Reset() {
    return IsChangePermitted() && IsRemovalMeant("Remove all settings and leases of the DHCP server?") &&
           ResetDhcpServerSettings();
}

// The daemon doesn't start with an address that has bits behind the mask.
bool AddRemoteSubnet(Text network, Text netmask, Text interface) {
    const std::string begin = corvanshell::getnetwork(network, netmask);
    if (begin != network)
        return Refuse("%s is no network of netmask %s, %s is", network, netmask, begin);
    return AddRelayInterface(RemoteSubnet(network, netmask), interface);
}

bool EraseKnownHost(Text name) {
    settings::File file(kDhcpServerUnit, "");
    return file.Load() && (SelectIn(Host(name), file) || Refuse("host %s does not exist", name)) &&
           EraseHost(Host(name));
}

constexpr Command kCommands[] = {
    {"dhcp-server", "the DHCP server"},
    {"dhcp-server show", "state and settings"},
    {"dhcp-server show settings", "shows state and settings, in a readable form", kCall<&PrintDhcpServer>,
     kShows},
    {"dhcp-server show file", "shows the settings file as it is", kCall<&DumpDhcpServer>, kShows},
    {"dhcp-server show leases", "what clients have got"},
    {"dhcp-server show leases all", "all entries"},
    {"dhcp-server show leases last", "the last entry of each MAC address"},
    {"dhcp-server show leases full", "the database as it is"},
    {"dhcp-server show leases <all|last|full>",
     "shows the leases: all entries, the last one of each MAC address, or the database as it is",
     [](Text form) { return ShowDhcpLeases(form); }, kShows},
    {"dhcp-server check", "checks the settings, and says nothing when they are good",
     kCall<&CheckDhcpServerSettings>, kShows},
    {"dhcp-server generate", "writes the daemon's files from the settings",
     [] { return DhcpServerUnit(nullptr); }},
    {"dhcp-server reset", "goes back to defaults: no subnets, no daemon files, no leases; after a question",
     kCall<&Reset>},
    {"dhcp-server interface", "the subnet of an interface of the appliance"},
    {"dhcp-server interface <interface> add",
     "adds to the subnet; alone, serves the network that the interface has"},
    {"dhcp-server interface <interface> add", "serves the network that the interface has by its own settings",
     [](Text interface) { return AddListenInterface(LocalSubnet(interface)); }},
    {"dhcp-server interface <interface> delete",
     "removes from the subnet; alone, serves it no longer after a question"},
    {"dhcp-server interface <interface> delete", "serves it no longer, after a question",
     [](Text interface) { return EraseLocalSubnet(LocalSubnet(interface)); }},
    {"dhcp-server subnet", "a subnet that is reached through relays"},
    {"dhcp-server subnet <network> <netmask> add", "adds to the subnet"},
    {"dhcp-server subnet <network> <netmask> add interface <interface>",
     "serves a remote network whose requests come in through a listen interface", kCall<&AddRemoteSubnet>},
    {"dhcp-server subnet <network> <netmask> delete", "removes from the subnet"},
    {"dhcp-server subnet <network> <netmask> delete interface <interface>",
     "serves it no longer, after a question",
     [](Text network, Text netmask, Text interface) {
         return EraseRemoteSubnet(RemoteSubnet(network, netmask), interface);
     }},
    {"dhcp-server <subnet> add range <from> <to>", "adds a range of addresses that clients get",
     kCall<&AddRange>},
    {"dhcp-server <subnet> delete range <range-from> <range-to>", "removes a range", kCall<&RemoveRange>},
    {"dhcp-server <subnet> add host <new-host> mac <mac> address <address>",
     "adds a host with a fixed address",
     [](const Subnet& subnet, Text name, Text mac, Text address) {
         return AddHost(Host(name), subnet, mac, address);
     }},
    {"dhcp-server host", "a host with a fixed address"},
    {"dhcp-server host <host> delete", "removes from the host; alone, the host itself after a question"},
    {"dhcp-server host <host> delete", "removes the host, after a question", kCall<&EraseKnownHost>},

    // Options of the whole unit, a subnet or a host.
    {"dhcp-server [<area>] add", "adds an address to an option"},
    // The whole unit has no network that a router, a mask or a broadcast address could be checked against.
    {"dhcp-server <area> add router <address>", "adds a router", kCall<&AddRouter>},
    {"dhcp-server [<area>] add ntp-server <address>", "adds a time server", kCall<&AddNtpServer>},
    {"dhcp-server [<area>] add dns-server <address>", "adds a name server", kCall<&AddDnsServer>},
    {"dhcp-server [<area>] add voip-tftp-server <address>", "adds a TFTP server of telephones",
     kCall<&AddVoipTftpServer>},
    {"dhcp-server [<area>] add wins-server <address>", "adds a NetBIOS name server", kCall<&AddWinsServer>},
    {"dhcp-server [<area>] delete", "takes an address out of an option"},
    {"dhcp-server [<area>] delete router <address>", "removes a router", kCall<&RemoveRouter>},
    {"dhcp-server [<area>] delete ntp-server <address>", "removes a time server", kCall<&RemoveNtpServer>},
    {"dhcp-server [<area>] delete dns-server <address>", "removes a name server", kCall<&RemoveDnsServer>},
    {"dhcp-server [<area>] delete voip-tftp-server <address>", "removes a TFTP server of telephones",
     kCall<&RemoveVoipTftpServer>},
    {"dhcp-server [<area>] delete wins-server <address>", "removes a NetBIOS name server",
     kCall<&RemoveWinsServer>},
    {"dhcp-server [<area>] set", "sets an option or a lease time"},
    {"dhcp-server <area> set subnet-mask <netmask>", "sets the subnet mask", kCall<&SetSubnetMask>},
    {"dhcp-server <area> set broadcast-address",
     "sets the broadcast address that follows from the address and the mask there",
     kCall<&SetBroadcastAddress>},
    {"dhcp-server [<area>] set domain-name <domain>", "sets the domain name", kCall<&SetDomainName>},
    {"dhcp-server [<area>] set tftp-server <server> [file <text>]", "sets the TFTP server, and its boot file",
     kCall<&SetTftpServer>},
    {"dhcp-server [<area>] set option",
     "sets any other option by its name; one that is a text or a single address goes by its number"},
    {"dhcp-server [<area>] set option <flag-option> <on|off>", "sets an option that is on or off", kSetNamed},
    {"dhcp-server [<area>] set option <byte-option> <0..255>", "sets an option to a small number", kSetNamed},
    {"dhcp-server [<area>] set option <short-option> <0..65535>", "sets an option to a number", kSetNamed},
    {"dhcp-server [<area>] set option <long-option> <0..4294967295>", "sets an option to a large number",
     kSetNamed},
    {"dhcp-server [<area>] set option <addresses-option> <addresses>", "sets an option to addresses",
     kSetNamed},
    {"dhcp-server [<area>] set custom-option", "sets an option by its number"},
    {"dhcp-server [<area>] set custom-option <1..254> ip <address>",
     "sets an option by its number; a number has the same type everywhere", kSetCustom<kIp>},
    {"dhcp-server [<area>] set custom-option <1..254> ascii <text>", "sets an option to a text",
     kSetCustom<kAscii>},
    {"dhcp-server [<area>] set custom-option <1..254> hex <bytes>", "sets an option to bytes",
     kSetCustom<kHex>},
    {"dhcp-server [<area>] set default-lease-time <seconds>",
     "sets how long a lease is when none is asked for", kCall<&SetDefaultLeaseTime>},
    {"dhcp-server [<area>] set max-lease-time <seconds>", "sets how long a lease is at most",
     kCall<&SetMaxLeaseTime>},
    {"dhcp-server [<area>] clear", "takes an option or a lease time away"},
    {"dhcp-server [<area>] clear subnet-mask", "takes the subnet mask away", kCall<&ClearSubnetMask>},
    {"dhcp-server [<area>] clear broadcast-address", "takes the broadcast address away",
     kCall<&ClearBroadcastAddress>},
    {"dhcp-server [<area>] clear domain-name", "takes the domain name away", kCall<&ClearDomainName>},
    {"dhcp-server [<area>] clear tftp-server", "takes the TFTP server away", kCall<&ClearTftpServer>},
    {"dhcp-server [<area>] clear option <option>", "takes an option away, by its name",
     [](const Area& area, Text name) { return ClearNamedOption(area, name.c_str(), name.c_str()); }},
    {"dhcp-server [<area>] clear custom-option <1..254>", "takes an option away, by its number",
     kCall<&ClearCustomOption>},
    {"dhcp-server [<area>] clear default-lease-time", "takes the default lease time away",
     kCall<&ClearDefaultLeaseTime>},
    {"dhcp-server [<area>] clear max-lease-time", "takes the maximal lease time away",
     kCall<&ClearMaxLeaseTime>},
};

} // namespace

std::span<const Command> DhcpServerCommands() {
    return kCommands;
}

} // namespace shell
