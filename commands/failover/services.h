#pragma once

#include <set>
#include <string>

// The services that an appliance may run in single mode only.

namespace failover {

// Their names, as /etc/single_only lists them.
std::set<std::string> ListForbiddenServices();
// Those of them that the settings switch on. False, told on the terminal, when the settings can't be read.
[[nodiscard]] bool ListEnabledServices(std::set<std::string>& enabled);

// Start and stop a service by its name in the settings. Success and failure are told in the log.
void StartService(const std::string& name);
void StopService(const std::string& name);

} // namespace failover
