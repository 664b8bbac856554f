#include "reference/routing/links.h"

#include "reference/routing/text.h"

#include <arpa/inet.h>
#include <bit>
#include <ifaddrs.h>
#include <memory>
#include <net/if.h>

namespace reference::routing {
namespace {

std::uint32_t MaskOf(std::uint32_t length) {
    return length == 0 ? 0 : ~std::uint32_t{0} << (32 - length);
}

std::uint32_t AddressOf(const sockaddr* address) {
    return ntohl(reinterpret_cast<const sockaddr_in*>(address)->sin_addr.s_addr);
}

} // namespace

std::optional<Prefix> ToPrefix(const std::string& text) {
    const std::size_t slash = text.find('/');
    if (slash == text.npos)
        return std::nullopt;
    const auto address = ToAddress(text.substr(0, slash));
    const auto length = ToNumber(std::string_view(text).substr(slash + 1), 0, 32);
    if (!address || !length)
        return std::nullopt;
    return Prefix{*address & MaskOf(*length), *length};
}

std::string PrefixText(const Prefix& prefix) {
    return AddressText(prefix.address) + "/" + std::to_string(prefix.length);
}

bool Contains(const Prefix& prefix, std::uint32_t address) {
    return (address & MaskOf(prefix.length)) == prefix.address;
}

std::vector<Link> ReadLinks() {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0)
        return {};
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(first, freeifaddrs);
    std::vector<Link> links;
    for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET ||
            entry->ifa_netmask == nullptr || (entry->ifa_flags & IFF_UP) == 0 ||
            (entry->ifa_flags & IFF_LOOPBACK) != 0)
            continue;
        // The kernel names an alias by its label, "eth1:0".
        const std::string name = entry->ifa_name;
        const std::uint32_t address = AddressOf(entry->ifa_addr);
        const auto length = static_cast<std::uint32_t>(std::popcount(AddressOf(entry->ifa_netmask)));
        links.push_back({name.substr(0, name.find(':')),
                         address,
                         {address & MaskOf(length), length},
                         (entry->ifa_flags & IFF_RUNNING) != 0});
    }
    return links;
}

const Link* LinkOf(const std::vector<Link>& links, std::uint32_t gateway) {
    const Link* nearest = nullptr;
    for (const Link& link : links) {
        if (Contains(link.network, gateway) && link.address != gateway &&
            (nearest == nullptr || link.network.length > nearest->network.length))
            nearest = &link;
    }
    return nearest;
}

} // namespace reference::routing
