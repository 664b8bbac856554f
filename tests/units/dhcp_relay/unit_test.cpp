#include "tests/units/dhcp_relay/relay_fixture.h"
#include "units/dhcp_relay/report.h"
#include "units/dhcp_relay/rules/interface_change.h"

namespace settings::dhcp_relay {
namespace {

using support::Exists;
using support::ReadFile;
using support::RunShell;
using support::WriteFile;

// The first server of a role counts, and an element without a text is none.
const std::string kFirst = R"(  <dhcp-relay id="1">
    <server id="1" interface="eth6">10.0.0.6</server>
    <server id="1" interface="eth7">10.0.0.7</server>
    <server id="0" interface="eth7"/>
    <interface type="listen"/>
    <interface type="listen">eth8</interface>
    <interface type="listen">eth1</interface>
    <server id="0" interface="eth0">10.0.0.5</server>
  </dhcp-relay>
)";
const std::string kSecond = R"(  <dhcp-relay id="10">
    <interface type="listen">eth7</interface>
    <server id="0" interface="eth0">dhcp.example</server>
    <server id="1" interface="eth0">10.0.0.9</server>
  </dhcp-relay>
)";
constexpr const char* kFirstLine = "DHCP_RELAY_1='-i eth8 -i eth1 -iu eth0 -iu eth6 10.0.0.5 10.0.0.6'\n";

std::string Relay(const std::string& id, const std::string& content) {
    return "<dhcp-relay id=\"" + id + "\">" + content + "</dhcp-relay>";
}
std::string Listen(const std::string& name) {
    return "<interface type='listen'>" + name + "</interface>";
}
const std::string kServer = "<server id='0' interface='eth0'>10.0.0.5</server>";

TEST_F(RelayTest, GoldenFileIsTakenByShellAndDaemon) {
    Relays(kFirst + kSecond);
    ExpectRequest("", true, {});
    support::ExpectGolden(kDaemonFile, "units/dhcp_relay/dhcp-relay.conf");
    ExpectRequest("?", true, {}); // a query without pairs is none
    support::ExpectGolden(kDaemonFile, "units/dhcp_relay/dhcp-relay.conf");
    EXPECT_EQ(RunShell(". /etc/dhcp-relay.conf; set -- $DHCP_RELAY_1; echo $#:$8:${10}").out,
              "10:eth6:10.0.0.6\n");
    for (const char* name : {"eth0", "eth1", "eth6", "eth8"}) {
        support::MakeVeth(name, std::string(name) + "p");
        ASSERT_EQ(RunShell(std::string("ip address add 10.9.0.1/24 dev ") + name).status, 0);
    }
    const auto daemon = RunShell(". /etc/dhcp-relay.conf; timeout 2 dhcrelay -4 -d --no-pid $DHCP_RELAY_1");
    EXPECT_EQ(daemon.status, 124) << daemon.err;
    EXPECT_EQ(daemon.err.substr(0, daemon.err.find("Internet")),
              R"(Requesting: eth8 as upstream: Y downstream: Y
Requesting: eth1 as upstream: Y downstream: Y
Requesting: eth0 as upstream: Y downstream: N
Requesting: eth6 as upstream: Y downstream: N
)");
}

