#include "commands/routing/known_values.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"
#include "settings/file.h"
#include "shell/values.h"
#include "units/content_filter/rules.h"
#include "units/dhcp_relay/rules/lookup.h"
#include "units/dhcp_server/model/gates.h"
#include "units/snmp/communities.h"
#include "units/snmp/trapsinks.h"
#include "units/snmp/users.h"

#include <set>

namespace shell {

// Those of the settings and those of the system, which may be apart.
ShellWords ListInterfaces() {
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    std::set<std::string> names;
    for (const auto& [name, entry] : record.Interfaces())
        names.insert(name);
    for (const std::string& name : corvanshell::get_int_list())
        names.insert(name);
    return {names.begin(), names.end()};
}

namespace {

// The interface that stands behind the first two words.
corvanshell::InterfaceEntry TypedInterface() {
    constexpr std::size_t kPlace = 2; // inet ifconfig <interface>
    corvanshell::InterfaceEntry entry;
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    static_cast<void>(TypedWords().size() > kPlace && record.FindInterface(TypedWords()[kPlace], entry));
    return entry; // with nothing in it when there is no such interface
}

ShellWords Sorted(const std::set<std::string>& words) {
    return {words.begin(), words.end()};
}

ShellWords typed_words;

} // namespace

const ShellWords& TypedWords() {
    return typed_words;
}

void SetTypedWords(const ShellWords& words) {
    typed_words = words;
}

ShellWords ListAliases() {
    return TypedInterface().alias_addresses;
}

ShellWords ListChildVlans() {
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    std::set<std::string> ids;
    for (const auto& [name, entry] : record.Interfaces()) {
        if (!entry.vlan.empty() && TypedWords().size() > 2 && entry.parent == TypedWords()[2])
            ids.insert(entry.vlan);
    }
    return Sorted(ids);
}

ShellWords ListRangeBegins() {
    return settings::dhcp_server::CollectValues("subnet/range/@from");
}

ShellWords ListRangeEnds() {
    return settings::dhcp_server::CollectValues("subnet/range/@to");
}

ShellWords ListRouteDestinations() {
    return Sorted(routing::RouteDestinations());
}

ShellWords ListRouteNextHops() {
    return Sorted(routing::RouteNextHops());
}

// inet policy rule <delete|clear> <policy> <priority>, inet show policy rule <policy> <priority>
ShellWords ListPolicyPriorities() {
    return TypedWords().empty() ? ShellWords() : Sorted(routing::PolicyPriorities(TypedWords().back()));
}

ShellWords ListTrapReceivers() {
    return snmp::ListTrapsinkDestinations();
}

ShellWords ListUserReceivers() {
    constexpr std::size_t kPlace = 4; // snmp user receiver delete <user>
    return TypedWords().size() > kPlace ? snmp::ListUserTrapsessDestinations(TypedWords()[kPlace])
                                        : ShellWords();
}

ShellWords ListDhcpHosts() {
    return settings::dhcp_server::ListHostNames();
}

ShellWords ListDhcpSubnets() {
    return settings::dhcp_server::ListRemoteSubnets();
}

ShellWords ListRelays() {
    settings::File file(kDhcpRelayUnit, "");
    if (!file.Load())
        return {};
    std::set<std::string> ids;
    const settings::NodeSet relays = file.Select("/unit/dhcp-relay");
    for (std::size_t i = 0; i < relays.Size(); ++i)
        ids.insert(relays.At(i).GetAttr("id"));
    return {ids.begin(), ids.end()};
}

ShellWords ListSnmpUsers() {
    return snmp::ListUserNames();
}

ShellWords ListSnmpCommunities() {
    return snmp::ListCommunities();
}

ShellWords ListFilterRules() {
    return settings::content_filter::ListRuleNames();
}

} // namespace shell
