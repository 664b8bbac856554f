#pragma once

#include "records/conf_struct.h"
#include "records/network_crossing.h"

#include <string>

// Two interfaces of one appliance may not stand in one network, and neither may an interface and a network
// that /etc/failover.ini reserves. Addresses, broadcasts and netmasks are dotted quads. An alias counts as
// long as it stands in all three lists of its interface; a name is taken up to its first ":".

namespace corvanshell {

enum Crossing { kCrossingFailure = -1, kNoCrossing = 0, kCrossing = 1 };

// Take down, in memory, each interface that is up and has a netmask outside /1 to /30, or a network that
// crosses another's, and say so. Interfaces are walked from the last name to the first.
void CheckNetmasks(CConfStruct& record);
void CheckBroadcasts(CConfStruct& record);

// One interface, by its name and entry, against a proposed network. The addresses of an interface under DHCP
// are asked of the system; a failure of that is reported.
[[nodiscard]] Crossing InterfaceCrosses(const std::string& name, const InterfaceEntry& entry,
                                        const Network& proposed);

// The network proposed for the interface `name` against the cluster file and the other interfaces: those that
// are up, or all. Without `include_dhcp` interfaces under DHCP are left out. A crossing is reported.
[[nodiscard]] Crossing CheckAgainstUp(const CConfStruct& record, const std::string& name,
                                      const Network& proposed, bool include_dhcp);
[[nodiscard]] Crossing CheckAgainstAll(const CConfStruct& record, const std::string& name,
                                       const Network& proposed, bool include_dhcp);

// The same, the network given by its three texts.
[[nodiscard]] Crossing NetworksCross(const std::string& name, const InterfaceEntry& entry,
                                     const std::string& address, const std::string& broadcast,
                                     const std::string& netmask);
[[nodiscard]] Crossing CheckInterfaceCrossing(const CConfStruct& record, const std::string& name,
                                              const std::string& address, const std::string& broadcast,
                                              const std::string& netmask, bool include_dhcp);
[[nodiscard]] Crossing CheckAddressCrossing(const CConfStruct& record, const std::string& name,
                                            const std::string& address, const std::string& broadcast,
                                            const std::string& netmask, bool include_dhcp);

// The interface of /etc/failover.ini, other than `name`, whose network crosses; "" when none does. An address
// that can't be read is reported and counts as a crossing.
[[nodiscard]] std::string FindFailoverCrossing(const std::string& name, const std::string& address,
                                               const std::string& broadcast, const std::string& netmask);

// Whether the interface may come up with the addresses that it has. False for an interface that is not in the
// record.
[[nodiscard]] bool CheckInterfaceUp(const CConfStruct& record, const std::string& name);

} // namespace corvanshell