// Each row is one relay with faults between two good ones: they are all told, by "check" as well, and the
// good ones get their lines.
TEST_F(RelayTest, FaultyRelayGetsNoLine) {
    const std::string cases[][3] = {
        {"2", "<server interface='eth0'>10.0.0.7</server>",
         "neither one listen interface is specified\nexternal DHCP server is unspecified\n"},
        {"2", "<interface type='listen'><![CDATA[]]></interface>" + Listen("eth3") + Listen("eth4") + kServer,
         "listen interface is unspecified\neth3: trunk mode of listen interface is unsupported\n"
         "eth4: listen interface without static IP address is unsupported\n"},
        {"2",
         Listen("eth99") + "<server id='0' interface=''>10.0.0.7</server>"
                           "<server id='1' interface='eth5'>10.0.0.8</server>",
         "eth99: unconfigured listen interface is unsupported\n"
         "external interface of DHCP server 10.0.0.7 is unspecified\n"
         "eth5: external interface of DHCP server 10.0.0.8 without IP address is unsupported\n"},
        {"2", Listen("eth9'") + kServer, "eth9': name is unsupported in daemon settings\n"},
        {"2 ", Listen("eth12") + kServer,
         "ID in a format other than decimal is unsupported in daemon settings\n"},
        {"0", Listen("eth12") + kServer, "ID below 1 is unsupported in daemon settings\n"},
        {"2;reboot", Listen("eth12") + kServer,
         "neither one listen interface is specified\nexternal DHCP server is unspecified\n"},
    };
    for (const auto& [id, content, faults] : cases) {
        Relays(kFirst + Relay(id, content) + kSecond);
        std::string errors;
        std::istringstream lines(faults);
        for (std::string line; std::getline(lines, line);)
            errors += "DHCP relay " + id + ": " + line + "\n";
        for (const char* rest : {"?check", ""}) {
            const support::Output output =
                support::Capture([&] { EXPECT_FALSE(ApplyUnitUri("dhcp-relay%s", rest)); });
            EXPECT_EQ(output, (support::Output{"", errors}));
        }
        support::ExpectGolden(kDaemonFile, "units/dhcp_relay/dhcp-relay.conf");
    }
}

// "1" and "01" are one number and so one relay, and " 1" is as well.
TEST_F(RelayTest, RelaysOfOneNumberShareWhatTheyHave) {
    Relays(Relay("1", Listen("eth1") + kServer) + Relay("01", Listen("eth7")));
    ExpectRequest("", true, {});
    EXPECT_EQ(ReadFile(kDaemonFile), "DHCP_RELAY_1='-i eth1 -i eth7 -iu eth0 10.0.0.5'\n"
                                     "DHCP_RELAY_01='-i eth1 -i eth7 -iu eth0 10.0.0.5'\n");
    Relays(Relay("1", Listen("eth1")) + Relay(" 1", Listen("eth8") + kServer));
    ExpectRequest(
        "", false,
        {"", "DHCP relay  1: ID in a format other than decimal is unsupported in daemon settings\n"});
    EXPECT_EQ(ReadFile(kDaemonFile), "DHCP_RELAY_1='-i eth1 -i eth8 -iu eth0 10.0.0.5'\n");
}

TEST_F(RelayTest, GenerationForOneIdKeepsTheOtherLines) {
    const std::string others = "# by hand: DHCP_RELAY_1=\nDHCP_RELAY_11='-i x'\nDHCP_RELAY_2='" +
                               std::string(9000, 'x') + " DHCP_RELAY_1='\n";
    const std::string old = " \tDHCP_RELAY_1='old " + std::string(9000, 'y') + "'\n";
    Relays(kFirst);
    WriteFile(kDaemonFile, old + others + "OTHER=1"); // without its newline
    ExpectRequest("#1", true, {});
    EXPECT_EQ(ReadFile(kDaemonFile), others + "OTHER=1\n" + kFirstLine);
    const support::Snapshot before = support::TakeSnapshot();
    // An ID is its whole text, and no pattern.
    for (const std::string id : {"3", "1.*", "1[0-9]", "1[", "1$"})
        ExpectRequest("#" + id, false, {"", "DHCP relay " + id + ": relay is unconfigured\n"});
    support::ExpectUnchanged(before);
    Relays(Relay("1.5", Listen("eth12") + kServer));
    WriteFile(kDaemonFile, "DHCP_RELAY_1.5='old'\nDHCP_RELAY_1x5='x'\n");
    ExpectRequest(
        "#1.5", false,
        {"", "DHCP relay 1.5: ID in a format other than decimal is unsupported in daemon settings\n"});
    EXPECT_EQ(ReadFile(kDaemonFile), "DHCP_RELAY_1x5='x'\n");
}

