#include "reference/routing/daemon.h"

#include "reference/routing/dgdd.h"
#include "reference/routing/zdhcpd.h"
#include "reference/routing/zebra.h"

namespace reference::routing {

std::unique_ptr<Daemon> MakeDaemon(const std::string& name) {
    if (name == "zebra")
        return std::make_unique<Zebra>();
    if (name == "zdhcpd")
        return std::make_unique<Zdhcpd>();
    if (name == "dgdd")
        return std::make_unique<Dgdd>();
    return nullptr;
}

} // namespace reference::routing
