#include "commands/interfaces/bonding.h"
#include "commands/interfaces/bonding_report.h"
#include "commands/interfaces/bonding_values.h"
#include "commands/interfaces/roles.h"
#include "records/conf_struct.h"
#include "tests/commands/interfaces/interfaces_fixture.h"

namespace interfaces {
namespace {

using BondingTest = InterfacesTest;
using Call = std::function<bool()>;

struct Refusal {
    Call call;
    std::string log;
    std::string error;
};

TEST_F(BondingTest, Refusals) {
    Alter([](CConfStruct& record) {
        corvanshell::InterfaceEntry slave;
        EXPECT_TRUE(record.FindInterface("eth5", slave));
        for (const char* name : {"eth6", "eth7"})
            record.AddInterface(name, slave, true);
    });
    const auto add = [](const char* number, const char* mode, std::vector<std::string> slaves,
                        const std::string& error) {
        std::string log = std::string("command: inet bonding add ") + number + " slaves";
        for (std::size_t i = 0; i < 3; i++)
            log += " " + (i < slaves.size() ? slaves[i] : "");
        return Refusal{[=] { return AddBond(number, mode, slaves); }, log, error};
    };
    const auto set = [](const char* bond, const char* option, const char* value, const std::string& error) {
        return Refusal{[=] { return SetBondOption(bond, option, value); },
                       std::string("command: inet ifconfig ") + bond + " bonding " + option + " " + value,
                       error};
    };
    const auto slave = [](const std::string& action, const char* bond, const char* name,
                          const std::string& error) {
        return Refusal{[=] { return action == "add" ? AddSlave(bond, name) : DeleteSlave(bond, name); },
                       std::string("inet ifconfig ") + bond + " bonding " + action + " " + name, error};
    };
    const Refusal refusals[] = {
        add("4", "broadcast", {}, "bond4: bond interface number is out of range 0 - 3"),
        add("1x", "broadcast", {}, "bond1x: bond interface number is out of range 0 - 3"),
        add("0", "broadcast", {}, "bond0: bond interface already exists"),
        add("2", "balance-alb", {}, "bond2: unknown bonding mode: balance-alb"),
        add("2", "broadcast", {"eth4", "eth1", "eth4"}, "eth4: duplicate slave interface"),
        add("2", "broadcast", {"eth4", "eth1"}, "eth1: class of the interface is not slave"),
        add("2", "broadcast", {"eth5"}, "eth5: interface already has bond master interface: bond0"),
        {[] { return DeleteBond("7"); }, "command: inet bonding delete 7",
         "bond7: bond interface number is out of range 0 - 3"},
        {[] { return DeleteBond("3"); }, "command: inet bonding delete 3",
         "bond3: bond interface does not exist"},
        slave("add", "bond3", "eth4", "bond3: bond interface does not exist"),
        slave("add", "eth1", "eth4", "eth1: is not bond interface"),
        slave("add", "bond0", "eth9", "eth9: class of the interface is not slave"),
        slave("add", "bond0", "eth5", "eth5: interface already has bond master interface: bond0"),
        slave("add", "bond0", "eth4", "bond0: maximum 3 slave interfaces per bonding is allowed"),
        slave("delete", "bond0", "eth1", "eth1: class of the interface is not slave"),
        slave("delete", "bond0", "eth4",
              "eth4: slave interface has unexpected bond master interface: not defined"),
        set("bond0", "mode", "balance-alb", "bond0: unknown bonding mode: balance-alb"),
        set("bond0", "miimon", "0", "bond0: miimon option value is out of range 1 - 1000."),
        set("bond0", "miimon", "1001", "bond0: miimon option value is out of range 1 - 1000."),
        set("bond0", "ad-select", "stable",
            "bond0: ad-select option is applicable only if bonding mode is 802.3ad"),
        set("bond0", "lacp-rate", "slow",
            "bond0: lacp-rate option is applicable only if bonding mode is 802.3ad"),
        set("bond0", "xmit-hash-policy", "layer2",
            "bond0: xmit-hash-policy option is applicable only if bonding mode is 802.3ad or balance-xor"),
        set("bond0", "primary", "eth9", "eth9: slave interface does not exist"),
        set("bond0", "primary", "eth1", "eth1: class of the interface is not slave"),
        set("bond0", "primary", "eth4",
            "eth4: primary slave interface has unexpected bond master interface: not defined"),
        set("bond0", "colour", "red", "bond0: unknown bonding option: colour"),
    };
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.error);
        ExpectRefusal(refusal.call, {.output = {"", refusal.error + "\n"}, .log = {{6, refusal.log}}});
    }
    AlterEntry("bond0", [](auto& entry) { entry.bonding_mode = "802.3ad"; });
    for (const Refusal& refusal :
         {set("bond0", "ad-select", "x", "bond0: unknown bonding aggregation selection logic: x"),
          set("bond0", "lacp-rate", "x", "bond0: unknown bonding LACPDU packets transmiting rate: x"),
          set("bond0", "xmit-hash-policy", "x", "bond0: unknown bonding transmit hash policy: x"),
          set("bond0", "primary", "none",
              "bond0: primary option is applicable only if bonding mode is balance-tlb or active-backup")})
        ExpectRefusal(refusal.call, {.output = {"", refusal.error + "\n"}, .log = {{6, refusal.log}}});
    Alter([](CConfStruct& record) {
        record.RemoveInterface("eth6");
        record.RemoveInterface("eth7");
    });
    const Refusal last =
        slave("delete", "bond0", "eth5", "bond0: minimum 1 slave interfaces per bonding is allowed");
    ExpectRefusal(last.call, {.output = {"", last.error + "\n"}, .log = {{6, last.log}}});
}

