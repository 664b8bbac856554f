#pragma once

#include "commands/routing/static_route.h"

#include <list>
#include <memory_resource>
#include <string>

namespace routing {

// The prefix length of a dotted mask, counted octet by octet until one is not full: a mask with a hole gives
// the length in front of it.
int MaskToPrefixLength(const std::string& netmask);

// What routes are sought by. A field that is null matches every route.
struct RoutePattern {
    const std::string& destination;
    const std::string* netmask = nullptr;
    const std::string* gateway = nullptr;
    const std::string* table = nullptr;

    bool Matches(const StaticRoute& route) const;
};

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

    // Without the lock every find finds nothing, and nothing is deleted.
    bool HasLock() const { return lock_ >= 0; }
    const Routes& All() const { return routes_; }

    // The routes that have all these fields.
    Routes FindRoutes(const std::string& destination) const;
    Routes FindRoutes(const std::string& destination, const std::string& netmask) const;
    Routes FindRoutes(const std::string& destination, const std::string& netmask,
                      const std::string& gateway) const;
    // Here an empty gateway matches every gateway.
    Routes FindRoutes(const std::string& destination, const std::string& netmask, const std::string& gateway,
                      const std::string& table) const;

    // Sends the route, whose length is its mask's, and loads when the daemon took it. An empty table is the
    // main one.
    [[nodiscard]] bool AddRoute(const NewRoute& route);
    [[nodiscard]] bool AddRoute(const std::string& destination, const std::string& netmask,
                                const std::string& gateway, const std::string& distance,
                                const std::string& weight, const std::string& table);

    // Take a route out of the main table, or of a table by number. The mirror stays as it was.
    [[nodiscard]] bool DeleteRoute(const std::string& destination, const StaticRoute& route);
    [[nodiscard]] bool DeleteTableRoute(const std::string& destination, const StaticRoute& route,
                                        const std::string& table);

    // Deletes each of these routes, in its own table. One that the daemon keeps doesn't stop the others.
    // False without the lock.
    [[nodiscard]] bool DeleteFound(const Routes& found);

    // Delete what the find of the same arguments finds, the first three as routes of the main table. False
    // when there is no route to the destination at all.
    [[nodiscard]] bool DeleteRoutes(const std::string& destination);
    [[nodiscard]] bool DeleteRoutes(const std::string& destination, const std::string& netmask);
    [[nodiscard]] bool DeleteRoutes(const std::string& destination, const std::string& netmask,
                                    const std::string& gateway);
    [[nodiscard]] bool DeleteRoutes(const std::string& destination, const std::string& netmask,
                                    const std::string& gateway, const std::string& table);

private:
    Routes Find(const RoutePattern& pattern) const;
    bool DeleteFromMain(const RoutePattern& pattern);
    bool HasRouteTo(const std::string& destination) const;

    int lock_;
    std::list<std::string> configurations_; // each that was read, for the routes that were found in it
    std::pmr::monotonic_buffer_resource memory_;
    Routes routes_{&memory_};
};

} // namespace routing
