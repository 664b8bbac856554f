#include "commands/routing/dhcp_distance.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/command_log.h"
#include "commands/routing/route_listing.h"
#include "commands/routing/route_store.h"
#include "front/probes/cluster.h"
#include "platform/messages.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"

#include <algorithm>

namespace routing {
namespace {

constexpr const char* kTag = "DHCPC_DIST";

// The static routes that have one of the distances.
Routes FindByDistance(const Routes& routes, const std::string& distance,
                      const std::string& default_distance) {
    Routes found;
    for (const auto& entry : routes) {
        const std::string_view own = entry.second.EffectiveDistance();
        if (own == distance || own == default_distance)
            found.insert(found.end(), entry);
    }
    return found;
}

bool CheckStaticRoutes(const RouteStore& store, const std::string& log, const std::string& distance,
                       const std::string& default_distance) {
    const Routes same = FindByDistance(store.All(), distance, default_distance);
    if (same.empty())
        return true;
    const bool result = RefuseCommand(
        kTag, log, Tr("Failed to set distance. It coincides with a distance of static routes."));
    PrintInfo("%s", JoinLines(FormatRoutesPlain(store, same)));
    return result;
}

// /usr/bin/vtysh -d zdhcpd -c "conf t" -c "router dhcp" -c "distance 60 default 50" -c "end" -c "write file"
bool SendDistance(const std::string& distance, const std::string& default_distance) {
    return vtysh::Configure(
        vtysh::kZdhcpd,
        {"router dhcp",
         "distance " + distance + (default_distance.empty() ? "" : " default " + default_distance)});
}

const char* YesOrNo(bool flag) {
    return flag ? "yes" : "no";
}

bool UsesDhcp(const corvanshell::InterfaceEntry& entry) {
    return entry.address == "dhcp";
}

void PrintInterface(const std::string& name, const corvanshell::InterfaceEntry& entry) {
    PrintInfo("%-9s  %-4s  %-6s  %-7s  %-3s  %s", name, YesOrNo(UsesDhcp(entry)), YesOrNo(entry.dhcp_route),
              entry.dhcp_metric.empty() ? std::string("default") : entry.dhcp_metric, YesOrNo(entry.dhcp_dns),
              YesOrNo(entry.dhcp_ntp));
}

} // namespace

bool SetDhcpRouteDistance(const std::string& distance, const std::string& default_distance) {
    if (IsDisabledOnPassiveNode(gettext(kFeature)) ||
        !arguments::Check({{distance, arguments::IsNumber, "distance"},
                           {default_distance, arguments::IsNumber, "default distance", true}}))
        return false;
    const std::string log = "Command: inet dhcp client route-distance " + distance +
                            (default_distance.empty() ? "" : " default-route " + default_distance);
    const RouteStore store;
    if (!CheckStaticRoutes(store, log, distance, default_distance))
        return false;
    if (distance == kOspfDistance || default_distance == kOspfDistance)
        return RefuseCommand(kTag, log,
                             Tr("Failed to set distance. Distance coincides with a distance of OSPF."));
    if (!SendDistance(distance, default_distance))
        return RefuseCommand(kTag, log, Tr("Failed to set distance."));
    PrintInfo(Tr("Set distance to %s%s%s"), distance,
              default_distance.empty() ? "" : gettext(", default distance to "), default_distance);
    LogCommand(kLogInfo, kTag, log);
    return true;
}

bool ShowDhcpRoutes() {
    if (IsDisabledOnPassiveNode(gettext(kFeature)))
        return false;
    Lines lines;
    if (!vtysh::Ask(vtysh::kZdhcpd, "show ip dhcp route", lines))
        return Refuse(Tr("Failed to show dhcp route"));
    if (lines.size() != 1) {
        for (const std::string& line : lines)
            PrintInfo("%s", line);
        return true;
    }
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    if (!record.CheckRead())
        return false;
    const auto& interfaces = record.Interfaces();
    const bool enabled = std::any_of(interfaces.begin(), interfaces.end(),
                                     [](const auto& entry) { return UsesDhcp(entry.second); });
    PrintInfo("%s", enabled ? gettext("No DHCP routes exist") : gettext("DHCP is not enabled"));
    return true;
}

bool ShowDhcpClient() {
    if (IsDisabledOnPassiveNode(gettext(kFeature)))
        return false;
    std::string distance = kInitialDhcpDistance;
    std::string default_distance = kInitialDhcpDistance;
    if (!corvanshell::get_dhcp_distance(distance, "main") ||
        !corvanshell::get_dhcp_distance(default_distance, "default_route")) {
        const char* message = gettext("Failed to get DHCP distance. DHCP daemon must be running.");
        slput(kLogError, "Command: inet show dhcp client %s", message);
        return Refuse("%s", message);
    }
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    if (!record.CheckRead())
        return false;
    PrintInfo(Tr("Administrative distance for DHCP/PPP routes: %s"), distance);
    if (!default_distance.empty())
        PrintInfo(Tr("Administrative distance for default DHCP/PPP routes: %s"), default_distance);
    PrintInfo(Tr("Default metric for DHCP/PPP routes: %s"), record.DefaultDhcpMetric());
    PrintInfo("\nInterface  DHCP  Routes  Metric   DNS  NTP");
    PrintInfo("---------  ----  ------  ------   ---  ---");
    for (const auto& [name, entry] : record.Interfaces())
        PrintInterface(name, entry);
    return true;
}

} // namespace routing
