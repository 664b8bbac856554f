#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Addresses and interfaces. Addresses and masks are dotted quads.

namespace corvanshell {

extern const int default_mtu;

// The broadcast address of the pair; empty when either is malformed.
std::string getbrcast(const std::string& address, const std::string& netmask);
// The network address of the pair; empty when either is malformed.
std::string getnetwork(const std::string& address, const std::string& netmask);

bool is_valid_ip(const std::string& text);
// `allow_wildcard` accepts a leading "*." label, `require_dot` refuses a name of one label.
bool is_valid_domain_name(const std::string& text, bool allow_wildcard, bool require_dot);

// The address as a number in host order, -1 when it is malformed.
std::int64_t address_to_number(const std::string& text);
// The reverse; empty for a number that is no address.
std::string number_to_address(std::int64_t number);
// The mask's prefix length, -1 when it is malformed or has holes.
int subnetmask_to_cidr(const std::string& netmask);
// The mask of a prefix length, given as a decimal text; empty when it is not 0 to 32.
std::string cidr_to_subnetmask(const std::string& prefix_length);

bool IsInterfaceAvailable(const std::string& name);
bool has_wifi_adapter();
// The system's interfaces by name, without the loopback.
std::vector<std::string> get_int_list();

// The text that ifconfig(8) prints for the interface; empty when there is no such interface.
std::string ifconfig(const std::string& name);
[[nodiscard]] bool set_interface_mtu(const std::string& name, int mtu);

// The distance that the DHCP routing daemon holds for `kind`, "main" or "default_route". False, with
// `distance` as it was, when the daemon does not answer.
[[nodiscard]] bool get_dhcp_distance(std::string& distance, const std::string& kind);

// Whether the appliance's licence grants the service of that name.
bool is_service_licensed(const std::string& service);

} // namespace corvanshell
