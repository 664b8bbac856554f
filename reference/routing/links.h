#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace reference::routing {

constexpr std::uint32_t kFirstWatchTable =
    4000000000; // from here on tables belong to the checks of next hops

struct Prefix {
    std::uint32_t address; // host order, the bits behind the length are 0
    std::uint32_t length;

    friend auto operator<=>(const Prefix&, const Prefix&) = default;
};

std::optional<Prefix> ToPrefix(const std::string& text); // "10.0.0.0/8"
std::string PrefixText(const Prefix& prefix);
bool Contains(const Prefix& prefix, std::uint32_t address);

// A network that an interface of the appliance is connected to.
struct Link {
    std::string interface;
    std::uint32_t address; // the appliance's own
    Prefix network;
    bool has_carrier;
};

// Of all interfaces that are up, but for the loopback.
std::vector<Link> ReadLinks();
// The link on which the gateway is a neighbour, null when there is none.
const Link* LinkOf(const std::vector<Link>& links, std::uint32_t gateway);

} // namespace reference::routing
