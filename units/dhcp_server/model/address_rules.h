#pragma once

#include "units/dhcp_server/model/area.h"
#include "units/dhcp_server/model/level.h"

#include <string>
#include <vector>

// The rules for addresses in the settings. Every check reports each fault that it meets with the name of the
// area; `label` is the word for the value. All texts are dotted quads.

namespace settings::dhcp_server {

constexpr const char* kRangeLabel = "range";

// Warns of an address outside the private ranges of RFC 1918.
void WarnIfNotPrivate(const Area& area, const std::string& value, const char* label);

// The value lies inside the subnet, and is neither its network nor its broadcast address.
[[nodiscard]] bool CheckAddressScope(const Area& area, const File& file, const char* label,
                                     const std::string& value);
// The same of every child of that name; a child that is no address ends the walk.
[[nodiscard]] bool CheckOptionAddressesScope(const Area& area, const File& file, const char* label,
                                             Node option, const char* child_name);

// A level may narrow the subnet's netmask and never widen it.
[[nodiscard]] bool CheckSubnetMaskScope(const Area& area, const File& file, const std::string& mask);

// The value is the broadcast address of the level's address and mask.
[[nodiscard]] bool CheckBroadcastAddress(const Area& area, const File& file, const std::string& value);

// A range lies inside the subnet, is no longer than 65,536 addresses and keeps clear of the listen interface.
[[nodiscard]] bool CheckRange(const Area& area, const File& file, const std::string& from,
                              const std::string& to);

// Both bounds of the range are addresses.
[[nodiscard]] bool HasBounds(const Area& area, const Range& range);
// False, reported, for a range that ends before it begins.
[[nodiscard]] bool RefuseInvalid(const Area& area, const Range& range);
// The two ranges, whose bounds are in order, have no address in common.
[[nodiscard]] bool CheckApart(const Area& area, const Range& range, const Range& old);

// The value lies inside one of the ranges when it must, and inside none when it must not.
[[nodiscard]] bool CheckDynamicRangeUse(const Area& area, const std::vector<Range>& ranges,
                                        bool must_be_inside, const char* label, const std::string& value);
// The value is a host's address when it must be, and no host's when it must not.
[[nodiscard]] bool CheckHostAddressUse(const Area& area, const HostAddresses& hosts, bool must_be_inside,
                                       const char* label, const std::string& value);
// Both of the subnet that the area is or stands in; the second only when the first passes.
[[nodiscard]] bool CheckAddressFree(const Area& area, const File& file, bool must_be_inside,
                                    const char* label, const std::string& value);
// The same of every child of that name.
[[nodiscard]] bool CheckOptionAddressesFree(const Area& area, const File& file, bool must_be_inside,
                                            const char* label, Node option, const char* child_name);

} // namespace settings::dhcp_server
