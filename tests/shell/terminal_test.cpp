#include "tests/shell/shell_fixture.h"
#include "tests/shell/terminal.h"

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
            {"inet ping 127.0.0.1\r", "bytes from"},
            {kAbandon, kPrompt},
            {kUp + kUp + kUp + "\f", kPrompt + "web port 8080"},
            {kAbandon + "\x04", "\r\n"},
        });
        EXPECT_EQ(shell.Wait(), 1);
    }
    EXPECT_EQ(ReadFile(kHistory), "web port 8080\nweb bad\ninet ping 127.0.0.1\n");
    EXPECT_EQ(support::ModeOf(kHistory), 0600u);
    Terminal shell(kShell);
    shell.Converse(
        {{"", kPrompt}, {kUp + kUp + "\f", kPrompt + "web bad"}, {kAbandon + "exit\r", "exit\r\n"}});
    EXPECT_EQ(shell.Wait(), 0);
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
    });
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
