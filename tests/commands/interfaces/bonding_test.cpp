#include "commands/interfaces/bonding.h"
#include "commands/interfaces/bonding_report.h"
#include "commands/interfaces/bonding_values.h"
#include "commands/interfaces/roles.h"
#include "tests/commands/interfaces/interfaces_fixture.h"

namespace interfaces {
namespace {

using BondingTest = InterfacesTest;

TEST_F(BondingTest, Refusals) {
    Type({"inet bonding add 4 broadcast slaves", "inet bonding add 1x broadcast slaves",
          "inet bonding add 0 broadcast slaves", "inet bonding add 2 balance-alb slaves"});
    support::Queue("/sbin/ifconfig", {.out = std::string(400, '\n')});
    Type({"inet bonding add 2 broadcast slaves"});
    answers_ = {{"/sbin/ifconfig", {"\n\n"}}};
    Type({"inet bonding add 2 broadcast slaves eth4 eth1 eth4",
          "inet bonding add 2 broadcast slaves eth4 eth1", "inet bonding add 2 broadcast slaves eth5"});
    Play("inet bonding add 2 broadcast slaves eth4 a b c", [] {
        return AddBond("2", "broadcast", {"eth4", "a", "b", "c"});
    });
    Type({"inet bonding delete 7", "inet bonding delete 3", "inet ifconfig bond3 bonding add eth4",
          "inet ifconfig eth1 bonding add eth4", "inet ifconfig bond0 bonding add eth9",
          "inet ifconfig bond0 bonding add eth5", "inet ifconfig bond0 bonding delete eth1",
          "inet ifconfig bond0 bonding delete eth4",
          "inet ifconfig bond0 bonding delete eth5", // the last one
          "inet ifconfig bond0 bonding miimon 0", "inet ifconfig bond0 bonding miimon 1001",
          "inet ifconfig bond0 bonding miimon x", "inet ifconfig bond0 bonding primary eth1",
          "inet ifconfig bond0 bonding primary eth4"});
    Play("inet ifconfig bond0 bonding colour red", [] { return SetBondOption("bond0", "colour", "red"); });
    for (const char* mode : {"active-backup", "802.3ad"}) {
        AlterEntry("bond0", [&](auto& entry) { entry.bonding_mode = mode; });
        for (const char* option : {"mode", "ad-select", "lacp-rate", "xmit-hash-policy", "primary"})
            Type({std::string("inet ifconfig bond0 bonding ") + option + " x"});
    }
    Alter([](CConfStruct& record) {
        for (const char* name : {"eth6", "eth7"})
            record.AddInterface(name, record.Interfaces().at("eth5"), true);
    });
    Type({"inet ifconfig bond0 bonding add eth4"}); // the fourth one
    Switch("bond0");
    Type({"inet bonding delete 0"});
    unlink("/mnt/main/etc/l2overip.conf");
    GiveToDhcp("bond0", "eth2");
    Type({"inet bonding delete 0"});
    unlink(SettingsFile("dhcp-server").c_str());
    // No command selects this mode, and a file that holds it is honoured.
    AlterEntry("bond0", [](auto& entry) {
        entry.bonding_mode = "balance-alb";
        entry.bonding_miimon = "0";
    });
    Type({"inet ifconfig bond0 bonding primary none"});
    ExpectTranscript("interfaces/bond_refusals");
}

// From the making of a bond to its end. The script's failures are told, and the settings stay.
TEST_F(BondingTest, LifeOfABond) {
    answers_ = {{"/sbin/ifconfig", {"header\nlo\n"}}};
    Type({"! inet bonding add 02 802.3ad slaves eth4 \"\"", "inet bonding add 2 802.3ad slaves eth4",
          "inet ifconfig bond2 bonding ad-select count", "inet ifconfig bond2 bonding lacp-rate fast",
          "inet ifconfig bond2 bonding xmit-hash-policy layer3+4", "inet ifconfig bond2 bonding miimon 1000",
          "inet ifconfig bond2 bonding mode active-backup", "! inet ifconfig bond2 bonding primary eth4",
          "inet ifconfig bond2 bonding primary eth4"});
    AlterEntry("eth1", [](auto& entry) { entry.interface_class = "slave"; });
    AlterEntry("eth2", [](auto& entry) { entry.interface_class = "slave"; });
    Type({"! inet ifconfig bond2 bonding add eth1", "inet ifconfig bond2 bonding add eth1",
          "inet ifconfig bond2 bonding add eth2", "inet ifconfig bond2 bonding delete eth1"});
    Type({"inet show bonding bond2", "inet show bonding eth4", "inet show bonding eth0", "inet show bonding",
          "! inet ifconfig bond2 bonding delete eth4", "inet ifconfig bond2 bonding delete eth4",
          "inet ifconfig bond2 bonding primary none"});
    Type({"inet show bonding eth4"});
    EXPECT_EQ(BondingInfo("eth4").size(), 3U);
    EXPECT_TRUE(BondingInfo("eth0").empty());
    Type({"inet ifconfig bond2 bonding mode balance-xor"}); // with a new bond's policy again
    AlterEntry("bond2", [](auto& entry) { entry.address = "dhcp"; });
    Type({"inet bonding delete 2", "! inet bonding delete 2 < y"});
    WriteRecord("ETH0_UP 1\n");
    Type({"inet show bonding"});
    ExpectTranscript("interfaces/bond_life");
}

TEST_F(BondingTest, SlaveClass) {
    Type({"! inet ifconfig eth1 class slave < y", "inet ifconfig eth1 class slave",
          "inet ifconfig eth9 class slave", "inet ifconfig bond0 class slave",
          "inet ifconfig eth3.5 class slave", "inet ifconfig eth3 class slave"});
    Switch("eth1");
    Type({"inet ifconfig eth1 class slave"});
    GiveToDhcp("eth0", "eth2");
    Type({"inet ifconfig eth0 class slave", "inet ifconfig eth2 class slave"});
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
    support::WriteFile(path_list::local_settings, ""); // behind its guard's back
    EXPECT_EQ(value::BondingFreeBondId().list(), ShellWords());
}

} // namespace
} // namespace interfaces
