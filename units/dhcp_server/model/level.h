#pragma once

#include "settings/file.h"
#include "settings/node.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace settings::dhcp_server {

// A dynamic address range as it stands in the file, and as numbers (kNoAddress for what is no address).
struct Range {
    std::string from_text;
    std::string to_text;
    std::int64_t from;
    std::int64_t to;
};

Range MakeRange(const std::string& from, const std::string& to);
std::vector<Range> ReadRanges(const NodeSet& nodes);

// The usable addresses of a subnet: first <= address < broadcast.
struct Scope {
    std::int64_t first;
    std::int64_t broadcast;
};

// The fixed addresses of hosts, in document order.
class HostAddresses {
public:
    struct Entry {
        std::int64_t value;
        Node address;
    };

    // Each node is a host's address.
    void Add(const NodeSet& nodes);
    bool IsEmpty() const { return entries_.empty(); }
    // What a walk in document order meets first: the entry of this value, or one that is no address. Null
    // when it meets neither.
    const Entry* FindFirst(std::int64_t value) const;

private:
    std::vector<Entry> entries_;
    std::unordered_map<std::int64_t, std::size_t> by_value_; // the first entry of each value
};

// What the checks of a subnet and of all its hosts ask of the subnet, each read from the file once. There may
// be several nodes, which then count as one subnet.
class SubnetView {
public:
    SubnetView(const File& file, std::vector<Node> nodes) : file_(file), nodes_(std::move(nodes)) {}

    const std::vector<Node>& Nodes() const { return nodes_; }
    // Of the first node.
    std::string Attribute(const char* name) const;
    // The text of the first option of that name.
    const std::string& Option(const char* name);
    const std::vector<Range>& Ranges();
    const HostAddresses& Hosts();

private:
    const File& file_;
    std::vector<Node> nodes_;
    std::map<std::string, std::string, std::less<>> options_;
    std::optional<std::vector<Range>> ranges_;
    std::optional<HostAddresses> hosts_;
};

// A place as it stands in the document: the nodes that its area finds, and the values that hold there. Valid
// as long as the document is not changed.
class Level {
public:
    // The nodes are in document order; there may be none.
    Level(const File& file, std::vector<Node> nodes);
    // A host whose subnet is known already.
    Level(const File& file, Node host, std::shared_ptr<SubnetView> subnet);

    const std::vector<Node>& Nodes() const { return nodes_; }
    Node First() const { return nodes_.empty() ? Node() : nodes_.front(); }
    bool IsHost() const { return First().IsNamed("host"); }
    // The subnet that the level is, or stands in.
    const std::shared_ptr<SubnetView>& Subnet() const { return subnet_; }

    // The values that hold here, as dotted quads; "" when there is none.
    std::string Address() const { return subnet_->Attribute("address"); }
    std::string Netmask() const { return subnet_->Attribute("netmask"); }
    std::string Mask() const;
    std::string Broadcast() const;

    // The address of the level's first listen interface, nothing when it has none.
    const std::optional<std::string>& ListenAddress();
    // What a check has found to be the level's scope, for the checks behind it.
    std::optional<Scope>& KnownScope() { return scope_; }

private:
    std::string Option(const char* name) const;

    const File& file_;
    std::vector<Node> nodes_;
    std::shared_ptr<SubnetView> subnet_;
    std::optional<std::optional<std::string>> listen_address_;
    std::optional<Scope> scope_;
};

} // namespace settings::dhcp_server
