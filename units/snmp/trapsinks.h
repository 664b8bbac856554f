#pragma once

#include "settings/file.h"

#include <string>
#include <vector>

// Trap receivers of SNMPv1 and SNMPv2c.

namespace snmp {

struct Trapsink {
    std::string destination;
    std::string community;
    std::string type; // "trapsink", "trap2sink" or "informsink"
    std::string port;
    std::string prot; // "udp" or "tcp"

    bool operator==(const Trapsink&) const = default;
};

// The type that a receiver of the kind has: "v1", "v2" or "inform". "" for any other word.
std::string TypeOfKind(const std::string& kind);
[[nodiscard]] bool IsTrapsinkType(const std::string& type);

// Sorted, each once.
std::vector<std::string> ListTrapsinkDestinations();
// In document order.
std::vector<Trapsink> ListTrapsinks();
std::vector<Trapsink> ListTrapsinks(const settings::File& file);

// `kind` is a word of TypeOfKind. Of one destination, community, port and protocol there is one receiver,
// whatever its kind, and there are 16 at most.
[[nodiscard]] bool AddTrapsink(const std::string& destination, const std::string& community,
                               const std::string& kind, const std::string& port, const std::string& prot);
// `type` is the word of Trapsink::type.
[[nodiscard]] bool DeleteTrapsink(const std::string& destination, const std::string& port,
                                  const std::string& prot, const std::string& community,
                                  const std::string& type);

} // namespace snmp
