#pragma once

#include "commands/routing/static_route.h"

#include <functional>
#include <list>
#include <memory_resource>
#include <string>
#include <string_view>

namespace routing {

// The prefix length of a dotted mask, counted octet by octet until one is not full: a mask with a hole gives
// the length in front of it.
int MaskToPrefixLength(const std::string& netmask);

// A command's mirror of the static routes of the routing daemon. It holds the lock of all route commands for
// as long as it lives, so that a second command waits, also while an administrator ponders a question. Taking
// this lock comes before taking the settings lock.
class RouteStore {
public:
    RouteStore(); // waits for the lock, without a limit, and loads
    ~RouteStore();
    RouteStore(const RouteStore&) = delete;
    RouteStore& operator=(const RouteStore&) = delete;

    // Reads the daemon's configuration. An answer that is empty or failed leaves the routes as they were.
    // Routes that were found before stay good.
    void Load();

    // Without the lock every find and delete finds nothing.
    bool HasLock() const { return lock_ >= 0; }
    const Routes& All() const { return routes_; }

    // The routes that have all these fields.
    Routes FindRoutes(std::string_view destination) const;
    Routes FindRoutes(std::string_view destination, std::string_view netmask) const;
    Routes FindRoutes(std::string_view destination, std::string_view netmask, std::string_view gateway) const;
    // Here an empty gateway matches every gateway.
    Routes FindRoutes(std::string_view destination, std::string_view netmask, std::string_view gateway,
                      std::string_view table) const;

    // Sends the route, and loads when the daemon took it. An empty table is the main one.
    [[nodiscard]] bool AddRoute(const std::string& destination, const std::string& netmask,
                                const std::string& gateway, const std::string& distance,
                                const std::string& weight, const std::string& table);

    // Take a route out of the main table, or of a table by number. The mirror stays as it was.
    [[nodiscard]] bool DeleteRoute(std::string_view destination, const StaticRoute& route);
    [[nodiscard]] bool DeleteTableRoute(std::string_view destination, const StaticRoute& route,
                                        std::string_view table);

    // Delete what the find of the same arguments finds. False when there is no route to the destination at
    // all. A route that the daemon keeps is told in the log and doesn't stop the others.
    [[nodiscard]] bool DeleteRoutes(std::string_view destination);
    [[nodiscard]] bool DeleteRoutes(std::string_view destination, std::string_view netmask);
    [[nodiscard]] bool DeleteRoutes(std::string_view destination, std::string_view netmask,
                                    std::string_view gateway);
    [[nodiscard]] bool DeleteRoutes(std::string_view destination, std::string_view netmask,
                                    std::string_view gateway, std::string_view table);

private:
    using Condition = std::function<bool(const StaticRoute&)>;
    Routes Find(std::string_view destination, const Condition& condition) const;
    bool Delete(std::string_view destination, const Routes& found, const std::string_view* table);

    int lock_;
    std::list<std::string> configurations_; // each that was read, for the routes that were found in it
    std::pmr::monotonic_buffer_resource memory_;
    Routes routes_{&memory_};
};

} // namespace routing
