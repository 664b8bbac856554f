#include "commands/interfaces/users.h"

#include "commands/services/web_ui.h"
#include "platform/messages.h"
#include "records/common_conf_struct.h"
#include "units/dhcp_relay/rules/interface_change.h"
#include "units/dhcp_server/interface_change.h"
#include "units/dhcp_server/model/gates.h"

namespace interfaces {

using corvanshell::CConfStruct;

bool CheckDhcpServer(const CConfStruct& record, const std::string& name, const Change& change) {
    return settings::dhcp_server::CheckDhcpServerInterfaceChange(
        record, name, change.going_down, change.new_class, change.network.address, change.network.netmask);
}

bool CheckDhcpRelay(const std::string& name, const Change& change) {
    return settings::dhcp_relay::CheckRelayInterfaceChange(name, change.going_down, change.address_changes,
                                                           change.new_class);
}

const char* FindRefusingUser(const CConfStruct& record, const std::string& name, const Change& for_server,
                             const Change& for_relay) {
    if (!CheckDhcpServer(record, name, for_server))
        return "server";
    return CheckDhcpRelay(name, for_relay) ? nullptr : "relay";
}

const char* FindRefusingUser(const CConfStruct& record, const std::string& name, const Change& change) {
    return FindRefusingUser(record, name, change, change);
}

void WarnOfCertificate(const std::string& address) {
    if (is_ip_in_webui_https_cert(address))
        PrintWarning("The command execution changes the IP address specified in the certificate for the "
                     "HTTPS connection. Certificate reissue may be required.");
}

void UpdateDhcpServer(const CConfStruct& record, const std::string& name) {
    const bool strict = corvanshell::CommonConfStruct().GetFlag("DHCP_SERVER") ||
                        settings::dhcp_server::IsDhcpServerRunning();
    settings::dhcp_server::UpdateDhcpServerInterface(record, name, strict);
}

} // namespace interfaces
