#include "tests/shell/shell_fixture.h"
#include "tests/shell/terminal.h"

#include <algorithm>

namespace {

using support::ReadFile;

constexpr const char* kHistory = "/var/lib/conf-shell/history";
const std::string kPrompt = "gateway (single)> ";
const std::string kAbandon = "\x03";
const std::string kUp = "\x1b[A";

class TerminalTest : public ShellTest {};

TEST_F(TerminalTest, KeysCompleteAndExplain) {
    ASSERT_EQ(RunLine("content-filter rule add pass name 'grüne Seiten'").status, 0);
    Terminal shell(kShell);
    shell.Converse({
        {"", kPrompt},
        {"inet ifc\t\f", kPrompt + "inet ifconfig "},
        {"et\t\f", kPrompt + "inet ifconfig eth"},
        {"\t", "eth0  eth1  eth2  eth3"},
        {"1 ?", "sets the MTU, auto for 1500; a trunk's VLAN children\r\n                      follow\r\n"},
        {"m\t?", "  <mtu>               a decimal number, or auto\r\n"},
        {"9000\f", kPrompt + "inet ifconfig eth1 mtu 9000"},
        {kAbandon + "dhcp-server host reception-p\tset domain-name ?",
         "  <domain>            a domain name\r\n"},
        {"\f", kPrompt + "dhcp-server host reception-phone set domain-name "},
        {kAbandon + "content-filter rule delete name 'grü\t\f",
         kPrompt + "content-filter rule delete name \"grüne Seiten\" "},
        {kAbandon + "übel?", "übel\r\n^^^^\r\nwrong word, in its place may stand:\r\n"},
        {kAbandon + "inet ifconfig eth1 address 10.1.\t",
         "  <address>           an IPv4 address, such as 192.168.1.1\r\n"},
        {kAbandon + "\f", kPrompt},
        {"web show ?", "  <Enter>             runs the command\r\n"},
    });
}

TEST_F(TerminalTest, LinesAreRememberedAndAbandoned) {
    {
        Terminal shell(kShell);
        shell.Converse({
            {"", kPrompt},
            {"web port 8080\r", kPrompt},
            {"web certificate none" + kAbandon + "\f", kPrompt},
            {"web bad\r", "wrong word"},
            {"", kPrompt},
            {"web " + std::string(1100, 'x') + "\r", "wrong word"}, // what nobody has typed
            {"", kPrompt},
            {"inet ping 127.0.0.1\r", "bytes from"},
            {kAbandon, kPrompt},
            {kUp + kUp + kUp + "\f", kPrompt + "web port 8080"},
            {kAbandon + "\x04", "\r\n"},
        });
        EXPECT_EQ(shell.Wait(), 1);
    }
    EXPECT_EQ(ReadFile(kHistory), "web port 8080\nweb bad\ninet ping 127.0.0.1\n");
    EXPECT_EQ(support::ModeOf(kHistory), 0600u);
    EXPECT_EQ(support::ModeOf("/var/lib/conf-shell"), 0700u);
    ASSERT_EQ(support::RunShell("mv /var/lib/conf-shell/history /run/elsewhere && ln -s /run/elsewhere " +
                                std::string(kHistory))
                  .status,
              0);
    Terminal shell(kShell);
    shell.Converse(
        {{"", kPrompt}, {kUp + kUp + "\f", kPrompt + "web bad"}, {kAbandon + "exit\r", "exit\r\n"}});
    EXPECT_EQ(shell.Wait(), 0);
    EXPECT_FALSE(ReadFile("/run/elsewhere").ends_with("exit\n")); // a link leads to nobody else's file
}

TEST_F(TerminalTest, QuestionsAreAnswered) {
    ASSERT_EQ(RunLine("inet route add 10.0.0.1 gateway 192.168.1.7").status, 0);
    Terminal shell(kShell);
    const std::string question = "Delete all the static routes? [y/N] ";
    const std::string refusal = "Removal of the static routes has been canceled\r\n" + kPrompt;
    shell.Converse({
        {"", kPrompt},
        {"inet route clear\r", question},
        {"n\r", refusal},
        {"inet route clear\r", question},
        {"ye" + kAbandon, refusal},
        {"inet route clear\r", question},
        {"y\r", "The static routes have been removed\r\n" + kPrompt},
        {"dhcp-relay 7 delete\r", "delete\r\nDHCP relay 7: does not exist\r\n" + kPrompt},
        {"dhcp-server reset\r", "Remove all settings and leases of the DHCP server? [y/N] "},
        {"n\r", kPrompt},
        {"dhcp-relay 1 delete\r", "Remove the relay with its servers and interfaces? [y/N] "},
        {"\r", kPrompt},
    });
    EXPECT_NE(RunLine("dhcp-server show settings").out.find("reception-phone"), std::string::npos);
    EXPECT_EQ(RunLine("dhcp-relay show settings 1").status, 0);
    shell.Converse({{"dhcp-server reset\r", "[y/N] "},
                    {"y\r", kPrompt},
                    {"dhcp-relay 1 delete\r", "[y/N] "},
                    {"y\r", kPrompt}});
    EXPECT_EQ(RunLine("dhcp-server show settings").out.find("reception-phone"), std::string::npos);
    EXPECT_EQ(RunLine("dhcp-relay show settings 1").status, 1);
}

// What is pasted behind a question's answer is nobody's answer, and is not lost.
TEST_F(TerminalTest, PastedLinesGoWhereTheyStand) {
    ASSERT_EQ(
        RunLine("dhcp-server interface eth1 add host one mac 02:00:00:00:0a:01 address 192.168.1.81").status,
        0);
    ASSERT_EQ(
        RunLine("dhcp-server interface eth1 add host two mac 02:00:00:00:0a:02 address 192.168.1.82").status,
        0);
    Terminal shell(kShell);
    shell.Converse({
        {"", kPrompt},
        {"dhcp-server host one delete\ry\ry\rweb port 8443\rweb show\r", "[y/N] "},
        {"", "wrong word"}, // the second y is a line
        {"", "port: 8443\r\n"},
        {"", kPrompt},
        {"dhcp-server host two delete\r", "[y/N] "},
        {"n\r", kPrompt},
        {"exit\r", "exit\r\n"},
    });
    EXPECT_EQ(shell.Wait(), 1);
    const std::string settings = RunLine("dhcp-server show settings").out;
    EXPECT_EQ(settings.find("host one"), std::string::npos);
    EXPECT_NE(settings.find("host two"), std::string::npos);
}

TEST_F(TerminalTest, HiddenInputShowsAgain) {
    for (const char* key : {"\x03", "\x1c"}) {
        Terminal shell(kShell, "-c", "snmp user add bob sha");
        shell.Converse({{"", "password: "}});
        EXPECT_FALSE(shell.Echoes());
        shell.Converse({{key, ""}});
        EXPECT_EQ(shell.Wait(), -1);
        EXPECT_TRUE(shell.Echoes());
    }
}

TEST_F(TerminalTest, SmallWindowsAndSignalsEndNothing) {
    Terminal shell(kShell);
    shell.Converse({{"", kPrompt}, {"web key file " + std::string(300, 'x') + "\f", "xxx\x1b"}});
    shell.Resize(2, 12);
    shell.Converse({{std::string(200, 'y') + "\x01" + std::string(10, 'z') + "\x05" + "q", "q"}});
    shell.Resize(50, 100);
    shell.Converse({{kAbandon, "(single)> "}});
    shell.Resize(1, 5);
    shell.Converse({{"\r", ">"}, {"web key none\t?" + kAbandon + kUp + kUp, ""}});
    shell.Resize(24, 80);
    shell.Converse({{kAbandon + "\r", kPrompt}, {"\r", kPrompt}});
    shell.Send(SIGINT);
    shell.Converse({{"", kPrompt}, {"web key file a.key\r", kPrompt}, {"web show\r", "a.key\r\n"}});
}

TEST_F(TerminalTest, NamesAreCompletedToThemselves) {
    for (const char* name : {"rul\u00e9", "rul\u00e8", "ads (old)", "No adverts.", "x\u009b31m"})
        ASSERT_EQ(RunLine("content-filter rule add pass name '" + std::string(name) + "'").status, 0);
    Terminal shell(kShell);
    const std::string line = "content-filter rule delete name ";
    shell.Converse({
        {"", kPrompt},
        {line + "ru\t\f", kPrompt + line + "rul"},
        {"\t", "rul\u00e8  rul\u00e9"},
        {kAbandon + line + "ad\t\f", kPrompt + line + "\"ads (old)\" "},
        {kAbandon + line + "N\t\f", kPrompt + line + "\"No adverts.\" "},
        {kAbandon + line + "?", "x?31m"},
    });
    // Nobody waits for a lock at a key, and nothing is said of it.
    const support::Daemon holder = support::HoldLock("/run/lock/settings.lock", true);
    shell.Converse({{kAbandon + "inet ifconfig et\t\f", kPrompt + "inet ifconfig eth"}, // the system's own
                    {kAbandon + "web show\r", "protocol: http"}});
    EXPECT_EQ(shell.Screen().find("lock"), std::string::npos);
}

// What is there to be removed, of what stands in front in the line.
TEST_F(TerminalTest, RemovalsOfferWhatThereIs) {
    for (const char* line :
         {"inet ifconfig eth1 address add 10.9.9.1 24", "inet route add 10.0.0.1 gateway 192.168.1.7",
          "inet policy rule add work 1100 block", "inet policy rule add home 1200 block",
          "snmp trap-receiver add v2 10.0.0.9 162 udp community public",
          "dhcp-server interface eth1 delete range 192.168.1.160 192.168.1.199",
          "dhcp-server interface eth2 delete range 192.168.2.64 192.168.2.254"})
        ASSERT_EQ(RunLine(line).status, 0) << line;
    // Not every kernel makes VLANs.
    ASSERT_EQ(support::RunShell("printf 'ETH3.77_VLAN\\t77\\nETH3.77_PARENT\\tETH3\\n' >> "
                                "/mnt/main/etc/local.conf && conf-tool -p")
                  .status,
              0);
    ASSERT_EQ(support::RunProgram({kShell, "-c", "snmp user add bob sha"}, "not-so-short\n").status, 0);
    ASSERT_EQ(RunLine("snmp user receiver add bob trap 192.168.1.9 1163 udp").status, 0);
    Terminal shell(kShell);
    shell.Converse({{"", kPrompt}});
    const std::pair<std::string, std::string> cases[] = {
        {"inet ifconfig eth1 address delete ", "10.9.9.1 "},
        {"inet route delete 10", ".0.0.1 "},
        {"inet route delete 10.0.0.1 netmask 32 next-hop ", "192.168.1.7 "},
        {"inet policy rule clear work ", "1100 "},
        {"inet show policy rule home ", "1200 "},
        {"snmp trap-receiver delete v2 10.0", ".0.9 "},
        {"snmp user receiver delete bob trap 192.", "168.1.9 "},
        {"inet ifconfig eth3 vlan delete ", "77 "},
        {"dhcp-server interface eth1 delete range 192.", "168.1.100 "},
        {"dhcp-server i eth1 delete range 192.168.1.100 192.", "168.1.149 "}};
    for (const auto& [line, rest] : cases)
        shell.Converse({{line + "\t\f", kPrompt + line + rest}, {kAbandon, kPrompt}});
}

TEST_F(TerminalTest, HistorySurvivesAFullDisk) {
    std::string lines;
    for (int i = 0; i < 2500; ++i)
        lines += "web port " + std::to_string(i) + "\n";
    support::WriteFile(kHistory, lines, 0600);
    for (const bool is_full : {true, false}) {
        if (is_full)
            support::FillDisk("/var/lib/conf-shell");
        else
            ASSERT_EQ(support::RunShell("umount /var/lib/conf-shell").status, 0);
        if (!is_full)
            support::WriteFile(kHistory, lines, 0600);
        Terminal shell(kShell);
        shell.Converse({{"", kPrompt}, {kUp + "\f", "web port 2499"}, {kAbandon + "exit\r", "exit"}});
        EXPECT_EQ(shell.Wait(), 0);
        const std::string kept = ReadFile(kHistory);
        EXPECT_EQ(std::count(kept.begin(), kept.end(), '\n'), is_full ? 2500 : 1001);
    }
}

TEST_F(TerminalTest, SecretsAreSeenNowhere) {
    Terminal shell(kShell);
    shell.Converse({
        {"", kPrompt},
        {"snmp user add bob sha\r", "password: "},
        {"short\r", "a password has 8 characters at least"},
        {"", kPrompt},
        {"snmp user add bob sha\r", "password: "},
        {"not-so-short-1\r", "password once more: "},
        {"not-so-short-2\r", "the second password is not the same as the first one\r\n" + kPrompt},
        {"snmp user add bob sha\r", "password: "},
        {kAbandon, "no password was given\r\n" + kPrompt},
        {"snmp user add bob sha\r", "password: "},
        {"not-so-short-1\r", "password once more: "},
        {"not-so-short-1\r", kPrompt},
        {"snmp user encryption bob on\r", "privacy key: "},
        {"not-so-short-3\r", "privacy key once more: "},
        {"not-so-short-3\r", kPrompt},
        {"snmp show\r", "user bob: sha, encrypted, reads\r\n"},
    });
    const std::string settings = "/mnt/main/etc/settings/snmp_common.xml";
    EXPECT_NE(ReadFile(settings).find("not-so-short-1"), std::string::npos);
    EXPECT_EQ(support::ModeOf(settings), 0600u);
    for (const support::LogLine& line : TakeLog())
        EXPECT_EQ(line.text.find("so-short"), std::string::npos);
    EXPECT_EQ((shell.Screen() + ReadFile(kHistory)).find("short"), std::string::npos);
}

TEST_F(TerminalTest, ModeChangesTheCommands) {
    ASSERT_EQ(support::RunShell("sed -i '/^DHCP_SERVER/s/on/off/' /mnt/main/etc/common.conf && conf-tool -p")
                  .status,
              0);
    const std::string cluster = "gateway (cluster)> ";
    Terminal shell(kShell);
    shell.Converse({
        {"", kPrompt},
        {"failover st\t\f", kPrompt + "failover st"},
        {kAbandon + "failover config mode \t\f", kPrompt + "failover config mode cluster "},
        {"\r", "[y/N] "},
        {"y\r", "[y/N] "},
        {"y\r", cluster},
        {"failover sta\t\f", cluster + "failover start "},
        {"\r", cluster},
        {"failover show info\r", "This node is active\r\n" + cluster},
        {"failover stop\r", cluster},
        {"failover config mode \t\f", cluster + "failover config mode single "},
        {"\r", kPrompt},
        {"failover start\r", "this command is there in cluster mode only, and the mode is single\r\n"},
    });
}

} // namespace
