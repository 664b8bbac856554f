#include "commands/interfaces/bonding.h"
#include "commands/interfaces/bonding_report.h"
#include "commands/interfaces/bonding_values.h"
#include "commands/interfaces/roles.h"
#include "tests/commands/interfaces/interfaces_fixture.h"

namespace interfaces {
namespace {

class BondingTest : public InterfacesTest {
protected:
    // The commands by their lines.
    void Add(const std::string& number, const std::string& mode, const std::vector<std::string>& slaves) {
        std::string line = "inet bonding add " + number + " " + mode + " slaves";
        for (const std::string& slave : slaves)
            line += " " + slave;
        Play(line, [&] { return AddBond(number, mode, slaves); });
    }
    void Delete(const std::string& number, const std::string& input = "") {
        Play(
            "inet bonding delete " + number, [&] { return DeleteBond(number); }, input);
    }
    void Slave(const std::string& bond, const std::string& action, const std::string& slave) {
        Play("inet ifconfig " + bond + " bonding " + action + " " + slave,
             [&] { return action == "add" ? AddSlave(bond, slave) : DeleteSlave(bond, slave); });
    }
    void Set(const std::string& bond, const std::string& option, const std::string& value) {
        Play("inet ifconfig " + bond + " bonding " + option + " " + value,
             [&] { return SetBondOption(bond, option, value); });
    }
    void Enslave(const std::string& name, const std::string& input = "") {
        Play(
            "inet ifconfig " + name + " class slave", [&] { return SetSlaveClass(name); }, input);
    }
    static void Switch(const std::string& device) {
        support::WriteFile("/mnt/main/etc/l2overip.conf", "mode = switch\ndevice = " + device + "\n");
    }
};

TEST_F(BondingTest, Refusals) {
    Add("4", "broadcast", {});
    Add("1x", "broadcast", {});
    Add("0", "broadcast", {});
    Add("2", "balance-alb", {});
    support::Queue("/sbin/ifconfig", {.out = std::string(400, '\n')});
    Add("2", "broadcast", {});
    for (const std::vector<std::string>& slaves :
         {ShellWords{"eth4", "eth1", "eth4"}, {"eth4", "eth1"}, {"eth5"}, {"eth4", "a", "b", "c"}}) {
        support::Queue("/sbin/ifconfig", {.out = "\n\n"});
        Add("2", "broadcast", slaves);
    }
    Delete("7");
    Delete("3");
    Slave("bond3", "add", "eth4");
    Slave("eth1", "add", "eth4");
    Slave("bond0", "add", "eth9");
    Slave("bond0", "add", "eth5");
    Slave("bond0", "delete", "eth1");
    Slave("bond0", "delete", "eth4");
    Slave("bond0", "delete", "eth5"); // the last one
    for (const char* miimon : {"0", "1001", "x"})
        Set("bond0", "miimon", miimon);
    const char* const options[] = {"mode", "ad-select", "lacp-rate", "xmit-hash-policy", "primary"};
    for (const char* option : options)
        Set("bond0", option, "x");
    for (const char* slave : {"eth1", "eth4"})
        Set("bond0", "primary", slave);
    Set("bond0", "colour", "red");
    AlterEntry("bond0", [](auto& entry) { entry.bonding_mode = "802.3ad"; });
    for (const char* option : options)
        Set("bond0", option, "x");
    Alter([](CConfStruct& record) {
        for (const char* name : {"eth6", "eth7"})
            record.AddInterface(name, record.Interfaces().at("eth5"), true);
    });
    Slave("bond0", "add", "eth4"); // the fourth one
    Switch("bond0");
    Delete("0");
    unlink("/mnt/main/etc/l2overip.conf");
    GiveToDhcp("bond0", "eth2");
    Delete("0");
    unlink(SettingsFile("dhcp-server").c_str());
    // No command selects this mode, and a file that holds it is honoured.
    AlterEntry("bond0", [](auto& entry) {
        entry.bonding_mode = "balance-alb";
        entry.bonding_miimon = "0";
    });
    Set("bond0", "primary", "none");
    ExpectTranscript("interfaces/bond_refusals");
}

// From the making of a bond to its end. The script's failures are told, and the settings stay.
TEST_F(BondingTest, LifeOfABond) {
    PlayWithFailures("inet bonding add 02 802.3ad slaves eth4",
                     [] {
                         return AddBond("02", "802.3ad", {"eth4", ""});
                     },
                     "", {{"/sbin/ifconfig", "header\nlo\n"}});
    support::Queue("/sbin/ifconfig", {.out = "header\nlo\n"});
    Add("2", "802.3ad", {"eth4"});
    Set("bond2", "ad-select", "count");
    Set("bond2", "lacp-rate", "fast");
    Set("bond2", "xmit-hash-policy", "layer3+4");
    Set("bond2", "miimon", "1000");
    Set("bond2", "mode", "active-backup");
    PlayWithFailures("inet ifconfig bond2 bonding primary eth4",
                     [] { return SetBondOption("bond2", "primary", "eth4"); });
    Set("bond2", "primary", "eth4");
    AlterEntry("eth1", [](auto& entry) { entry.interface_class = "slave"; });
    PlayWithFailures("inet ifconfig bond2 bonding add eth1", [] { return AddSlave("bond2", "eth1"); });
    Slave("bond2", "add", "eth1");
    for (const char* name : {"bond2", "eth4", "eth0"})
        Play(std::string("show ") + name, [&] {
            PrintBondingInfo(name);
            return true;
        });
    PlayWithFailures("inet ifconfig bond2 bonding delete eth4", [] { return DeleteSlave("bond2", "eth4"); });
    Slave("bond2", "delete", "eth4");
    Set("bond2", "primary", "none");
    Play("show eth4", [] {
        PrintBondingInfo("eth4");
        return true;
    });
    Set("bond2", "mode", "balance-xor"); // with a new bond's policy again
    AlterEntry("bond2", [](auto& entry) { entry.address = "dhcp"; });
    Delete("2");
    PlayWithFailures(
        "inet bonding delete 2", [] { return DeleteBond("2"); }, "y\n");
    ExpectTranscript("interfaces/bond_life");
}

TEST_F(BondingTest, SlaveClass) {
    PlayWithFailures(
        "inet ifconfig eth1 class slave", [] { return SetSlaveClass("eth1"); }, "y\n");
    Enslave("eth1");
    for (const char* name : {"eth9", "bond0", "eth3.5", "eth3"})
        Enslave(name);
    Switch("eth1");
    Enslave("eth1");
    GiveToDhcp("eth0", "eth2");
    Enslave("eth0");
    Enslave("eth2");
    ExpectTranscript("interfaces/slave_class");
}

TEST_F(BondingTest, RolesThatAreRefused) {
    for (const char* name : {"eth1", "bond0", "eth4", "eth5"}) {
        for (unsigned int mask = 0; mask < 8; ++mask)
            Play("role of " + std::string(name) + ", mask " + std::to_string(mask),
                 [&] { return !IsInterfaceRoleRefused(name, mask, 1); });
    }
    ExpectTranscript("interfaces/roles");
}

TEST_F(BondingTest, ArgumentsOfferTheirWords) {
    EXPECT_EQ(value::BondingFreeBondId().list(), (ShellWords{"1", "2", "3"}));
    EXPECT_EQ(value::BondingUsedBondId().list(), ShellWords{"0"});
    EXPECT_EQ(value::BondingLooseSlaveInterface().list(), ShellWords{"eth4"});
    EXPECT_EQ(value::BondingPrimarySlaveInterface().list(), (ShellWords{"eth5", "none"}));
    detail::in_node<value::BondingMode, void> node;
    EXPECT_EQ(node.completion(), (ShellWords{"balance-rr", "balance-xor", "balance-tlb", "active-backup",
                                             "broadcast", "802.3ad"}));
    ShellArguments taken;
    node.set_action(
        [](const ShellArguments& words) { return boost::any_cast<std::string>(words.at(0)) == "802.3ad"; });
    EXPECT_TRUE(node.execute("802.3ad", taken, {"802.3ad"}, 1));
}

} // namespace
} // namespace interfaces
