#include "platform/messages.h"
#include "settings/file.h"
#include "shell/families.h"
#include "shell/removal.h"
#include "units/dhcp_relay/daemon_settings.h"
#include "units/dhcp_relay/report.h"
#include "units/dhcp_relay/rules/listen_interfaces.h"
#include "units/dhcp_relay/rules/lookup.h"
#include "units/dhcp_relay/rules/servers.h"
#include "units/dhcp_relay/unit.h"

namespace shell {
namespace {

using namespace settings::dhcp_relay;
using Text = const std::string&;

std::string ServerId(const std::string& role) {
    return role == "external" ? kExternalServer : kBackupServer;
}

// Before somebody is asked about a relay that is not there.
bool IsThere(Text relay) {
    settings::File file(kDhcpRelayUnit, "");
    return file.Load() && (FindRelay(file, relay) || Refuse("DHCP relay %s: does not exist", relay));
}

bool Check(Text relay) {
    settings::File file(kDhcpRelayUnit, "");
    return file.Load() && GenerateRelaySettings(file, nullptr, relay);
}

bool Erase(Text relay) {
    return IsThere(relay) && IsRemovalMeant("Remove the relay with its servers and interfaces?") &&
           EraseRelay(relay);
}

constexpr Command kCommands[] = {
    {"dhcp-relay", "DHCP relays"},
    {"dhcp-relay show", "state and settings"},
    {"dhcp-relay show settings [<relay>]", "shows the relays and their state", kCall<&PrintDhcpRelays>,
     kShows},
    {"dhcp-relay show file", "shows the settings file as it is", kCall<&DumpRelaySettings>, kShows},
    {"dhcp-relay check [<relay>]", "checks the relays, or one, and says nothing when they are good",
     kCall<&Check>, kShows},
    {"dhcp-relay generate", "writes the daemons' settings", [] { return DhcpRelayUnit(nullptr); }},
    {"dhcp-relay <relay> server", "servers behind the relay"},
    {"dhcp-relay <relay> server add", "adds a server"},
    {"dhcp-relay <relay> server add <external|backup> <server> interface <interface>",
     "adds a server, which is reached through the interface; the first one makes the relay",
     [](Text relay, Text role, Text server, Text interface) {
         return AddRelayServer(relay, ServerId(role), server, interface);
     }},
    {"dhcp-relay <relay> server delete", "removes a server"},
    {"dhcp-relay <relay> server delete <external|backup> <server> interface <interface>", "removes a server",
     [](Text relay, Text role, Text server, Text interface) {
         return RemoveRelayServer(relay, ServerId(role), server, interface);
     }},
    {"dhcp-relay <relay> listen", "interfaces whose clients the relay serves"},
    {"dhcp-relay <relay> listen add <interface>", "adds an interface whose clients the relay serves",
     kCall<&AddRelayListenInterface>},
    {"dhcp-relay <relay> listen delete <interface>", "removes an interface",
     kCall<&RemoveRelayListenInterface>},
    {"dhcp-relay <relay> delete", "removes the relay, after a question", kCall<&Erase>},
};

} // namespace

std::span<const Command> DhcpRelayCommands() {
    return kCommands;
}

} // namespace shell
