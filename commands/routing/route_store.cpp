#include "commands/routing/route_store.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/config_routes.h"
#include "commands/vtysh/daemon.h"
#include "platform/log.h"
#include "platform/path_list.h"
#include "platform/processes.h"

#include <algorithm>
#include <fcntl.h>
#include <iterator>
#include <string_view>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace routing {
namespace {

constexpr const char* kLockFile = "/run/lock/run/quagga/s_routing.lock";
constexpr mode_t kLockMode = 0400;

// ip route table 5 10.0.0.0/8 1.1.1.1
std::string RouteLine(std::string_view destination, std::string_view length, std::string_view gateway,
                      std::string_view table) {
    std::string line = "ip route ";
    if (!table.empty())
        line.append("table ").append(table).append(" ");
    return line.append(destination).append("/").append(length).append(" ").append(gateway);
}

bool SendDelete(std::string_view destination, const StaticRoute& route, std::string_view table) {
    return vtysh::ConfigureQuietly(vtysh::kRouteRemoval,
                                   "no " + RouteLine(destination, route.prefix_length, route.gateway, table));
}

} // namespace

int MaskToPrefixLength(const std::string& netmask) {
    constexpr std::string_view octets[] = {"000", "128", "192", "224", "240", "248", "252", "254", "255"};
    constexpr std::size_t last_position = 12;
    int length = 0;
    for (std::size_t position = 0; position < netmask.size(); position += 4) {
        const std::string octet = netmask.substr(position, 3);
        const auto found = std::find(std::begin(octets), std::end(octets), octet);
        if (found != std::end(octets))
            length += static_cast<int>(found - std::begin(octets));
        if (octet != "255" || position == last_position)
            break;
    }
    return length;
}

RouteStore::RouteStore() : lock_(open(kLockFile, O_RDONLY | O_CREAT | O_CLOEXEC, kLockMode)) {
    if (lock_ >= 0)
        flock(lock_, LOCK_EX);
    Load();
}

RouteStore::~RouteStore() {
    if (lock_ < 0)
        return;
    flock(lock_, LOCK_UN);
    close(lock_);
}

void RouteStore::Load() {
    std::string text; // one text: a string for each of a hundred thousand lines would be slow
    const int status =
        corvanshell::run(vtysh::QuestionLine(vtysh::kZebra, "show running-config").c_str(), text);
    if (status != 0 || text.empty())
        return;
    routes_.clear();
    memory_.release();
    ParseRoutes(configurations_.emplace_back(std::move(text)), routes_);
}

Routes RouteStore::Find(std::string_view destination, const Condition& condition) const {
    Routes found;
    if (!HasLock())
        return found;
    const auto [first, last] = routes_.equal_range(destination);
    std::copy_if(first, last, std::inserter(found, found.end()),
                 [&](const auto& entry) { return condition(entry.second); });
    return found;
}

Routes RouteStore::FindRoutes(std::string_view destination) const {
    return Find(destination, [](const StaticRoute&) { return true; });
}

Routes RouteStore::FindRoutes(std::string_view destination, std::string_view netmask) const {
    return Find(destination, [&](const StaticRoute& route) { return route.netmask == netmask; });
}

Routes RouteStore::FindRoutes(std::string_view destination, std::string_view netmask,
                              std::string_view gateway) const {
    return Find(destination, [&](const StaticRoute& route) {
        return route.netmask == netmask && route.gateway == gateway;
    });
}

Routes RouteStore::FindRoutes(std::string_view destination, std::string_view netmask,
                              std::string_view gateway, std::string_view table) const {
    return Find(destination, [&](const StaticRoute& route) {
        return route.netmask == netmask && (gateway.empty() || route.gateway == gateway) &&
               route.table == table;
    });
}

bool RouteStore::AddRoute(const std::string& destination, const std::string& netmask,
                          const std::string& gateway, const std::string& distance, const std::string& weight,
                          const std::string& table) {
    if (!arguments::IsAddress(destination) || !arguments::IsAddress(gateway) ||
        !arguments::IsNumber(distance) || !arguments::IsNumber(weight) ||
        (!table.empty() && !arguments::IsNumber(table)))
        return false;
    const std::string length = std::to_string(MaskToPrefixLength(netmask));
    const std::string route = RouteLine(destination, length, gateway, table) + " " + distance + " " + weight;
    if (!vtysh::Configure(vtysh::kZebra, {route}))
        return false;
    Load();
    return true;
}

bool RouteStore::DeleteRoute(std::string_view destination, const StaticRoute& route) {
    return SendDelete(destination, route, "");
}

bool RouteStore::DeleteTableRoute(std::string_view destination, const StaticRoute& route,
                                  std::string_view table) {
    lock_tool::FileLock lock(path_list::settings_lock);
    return vtysh::LockSettings(lock) && SendDelete(destination, route, table);
}

bool RouteStore::Delete(std::string_view destination, const Routes& found, const std::string_view* table) {
    for (const auto& [key, route] : found) {
        if (!(table ? DeleteTableRoute(destination, route, *table) : DeleteRoute(destination, route)))
            shell_log_error("failed to delete route for %s", std::string(destination).c_str());
    }
    return HasLock() && routes_.contains(destination);
}

bool RouteStore::DeleteRoutes(std::string_view destination) {
    return Delete(destination, FindRoutes(destination), nullptr);
}

bool RouteStore::DeleteRoutes(std::string_view destination, std::string_view netmask) {
    return Delete(destination, FindRoutes(destination, netmask), nullptr);
}

bool RouteStore::DeleteRoutes(std::string_view destination, std::string_view netmask,
                              std::string_view gateway) {
    return Delete(destination, FindRoutes(destination, netmask, gateway), nullptr);
}

bool RouteStore::DeleteRoutes(std::string_view destination, std::string_view netmask,
                              std::string_view gateway, std::string_view table) {
    return Delete(destination, FindRoutes(destination, netmask, gateway, table), &table);
}

} // namespace routing
