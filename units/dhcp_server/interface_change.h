#pragma once

#include "records/conf_struct.h"
#include "settings/file.h"

#include <string>

// What a change of an interface means for the DHCP server. Each operation has a form for a network record
// that is open already.

namespace settings::dhcp_server {

// Brings the subnet of a listen interface along with the interface's changed address or mask, and saves. True
// and nothing done when the server does not use the interface.
[[nodiscard]] bool UpdateListenInterface(File& file, const std::string& interface, bool strict);
[[nodiscard]] bool UpdateListenInterface(const corvanshell::CConfStruct& record, File& file,
                                         const std::string& interface, bool strict);

// The same for an interface command, which goes on whatever comes of it; a failure is reported. The record
// has the interface's new address already.
void UpdateDhcpServerInterface(const std::string& interface, bool strict);
void UpdateDhcpServerInterface(const corvanshell::CConfStruct& record, const std::string& interface,
                               bool strict);

// Whether an interface command may change the interface, which the record has as it is now. An address or
// netmask of "0.0.0.0" stands for one that does not change. Faults are errors when the server starts with the
// appliance and warnings otherwise.
[[nodiscard]] bool CheckDhcpServerInterfaceChange(const std::string& interface, bool going_down,
                                                  const std::string& new_class,
                                                  const std::string& new_address,
                                                  const std::string& new_netmask);
[[nodiscard]] bool CheckDhcpServerInterfaceChange(const corvanshell::CConfStruct& record,
                                                  const std::string& interface, bool going_down,
                                                  const std::string& new_class,
                                                  const std::string& new_address,
                                                  const std::string& new_netmask);

} // namespace settings::dhcp_server
