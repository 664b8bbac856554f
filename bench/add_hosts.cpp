// add-hosts COUNT: adds hosts to the subnet of eth0, each by an operation of its own, as a shell would.

#include "front/helpers/xml.h"
#include "units/dhcp_server/hosts.h"

#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char** argv) {
    using namespace settings::dhcp_server;
    const int count = argc == 2 ? std::atoi(argv[1]) : 0;
    InitXml();
    const LocalSubnet subnet("eth0");
    for (int i = 0; i < count; ++i) {
        char mac[40];
        std::snprintf(mac, sizeof mac, "02:00:00:01:%02x:%02x", i / 256, i % 256);
        const std::string address =
            "10.0." + std::to_string(200 + i / 250) + "." + std::to_string(2 + i % 250);
        if (!AddHost(Host("new-" + std::to_string(i)), subnet, mac, address))
            return 1;
    }
    CleanupXml();
    return count > 0 ? 0 : 2;
}
