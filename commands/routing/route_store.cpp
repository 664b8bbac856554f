#include "commands/routing/route_store.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/config_routes.h"
#include "commands/vtysh/daemon.h"
#include "front/helpers/settings_lock.h"
#include "platform/path_list.h"
#include "platform/processes.h"

#include <algorithm>
#include <cerrno>
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

bool SendDelete(const std::string& destination, const StaticRoute& route, const std::string& table) {
    return vtysh::ConfigureQuietly(vtysh::kRouteRemoval,
                                   "no " + RouteLine(destination, route.prefix_length, route.gateway, table));
}

// The descriptor of the lock file with the lock taken, -1 when there is none. A signal doesn't end the wait.
int TakeLock() {
    const int lock = open(kLockFile, O_RDONLY | O_CREAT | O_CLOEXEC, kLockMode);
    while (lock >= 0 && flock(lock, LOCK_EX) != 0) {
        if (errno == EINTR)
            continue;
        close(lock);
        return -1;
    }
    return lock;
}

bool IsWanted(const std::string* wanted, std::string_view text) {
    return wanted == nullptr || *wanted == text;
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

bool RoutePattern::Matches(const StaticRoute& route) const {
    return IsWanted(netmask, route.netmask) && IsWanted(gateway, route.gateway) &&
           IsWanted(table, route.table);
}

RouteStore::RouteStore() : lock_(TakeLock()) {
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

Routes RouteStore::Find(const RoutePattern& pattern) const {
    Routes found;
    if (!HasLock())
        return found;
    const auto [first, last] = routes_.equal_range(pattern.destination);
    std::copy_if(first, last, std::inserter(found, found.end()),
                 [&](const auto& entry) { return pattern.Matches(entry.second); });
    return found;
}

Routes RouteStore::FindRoutes(const std::string& destination) const {
    return Find({destination});
}

Routes RouteStore::FindRoutes(const std::string& destination, const std::string& netmask) const {
    return Find({destination, &netmask});
}

Routes RouteStore::FindRoutes(const std::string& destination, const std::string& netmask,
                              const std::string& gateway) const {
    return Find({destination, &netmask, &gateway});
}

Routes RouteStore::FindRoutes(const std::string& destination, const std::string& netmask,
                              const std::string& gateway, const std::string& table) const {
    return Find({destination, &netmask, gateway.empty() ? nullptr : &gateway, &table});
}

bool RouteStore::AddRoute(const NewRoute& route) {
    if (!arguments::IsAddress(route.destination) || !arguments::IsAddress(route.gateway) ||
        !arguments::IsNumber(route.distance) || !arguments::IsNumber(route.weight) ||
        (!route.table.empty() && !arguments::IsNumber(route.table)))
        return false;
    const std::string length = std::to_string(MaskToPrefixLength(route.netmask));
    if (!vtysh::Configure(vtysh::kZebra, {RouteLine(route.destination, length, route.gateway, route.table) +
                                          " " + route.distance + " " + route.weight}))
        return false;
    Load();
    return true;
}

bool RouteStore::AddRoute(const std::string& destination, const std::string& netmask,
                          const std::string& gateway, const std::string& distance, const std::string& weight,
                          const std::string& table) {
    return AddRoute({destination, netmask, gateway, distance, weight, table});
}

bool RouteStore::DeleteRoute(const std::string& destination, const StaticRoute& route) {
    return HasLock() && SendDelete(destination, route, "");
}

bool RouteStore::DeleteTableRoute(const std::string& destination, const StaticRoute& route,
                                  const std::string& table) {
    lock_tool::FileLock lock(path_list::settings_lock);
    return HasLock() && LockForChange(lock) && SendDelete(destination, route, table);
}

bool RouteStore::DeleteFound(const Routes& found) {
    for (const auto& [key, route] : found) {
        const std::string destination(key);
        (void)(route.table == kMainTable ? DeleteRoute(destination, route)
                                         : DeleteTableRoute(destination, route, std::string(route.table)));
    }
    return HasLock();
}

// One that the daemon keeps doesn't stop the others.
bool RouteStore::DeleteFromMain(const RoutePattern& pattern) {
    for (const auto& [key, route] : Find(pattern))
        (void)DeleteRoute(pattern.destination, route);
    return HasRouteTo(pattern.destination);
}

bool RouteStore::HasRouteTo(const std::string& destination) const {
    return HasLock() && routes_.contains(destination);
}

bool RouteStore::DeleteRoutes(const std::string& destination) {
    return DeleteFromMain({destination});
}

bool RouteStore::DeleteRoutes(const std::string& destination, const std::string& netmask) {
    return DeleteFromMain({destination, &netmask});
}

bool RouteStore::DeleteRoutes(const std::string& destination, const std::string& netmask,
                              const std::string& gateway) {
    return DeleteFromMain({destination, &netmask, &gateway});
}

bool RouteStore::DeleteRoutes(const std::string& destination, const std::string& netmask,
                              const std::string& gateway, const std::string& table) {
    for (const auto& [key, route] : FindRoutes(destination, netmask, gateway, table))
        (void)DeleteTableRoute(destination, route, table);
    return HasRouteTo(destination);
}

} // namespace routing
