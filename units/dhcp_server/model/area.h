#pragma once

#include "platform/format.h"
#include "settings/file.h"
#include "settings/node.h"

#include <memory>
#include <string>
#include <vector>

// The places of the DHCP server's settings file:
//
//     <unit name="dhcp-server">
//       <default-lease-time>864000</default-lease-time>
//       <max-lease-time>864000</max-lease-time>
//       <subnet address="192.168.1.0" netmask="255.255.255.0">
//         <interface type="listen" address="192.168.1.1">eth1</interface>   (type "relay": a remote subnet)
//         <option name="subnet-mask" auto="yes">255.255.255.0</option>      (auto: managed by the program)
//         <option name="routers"><address>192.168.1.1</address></option>    (a list option)
//         <option num="200" type="ascii">text</option>                      (custom: ip, ascii or hex)
//         <option name="tftp-server" file="boot.img">192.168.1.5</option>
//         <range from="192.168.1.10" to="192.168.1.20"/>
//         <host name="pc7">
//           <hardware type="ethernet" mac="00:11:22:33:44:55"/>
//           <address>192.168.1.7</address>
//         </host>
//       </subnet>
//     </unit>
//
// Lease times and options may stand at each level: the unit, a subnet, a host.

namespace settings::dhcp_server {

class Level;

// A place in the file, and the whole unit. It holds no settings and does not own the document.
class Area {
public:
    // `name` is the place's word in messages; the whole unit is called ":".
    explicit Area(std::string name = ":");
    virtual ~Area() = default;

    // The first node of the place; reports a place that is not there.
    virtual Node GetNode(const File& file) const;
    // What the path behind the place finds. `tail` is null or "" for the place's own nodes, otherwise it
    // begins with "/".
    virtual NodeSet Select(const File& file, const char* tail) const;

    const std::string& Name() const { return name_; }

    // The place as it stands in the document: the level that a walk has bound to it, otherwise what Select
    // finds now. Every rule asks this, whether a walk or an edit asks the rule.
    std::shared_ptr<Level> LevelIn(const File& file) const;
    // The level is what Select would find; the walk knows it without searching the document again.
    void Bind(std::shared_ptr<Level> level) { level_ = std::move(level); }

protected:
    // `missing` is the error text of a place that is not there.
    Area(std::string name, Format<std::string> missing);

private:
    std::string name_;
    Format<std::string> missing_;
    std::shared_ptr<Level> level_;
};

class Network : public Area {
public:
    using Area::Area;
};

class Subnet : public Network {
protected:
    using Network::Network;
};

// A subnet that the server serves on an interface of its own.
class LocalSubnet : public Subnet {
public:
    explicit LocalSubnet(const std::string& interface);
    NodeSet Select(const File& file, const char* tail) const override;

private:
    std::string interface_;
};

// A subnet that is reached through relays.
class RemoteSubnet : public Subnet {
public:
    RemoteSubnet(const std::string& address, const std::string& netmask);
    const std::string& Address() const { return address_; }
    const std::string& Netmask() const { return netmask_; }
    NodeSet Select(const File& file, const char* tail) const override;

private:
    std::string address_;
    std::string netmask_;
};

// A host, in whatever subnet it stands.
class Host : public Network {
public:
    explicit Host(const std::string& host_name);
    NodeSet Select(const File& file, const char* tail) const override;

private:
    std::string host_name_;
};

std::vector<Node> ToList(const NodeSet& nodes);

// Queries below an area, with a printf-style relative path. The short forms give the area's own nodes.
NodeSet SelectTail(const Area& area, const File& file, const std::string& tail);
template <class... Arguments>
NodeSet SelectIn(const Area& area, const File& file, FormatFor<Arguments...> format,
                 const Arguments&... arguments) {
    return SelectTail(area, file, FormatText<Arguments...>(format, arguments...));
}
template <class... Arguments>
Node FirstIn(const Area& area, const File& file, FormatFor<Arguments...> format,
             const Arguments&... arguments) {
    return SelectIn<Arguments...>(area, file, format, arguments...).At(0);
}
NodeSet SelectIn(const Area& area, const File& file);
Node FirstIn(const Area& area, const File& file);

} // namespace settings::dhcp_server
