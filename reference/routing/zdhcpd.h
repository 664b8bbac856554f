#pragma once

#include "reference/routing/daemon.h"

namespace reference::routing {

// The daemon of the routes that DHCP leases bring: their distances.
class Zdhcpd : public Daemon {
public:
    [[nodiscard]] bool Configure(const Words& words) override;
    // The routes themselves stand in /run/quagga/dhcp-routes, one a line.
    [[nodiscard]] bool Show(const Words& words, std::string& output) const override;
    std::string Configuration() const override;

private:
    std::string distance_ = "70";
    std::string default_distance_; // "" is the same
};

} // namespace reference::routing
