#include "units/dhcp_server/hosts.h"

#include "platform/messages.h"
#include "units/dhcp_server/edit.h"
#include "units/dhcp_server/model/address_rules.h"
#include "units/dhcp_server/removal.h"
#include "units/dhcp_server/tree_writer.h"

namespace settings::dhcp_server {
namespace {

constexpr std::size_t kMaximumHosts = 1024;
constexpr const char* kHost = "host";

bool CheckNameFree(const Host& host, const File& file) {
    const Node known = FirstIn(host, file);
    return !known || Refuse("DHCP server: %s: %s is already in use within subnet %s/%s", host.Name(), kHost,
                            known.Parent().GetAttr("address"), known.Parent().GetAttr("netmask"));
}

bool CheckMacFree(const Host& host, const NodeSet& hosts, const File& file, const std::string& mac) {
    for (std::size_t i = 0; i < hosts.Size(); ++i) {
        if (file.SelectFrom(hosts.At(i), "hardware/@mac").At(0).GetText() == mac)
            return Refuse("DHCP server: %s: %s mac address is already in use", host.Name(), mac);
    }
    return true;
}

bool AddNode(const Host& host, Node subnet, const std::string& mac, const std::string& address) {
    Node node = subnet.AddChild("host");
    Node hardware = node.AddChild("hardware");
    return node.NewAttr("name", host.Name()) && node.AddChild("address", address) &&
           hardware.NewAttr("type", "ethernet") && hardware.NewAttr("mac", mac);
}

} // namespace

bool AddHost(const Host& host, const Subnet& subnet, const std::string& mac, const std::string& address) {
    return EditUnit([&](File& file) {
        const NodeSet hosts = SelectIn(subnet, file, "host");
        if (!CheckNameFree(host, file) || !CheckMacFree(host, hosts, file, mac))
            return false;
        const Node node = subnet.GetNode(file);
        if (!node)
            return false;
        if (hosts.Size() >= kMaximumHosts)
            return RefuseMore(host, kHost, kMaximumHosts);
        if (!CheckAddressScope(subnet, file, host.Name().c_str(), address))
            return false;
        WarnIfNotPrivate(host, address, "host address");
        return AddNode(host, node, mac, address);
    });
}

bool EraseHost(const Host& host) {
    return EditUnit([&](File& file) {
        TreeWriter writer(file, stdout);
        if (!WriteHostBlock(writer, FirstIn(host, file)) ||
            !ConfirmRemoval("Host with these settings will be removed completely, are you sure?"))
            return false;
        Node node = host.GetNode(file);
        return node && node.Remove();
    });
}

} // namespace settings::dhcp_server
