#pragma once

#include "settings/file.h"
#include "settings/node.h"

#include <string>
#include <vector>

// The host part of the unit's URI, the name in its settings file and the base name of that file.
inline constexpr const char* kDhcpRelayUnit = "dhcp-relay";

// The relays in the settings file:
//
//     <unit name="dhcp-relay">
//       <dhcp-relay id="1">
//         <interface type="listen">eth1</interface>
//         <server id="0" interface="eth0">10.0.0.5</server>     (0 external, 1 backup)
//       </dhcp-relay>
//     </unit>
//
// A relay's ID is a decimal text, 1 or more. An interface has one role in the whole appliance.

namespace settings::dhcp_relay {

constexpr const char* kDaemonSettings = "/etc/dhcp-relay.conf";
constexpr const char* kSettingsLock = "/run/lock/dhcp-relay.lock";
constexpr const char* kKnobPrefix = "DHCP_RELAY_";

constexpr const char* kExternalServer = "0";
constexpr const char* kBackupServer = "1";

// The word for a server's role in messages.
const char* ServerRole(const std::string& server_id);

bool IsDhcpRelayRunning(const std::string& id);
// The gate of every editing operation: false, and reported, while the relay runs.
[[nodiscard]] bool IsChangePermitted(const std::string& id);

// The ID of the relay that uses the interface, in either role; "" when none does or the file can't be loaded.
std::string FindRelayByInterface(const std::string& name);
// The same in a file that is loaded already. Who asks of many interfaces has InterfaceIndex.
std::string FindRelayByInterface(const File& file, const std::string& name);
// Whether a relay uses the interface, in either role.
bool IsRelayInterface(const File& file, const std::string& name);

// The address or name of a relay's server on that interface, "" when there is none.
std::string GetRelayExternalServer(const std::string& id, const std::string& interface);
std::string GetRelayBackupServer(const std::string& id, const std::string& interface);

// Interface names, each once, sorted.
std::vector<std::string> ListRelayInterfaces();
std::vector<std::string> ListRelayListenInterfaces();
std::vector<std::string> ListRelayExternalInterfaces();

// The interface as a listen interface of any relay, or as the external interface of any relay's server.
Node FindListenInterface(const File& file, const std::string& interface);
Node FindServerInterface(const File& file, const std::string& interface);

// The relay's node; a null node when there is none.
Node FindRelay(const File& file, const std::string& id);
// A null node, with the reason reported, when it can't be made.
Node FindOrCreateRelay(const File& file, const std::string& id);

// Removes a server or an interface, and its relay when that holds nothing else.
[[nodiscard]] bool RemoveFromRelay(Node node);

} // namespace settings::dhcp_relay
