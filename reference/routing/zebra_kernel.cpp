// What the configuration is in the kernel, and what of it is there.

#include "reference/routing/zebra.h"

#include <algorithm>
#include <linux/rtnetlink.h>

namespace reference::routing {
namespace {

// An address or a network as ip(8) shows it in a rule, "" for all.
std::string ShownNetwork(const std::string& text) {
    const auto prefix = ToPrefix(text);
    if (!prefix)
        return text;
    return prefix->length == 32  ? AddressText(prefix->address)
           : prefix->length == 0 ? ""
                                 : PrefixText(*prefix);
}

} // namespace

std::uint32_t Zebra::TableNumber(const std::string& name) const {
    const auto table = std::find_if(tables_.begin(), tables_.end(),
                                    [&](const auto& candidate) { return candidate.second == name; });
    return table->first;
}

RouteGroups Zebra::Groups(const std::vector<Link>& links) const {
    RouteGroups groups;
    for (const auto& [key, route] : routes_) {
        const auto& [table, address, length, gateway] = key;
        if (const Link* const link = LinkOf(links, gateway))
            groups[{table, {address, length}, route.distance}].push_back({link, gateway, route.weight});
    }
    return groups;
}

// The active policy. The default one is the kernel's own rule, which stands behind all others.
void Zebra::AddRules(Forwarding& forwarding) const {
    const auto part = [](const std::string& word, const std::string& value) {
        return value.empty() ? "" : " " + word + " " + value;
    };
    for (const auto& [key, rule] : rules_) {
        const Words action = Split(rule[kSet]);
        if (key.first != policy_ || policy_ == kDefaultPolicy || action.empty())
            continue;
        const std::string from = ShownNetwork(rule[kFrom]);
        std::string line = "from " + (from.empty() ? "all" : from) + part("to", ShownNetwork(rule[kTo]));
        if (!rule[kTos].empty()) {
            const std::uint32_t tos = *ToNumber(rule[kTos], 0, kLargestTos);
            forwarding.classes.insert(tos);
            line += " fwmark " + MarkOf(tos);
        }
        line += part("iif", rule[kInbound]) + part("oif", rule[kOutbound]);
        if (action[0] == "table")
            line += " lookup " + std::to_string(TableNumber(action[1]));
        else
            line += " " + std::to_string(action[0] == "blackhole" ? RTN_BLACKHOLE : RTN_PROHIBIT);
        forwarding.rules.insert(line + " proto " + std::to_string(RTPROT_ZEBRA) + " pref " +
                                std::to_string(key.second));
    }
}

bool Zebra::Apply() const {
    const std::vector<Link> links = ReadLinks();
    Forwarding forwarding{RouteLines(Groups(links), links), {}, {}};
    AddRules(forwarding);
    return BringIntoKernel(forwarding);
}

// A route is in the kernel as long as its next hop is a neighbour; of several the nearest is selected.
std::string Zebra::ShowRoutes() const {
    const std::vector<Link> links = ReadLinks();
    const RouteGroups groups = Groups(links);
    const std::set<std::string> kernel = KernelRoutes();
    const auto is_installed = [&](const auto& group) {
        return kernel.contains(RouteLine(group.first, group.second)) &&
               std::any_of(group.second.begin(), group.second.end(),
                           [](const GroupHop& hop) { return hop.link->has_carrier; });
    };
    std::map<Prefix, std::uint32_t> selected; // the distance
    for (const auto& group : groups) {
        if (group.first.table == kMainTable && is_installed(group))
            selected.try_emplace(group.first.prefix, group.first.distance);
    }
    std::string text = "Codes: S - static route, > - selected route, * - FIB route\n\n";
    for (const auto& [key, route] : routes_) {
        const auto& [table, address, length, gateway] = key;
        if (table != kMainTable)
            continue;
        const Prefix prefix{address, length};
        const Link* const link = LinkOf(links, gateway);
        const auto group = groups.find({table, prefix, route.distance});
        const bool active = link != nullptr && link->has_carrier && is_installed(*group);
        const bool nearest = active && selected.at(prefix) == route.distance;
        text += std::string("S") +
                (nearest  ? ">* "
                 : active ? " * "
                          : "   ") +
                PrefixText(prefix) + " [" + std::to_string(route.distance) + "/0] via " +
                AddressText(gateway) + (active ? "\n" : " inactive\n");
    }
    return text;
}

} // namespace reference::routing
