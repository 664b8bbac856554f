#include "commands/interfaces/address.h"
#include "commands/interfaces/aliases.h"
#include "commands/interfaces/bonding.h"
#include "commands/interfaces/bonding_report.h"
#include "commands/interfaces/classes.h"
#include "commands/interfaces/dhcp_client.h"
#include "commands/interfaces/link.h"
#include "commands/interfaces/reset.h"
#include "commands/interfaces/show.h"
#include "commands/interfaces/slave_class.h"
#include "commands/interfaces/state.h"
#include "commands/interfaces/vlans.h"
#include "shell/families.h"

namespace shell {
namespace {

using namespace interfaces;
using Text = const std::string&;

constexpr Command kInterfaceCommands[] = {
    {"inet", "network settings"},
    {"inet ifconfig", "addresses, state and link of interfaces"},
    {"inet ifconfig <interface> address", "addresses of the interface"},
    {"inet ifconfig <interface> address <address> netmask <netmask>",
     "sets the main address; no other interface, alias or cluster address may stand in its network",
     [](Text name, Text address, Text netmask) {
         return CanHostHave(address, netmask) && SetAddress(name, address, netmask);
     }},
    {"inet ifconfig <interface> address add <address> <netmask>",
     "adds an alias behind a main address; it counts as an interface of the model's limit",
     [](Text name, Text address, Text netmask) {
         return CanHostHave(address, netmask) && AddAlias(name, address, netmask);
     }},
    {"inet ifconfig <interface> address delete <alias> <netmask>", "removes an alias", kCall<&DeleteAlias>},
    {"inet ifconfig <interface> dhcp", "lets DHCP give the address; aliases go, after a question",
     kCall<&SetDhcp>},
    {"inet ifconfig <interface> dhcp route", "whether the routes of the lease are used"},
    {"inet ifconfig <interface> dhcp dns", "whether the name servers of the lease are used"},
    {"inet ifconfig <interface> dhcp ntp", "whether the time servers of the lease are used"},
    {"inet ifconfig <interface> dhcp <route|dns|ntp> <on|off>", "says what a lease may also bring",
     kCall<&SetDhcpUse>},
    {"inet ifconfig <interface> dhcp route-metric <metric-or-none>",
     "sets the metric of the lease's routes, none for the default one", kCall<&SetDhcpMetric>},
    {"inet ifconfig <interface> mtu <mtu>", "sets the MTU, auto for 1500; a trunk's VLAN children follow",
     kCall<&SetMtu>},
    {"inet ifconfig <interface> speed", "speed of the link"},
    {"inet ifconfig <interface> speed <speed> duplex <half|full> autoneg <on|off>", "sets the link by hand",
     kCall<&SetSpeed>},
    {"inet ifconfig <interface> speed auto", "lets both ends of the link settle it", kCall<&SetSpeedAuto>},
    {"inet ifconfig <interface> up", "switches it on; a trunk's VLAN children follow, after a question"},
    {"inet ifconfig <interface> down", "switches it off; a trunk's VLAN children follow, after a question"},
    {"inet ifconfig <interface> <up|down>",
     "changes the state; a trunk's VLAN children follow, after a question", kCall<&SetState>},
    {"inet ifconfig <interface> reset", "gives the system what the settings say of the interface",
     kCall<&ResetInterface>},
    {"inet ifconfig all reset", "gives the system what the settings say of all interfaces",
     kCall<&ResetAllInterfaces>},
    {"inet ifconfig <interface> class", "what the interface is used for"},
    {"inet ifconfig <interface> class access",
     "makes it an access interface without an address and without aliases", kCall<&SetAccessClass>},
    {"inet ifconfig <interface> class trunk", "makes it a trunk; its addresses go, after a question",
     kCall<&SetTrunkClass>},
    {"inet ifconfig <interface> class slave", "makes it a loose slave; its addresses go, after a question",
     kCall<&SetSlaveClass>},
    {"inet ifconfig <interface> vlan", "VLAN children of a trunk"},
    {"inet ifconfig <interface> vlan add <1..4094>",
     "makes a VLAN child; an ID is used once in the appliance", kCall<&AddVlan>},
    {"inet ifconfig <interface> vlan delete <child-vlan>",
     "removes the child, and the ID's comment when no interface has the ID any more", kCall<&DeleteVlan>},
    {"inet vlan", "comments of VLANs"},
    {"inet vlan <1..4094> comment", "the VLAN's comment"},
    {"inet vlan <1..4094> comment add <text>", "stores a comment", kCall<&AddVlanComment>},
    {"inet vlan <1..4094> comment delete", "removes the comment", kCall<&DeleteVlanComment>},
    {"inet dhcp", "what DHCP brings"},
    {"inet dhcp default-metric <metric>", "sets the metric of leases' routes where an interface has none",
     kCall<&SetDefaultDhcpMetric>},
    {"inet show", "what the network does"},
    {"inet show interface", "shows the interfaces page by page, and how many there may be",
     kCall<&ShowInterfaces>, kShows},
    {"inet show bonding [<interface>]", "shows what a bond or its slave is; without an interface all of them",
     kCall<&ShowBonding>, kShows},
    {"inet ping <target>", "sends echo requests until Ctrl-C", kCall<&Ping>, kShows},
};

constexpr Command kBondingCommands[] = {
    {"inet bonding", "bonds of slave interfaces"},
    {"inet bonding add <free-bond> <bond-mode> slaves [<loose-slave>] [<loose-slave>] [<loose-slave>]",
     "makes a bond of loose slaves",
     [](Text number, Text mode, Text first, Text second, Text third) {
         return AddBond(number, mode, {first, second, third});
     }},
    {"inet bonding delete <used-bond>", "removes a bond; its slaves become loose", kCall<&DeleteBond>},
    {"inet ifconfig <interface> bonding", "slaves and options of a bond"},
    {"inet ifconfig <interface> bonding add <loose-slave>", "adds a slave to the bond", kCall<&AddSlave>},
    {"inet ifconfig <interface> bonding delete <bound-slave>", "takes a slave out; the last one stays",
     kCall<&DeleteSlave>},
    {"inet ifconfig <interface> bonding mode <bond-mode>", "sets the mode",
     [](Text bond, Text value) { return SetBondOption(bond, "mode", value); }},
    {"inet ifconfig <interface> bonding miimon <number>", "sets the interval of link monitoring, 1 to 1000",
     [](Text bond, Text value) { return SetBondOption(bond, "miimon", value); }},
    {"inet ifconfig <interface> bonding ad-select <ad-select>",
     "sets how aggregates are chosen; in mode 802.3ad",
     [](Text bond, Text value) { return SetBondOption(bond, "ad-select", value); }},
    {"inet ifconfig <interface> bonding lacp-rate <lacp-rate>",
     "sets how often LACPDU packets are sent; in mode 802.3ad",
     [](Text bond, Text value) { return SetBondOption(bond, "lacp-rate", value); }},
    {"inet ifconfig <interface> bonding primary <primary-slave>",
     "sets the preferred slave, none for no one; in modes balance-tlb and active-backup",
     [](Text bond, Text value) { return SetBondOption(bond, "primary", value); }},
    {"inet ifconfig <interface> bonding xmit-hash-policy <xmit-hash-policy>",
     "sets what a slave is chosen by; in modes 802.3ad and balance-xor",
     [](Text bond, Text value) { return SetBondOption(bond, "xmit-hash-policy", value); }},
};

} // namespace

std::span<const Command> InterfaceCommands() {
    return kInterfaceCommands;
}

std::span<const Command> BondingCommands() {
    return kBondingCommands;
}

} // namespace shell
