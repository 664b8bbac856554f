#include "shell/slots.h"

#include "commands/arguments/arguments.h"
#include "commands/dgd/values.h"
#include "commands/interfaces/bonding_values.h"
#include "commands/routing/policy_values.h"
#include "shell/dhcp_options.h"
#include "shell/values.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <type_traits>

namespace shell {
namespace {

using Stage = std::unique_ptr<TreeNode>;

// A value that has no words to offer brings its form as help.
template <class Value>
Stage MakeNode(const Value& value) {
    Stage stage = std::make_unique<detail::in_node<Value, void>>(value);
    if constexpr (!std::is_base_of_v<value::list_completion, Value>)
        stage->set_help("", value.sample());
    return stage;
}

template <class Value>
Stage Known() {
    return MakeNode(Value());
}

template <bool (*is_good)(const std::string&)>
Stage Text() {
    return MakeNode(Checked(is_good));
}

template <bool (*turn)(const std::string&, std::string&)>
Stage Form() {
    return MakeNode(Turned(turn));
}

template <bool (*is_good)(const std::string&), ShellWords (*words)()>
Stage Live() {
    return MakeNode(Listed(is_good, words));
}

bool IsPolicyPriority(const std::string& text) {
    std::string parsed;
    return value::PolicyPriority().parse(text, parsed);
}

struct Slot {
    const char* name;
    const char* help;
    Stage (*make)();
};

constexpr Slot kSlots[] = {
    // Addresses.
    {"<address>", "an IPv4 address, such as 192.168.1.1", Text<arguments::IsAddress>},
    {"<addresses>", "IPv4 addresses, in quotes when there are several: \"10.0.0.1, 10.0.0.2\"",
     Text<IsAddressList>},
    {"<alias>", "the IPv4 address of an alias", Live<arguments::IsAddress, ListAliases>},
    {"<destination>", "an IPv4 address of a network or a host", Text<arguments::IsAddress>},
    {"<from>", "the first IPv4 address of a range", Text<arguments::IsAddress>},
    {"<mac>", "a hardware address, such as 00:11:22:33:44:55", Form<TurnMac>},
    {"<netmask>", "a netmask, such as 255.255.255.0, or its prefix length, such as 24", Form<TurnNetmask>},
    {"<network>", "the IPv4 address of a network", Live<arguments::IsAddress, ListDhcpSubnets>},
    {"<next-hop>", "the IPv4 address of a gateway", Text<arguments::IsAddress>},
    {"<prefix>", "an IPv4 address, alone or with a prefix length: 10.0.0.0/8", Text<arguments::IsNetwork>},
    {"<range-from>", "the first IPv4 address of a range", Live<arguments::IsAddress, ListRangeBegins>},
    {"<range-to>", "the last IPv4 address of a range", Live<arguments::IsAddress, ListRangeEnds>},
    {"<receiver>", "an IPv4 address or a domain name", Live<IsServerName, ListTrapReceivers>},
    {"<routed>", "an IPv4 address of a network or a host", Live<arguments::IsAddress, ListRouteDestinations>},
    {"<routed-hop>", "the IPv4 address of a gateway", Live<arguments::IsAddress, ListRouteNextHops>},
    {"<server>", "an IPv4 address or a domain name", Text<IsServerName>},
    {"<target>", "an IPv4 address or a host name", Text<IsServerName>},
    {"<to>", "the last IPv4 address of a range", Text<arguments::IsAddress>},
    {"<user-receiver>", "an IPv4 address or a domain name", Live<IsServerName, ListUserReceivers>},
    // Interfaces and bonds.
    {"<ad-select>", "how aggregates are chosen", Known<value::BondingAdSelect>},
    {"<bond-mode>", "the mode of a bond", Known<value::BondingMode>},
    {"<bound-slave>", "a slave interface of a bond", Known<value::BondingBoundSlaveInterface>},
    {"<child-vlan>", "the ID of a VLAN child", Live<IsVlanId, ListChildVlans>},
    {"<free-bond>", "the number of a bond that is not there yet, such as 0 for bond0",
     Known<value::BondingFreeBondId>},
    {"<interface>", "an interface", Live<arguments::IsInterfaceName, ListInterfaces>},
    {"<lacp-rate>", "how often LACPDU packets are sent", Known<value::BondingLacpRate>},
    {"<loose-slave>", "a slave interface without a bond", Known<value::BondingLooseSlaveInterface>},
    {"<metric>", "a decimal number up to 4294967295", Text<IsKernelMetric>},
    {"<metric-or-none>", "a decimal number up to 4294967295, or none", Text<IsKernelMetricOrNone>},
    {"<mtu>", "a decimal number, or auto", Text<arguments::IsMtu>},
    {"<primary-slave>", "a slave interface of the bond, or none", Known<value::BondingPrimarySlaveInterface>},
    {"<speed>", "in Mbit/s: 10, 100, 1000 and so on", Text<arguments::IsNumber>},
    {"<used-bond>", "the number of a bond, such as 0 for bond0", Known<value::BondingUsedBondId>},
    {"<xmit-hash-policy>", "what a slave is chosen by", Known<value::BondingXmitHashPolicy>},
    // Routes and policies.
    {"<distance>", "the administrative distance of routes, a decimal number", Text<arguments::IsNumber>},
    {"<dscp>", "a DSCP class or its value", Known<value::DscpValue>},
    {"<policy>", "the name of a policy", Known<value::ExistingRules>},
    {"<priority>", "the priority of a rule", Known<value::PolicyPriority>},
    {"<table-name>", "the name of a routing table", Known<value::ExistingTablesName>},
    {"<table-number>", "the number of a routing table", Known<value::ExistingTablesNumber>},
    {"<used-priority>", "the priority of a rule: 1024..2048", Live<IsPolicyPriority, ListPolicyPriorities>},
    {"<weight>", "the weight of a route, a decimal number", Text<arguments::IsNumber>},
    // Dead gateway detection.
    {"<action-priority>", "the priority of an action", Known<value::DgdNumber>},
    {"<check-type>", "what a next hop is checked with", Known<value::DGDRequest>},
    {"<dgd-interface>", "an interface whose gateway a lease brings, or modem", Known<value::DGDInterface>},
    {"<dgd-rule>", "the name of a rule of the detection", Known<value::ExistingDgdRules>},
    {"<level>", "0 critical, 1 errors, 2 notifications, 3 informational, 4 debugging; negative for none",
     Known<value::DgdSignedNumber>},
    {"<log-text>", "a text", Known<value::DgdLogText>},
    {"<next-hop-name>", "the name of a next hop of the detection", Known<value::ExistingNextHops>},
    {"<new-name>", "the name of something new", Known<value::DgdName>},
    {"<number>", "a decimal number", Known<value::DgdNumber>},
    // Units.
    {"<bytes>", "bytes as hexadecimal digits, such as 01:a0:ff", Text<IsBytes>},
    {"<new-host>", "the name of a new host", Text<IsHostName>},
    {"<domain>", "a domain name", Text<IsDomainName>},
    {"<option>", "the name of an option", Live<arguments::IsName, ListAllOptions>},
    {"<flag-option>", "an option that is on or off",
     Live<IsOptionOf<OptionForm::kFlag>, ListOptionsOf<OptionForm::kFlag>>},
    {"<byte-option>", "an option that is a number up to 255",
     Live<IsOptionOf<OptionForm::kByte>, ListOptionsOf<OptionForm::kByte>>},
    {"<short-option>", "an option that is a number up to 65535",
     Live<IsOptionOf<OptionForm::kShort>, ListOptionsOf<OptionForm::kShort>>},
    {"<long-option>", "an option that is any number",
     Live<IsOptionOf<OptionForm::kLong>, ListOptionsOf<OptionForm::kLong>>},
    {"<addresses-option>", "an option that is a list of addresses",
     Live<IsOptionOf<OptionForm::kAddresses>, ListOptionsOf<OptionForm::kAddresses>>},
    {"<community>", "a community of SNMP", Live<IsWord, ListSnmpCommunities>},
    {"<filter-rule>", "a rule of the content filter", Live<IsText, ListFilterRules>},
    {"<host>", "a host of the DHCP server", Live<IsWord, ListDhcpHosts>},
    {"<relay>", "the number of a DHCP relay", Live<IsPositive, ListRelays>},
    {"<user>", "an SNMPv3 user", Live<IsWord, ListSnmpUsers>},
    // The rest.
    {"<moment>", "a local time, such as 31.12.2026-23:59:59", Text<IsDateTime>},
    {"<seconds>", "a time in seconds", [] { return MakeNode(Range(1, UINT32_MAX)); }},
    {"<word>", "a word without blanks and quotes", Text<IsWord>},
    {"<text>", "a text without double quotes and backslashes, in quotes when it has blanks", Text<IsText>},
};

Stage MakeRange(const std::string& text) {
    const unsigned long low = std::strtoul(text.c_str(), nullptr, 10);
    const unsigned long high = std::strtoul(text.c_str() + text.find("..") + 2, nullptr, 10);
    Stage stage = MakeNode(Range(low, high));
    stage->set_help("<" + text + ">", "a decimal number from " + stage->help());
    return stage;
}

} // namespace

Stage MakeStage(const std::string& value) {
    const std::string inner = value.substr(1, value.size() - 2);
    if (inner.find("..") != std::string::npos)
        return MakeRange(inner);
    const auto slot = std::find_if(std::begin(kSlots), std::end(kSlots),
                                   [&](const Slot& known) { return value == known.name; });
    if (slot == std::end(kSlots)) {
        std::fprintf(stderr, "conf-shell: no command knows the value %s\n", value.c_str());
        std::abort();
    }
    Stage stage = slot->make();
    stage->set_help(slot->name, slot->help + (stage->help().empty() ? "" : ": " + stage->help()));
    return stage;
}

} // namespace shell