TEST_F(RelayTest, FullDiskIsReported) {
    Relays(kFirst);
    support::FillDisk("/etc");
    const std::string fault = "/etc/dhcp-relay.conf: failed to write settings: No space left on device\n";
    ExpectRequest("", false, {"", "DHCP relay: " + fault});
    ExpectRequest("#1", false, {"", "DHCP relay 1: " + fault});
}

TEST_F(RelayTest, RefusedRequests) {
    const char* cases[][2] = {
        {"#0", "wrong format of ID of DHCP relay"},
        {"#x", "wrong format of ID of DHCP relay"},
        {"#", "wrong format of ID of DHCP relay"},
        {"?add-listen-interface&interface=eth7#99999999999999999999", "wrong format of ID of DHCP relay"},
        {"?check", "no relays are configured"},
        {"?update", "wrong query format"},
        {"?add-server&server=10.0.0.5&server_id=0&interface=eth0", "wrong query format"},
        {"?add-server&server=10.0.0.5&server_id=0#1", "wrong query format"},
        {"?add-server&server=10.0.0.5&server_id=0&interface=eth0&interface=eth0#1", "wrong query format"},
        {"?add-server&server=10.0.0.5&server_id=0&port=67#1", "wrong query format"},
        {"?add-server&server=10.0.0.5&server_id=2&interface=eth0#1", "wrong query format"},
        {"?add-listen-interface&interface=eth7", "wrong query format"},
        {"?add-listen-interface#1", "wrong query format"},
        {"?convert-daemon-settings=/etc/missing",
         "/etc/missing: failed to open daemon settings file: No such file or directory"},
        {"?convert-daemon-settings=/etc", "/etc: failed to read daemon settings file: Is a directory"},
    };
    const support::Snapshot before = support::TakeSnapshot();
    for (const auto& [rest, error] : cases)
        ExpectRequest(rest, false, {"", std::string("DHCP relay: ") + error + "\n"});
    ExpectRequest("?required=eth1", false, {});
    ExpectRequest("?check#3x", false, {"", "DHCP relay 3x: relay is unconfigured\n"});
    support::ExpectUnchanged(before);
}

TEST_F(RelayTest, Requests) {
    ExpectRequest("?add-listen-interface&interface=eth1#1", true, {});
    ExpectRequest("?add-server&interface=eth0&server_id=0&server=10.0.0.5#1", true, {});
    ExpectRequest("?add-listen-interface&interface=eth7#2", true, {});
    EXPECT_EQ(ReadFile(kSettings), Unit(R"(  <dhcp-relay id="1">
    <interface type="listen">eth1</interface>
    <server id="0" interface="eth0">10.0.0.5</server>
  </dhcp-relay>
  <dhcp-relay id="2">
    <interface type="listen">eth7</interface>
  </dhcp-relay>
)"));
    ExpectRequest("?check#1", true, {});
    EXPECT_FALSE(Exists(kDaemonFile));
    ExpectRequest("?required=eth0", true, {"1\n", ""});
    ExpectRequest("?required=eth7&more", true, {"2\n", ""});
    ExpectRequest("?dump", true, {ReadFile(kSettings), ""});
    Start("2");
    WriteProtected(path_list::common_settings, "DHCP_RELAY on\n");
    ExpectRequest("?print#2", true,
                  {R"(DHCP relays autostart is on

DHCP relay 1 is stopped
External DHCP server interface eth0
External DHCP server 10.0.0.5
Backup DHCP server interface NA
Backup DHCP server NA
Internal listen interfaces eth1

DHCP relay 2 is started
External DHCP server interface NA
External DHCP server NA
Backup DHCP server interface NA
Backup DHCP server NA
Internal listen interfaces eth7
)",
                   ""});
    Expect([] { return PrintDhcpRelays("7"); }, false, {"", "DHCP relay 7: does not exist\n"});
    EXPECT_EQ(RunShell("ls /tmp/dhcp-relay-*").out, "");
}