// A bond from its making to its end; the script's failure is told and the settings stay.
TEST_F(BondingTest, LifeOfABond) {
    const std::string script = "/sbin/bonding.sh ";
    ExpectChange(
        [] {
            return AddBond("02", "802.3ad", {"eth4", ""});
        },
        {.output = {"New bond interface bond2 was created.\n", ""},
         .log = {{6, "command: inet bonding add 02 slaves eth4  "}},
         .commands = {script + "populate bond2"}},
        {{"ETH4_MASTER", "bond2"},
         {"BOND2_UP", "0"},
         {"BOND2_IP", ""},
         {"BOND2_MASK", ""},
         {"BOND2_BROADCAST", ""},
         {"BOND2_SPEED", "auto"},
         {"BOND2_AUTONEG", "on"},
         {"BOND2_MTU", "auto"},
         {"BOND2_CLASS", "access"},
         {"BOND2_DHCP_ROUTE", "0"},
         {"BOND2_DHCP_DNS", "0"},
         {"BOND2_DHCP_NTP", "0"},
         {"BOND2_DHCP_METRIC", ""},
         {"BOND2_MASTER", "bond2"},
         {"BOND2_BONDING_MODE", "802.3ad"},
         {"BOND2_BONDING_MIIMON", "100"},
         {"BOND2_BONDING_AD_SELECT", "stable"},
         {"BOND2_BONDING_LACP_RATE", "slow"},
         {"BOND2_BONDING_XMIT_HASH_POLICY", "layer2"}});
    const auto set = [&](const char* option, const char* value, const Saved& saved) {
        ExpectChange(
            [=] { return SetBondOption("bond2", option, value); },
            {.log = {{6, std::string("command: inet ifconfig bond2 bonding ") + option + " " + value}},
             .commands = {script + "set bond2 " + option + " " + value}},
            saved);
    };
    set("ad-select", "count", {{"BOND2_BONDING_AD_SELECT", "count"}});
    set("lacp-rate", "fast", {{"BOND2_BONDING_LACP_RATE", "fast"}});
    set("xmit-hash-policy", "layer3+4", {{"BOND2_BONDING_XMIT_HASH_POLICY", "layer3+4"}});
    set("miimon", "1000", {{"BOND2_BONDING_MIIMON", "1000"}});
    set("mode", "active-backup",
        {{"BOND2_BONDING_MODE", "active-backup"},
         {"BOND2_BONDING_AD_SELECT", "-"},
         {"BOND2_BONDING_LACP_RATE", "-"},
         {"BOND2_BONDING_XMIT_HASH_POLICY", "-"},
         {"BOND2_BONDING_PRIMARY", ""}});
    set("primary", "eth4", {{"BOND2_BONDING_PRIMARY", "eth4"}});

    AlterEntry("eth1", [](auto& entry) { entry.interface_class = "slave"; });
    support::Queue("/sbin/bonding.sh", {.status = 3});
    ExpectChange([] { return AddSlave("bond2", "eth1"); },
                 {.done = false,
                  .output = {"", "bond2: failed to add slave interface eth1 with error: 3\n"},
                  .log = {{6, "inet ifconfig bond2 bonding add eth1"}},
                  .commands = {script + "add bond2 eth1"}},
                 {{"ETH1_MASTER", "bond2"}});
    EXPECT_EQ(support::Capture([] {
                  PrintBondingInfo("bond2");
                  PrintBondingInfo("eth4");
                  PrintBondingInfo("eth0");
              }).out,
              R"(
bond2     is a bond interface
          mode: active-backup
          miimon: 1000
          primary: eth4
          slave interfaces:
          eth1     : up
          eth4     : down

eth4      is a slave interface
          bond master interface: bond2
)");
    ExpectChange(
        [] { return DeleteSlave("bond2", "eth4"); },
        {.log = {{6, "inet ifconfig bond2 bonding delete eth4"}}, .commands = {script + "delete bond2 eth4"}},
        {{"ETH4_MASTER", "-"}, {"BOND2_BONDING_PRIMARY", ""}});
    set("primary", "none", {{"BOND2_BONDING_PRIMARY", "-"}});
    EXPECT_EQ(BondingInfo("eth4").back(), "          bond master interface: not defined");

    support::MakeVeth("bond2", "v1");
    AlterEntry("bond2", [](auto& entry) { entry.address = entry.netmask = entry.broadcast = "dhcp"; });
    const std::string question =
        "All IP addresses and their aliases on bond2 interface will be removed. Continue? [y/N] ";
    const support::LogLine log = {6, "command: inet bonding delete 2"};
    ExpectRefusal([] { return DeleteBond("2"); },
                  {.output = {question, "command was terminated by user\n"}, .log = {log}});
    support::Queue("/sbin/dhcpclient.sh", {.status = 4});
    ExpectRefusal([] { return DeleteBond("2"); },
                  {.output = {question, "bond2: failed to flush interface with error: 4\n"},
                   .log = {log},
                   .commands = {"/sbin/dhcpclient.sh stop bond2"}},
                  "y\n");
    support::WriteFile("/mnt/main/etc/l2overip.conf", "mode = switch\ndevice = bond2\n");
    ExpectRefusal([] { return DeleteBond("2"); }, {.output = {"", "bond2: interface is used for L2OverIP\n"},
                                                   .log = {log, {6, "<L2OverIP> Reading config: OK"}}});
    unlink("/mnt/main/etc/l2overip.conf");
    Saved gone = {{"ETH1_MASTER", "-"}};
    for (const auto& [key, value] : Lines())
        if (key.starts_with("BOND2"))
            gone[key] = "-";
    ExpectChange([] { return DeleteBond("2"); },
                 {.output = {question, ""},
                  .log = {log},
                  .commands = {"/sbin/dhcpclient.sh stop bond2", script + "delete bond2 all"}},
                 gone, "yes\n");
}

