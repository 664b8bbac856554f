#include "commands/interfaces/link.h"

#include "commands/arguments/arguments.h"
#include "commands/interfaces/command_frame.h"
#include "commands/interfaces/roles.h"
#include "platform/console.h"
#include "platform/log.h"
#include "platform/network.h"

namespace interfaces {
namespace {

using corvanshell::InterfaceEntry;

constexpr const char* kSpeedScript = "/sbin/eth_speed_duplex.sh ";

bool IsMtu(const std::string& value) {
    constexpr std::size_t kDigits = 5; // no interface takes more than 65535 bytes
    return value.empty() || value == "auto" || (value.size() <= kDigits && arguments::IsNumber(value));
}

bool IsDuplex(const std::string& text) {
    return text == "full" || text == "half";
}

bool IsAutoneg(const std::string& text) {
    return text == "on" || text == "off";
}

bool SetSystemMtu(const std::string& name, int mtu) {
    if (corvanshell::set_interface_mtu(name, mtu))
        return true;
    shell_print_error("%s: failed to set MTU to: %d", name.c_str(), mtu);
    return false;
}

// A child that refuses the MTU does not stop its brothers.
bool SetMtuOfChildren(InterfaceEdit& edit, const std::string& value, int mtu) {
    for (const std::string& child : ListVlanChildren(edit.record, edit.Name())) {
        InterfaceEntry entry = edit.record.Interfaces().at(child);
        const std::string system_name = edit.Name() + "." + entry.vlan;
        shell_log_info("%s: set MTU to: %d", system_name.c_str(), mtu);
        if (!SetSystemMtu(system_name, mtu))
            continue;
        entry.mtu = value;
        edit.record.AddInterface(child, entry, true);
        if (!WriteRecord(edit.record))
            return false;
    }
    return true;
}

// A failure told on the error stream and in the log. False, for the caller to end with.
bool Fail(const std::string& text) {
    PrintError(text);
    shell_log_error("<IFCONF_SPD> %s", text.c_str());
    return false;
}

bool CheckNoVlanChild(const InterfaceEdit& edit, const std::string& head) {
    return edit.entry.parent.empty() || Fail(head + "Can't set speed for the vlan child interface.");
}

bool SaveLink(InterfaceEdit& edit, const std::string& speed, const std::string& duplex,
              const std::string& autoneg, const std::string& text) {
    edit.entry.speed = speed;
    edit.entry.duplex = duplex;
    edit.entry.autoneg = autoneg;
    if (!edit.Save())
        return false;
    shell_log_info("<IFCONF_SPD>  %s", text.c_str());
    return true;
}

} // namespace

bool SetMtu(const std::string& name, const std::string& value) {
    shell_log_info("command: inet ifconfig %s mtu %s", name.c_str(), value.c_str());
    InterfaceEdit edit(name);
    if (!OpenForChange(edit) || !arguments::Check({{value, IsMtu, "MTU"}}))
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
                           {autoneg, IsAutoneg, "autoneg"}}) ||
        !edit.Load())
        return false;
    const std::string command = "Command: inet ifconfig " + name + " speed " + speed + " duplex " + duplex;
    if (!CheckNoVlanChild(edit, command))
        return false;
    const std::string head = command + "autoneg  " + autoneg;
    const std::string values = name + " " + speed + " " + duplex;
    if (!RunLine(kSpeedScript + ("validate " + values)))
        return Fail(head + "The given values of speed and duplex are not valid for interface");
    if (!RunLine(kSpeedScript + ("set_speed " + values + " " + autoneg)))
        return Fail(head + " returned an error.");
    return SaveLink(edit, speed, duplex, autoneg, head);
}

bool SetSpeedAuto(const std::string& name) {
    InterfaceEdit edit(name);
    if (!IsNameUsable(name) || !edit.Load())
        return false;
    const std::string head = "Command: inet ifconfig " + name + " speed auto. ";
    if (!CheckNoVlanChild(edit, head))
        return false;
    if (!RunLine("/sbin/ethtool -s " + name + " autoneg on 2>/dev/null")) {
        shell_log_error("<IFCONF_SPD> %s speed auto'.", head.c_str()); // the log alone tells this one
        return false;
    }
    return SaveLink(edit, "auto", "", "auto", head + " speed auto.");
}

} // namespace interfaces
