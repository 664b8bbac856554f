#include "commands/interfaces/bonding.h"

#include "commands/arguments/arguments.h"
#include "commands/interfaces/bond_options.h"
#include "commands/interfaces/bonding_values.h"
#include "commands/interfaces/command_frame.h"
#include "commands/interfaces/roles.h"
#include "commands/l2overip/configuration.h"
#include "platform/console.h"
#include "platform/log.h"
#include "platform/network.h"
#include "platform/processes.h"

#include <algorithm>
#include <set>

namespace interfaces {
namespace {

using corvanshell::CConfStruct;
using corvanshell::InterfaceEntry;

constexpr const char* kBondingScript = "/sbin/bonding.sh";
constexpr const char* kNoBond = "bond interface does not exist";

bool CheckSlaveCount(const std::string& bond, std::size_t count) {
    if (count > kMaximumSlaves)
        shell_print_error("%s: maximum %zu slave interfaces per bonding is allowed", bond.c_str(),
                          kMaximumSlaves);
    return count <= kMaximumSlaves;
}

// The interface's name, from a number in the range of bonds; "" and reported for another.
std::string BondNameInRange(const std::string& number) {
    if (arguments::IsNumber(number) && std::stoul(number) <= kMaximumBondNumber)
        return BondName(std::to_string(std::stoul(number)));
    shell_print_error("%s: bond interface number is out of range 0 - %zu", BondName(number).c_str(),
                      kMaximumBondNumber);
    return "";
}

// The head of the commands on one bond.
bool OpenBond(InterfaceEdit& edit) {
    if (!IsNameUsable(edit.Name()) || !edit.Load(kNoBond))
        return false;
    if (IsBond(edit.Name(), edit.entry))
        return true;
    shell_print_error("%s: is not bond interface", edit.CName());
    return false;
}

bool CheckLooseSlave(const std::string& name, const InterfaceEntry& entry) {
    if (!CheckSlaveClass(name, entry))
        return false;
    if (entry.master.empty())
        return true;
    shell_print_error("%s: interface already has bond master interface: %s", name.c_str(),
                      entry.master.c_str());
    return false;
}

// An interface that is not there has no class.
InterfaceEntry FindEntry(const CConfStruct& record, const std::string& name) {
    InterfaceEntry entry;
    static_cast<void>(record.FindInterface(name, entry));
    return entry;
}

bool AreDifferent(const std::vector<std::string>& slaves) {
    std::set<std::string> seen;
    for (const std::string& slave : slaves) {
        if (seen.insert(slave).second)
            continue;
        shell_print_error("%s: duplicate slave interface", slave.c_str());
        return false;
    }
    return true;
}

bool AreLooseSlaves(const CConfStruct& record, const std::vector<std::string>& slaves) {
    return std::all_of(slaves.begin(), slaves.end(), [&](const std::string& slave) {
        return CheckLooseSlave(slave, FindEntry(record, slave));
    });
}

InterfaceEntry MakeBond(const std::string& name, const std::string& mode) {
    InterfaceEntry bond = corvanshell::MakeInterfaceEntry();
    bond.master = name;
    bond.bonding_mode = mode;
    bond.bonding_miimon = "100";
    FillBondWords(bond);
    return bond;
}

void SetMaster(CConfStruct& record, const std::string& slave, const std::string& master) {
    InterfaceEntry entry = FindEntry(record, slave);
    entry.master = master;
    record.AddInterface(slave, entry, true);
}

// The questions to the others before an interface becomes a slave. The server is asked twice, and the second
// time with the class.
bool MayBecomeSlave(const InterfaceEdit& edit) {
    const char* const name = edit.CName();
    if (IsBond(edit.Name(), edit.entry)) {
        shell_print_error("%s: bond interface cannot be enslaved", name);
        return false;
    }
    if (!edit.entry.vlan.empty()) {
        shell_print_error("%s: VLAN interface cannot be enslaved", name);
        return false;
    }
    if (IsL2OverIpSwitchOn(edit.Name())) {
        shell_print_error("%s: interface configured as switch for L2OverIP", name);
        return false;
    }
    if (!CheckDhcpServer(edit.Name(), {.new_class = corvanshell::kSlaveClass})) {
        shell_print_error(
            "Command: inet ifconfig %s class slave: DHCP server uses the interface. Command ignored", name);
        return false;
    }
    if (shell_spawn("/sbin/ifclass_check.sh", name, "slave", nullptr) != 0) {
        shell_print_error("%s: interface cannot be enslaved", name);
        return false;
    }
    return true;
}

// The step of ClearInterfaceForBonding that runs programs.
bool FlushAddresses(const std::string& name, const InterfaceEntry& entry) {
    int status = 0;
    if (IsDhcpConfigured(entry))
        status = shell_spawn("/sbin/dhcpclient.sh", "stop", name.c_str(), nullptr);
    if (status == 0)
        status = shell_spawn("/sbin/ip", "address", "flush", "dev", name.c_str(), nullptr);
    if (status != 0)
        shell_print_error("%s: failed to flush interface with error: %d", name.c_str(), status);
    return status == 0;
}

} // namespace

bool ClearInterfaceForBonding(const CConfStruct& record, const std::string& name, InterfaceEntry& entry) {
    if (entry.interface_class == corvanshell::kTrunkClass && !ListVlanChildren(record, name).empty()) {
        shell_print_error("%s: trunk interface has VLAN children interfaces", name.c_str());
        return false;
    }
    if (HasAddress(entry) &&
        shell_get_user_confirmation(
            "All IP addresses and their aliases on %s interface will be removed. Continue?", name.c_str()) ==
            0) {
        shell_print_warning("command was terminated by user");
        return false;
    }
    if (!FlushAddresses(name, entry))
        return false;
    if (!corvanshell::set_interface_mtu(name, corvanshell::default_mtu)) {
        shell_print_error("%s: failed to reset MTU to: %d", name.c_str(), corvanshell::default_mtu);
        return false;
    }
    entry.mtu = "auto";
    ClearAddresses(entry);
    return true;
}

bool AddBond(const std::string& number, const std::string& mode, const std::vector<std::string>& named) {
    std::vector<std::string> slaves = named;
    slaves.resize(std::max(slaves.size(), kMaximumSlaves));
    shell_log_info("command: inet bonding add %s slaves %s %s %s", number.c_str(), slaves[0].c_str(),
                   slaves[1].c_str(), slaves[2].c_str());
    std::erase(slaves, "");
    const std::string name = BondNameInRange(number);
    if (name.empty())
        return false;
    InterfaceEdit bond(name);
    if (!IsReadable(bond.record))
        return false;
    if (bond.record.Interfaces().contains(name)) {
        shell_print_error("%s: bond interface already exists", name.c_str());
        return false;
    }
    if (!IsOneOf(BondingModes(), mode)) {
        shell_print_error("%s: unknown bonding mode: %s", name.c_str(), mode.c_str());
        return false;
    }
    if (!HasRoomForAdapter(".") || !CheckSlaveCount(name, slaves.size()) || !AreDifferent(slaves) ||
        !AreLooseSlaves(bond.record, slaves))
        return false;
    for (const std::string& slave : slaves)
        SetMaster(bond.record, slave, name);
    bond.entry = MakeBond(name, mode);
    if (!bond.Save())
        return false;
    if (const int status = shell_spawn(kBondingScript, "populate", name.c_str(), nullptr); status != 0) {
        shell_print_error("%s: failed to add bond interface with error: %d", name.c_str(), status);
        return false;
    }
    shell_print_info("New bond interface %s was created.", name.c_str());
    return true;
}

bool DeleteBond(const std::string& number) {
    shell_log_info("command: inet bonding delete %s", number.c_str());
    const std::string name = BondNameInRange(number);
    if (name.empty())
        return false;
    InterfaceEdit bond(name);
    if (!bond.Load(kNoBond))
        return false;
    if (IsL2OverIpSwitchOn(name)) {
        shell_print_error("%s: interface is used for L2OverIP", name.c_str());
        return false;
    }
    if (!CheckDhcpServer(name, {})) {
        shell_print_error("%s: interface is used for DHCP.", name.c_str());
        return false;
    }
    if (!ClearInterfaceForBonding(bond.record, name, bond.entry))
        return false;
    for (const std::string& slave : ListSlaves(bond.record, name))
        SetMaster(bond.record, slave, "");
    bond.record.RemoveInterface(name);
    if (!WriteRecord(bond.record))
        return false;
    const int status = shell_spawn(kBondingScript, "delete", name.c_str(), "all", nullptr);
    if (status != 0)
        shell_print_error("%s: failed to delete bond interface with error: %d", name.c_str(), status);
    return status == 0;
}

bool SetSlaveClass(const std::string& name) {
    shell_log_info("command: inet ifconfig %s class slave", name.c_str());
    if (!IsNameUsable(name))
        return false;
    if (!CheckDhcpServer(name, {})) {
        shell_print_error("<I_IFCLASS_SLAVE>  Command: inet ifconfig %s class slave: DHCP server uses the "
                          "interface. Command ignored",
                          name.c_str());
        return false;
    }
    if (!CheckDhcpRelay(name, {.new_class = corvanshell::kSlaveClass})) {
        shell_print_error("<I_IFCLASS_SLAVE>  Command: inet ifconfig %s class slave: DHCP relay uses the "
                          "interface. Command ignored",
                          name.c_str());
        return false;
    }
    InterfaceEdit edit(name);
    if (!edit.Load() || !MayBecomeSlave(edit) || !ClearInterfaceForBonding(edit.record, name, edit.entry))
        return false;
    edit.entry.interface_class = corvanshell::kSlaveClass;
    if (!edit.Save())
        return false;
    shell_print_info("%s set to slave class.", name.c_str());
    return true;
}

bool AddSlave(const std::string& bond_name, const std::string& slave) {
    shell_log_info("inet ifconfig %s bonding add %s", bond_name.c_str(), slave.c_str());
    InterfaceEdit bond(bond_name);
    if (!OpenBond(bond) || !CheckLooseSlave(slave, FindEntry(bond.record, slave)))
        return false;
    if (!CheckSlaveCount(bond_name, ListSlaves(bond.record, bond_name).size() + 1))
        return false;
    SetMaster(bond.record, slave, bond_name);
    if (!bond.Save())
        return false;
    const int status = shell_spawn(kBondingScript, "add", bond.CName(), slave.c_str(), nullptr);
    if (status != 0)
        shell_print_error("%s: failed to add slave interface %s with error: %d", bond.CName(), slave.c_str(),
                          status);
    return status == 0;
}

bool DeleteSlave(const std::string& bond_name, const std::string& slave) {
    shell_log_info("inet ifconfig %s bonding delete %s", bond_name.c_str(), slave.c_str());
    InterfaceEdit bond(bond_name);
    if (!OpenBond(bond))
        return false;
    const InterfaceEntry entry = FindEntry(bond.record, slave);
    if (!CheckSlaveClass(slave, entry))
        return false;
    if (entry.master != bond_name) {
        shell_print_error("%s: slave interface has unexpected bond master interface: %s", slave.c_str(),
                          MasterText(entry));
        return false;
    }
    if (ListSlaves(bond.record, bond_name).size() == kMinimumSlaves) {
        shell_print_error("%s: minimum %zu slave interfaces per bonding is allowed", bond.CName(),
                          kMinimumSlaves);
        return false;
    }
    SetMaster(bond.record, slave, "");
    if (bond.entry.bonding_primary == slave)
        bond.entry.bonding_primary.clear();
    if (!bond.Save())
        return false;
    const int status = shell_spawn(kBondingScript, "delete", bond.CName(), slave.c_str(), nullptr);
    if (status != 0)
        shell_print_error("%s: failed to delete slave interface %s with error: %d", bond.CName(),
                          slave.c_str(), status);
    return status == 0;
}

bool SetBondOption(const std::string& bond_name, const std::string& option, const std::string& value) {
    shell_log_info("command: inet ifconfig %s bonding %s %s", bond_name.c_str(), option.c_str(),
                   value.c_str());
    InterfaceEdit bond(bond_name);
    if (!OpenBond(bond) || !SetOption(bond, option, value) || !bond.Save())
        return false;
    const int status =
        shell_spawn(kBondingScript, "set", bond.CName(), option.c_str(), value.c_str(), nullptr);
    if (status != 0)
        shell_print_error("%s: failed to set bonding option %s with error: %d", bond.CName(), option.c_str(),
                          status);
    return status == 0;
}

} // namespace interfaces
