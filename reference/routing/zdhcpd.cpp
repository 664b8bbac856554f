#include "reference/routing/zdhcpd.h"

#include "reference/routing/store.h"

namespace reference::routing {

bool Zdhcpd::Configure(const Words& words) {
    if (Equal(words, {"router", "dhcp"})) {
        EnterSection();
        return true;
    }
    if (!InSection() || words[0] != "distance" || (words.size() != 2 && words.size() != 4) ||
        !ToNumber(words[1], 1, 255))
        return false;
    if (words.size() == 4 && (words[2] != "default" || !ToNumber(words[3], 1, 255)))
        return false;
    distance_ = words[1];
    default_distance_ = words.size() == 4 ? words[3] : "";
    return true;
}

bool Zdhcpd::Show(const Words& words, std::string& output) const {
    if (!Equal(words, {"show", "ip", "dhcp", "route"}))
        return false;
    const auto routes = ReadWhole("/run/quagga/dhcp-routes");
    output = "Interface  Network             Gateway          Distance\n" + routes.value_or("");
    return routes.has_value();
}

std::string Zdhcpd::Configuration() const {
    return "!\nrouter dhcp\n distance " + distance_ +
           (default_distance_.empty() ? "" : " default " + default_distance_) + "\n!\n";
}

} // namespace reference::routing
