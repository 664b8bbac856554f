#include "commands/interfaces/vlans.h"

#include "commands/arguments/arguments.h"
#include "commands/interfaces/command_frame.h"
#include "commands/interfaces/users.h"
#include "commands/l2overip/configuration.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "platform/processes.h"

#include <algorithm>
#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <sstream>
#include <sys/wait.h>
#include <vector>

namespace interfaces {
namespace {

using corvanshell::CConfStruct;
using corvanshell::InterfaceEntry;

constexpr int kExists = 2; // ip(8) ends so when the kernel refuses the interface

bool IsComment(const std::string& text) {
    return !text.empty() && std::none_of(text.begin(), text.end(),
                                         [](unsigned char letter) { return letter < ' ' || letter == 0x7f; });
}

// A refused deletion that the log alone tells.
bool RefuseDeletion(const std::string& parent, const std::string& id, const char* reason) {
    return RefuseInLog("<I_VLAN_DELETE>  Command: inet ifconfig %s vlan delete %s : %s", parent, id, reason);
}

bool IsVlanKnown(const CConfStruct& record, const std::string& id) {
    return std::any_of(record.Interfaces().begin(), record.Interfaces().end(),
                       [&](const auto& row) { return row.second.vlan == id; });
}

bool MayAddVlan(const InterfaceEdit& trunk, const std::string& id) {
    if (trunk.entry.interface_class != corvanshell::kTrunkClass)
        return Refuse("interface %s is not of the class trunk", trunk.Name());
    return HasRoomForAdapter("") && (!IsVlanKnown(trunk.record, id) ||
                                     Refuse("failed to create interface because VLAN ID %s is in use", id));
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
        LogError("%s", output);
    return status == kExists ? Refuse("VLAN interface %s.%s already exists", parent, id)
                             : Refuse("failed to create VLAN interface %s.%s", parent, id);
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
        return RefuseDeletion(parent, id, "cannot get vlan interface name.");
    if (IsL2OverIpSwitchOn(child))
        return RefuseDeletion(parent, id, "L2OverIP configured as switch for this interface.");
    const char* const user =
        FindRefusingUser(trunk.record, child, {}, {.going_down = true, .address_changes = true});
    return user == nullptr ||
           Refuse("<I_VLAN_DELETE>  Command: inet ifconfig %s vlan delete %s : DHCP %s uses the interface. "
                  "Command ignored",
                  parent, id, user);
}

// The child among the words that grep(1) found: for eth3 and 8 it finds eth30.8 and vlan8, too.
std::string ChooseChild(const std::string& output, const std::string& usual_name) {
    std::istringstream stream(output);
    const std::vector<std::string> names{std::istream_iterator<std::string>(stream), {}};
    if (names.empty() || std::find(names.begin(), names.end(), usual_name) != names.end())
        return names.empty() ? "" : usual_name;
    return names.front();
}

// One step of a deletion; a failure is in the log.
bool Run(const InterfaceEdit& trunk, const std::string& id, const std::string& line) {
    const int status = BaseExec::run(line);
    if (status == 0)
        return true;
    const int code = status == -1 ? errno : WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return RefuseInLog(
        "<I_VLAN_DELETE> Command: inet ifconfig %s vlan delete %s : cannot execute '%s' Error code %d (%s).",
        trunk.Name(), id, line, code, status == -1 ? std::strerror(code) : "exit status");
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
        LogError("<I_VLAN_GET_NAME> Error get_vlan_interface_name: %s",
                 output.empty() ? "exit status " + std::to_string(status) : output);
    const std::string name = ChooseChild(output, parent + "." + id);
    return arguments::IsInterfaceName(name) ? name : "";
}

bool AddVlan(const std::string& parent, unsigned long number) {
    LogInfo("command: inet ifconfig %s VLAN add %lu", parent, number);
    const std::string id = std::to_string(number);
    InterfaceEdit trunk(parent);
    if (!IsNameUsable(parent) || !trunk.Load() || !MayAddVlan(trunk, id) || !CreateLink(parent, id))
        return false;
    const std::string child = GetVlanInterfaceName(parent, id);
    if (child.empty())
        return Refuse("VLAN interface name is empty");
    trunk.record.AddInterface(boost::to_lower_copy(child), MakeChild(trunk, id), true);
    if (!WriteRecord(trunk.record))
        return false;
    const char* const state = trunk.entry.up ? "up" : "down";
    if (shell_spawn("/sbin/ip", "link", "set", child.c_str(), state, nullptr) != 0)
        PrintError("%s: failed to set the VLAN interface state to %s", child, state);
    PrintInfo("New VLAN interface %s was created.", child);
    return true;
}

bool DeleteVlan(const std::string& parent, const std::string& id) {
    InterfaceEdit trunk(parent);
    if (!IsNameUsable(parent) || !arguments::Check({{id, arguments::IsNumber, "VLAN ID"}}) || !trunk.Load())
        return false;
    if (trunk.entry.interface_class != corvanshell::kTrunkClass) {
        const char* const text = "Interface not class trunk. Command ignored.";
        WriteLine(text);
        return RefuseDeletion(parent, id, text);
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
    LogInfo("<I_VLAN_DELETE> Command: inet ifconfig %s vlan delete %s, vlan interface %s was deleted.",
            parent, id, child);
    WriteLine("vlan interface " + child + " was deleted.");
    return true;
}

bool AddVlanComment(const std::string& id, const std::string& typed) {
    const std::string text = boost::trim_copy(typed); // as the record is read
    CConfStruct record(path_list::local_settings, true);
    if (!arguments::Check({{id, arguments::IsNumber, "VLAN ID"}, {text, IsComment, "comment"}}) ||
        !record.CheckRead())
        return false;
    record.SetVlanComment(id, text);
    if (!WriteRecord(record))
        return false;
    LogInfo("<I_VLAN_COMMENT_ADD> Command: inet vlan %s comment add \"%s\"", id, text);
    return true;
}

bool DeleteVlanComment(const std::string& id) {
    CConfStruct record(path_list::local_settings, true);
    if (!arguments::Check({{id, arguments::IsNumber, "VLAN ID"}}) || !record.CheckRead())
        return false;
    record.RemoveVlanComment(id);
    if (!WriteRecord(record))
        return false;
    LogInfo("<I_VLAN_COMMENT_DELETE> Command: inet vlan %s comment delete", id);
    return true;
}

} // namespace interfaces
