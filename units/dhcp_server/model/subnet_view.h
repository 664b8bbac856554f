#pragma once

#include "settings/file.h"
#include "settings/node.h"

#include <cstddef>
#include <cstdint>
#include <map>
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

// The usable addresses of a subnet: first <= address < broadcast.
struct Scope {
    std::int64_t first;
    std::int64_t broadcast;
};

std::vector<Range> ReadRanges(const NodeSet& nodes);

// The fixed addresses of hosts, in document order.
class HostAddresses {
public:
    struct Entry {
        std::string text;
        std::int64_t value;
        std::string host_name;
    };

    explicit HostAddresses(const NodeSet& nodes);

    bool IsEmpty() const { return entries_.empty(); }
    // What a walk in document order meets first: the entry of this value, or one that is no address. Null
    // when it meets neither.
    const Entry* FindFirst(std::int64_t value) const;

private:
    std::vector<Entry> entries_;
    std::unordered_map<std::int64_t, std::size_t> by_value_; // the first entry of each value
};

// What the checks of a subnet and of all its hosts ask of the subnet, each read from the file once. Valid as
// long as the document is not changed.
class SubnetView {
public:
    SubnetView(const File& file, Node subnet) : file_(file), subnet_(subnet) {}

    Node Subnet() const { return subnet_; }
    // The text of the subnet's own first option of that name.
    const std::string& Option(const char* name);
    // The address of the subnet's first listen interface, nothing when it has no listen interface.
    const std::optional<std::string>& ListenAddress();
    const std::vector<Range>& Ranges();
    // What a check has found to be the subnet's own scope, for the checks behind it.
    std::optional<Scope>& KnownScope() { return scope_; }
    const HostAddresses& Hosts();

private:
    const File& file_;
    Node subnet_;
    std::map<std::string, std::string, std::less<>> options_;
    std::optional<std::optional<std::string>> listen_address_;
    std::optional<Scope> scope_;
    std::optional<std::vector<Range>> ranges_;
    std::optional<HostAddresses> hosts_;
};

} // namespace settings::dhcp_server
