#pragma once

#include "settings/file.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace settings::dhcp_relay {

// What a relay holds; a server that it has not is a null node.
struct RelayParts {
    std::vector<Node> listen_interfaces;
    Node external_server;
    Node backup_server;
};

// The relays of a loaded file, in document order. Their IDs are compared as numbers, so that "1" and "01" are
// one relay: what the one has, the other has too.
class RelayList {
public:
    explicit RelayList(const File& file);

    const std::vector<Node>& Nodes() const { return nodes_; }
    // The parts of all relays of that number.
    RelayParts Find(const std::string& id) const;

private:
    void Take(Node node, RelayParts& parts) const;

    const File& file_;
    std::vector<Node> nodes_;
    std::map<std::uint64_t, std::vector<Node>> numbers_;
    bool all_plain_ = true;
};

} // namespace settings::dhcp_relay
