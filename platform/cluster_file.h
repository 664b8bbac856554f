#pragma once

#include <string>
#include <vector>

// The interfaces that the cluster's /etc/failover.ini names, as parallel lists in file order.

namespace failover {

std::vector<std::string> get_active_ifaces();
// "<address>/<prefix length>" as the file has it.
std::vector<std::string> get_active_ip();
// The broadcast of each address; what is no address stays as it is.
std::vector<std::string> get_active_bcasts();

} // namespace failover
