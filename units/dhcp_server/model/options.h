#pragma once

#include "units/dhcp_server/model/area.h"

#include <string>

// The option nodes of a level, and the values that a level has from its options or inherits.

namespace settings::dhcp_server {

// Adds an option of that name; a null node, and nothing added, on failure.
Node AddOptionChild(Node parent, const char* name, const std::string& text);

// The level's option of that name, with the text `value` unless that is null. An option that the program
// manages gives way to one of the operator's; a missing one is added.
Node FindOrCreateOption(const Area& area, const File& file, const char* name, const char* value);

// The same, warning that an existing option's text will be overwritten. `label` is the word for the value.
Node SetOptionWithWarning(const Area& area, const File& file, const char* name, const char* label,
                          const std::string& value);

// The values that hold for a subnet or a host, as dotted quads; "" when there is none.
std::string GetSubnetAddress(const Area& area, const File& file);
std::string GetSubnetMask(const Area& area, const File& file);
std::string GetBroadcastAddress(const Area& area, const File& file);

// The `netmask` attribute of the subnet, of a host's parent for a host.
std::string GetSubnetNetmask(const Area& area, const File& file);

} // namespace settings::dhcp_server
