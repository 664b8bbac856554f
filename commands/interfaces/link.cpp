#include "commands/interfaces/link.h"

#include "commands/arguments/arguments.h"
#include "commands/interfaces/command_frame.h"
#include "commands/interfaces/roles.h"
#include "platform/messages.h"
#include "platform/network.h"

#include <iostream>

namespace interfaces {
namespace {

using corvanshell::InterfaceEntry;

constexpr const char* kSpeedScript = "/sbin/eth_speed_duplex.sh ";

bool IsDuplex(const std::string& text) {
    return text == "full" || text == "half";
}

bool SetSystemMtu(const std::string& name, int mtu) {
    return corvanshell::set_interface_mtu(name, mtu) || Refuse("%s: failed to set MTU to: %d", name, mtu);
}

// A child that refuses the MTU does not stop its brothers.
bool SetMtuOfChildren(InterfaceEdit& edit, const std::string& value, int mtu) {
    for (const std::string& child : ListVlanChildren(edit.record, edit.Name())) {
        InterfaceEntry entry = edit.record.Interfaces().at(child);
        const std::string system_name = edit.Name() + "." + entry.vlan;
        LogInfo("%s: set MTU to: %d", system_name, mtu);
        if (!SetSystemMtu(system_name, mtu))
            continue;
        entry.mtu = value;
        edit.record.AddInterface(child, entry, true);
        if (!WriteRecord(edit.record))
            return false;
    }
    return true;
}

// A failure of the link's own programs, or of the interface's kind.
bool RefuseLink(const std::string& text) {
    return WriteAndLog(std::cerr, "<IFCONF_SPD> ", text);
}

bool CheckNoVlanChild(const InterfaceEdit& edit, const std::string& head) {
    return edit.entry.parent.empty() || RefuseLink(head + "Can't set speed for the vlan child interface.");
}

bool SaveLink(InterfaceEdit& edit, const std::string& speed, const std::string& duplex,
              const std::string& autoneg, const std::string& text) {
    edit.entry.speed = speed;
    edit.entry.duplex = duplex;
    edit.entry.autoneg = autoneg;
    if (!edit.Save())
        return false;
    LogInfo("<IFCONF_SPD>  %s", text);
    return true;
}

} // namespace

bool SetMtu(const std::string& name, const std::string& value) {
    LogInfo("command: inet ifconfig %s mtu %s", name, value);
    InterfaceEdit edit(name);
    if (!OpenForChange(edit) || !arguments::Check({{value, arguments::IsMtu, "MTU"}}))
        return false;
    const int mtu = value.empty() || value == "auto" ? corvanshell::default_mtu : std::stoi(value);
    if (!SetSystemMtu(name, mtu))
        return false;
    if (edit.entry.interface_class == corvanshell::kTrunkClass && !SetMtuOfChildren(edit, value, mtu))
        return false;
    edit.entry.mtu = value;
    return edit.Save();
}

bool SetSpeed(const std::string& name, const std::string& speed, const std::string& duplex,
              const std::string& autoneg) {
    InterfaceEdit edit(name);
    if (!IsNameUsable(name) ||
        !arguments::Check({{speed, arguments::IsNumber, "speed"},
                           {duplex, IsDuplex, "duplex"},
                           {autoneg, arguments::IsOnOff, "autoneg"}}) ||
        !edit.Load())
        return false;
    const std::string command = "Command: inet ifconfig " + name + " speed " + speed + " duplex " + duplex;
    if (!CheckNoVlanChild(edit, command))
        return false;
    const std::string head = command + "autoneg  " + autoneg;
    const std::string values = name + " " + speed + " " + duplex;
    if (!RunLine(kSpeedScript + ("validate " + values)))
        return RefuseLink(head + "The given values of speed and duplex are not valid for interface");
    if (!RunLine(kSpeedScript + ("set_speed " + values + " " + autoneg)))
        return RefuseLink(head + " returned an error.");
    return SaveLink(edit, speed, duplex, autoneg, head);
}

bool SetSpeedAuto(const std::string& name) {
    InterfaceEdit edit(name);
    if (!IsNameUsable(name) || !edit.Load())
        return false;
    const std::string head = "Command: inet ifconfig " + name + " speed auto. ";
    if (!CheckNoVlanChild(edit, head))
        return false;
    if (!RunLine("/sbin/ethtool -s " + name + " autoneg on 2>/dev/null"))
        return RefuseInLog("<IFCONF_SPD> %s speed auto'.", head); // the log alone tells this one
    return SaveLink(edit, "auto", "", "auto", head + " speed auto.");
}

} // namespace interfaces
