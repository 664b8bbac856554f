#include "commands/interfaces/vlans.h"

#include "commands/arguments/arguments.h"
#include "commands/interfaces/command_frame.h"
#include "commands/l2overip/configuration.h"
#include "platform/console.h"
#include "platform/log.h"
#include "platform/path_list.h"
#include "platform/processes.h"

#include <algorithm>
#include <boost/algorithm/string/case_conv.hpp>
#include <cerrno>
#include <cstring>
#include <sstream>
#include <sys/wait.h>

namespace interfaces {
namespace {

using corvanshell::CConfStruct;
using corvanshell::InterfaceEntry;

constexpr int kExists = 2; // ip(8) ends so when the kernel refuses the interface

bool IsComment(const std::string& text) {
    return !text.empty() && std::none_of(text.begin(), text.end(),
                                         [](unsigned char letter) { return letter < ' ' || letter == 0x7f; });
}

// The parts of a failed or refused deletion's log line.
bool LogDeletion(const std::string& parent, const std::string& id, const std::string& what) {
    shell_log_error("<I_VLAN_DELETE>  Command: inet ifconfig %s vlan delete %s : %s", parent.c_str(),
                    id.c_str(), what.c_str());
    return false;
}

bool IsVlanKnown(const CConfStruct& record, const std::string& id) {
    return std::any_of(record.Interfaces().begin(), record.Interfaces().end(),
                       [&](const auto& row) { return row.second.vlan == id; });
}

bool MayAddVlan(const InterfaceEdit& trunk, const std::string& id) {
    if (trunk.entry.interface_class != corvanshell::kTrunkClass) {
        shell_print_error("interface %s is not of the class trunk", trunk.CName());
        return false;
    }
    if (!HasRoomForAdapter(""))
        return false;
    if (IsVlanKnown(trunk.record, id)) {
        shell_print_error("failed to create interface because VLAN ID %s is in use", id.c_str());
        return false;
    }
    return true;
}

// /sbin/ip link add link eth1 name eth1.5 type vlan id 5 2>&1
bool CreateLink(const std::string& parent, const std::string& id) {
    std::string output;
    const std::string line =
        "/sbin/ip link add link " + parent + " name " + parent + "." + id + " type vlan id " + id + " 2>&1";
    const int status = corvanshell::run(line.c_str(), output);
    if (status == 0)
        return true;
    if (!output.empty())
        shell_log_error("%s", output.c_str());
    if (status == kExists)
        shell_print_error("VLAN interface %s.%s already exists", parent.c_str(), id.c_str());
    else
        shell_print_error("failed to create VLAN interface %s.%s", parent.c_str(), id.c_str());
    return false;
}

InterfaceEntry MakeChild(const InterfaceEdit& trunk, const std::string& id) {
    InterfaceEntry child = corvanshell::MakeInterfaceEntry();
    child.vlan = id;
    child.parent = boost::to_lower_copy(trunk.Name());
    child.mtu = trunk.entry.mtu;
    return child;
}

// grep(1) finds a child of eth10 for eth1, too.
bool IsChildOfAnother(const InterfaceEdit& trunk, const std::string& child) {
    InterfaceEntry entry;
    return trunk.record.FindInterface(boost::to_lower_copy(child), entry) && entry.parent != trunk.Name();
}

bool CheckDeletion(const InterfaceEdit& trunk, const std::string& id, const std::string& child) {
    const std::string& parent = trunk.Name();
    if (child.empty() || IsChildOfAnother(trunk, child))
        return LogDeletion(parent, id, "cannot get vlan interface name.");
    if (IsL2OverIpSwitchOn(child))
        return LogDeletion(parent, id, "L2OverIP configured as switch for this interface.");
    const char* user = nullptr;
    if (!CheckDhcpServer(child, {}))
        user = "server";
    else if (!CheckDhcpRelay(child, {.going_down = true, .address_changes = true}))
        user = "relay";
    if (user != nullptr)
        shell_print_error(
            "<I_VLAN_DELETE>  Command: inet ifconfig %s vlan delete %s : DHCP %s uses the interface. "
            "Command ignored",
            parent.c_str(), id.c_str(), user);
    return user == nullptr;
}

// One step of a deletion; a failure is in the log.
bool Run(const InterfaceEdit& trunk, const std::string& id, const std::string& line) {
    const int status = BaseExec::run(line);
    if (status == 0)
        return true;
    const int code = status == -1 ? errno : WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    shell_log_error(
        "<I_VLAN_DELETE> Command: inet ifconfig %s vlan delete %s : cannot execute '%s' Error code %d (%s).",
        trunk.CName(), id.c_str(), line.c_str(), code, status == -1 ? std::strerror(code) : "exit status");
    return false;
}

// Whether the system has another VLAN interface of that ID.
bool IsVlanInSystem(const std::string& id) {
    std::string output;
    const std::string line =
        "test -f /proc/net/vlan/config && sed -n '3,$p' /proc/net/vlan/config 2>/dev/null "
        "| grep \" " +
        id + " \"";
    corvanshell::run(line.c_str(), output);
    return !output.empty();
}

} // namespace

std::string GetVlanInterfaceName(const std::string& parent, const std::string& id) {
    std::string output;
    const std::string line = "test -e /proc/net/vlan/config && grep " + parent +
                             " /proc/net/vlan/config | grep \" " + id + " \" | awk {'print $1'}";
    if (const int status = corvanshell::run(line.c_str(), output); status != 0)
        shell_log_error("<I_VLAN_GET_NAME> Error get_vlan_interface_name: %s",
                        output.empty() ? ("exit status " + std::to_string(status)).c_str() : output.c_str());
    std::string name;
    std::istringstream(output) >> name;
    return arguments::IsInterfaceName(name) ? name : "";
}

bool AddVlan(const std::string& parent, unsigned long number) {
    shell_log_info("command: inet ifconfig %s VLAN add %lu", parent.c_str(), number);
    const std::string id = std::to_string(number);
    InterfaceEdit trunk(parent);
    if (!IsNameUsable(parent) || !trunk.Load() || !MayAddVlan(trunk, id) || !CreateLink(parent, id))
        return false;
    const std::string child = GetVlanInterfaceName(parent, id);
    if (child.empty()) {
        shell_print_error("VLAN interface name is empty");
        return false;
    }
    trunk.record.AddInterface(boost::to_lower_copy(child), MakeChild(trunk, id), true);
    if (!WriteRecord(trunk.record))
        return false;
    const char* const state = trunk.entry.up ? "up" : "down";
    if (shell_spawn("/sbin/ip", "link", "set", child.c_str(), state, nullptr) != 0)
        shell_print_error("%s: failed to set the VLAN interface state to %s", child.c_str(), state);
    shell_print_info("New VLAN interface %s was created.", child.c_str());
    return true;
}

bool DeleteVlan(const std::string& parent, const std::string& id) {
    InterfaceEdit trunk(parent);
    if (!IsNameUsable(parent) || !arguments::Check({{id, arguments::IsNumber, "VLAN ID"}}) || !trunk.Load())
        return false;
    if (trunk.entry.interface_class != corvanshell::kTrunkClass) {
        const char* const text = "Interface not class trunk. Command ignored.";
        LogDeletion(parent, id, text);
        Print(text);
        return false;
    }
    const std::string child = GetVlanInterfaceName(parent, id);
    if (!CheckDeletion(trunk, id, child))
        return false;
    static_cast<void>(Run(trunk, id, "ifconfig " + child + " down")); // its failure does not keep the link
    if (!Run(trunk, id, "/sbin/ip link delete " + child + " type vlan"))
        return false;
    trunk.record.RemoveInterface(boost::to_lower_copy(child));
    if (!IsVlanInSystem(id))
        trunk.record.RemoveVlanComment(id);
    if (!WriteRecord(trunk.record))
        return false;
    shell_log_info("<I_VLAN_DELETE> Command: inet ifconfig %s vlan delete %s, vlan interface %s was deleted.",
                   parent.c_str(), id.c_str(), child.c_str());
    Print("vlan interface " + child + " was deleted.");
    return true;
}

bool AddVlanComment(const std::string& id, const std::string& text) {
    CConfStruct record(path_list::local_settings, true);
    if (!arguments::Check({{id, arguments::IsNumber, "VLAN ID"}, {text, IsComment, "comment"}}) ||
        !IsReadable(record))
        return false;
    record.SetVlanComment(id, text);
    if (!WriteRecord(record))
        return false;
    shell_log_info("<I_VLAN_COMMENT_ADD> Command: inet vlan %s comment add \"%s\"", id.c_str(), text.c_str());
    return true;
}

bool DeleteVlanComment(const std::string& id) {
    CConfStruct record(path_list::local_settings, true);
    if (!arguments::Check({{id, arguments::IsNumber, "VLAN ID"}}) || !IsReadable(record))
        return false;
    record.RemoveVlanComment(id);
    if (!WriteRecord(record))
        return false;
    shell_log_info("<I_VLAN_COMMENT_DELETE> Command: inet vlan %s comment delete", id.c_str());
    return true;
}

} // namespace interfaces
