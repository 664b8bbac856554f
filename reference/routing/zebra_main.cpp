// zebra
//
// Brings the running configuration of the routing daemon into the kernel again, after something else has
// taken a part of it away: routes go with their link.

#include "reference/routing/daemon.h"
#include "reference/routing/store.h"

int main() {
    using namespace reference::routing;
    const Store store("zebra");
    const auto text = store.HasRunning() ? store.Running() : store.Saved();
    if (!store.IsLocked() || !store.IsRunning() || !text)
        return 1;
    const auto daemon = MakeDaemon("zebra");
    LoadConfiguration(*daemon, *text);
    return daemon->Apply() ? 0 : 1;
}
