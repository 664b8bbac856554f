#include "reference/routing/daemon.h"

#include "reference/routing/zdhcpd.h"
#include "reference/routing/zebra.h"

namespace reference::routing {

std::unique_ptr<Daemon> MakeDaemon(const std::string& name) {
    if (name == "zebra")
        return std::make_unique<Zebra>();
    if (name == "zdhcpd")
        return std::make_unique<Zdhcpd>();
    return nullptr;
}

} // namespace reference::routing
