#include "commands/routing/dhcp_distance.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/route_listing.h"
#include "commands/routing/route_store.h"
#include "front/probes/cluster.h"
#include "platform/console.h"
#include "platform/log.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"

#include <algorithm>
#include <libintl.h>

namespace routing {
namespace {

bool Fail(const std::string& log, const char* message, const std::string& details = "") {
    const char* text = gettext(message);
    shell_print_error("%s", text);
    if (!details.empty())
        shell_print_info("%s", details.c_str());
    slput(kLogInfo, "<DHCPC_DIST> %s. %s", log.c_str(), text);
    return false;
}

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
    shell_print_info("%-9s  %-4s  %-6s  %-7s  %-3s  %s", name.c_str(), YesOrNo(UsesDhcp(entry)),
                     YesOrNo(entry.dhcp_route),
                     entry.dhcp_metric.empty() ? "default" : entry.dhcp_metric.c_str(),
                     YesOrNo(entry.dhcp_dns), YesOrNo(entry.dhcp_ntp));
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
    const Routes same = FindByDistance(store.All(), distance, default_distance);
    if (!same.empty())
        return Fail(log, "Failed to set distance. It coincides with a distance of static routes.",
                    JoinLines(FormatRoutesPlain(store, same)));
    if (distance == kOspfDistance || default_distance == kOspfDistance)
        return Fail(log, "Failed to set distance. Distance coincides with a distance of OSPF.");
    if (!SendDistance(distance, default_distance))
        return Fail(log, "Failed to set distance.");
    shell_print_info(gettext("Set distance to %s%s%s"), distance.c_str(),
                     default_distance.empty() ? "" : gettext(", default distance to "),
                     default_distance.c_str());
    slput(kLogInfo, "<DHCPC_DIST> %s", log.c_str());
    return true;
}

bool ShowDhcpRoutes() {
    if (IsDisabledOnPassiveNode(gettext(kFeature)))
        return false;
    Lines lines;
    if (!vtysh::Ask(vtysh::kZdhcpd, "show ip dhcp route", lines)) {
        shell_print_error(gettext("Failed to show dhcp route"));
        return false;
    }
    if (lines.size() != 1) {
        for (const std::string& line : lines)
            shell_print_info("%s", line.c_str());
        return true;
    }
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    const auto& interfaces = record.Interfaces();
    const bool enabled = std::any_of(interfaces.begin(), interfaces.end(),
                                     [](const auto& entry) { return UsesDhcp(entry.second); });
    shell_print_info("%s", enabled ? gettext("No DHCP routes exist") : gettext("DHCP is not enabled"));
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
        shell_print_error("%s", message);
        slput(kLogError, "Command: inet show dhcp client %s", message);
        return false;
    }
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    shell_print_info(gettext("Administrative distance for DHCP/PPP routes: %s"), distance.c_str());
    if (!default_distance.empty())
        shell_print_info(gettext("Administrative distance for default DHCP/PPP routes: %s"),
                         default_distance.c_str());
    shell_print_info(gettext("Default metric for DHCP/PPP routes: %s"), record.DefaultDhcpMetric().c_str());
    shell_print_info("\nInterface  DHCP  Routes  Metric   DNS  NTP");
    shell_print_info("---------  ----  ------  ------   ---  ---");
    for (const auto& [name, entry] : record.Interfaces())
        PrintInterface(name, entry);
    return true;
}

} // namespace routing