TEST_F(BondingTest, SlaveClass) {
    support::MakeVeth("eth1", "v1");
    ASSERT_EQ(support::RunShell("ip address add 10.1.0.1/24 dev eth1 && ip link set eth1 mtu 1400").status,
              0);
    const support::LogLine log = {6, "command: inet ifconfig eth1 class slave"};
    const std::string question =
        "All IP addresses and their aliases on eth1 interface will be removed. Continue? [y/N] ";
    const std::string check = "/sbin/ifclass_check.sh eth1 slave";
    support::Queue("/sbin/ifclass_check.sh", {.status = 1});
    ExpectRefusal(
        [] { return SetSlaveClass("eth1"); },
        {.output = {"", "eth1: interface cannot be enslaved\n"}, .log = {log}, .commands = {check}});
    ExpectChange([] { return SetSlaveClass("eth1"); },
                 {.output = {question + "eth1 set to slave class.\n", ""}, .log = {log}, .commands = {check}},
                 {{"ETH1_CLASS", "slave"},
                  {"ETH1_IP", ""},
                  {"ETH1_MASK", ""},
                  {"ETH1_BROADCAST", ""},
                  {"ETH1_MTU", "auto"}},
                 "y\n");
    const std::string live = support::RunProgram({"ip", "address", "show", "eth1"}).out;
    EXPECT_EQ(live.find("inet "), std::string::npos);
    EXPECT_NE(live.find("mtu 1500"), std::string::npos);

    const std::string head = "<I_IFCLASS_SLAVE>  Command: inet ifconfig ";
    const std::string tail = " uses the interface. Command ignored\n";
    GiveToDhcp("eth0", "eth2");
    ExpectRefusal(
        [] { return SetSlaveClass("eth0"); },
        {.output = {"",
                    "DHCP server: interface eth0 can not set slave class since DHCP server autostart is on\n"
                    "Command: inet ifconfig eth0 class slave: DHCP server" +
                        tail},
         .log = {{6, "command: inet ifconfig eth0 class slave"},
                 {6, "DHCP server autostart is on "},
                 {6, "DHCP server autostart is on "}}});
    ExpectRefusal(
        [] { return SetSlaveClass("eth2"); },
        {.output = {"",
                    "DHCP relay: interface eth2 cannot set slave class since DHCP relay autostart is on\n" +
                        head + "eth2 class slave: DHCP relay" + tail},
         .log = {{6, "command: inet ifconfig eth2 class slave"}, {6, "DHCP relay autostart is on "}}});
    const char* cases[][3] = {
        {"eth9", "eth9: interface does not exist\n", nullptr},
        {"bond0", "bond0: bond interface cannot be enslaved\n", nullptr},
        {"eth3.5", "eth3.5: VLAN interface cannot be enslaved\n", nullptr},
        {"eth3", "eth3: trunk interface has VLAN children interfaces\n", "/sbin/ifclass_check.sh eth3 slave"},
    };
    for (const auto& [name, error, command] : cases) {
        const Log logs = {{6, std::string("command: inet ifconfig ") + name + " class slave"}};
        ExpectRefusal([&] { return SetSlaveClass(name); },
                      {.output = {"", error},
                       .log = logs,
                       .commands = command != nullptr ? std::vector<std::string>{command}
                                                      : std::vector<std::string>()});
    }
}

