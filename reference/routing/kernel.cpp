#include "reference/routing/kernel.h"

#include "reference/routing/store.h"
#include "reference/routing/text.h"

#include <algorithm>
#include <cstdio>
#include <linux/rtnetlink.h>

namespace reference::routing {
namespace {

const std::string kProtocol = std::to_string(RTPROT_ZEBRA); // tells our routes and rules from others'
constexpr const char* kMarks = "/run/quagga/zebra.marks";   // what nftables has been told

std::string Output(const std::string& command) {
    std::string text;
    FILE* const pipe = popen(command.c_str(), "re");
    if (pipe == nullptr)
        return text;
    char buffer[65536];
    for (std::size_t count = 0; (count = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        text.append(buffer, count);
    pclose(pipe);
    return text;
}

bool Feed(const std::string& command, const std::string& text) {
    FILE* const pipe = popen(command.c_str(), "we");
    if (pipe == nullptr)
        return false;
    const bool written = fwrite(text.data(), 1, text.size(), pipe) == text.size();
    return pclose(pipe) == 0 && written;
}

// A line of ip(8) without what it says of the state of things.
std::string Plain(std::string line) {
    std::replace(line.begin(), line.end(), '\\', ' ');
    Words words = Split(line);
    std::erase_if(words, [](const std::string& word) {
        return word == "linkdown" || word == "dead" || word == "[detached]";
    });
    return Join(words, 0);
}

std::set<std::string> PlainLines(const std::string& text) {
    std::set<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.insert(Plain(text.substr(start, end - start)));
        start = end + 1;
    }
    return lines;
}

// "1024: from all lookup 5 proto 11" -> "from all lookup 5 proto 11 pref 1024"
std::set<std::string> KernelRules() {
    std::set<std::string> rules;
    for (const std::string& line : PlainLines(Output("ip -N -4 rule show"))) {
        const std::size_t colon = line.find(": ");
        if (colon != line.npos && line.ends_with(" proto " + kProtocol))
            rules.insert(line.substr(colon + 2) + " pref " + line.substr(0, colon));
    }
    return rules;
}

// The lines of the first set that the second one is without, each behind these words.
std::string Without(const std::string& words, const std::set<std::string>& lines,
                    const std::set<std::string>& others) {
    std::string text;
    for (const std::string& line : lines) {
        if (!others.contains(line))
            text += words + line + "\n";
    }
    return text;
}

// The DSCP class, whatever the two bits of the routers below it, or else the whole byte.
std::string AskFor(std::uint32_t tos) {
    return tos % 4 == 0 ? "ip dscp " + std::to_string(tos / 4) : "@nh,8,8 " + std::to_string(tos);
}

// Marks packets that arrive or leave, in front of the choice of their route. A mark that is there already, of
// a check of the dead gateway detection, stays.
bool SetMarks(const std::set<std::uint32_t>& classes) {
    std::string rules;
    for (const std::uint32_t tos : classes)
        rules += "meta mark 0 " + AskFor(tos) + " meta mark set " + MarkOf(tos) + "; ";
    const std::string before = "table ip zebra\ndelete table ip zebra\n";
    const std::string text =
        classes.empty()
            ? before
            : before + "table ip zebra { chain in { type filter hook prerouting priority mangle; " + rules +
                  "}; chain out { type route hook output priority mangle; " + rules + "}; }\n";
    const auto told = ReadWhole(kMarks);
    if (told == text || (told == "" && classes.empty()))
        return true;
    return Feed("nft -f -", text) && ReplaceFile(kMarks, text);
}

} // namespace

std::string MarkOf(std::uint32_t tos) {
    char text[16];
    std::snprintf(text, sizeof text, "0xd5c000%02x", tos);
    return text;
}

std::string RouteLine(const RouteGroup& group, const std::vector<GroupHop>& hops) {
    const auto& [table, prefix, distance] = group;
    const auto via = [](const GroupHop& hop) {
        return " via " + AddressText(hop.gateway) + " dev " + hop.link->interface;
    };
    std::string line = prefix.length == 0    ? "default"
                       : prefix.length == 32 ? AddressText(prefix.address)
                                             : PrefixText(prefix);
    if (hops.size() == 1)
        line += via(hops[0]);
    if (table != kMainTable)
        line += " table " + std::to_string(table);
    // The daemon has looked for the gateway itself; the kernel would ask the active policy for it.
    line += " metric " + std::to_string(distance) + (hops.size() == 1 ? " onlink" : "");
    for (std::size_t i = 0; hops.size() > 1 && i < hops.size(); ++i)
        line += " nexthop" + via(hops[i]) + " weight " + std::to_string(hops[i].weight) + " onlink";
    return line;
}

std::set<std::string> RouteLines(const RouteGroups& groups, const std::vector<Link>& links) {
    std::set<std::string> lines;
    std::uint32_t table = kMainTable;
    for (const auto& [group, hops] : groups) {
        lines.insert(RouteLine(group, hops));
        if (group.table == table || group.table == kMainTable)
            continue;
        table = group.table;
        for (const Link& link : links)
            lines.insert(PrefixText(link.network) + " dev " + link.interface + " table " +
                         std::to_string(table) + " scope " + std::to_string(RT_SCOPE_LINK) + " src " +
                         AddressText(link.address));
    }
    return lines;
}

std::set<std::string> KernelRoutes() {
    return PlainLines(Output("ip -N -4 -o route show table all proto " + kProtocol));
}

bool BringIntoKernel(const Forwarding& forwarding) {
    const std::set<std::string> routes = KernelRoutes();
    const std::set<std::string> rules = KernelRules();
    const std::string proto = " proto " + kProtocol + " ";
    // A rule counts as there beside one of its priority that asks for more, so the old ones go first.
    const std::string batch = Without("route append" + proto, forwarding.routes, routes) +
                              Without("rule del ", rules, forwarding.rules) +
                              Without("rule add ", forwarding.rules, rules) +
                              Without("route del" + proto, routes, forwarding.routes);
    const bool marked = SetMarks(forwarding.classes);
    return (batch.empty() || Feed("ip -N -4 -force -batch -", batch)) && marked;
}

} // namespace reference::routing
