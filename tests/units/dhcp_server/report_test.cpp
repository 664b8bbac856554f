#include "platform/path_list.h"
#include "tests/units/dhcp_server/server_fixture.h"
#include "units/dhcp_server/conversion.h"
#include "units/dhcp_server/report.h"

#include <gmock/gmock.h>
#include <thread>

namespace settings::dhcp_server {
namespace {

using support::Capture;
using support::ConfTool;
using support::ReadFile;

class DhcpServerReportTest : public ServerAppliance {
protected:
    static constexpr const char* kLeases = "/var/lib/dhcp/dhcpd.leases";

    static support::Result Convert(const std::string& old_settings) {
        support::WriteFile("/mnt/saved/udhcpd.conf", old_settings);
        support::WriteFile("/mnt/saved/local.conf", Interface("ETH1", "10.7.7.1"));
        return ConfTool({"-a", "dhcp-server?convert-udhcpd-settings=/mnt/saved/udhcpd.conf"});
    }
};

TEST_F(DhcpServerReportTest, OldSettingsConvert) {
    EXPECT_EQ(
        Convert("# old\nstart 10.7.7.20 # first\nend\t\t10.7.7.99\ninterface eth1\nlease 600\n"
                "option subnet 255.255.255.0\noption router 10.7.7.1\nopt dns 1.1.1.1\n"
                "option dns 10.0.0.1 10.0.0.2\noption\noption dns 10.0.0.3\noption wins 10.0.0.9\nempty\n")
            .status,
        0);
    support::ExpectGolden(kSettings, "units/dhcp_server/converted.xml");
    EXPECT_EQ(Convert("interface eth1\nstart 10.7.7.20\n").status, 0);
    EXPECT_THAT(ReadFile(kSettings), ::testing::HasSubstr("<default-lease-time>864000<"));
    EXPECT_THAT(ReadFile(kSettings), ::testing::Not(::testing::HasSubstr("<range")));
    EXPECT_EQ(Convert("start 10.7.7.20\n").status, 0);
    EXPECT_FALSE(support::Exists(kSettings));
    // What can't be read or kept leaves the settings alone.
    WriteSettings(Subnet1(""));
    const auto before = support::TakeSnapshot({"/mnt/main", "/etc"});
    EXPECT_EQ(ConfTool({"-a", "dhcp-server?convert-udhcpd-settings=/mnt/none"}).err,
              "DHCP server: /mnt/none: failed to open UDHCPD settings file: No such file or directory\n");
    for (const char* lines :
         {"lease \xff\n", "interface eth1&eth2\n", "interface eth1\nwins 1.1.1.1 a&b\n"}) {
        EXPECT_EQ(Convert(lines).status, 1) << lines;
        EXPECT_TRUE(support::Changes(before, support::TakeSnapshot({"/mnt/main", "/etc"})).empty()) << lines;
    }
    // What is not used may hold anything.
    EXPECT_EQ(Convert("interface eth1\noption message \xff\nstart \xff\n").status, 0);
    EXPECT_THAT(ReadFile(kSettings), ::testing::HasSubstr(">eth1<"));
}

TEST_F(DhcpServerReportTest, ASavedTreeNeedsNoGuards) {
    support::WriteFile("/mnt/saved/udhcpd.conf", "interface eth1\n");
    support::WriteFile("/mnt/saved/local.conf", Interface("ETH1", "10.7.7.1"));
    support::WriteFile(path_list::failover_settings, "one");
    ASSERT_TRUE(corvanshell::UpdateGuardFile((path_list::failover_settings + ".crg").c_str(), 1,
                                             path_list::failover_settings.c_str(), nullptr));
    support::WriteFile(path_list::failover_settings, "another");
    EXPECT_TRUE(ConvertUdhcpdSettings("/mnt/saved/udhcpd.conf"));
    EXPECT_THAT(ReadFile(kSettings), ::testing::HasSubstr("address=\"10.7.7.0\""));
    EXPECT_EQ(path_list::common_settings, "/mnt/saved/common.conf");
}

TEST_F(DhcpServerReportTest, LeasesAreShownByTheRealReport) {
    support::WriteFile(kLeases, R"(lease 192.168.1.105 {
  starts 1 2026/01/05 10:00:00;
  ends 1 2036/01/07 10:00:00;
  binding state active;
  hardware ethernet 02:00:00:00:00:33;
  client-hostname "laptop";
}
)");
    EXPECT_EQ(Capture([] { EXPECT_TRUE(ShowDhcpLeases("full")); }).out, ReadFile(kLeases));
    const auto report =
        Capture([] { EXPECT_TRUE(ShowDhcpLeases(std::string("lease ") + kLeases) == false); });
    EXPECT_EQ(report.err,
              "DHCP server: lease " + std::string(kLeases) + ": unknown form of the leases report\n");
    const auto all = Capture([] { EXPECT_TRUE(ShowDhcpLeases("all")); });
    EXPECT_EQ(all.out, "MAC                IP              hostname       valid until (UTC)   \n"
                       "======================================================================\n"
                       "02:00:00:00:00:33  192.168.1.105   laptop         2036-01-07 10:00:00 \n");
    ASSERT_EQ(unlink(kLeases), 0);
    EXPECT_EQ(Capture([] { EXPECT_FALSE(ShowDhcpLeases("full")); }).err,
              "DHCP server: failed to access lease database file: No such file or directory\n");
}

TEST_F(DhcpServerReportTest, FailedPrintLeavesNothingBehind) {
    support::WriteFile(kSettings, "<broken");
    EXPECT_EQ(ConfTool({"-a", "dhcp-server?print"}).status, 1);
    WriteSettings(Subnet1(""));
    const auto holder = support::HoldLock("/run/lock/dhcp-server.lock", true);
    const auto output = Capture([] {
        std::vector<std::jthread> readers;
        for (bool (*read)() : {PrintDhcpServer, DumpDhcpServer, +[] { return ShowDhcpLeases("full"); },
                               +[] { return ShowDhcpLeases("all"); }})
            readers.emplace_back([read] { EXPECT_FALSE(read()); });
    });
    const std::string refusal = "settings file is locked by another process, please try later\n";
    EXPECT_EQ(output, (support::Output{"", refusal + refusal + refusal + refusal}));
    EXPECT_EQ(support::RunShell("ls /tmp/dhcp-server*").status, 2);
}

} // namespace
} // namespace settings::dhcp_server
