#include "units/dhcp_server/model/area.h"

#include "platform/messages.h"
#include "units/dhcp_server/model/level.h"

namespace settings::dhcp_server {
namespace {

// The expressions that define what an area is; each takes a path that begins with "/", or nothing.
constexpr char kUnit[] = "/unit%s";
constexpr char kLocalSubnet[] =
    "/unit/subnet[@address and @netmask and child::interface[@type = 'listen' and "
    "text() = '%s']]%s";
constexpr char kRemoteSubnet[] = "/unit/subnet[@address = '%s' and @netmask = '%s' and "
                                 "child::interface[@type = 'relay']]%s";
constexpr char kHost[] = "/unit/subnet/host[@name = '%s']%s";

const char* OrNothing(const char* tail) {
    return tail != nullptr ? tail : "";
}

} // namespace

Area::Area(std::string name) : Area(std::move(name), "DHCP server: %s: corrupted settings file") {}

Area::Area(std::string name, Format<std::string> missing) : name_(std::move(name)), missing_(missing) {}

Node Area::GetNode(const File& file) const {
    const Node node = FirstIn(*this, file);
    if (!node)
        PrintError(missing_, name_);
    return node;
}

std::shared_ptr<Level> Area::LevelIn(const File& file) const {
    return level_ != nullptr ? level_ : std::make_shared<Level>(file, ToList(SelectIn(*this, file)));
}

NodeSet Area::Select(const File& file, const char* tail) const {
    return file.Select(kUnit, OrNothing(tail));
}

LocalSubnet::LocalSubnet(const std::string& interface)
    : Subnet(interface, "DHCP server: %s: listen interface is not in use"), interface_(interface) {}

NodeSet LocalSubnet::Select(const File& file, const char* tail) const {
    if (!IsLiteral(interface_))
        return {};
    return file.Select(kLocalSubnet, interface_, OrNothing(tail));
}

RemoteSubnet::RemoteSubnet(const std::string& address, const std::string& netmask)
    : Subnet(address + "/" + netmask, "DHCP server: %s: no such remote subnet"), address_(address),
      netmask_(netmask) {}

NodeSet RemoteSubnet::Select(const File& file, const char* tail) const {
    if (!IsLiteral(address_) || !IsLiteral(netmask_))
        return {};
    return file.Select(kRemoteSubnet, address_, netmask_, OrNothing(tail));
}

Host::Host(const std::string& host_name)
    : Network(host_name, "DHCP server: %s: no such host"), host_name_(host_name) {}

NodeSet Host::Select(const File& file, const char* tail) const {
    if (!IsLiteral(host_name_))
        return {};
    return file.Select(kHost, host_name_, OrNothing(tail));
}

std::vector<Node> ToList(const NodeSet& nodes) {
    std::vector<Node> list;
    list.reserve(nodes.Size());
    for (std::size_t i = 0; i < nodes.Size(); ++i)
        list.push_back(nodes.At(i));
    return list;
}

NodeSet SelectTail(const Area& area, const File& file, const std::string& tail) {
    return area.Select(file, ("/" + tail).c_str());
}

NodeSet SelectIn(const Area& area, const File& file) {
    return area.Select(file, nullptr);
}

Node FirstIn(const Area& area, const File& file) {
    return area.Select(file, nullptr).At(0);
}

} // namespace settings::dhcp_server