// Nobody's interfaces are unconfigured and nobody's autostart is off because a record was not read.
TEST_F(RelayTest, UnreadRecordIsToldAndChangesNothing) {
    Relays(kFirst);
    WriteFile(kDaemonFile, "old");
    WriteProtected(path_list::common_settings, "DHCP_RELAY on\n");
    WriteFile(path_list::common_settings, "DHCP_RELAY off\n"); // behind the system's back
    const std::string fault =
        ": failed to read settings: " + path_list::common_settings + " does not match its guard\n";
    const support::Snapshot before = support::TakeSnapshot();
    const auto expect_refusal = [](const std::function<bool()>& call, const std::string& error) {
        EXPECT_EQ(support::Capture([&] { EXPECT_FALSE(call()); }), (support::Output{"", error}));
    };
    for (const char* rest : {"", "#1", "?check", "?add-listen-interface&interface=eth7#1",
                             "?add-server&server=10.0.0.7&server_id=0&interface=eth0#1"})
        expect_refusal([&] { return ApplyUnitUri("dhcp-relay%s", rest); }, path_list::local_settings + fault);
    expect_refusal([] { return PrintDhcpRelays(""); }, path_list::common_settings + fault);
    expect_refusal([] { return CheckRelayInterfaceChange("eth1", true, false, "access"); },
                   path_list::common_settings + fault);
    support::ExpectUnchanged(before);
}

TEST_F(RelayTest, LockedSettingsAreNotPrinted) {
    const auto holder = support::HoldLock("/run/lock/dhcp-relay.lock", true);
    ExpectRequest("?print", false, {"", "settings file is locked by another process, please try later\n"});
}

TEST_F(RelayTest, Conversion) {
    const std::string request = "?convert-daemon-settings=/etc/old.conf";
    WriteFile("/etc/old.conf", R"(SERVERS="10.0.0.5 10.0.0.6" # two
EXTERNAL='eth0'
	INTERFACES = eth1	'eth7'
#INTERFACES=eth6
MY_INTERFACES=eth6
INTERFACES=eth8)");
    Relays(kSecond);
    ExpectRequest(request, true, {});
    EXPECT_EQ(ReadFile(kSettings), Unit(R"(  <dhcp-relay id="1">
    <server id="0" interface="eth0">10.0.0.5</server>
    <interface type="listen">eth1</interface>
    <interface type="listen">eth7</interface>
    <interface type="listen">eth8</interface>
  </dhcp-relay>
)"));
    // What no settings file can hold costs nothing, unless it isn't taken.
    const std::string characters = "the text holds characters that a settings file cannot hold";
    const std::string reference = "a \"&\" in the text of a setting is written \"&amp;\"";
    for (const auto& [line, error] : {std::pair{"INTERFACES=\"eth7 eth\x80\"", characters},
                                      {"INTERFACES=eth1&eth2", reference},
                                      {"SERVERS=a&b\nEXTERNAL=eth0", reference},
                                      {"SERVERS=a\nEXTERNAL=eth\x80", characters}}) {
        WriteFile("/etc/old.conf", line);
        const support::Snapshot before = support::TakeSnapshot();
        ExpectRequest(request, false, {"", "settings: " + error + "\n"});
        support::ExpectUnchanged(before);
    }
    WriteFile("/etc/old.conf", "SERVERS=a b&c\nEXTERNAL=eth&0 eth1\nINTERFACES=eth7\n");
    ExpectRequest(request, true, {});
    EXPECT_EQ(ReadFile(kSettings), Unit(R"(  <dhcp-relay id="1">
    <server id="0" interface="eth&amp;0">a</server>
    <interface type="listen">eth7</interface>
  </dhcp-relay>
)"));
    WriteFile("/etc/old.conf", "SERVERS=10.0.0.5\n");
    ExpectRequest(request, true, {});
    EXPECT_EQ(ReadFile(kSettings), Unit("  <dhcp-relay id=\"1\"/>\n"));
    WriteFile("/etc/old.conf", "SERVERS=\n");
    ExpectRequest(request, true, {});
    EXPECT_EQ(ReadFile(kSettings),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<unit name=\"dhcp-relay\"/>\n");
}

} // namespace
} // namespace settings::dhcp_relay
