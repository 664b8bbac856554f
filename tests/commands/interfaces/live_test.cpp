#include "commands/interfaces/address.h"
#include "commands/interfaces/aliases.h"
#include "commands/interfaces/dhcp_client.h"
#include "commands/interfaces/link.h"
#include "commands/interfaces/reset.h"
#include "commands/interfaces/state.h"
#include "platform/processes.h"
#include "records/conf_struct.h"
#include "tests/support/command_test.h"

namespace interfaces {
namespace {

// The appliance's own scripts on a real interface, eth1, whose cable ends in another namespace.
class LiveTest : public CommandTest {
protected:
    LiveTest() {
        support::MakeVeth("eth1", "far", peer_);
        WriteProtected(path_list::common_settings, "");
        WriteRecord(
            "ETH1_UP 1\nETH1_CLASS access\nETH1_MTU 1400\nETH1_DHCP_ROUTE 1\nDEFAULT_DHCP_METRIC 44\n");
    }

    static corvanshell::InterfaceEntry Entry() {
        corvanshell::InterfaceEntry entry;
        EXPECT_TRUE(corvanshell::CConfStruct(path_list::local_settings, true).FindInterface("eth1", entry));
        return entry;
    }
    // "up 1400 10.1.0.1/24 10.1.0.255 eth1 ..." of the system.
    static std::string System() {
        return support::RunShell(
                   "set -- $(ip -brief link show dev eth1 up) down; [ $1 = down ] || set -- up;"
                   "echo $1 $(cat /sys/class/net/eth1/mtu) $(ip -oneline -4 address show dev eth1 |"
                   "sed 's/.*inet \\([^ ]*\\) brd \\([^ ]*\\) .* \\([^ ]*\\)\\\\.*/\\1 \\2 \\3/') | tr -d "
                   "'\\n'")
            .out;
    }
    // The same of the record.
    static std::string Record() {
        const corvanshell::InterfaceEntry entry = Entry();
        std::string text = (entry.up ? "up " : "down ") + (entry.mtu == "auto" ? "1500" : entry.mtu);
        const auto add = [&](const std::string& address, const std::string& broadcast,
                             const std::string& label) {
            text += " " + address + "/24 " + broadcast + " " + label;
        };
        if (!entry.address.empty())
            add(entry.address, entry.broadcast, "eth1");
        for (std::size_t i = 0; i < entry.alias_addresses.size(); ++i)
            add(entry.alias_addresses[i], entry.alias_broadcasts[i], "eth1:" + std::to_string(i));
        return text;
    }
    static void ExpectDone(const std::function<bool()>& call, const std::string& state) {
        bool done = false;
        const support::Output output = support::Capture([&] { done = call(); });
        EXPECT_TRUE(done) << output.err << output.out;
        EXPECT_EQ(System(), state);
        EXPECT_EQ(Record(), state);
    }

    support::Peer peer_;
};

const std::string kMask = "255.255.255.0";

TEST_F(LiveTest, SystemAndRecordAgree) {
    const std::string first = " 10.1.0.1/24 10.1.0.255 eth1", alias = " 10.2.0.1/24 10.2.0.255 eth1:0";
    ExpectDone([] { return SetMtu("eth1", "auto"); }, "up 1500");
    ExpectDone([] { return SetAddress("eth1", "10.1.0.9", kMask); }, "up 1500 10.1.0.9/24 10.1.0.255 eth1");
    ExpectDone([] { return SetAddress("eth1", "10.1.0.1", kMask); }, "up 1500" + first);
    ExpectDone([] { return AddAlias("eth1", "10.2.0.1", kMask); }, "up 1500" + first + alias);
    ExpectDone([] { return AddAlias("eth1", "10.3.0.1", kMask); },
               "up 1500" + first + alias + " 10.3.0.1/24 10.3.0.255 eth1:1");
    ExpectDone([] { return DeleteAlias("eth1", "10.3.0.1", kMask); }, "up 1500" + first + alias);
    ExpectDone([] { return !DeleteAlias("eth1", "10.3.0.1", kMask); }, "up 1500" + first + alias);
    ExpectDone([] { return !SetSpeed("eth1", "1000", "half", "on"); }, "up 1500" + first + alias);
    ExpectDone([] { return SetMtu("eth1", "1300"); }, "up 1300" + first + alias);
    ExpectDone([] { return SetState("eth1", "down"); }, "down 1300" + first + alias);
    ExpectDone([] { return SetState("eth1", "up"); }, "up 1300" + first + alias);
    EXPECT_EQ(support::RunShell("ip address flush dev eth1 && ip link set eth1 mtu 1500 down").status, 0);
    ExpectDone([] { return ResetInterface("eth1"); }, "up 1300" + first + alias);
    EXPECT_EQ(support::RunShell("ip address flush dev eth1").status, 0);
    ExpectDone([] { return support::Capture([] { (void)ResetAllInterfaces(); }).out.empty(); },
               "up 1300" + first + alias);
}

TEST_F(LiveTest, AddressByDhcp) {
    ASSERT_EQ(support::RunProgram(peer_.Inside({"ip", "address", "add", "10.7.0.1/24", "dev", "far"})).status,
              0);
    support::WriteFile("/tmp/dhcpd.conf",
                       "subnet 10.7.0.0 netmask 255.255.255.0 { range 10.7.0.50 10.7.0.50; "
                       "option routers 10.7.0.1; }\n");
    support::WriteFile("/tmp/leases", "");
    const support::Daemon server(peer_.Inside(
        {"dhcpd", "-4", "-f", "-d", "--no-pid", "-cf", "/tmp/dhcpd.conf", "-lf", "/tmp/leases", "far"}));
    ASSERT_TRUE(server.WaitForText("Sending on"));
    support::Output output = support::Capture([] { EXPECT_TRUE(SetDhcp("eth1")); });
    EXPECT_EQ(Entry().address + Entry().netmask + Entry().broadcast, "dhcpdhcpdhcp") << output.err;
    EXPECT_EQ(System(), "up 1400 10.7.0.50/24 10.7.0.255 eth1");
    const support::Arguments routes = {"ip", "route", "show", "default"};
    EXPECT_EQ(support::RunProgram(routes).out, "default via 10.7.0.1 dev eth1 metric 44 \n");
    output =
        support::Capture([] { EXPECT_TRUE(SetDhcpMetric("eth1", "55") && SetDhcpUse("eth1", "dns", "on")); });
    EXPECT_EQ(support::RunProgram(routes).out, "default via 10.7.0.1 dev eth1 metric 55 \n");
    output = support::Capture([] { EXPECT_TRUE(SetDhcpUse("eth1", "route", "off")); });
    EXPECT_EQ(support::RunProgram(routes).out, "");
    const pid_t client = read_pid("dhcpclient-eth1", true);
    EXPECT_TRUE(check_pid(client));
    ExpectDone([] { return SetAddress("eth1", "10.1.0.1", kMask); }, "up 1400 10.1.0.1/24 10.1.0.255 eth1");
    EXPECT_TRUE(support::WaitFor([&] { return !check_pid(client); }));
}

} // namespace
} // namespace interfaces