TEST_F(BondingTest, RolesThatAreRefused) {
    const char* words[] = {nullptr, "bond", "bound slave", nullptr, "loose slave", nullptr, "slave", "slave"};
    const auto expected = [&](const char* name, unsigned int mask) -> std::string {
        const std::string role = name;
        if (role == "bond0")
            return (mask & 1) != 0 ? words[1] : "";
        if (role == "eth1" || (mask & (role == "eth5" ? 2 : 4)) == 0)
            return "";
        return words[mask & 6];
    };
    for (const char* name : {"eth1", "bond0", "eth4", "eth5"}) {
        for (unsigned int mask = 0; mask < 8; ++mask) {
            const std::string word = expected(name, mask);
            bool refused = false;
            EXPECT_EQ(support::Capture([&] { refused = IsInterfaceRoleRefused(name, mask, 1); }).err,
                      word.empty() ? "" : name + (": " + word) + " interface is not acceptable\n");
            EXPECT_EQ(refused, !word.empty());
        }
    }
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
    node.set_action([&](const ShellArguments& arguments) {
        return boost::any_cast<std::string>(arguments.at(0)) == "802.3ad";
    });
    EXPECT_TRUE(node.execute("802.3ad", taken, {"802.3ad"}, 1));
}

} // namespace
} // namespace interfaces
