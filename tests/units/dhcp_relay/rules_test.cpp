#include "tests/units/dhcp_relay/relay_fixture.h"
#include "units/dhcp_relay/rules/interface_change.h"
#include "units/dhcp_relay/rules/interface_index.h"
#include "units/dhcp_relay/rules/listen_interfaces.h"
#include "units/dhcp_relay/rules/lookup.h"
#include "units/dhcp_relay/rules/servers.h"

namespace settings::dhcp_relay {
namespace {

using support::Exists;
using support::Output;
using support::ReadFile;

const std::string kTwoRelays = R"(  <dhcp-relay id="1">
    <interface type="listen">eth1</interface>
    <server id="0" interface="eth0">10.0.0.5</server>
  </dhcp-relay>
  <dhcp-relay id="2">
    <server id="1" interface="eth6">10.0.0.6</server>
  </dhcp-relay>
)";

TEST_F(RelayTest, ListenInterfaceRefusals) {
    Relays(kTwoRelays);
    // ID, interface, what is said
    const char* cases[][3] = {
        {"1", "", "listen interface is unspecified"},
        {"1", "eth99", "eth99: unconfigured listen interface is unsupported"},
        {"1", "eth3", "eth3: trunk mode of listen interface is unsupported"},
        {"1", "eth4", "eth4: listen interface without static IP address is unsupported"},
        {"1", "eth5", "eth5: listen interface without static IP address is unsupported"},
        {"2", "eth1", "eth1: interface is already in use as listen interface within DHCP relay 1"},
        {"1", "eth0", "eth0: interface is already in use as external interface within DHCP relay 1"},
        {"1", "eth6", "eth6: interface is already in use as backup interface within DHCP relay 2"},
        {"1", "eth2", "eth2: interface is already in use as listen interface within DHCP server"},
        {"1'or'", "eth7", "ID with a quote is unsupported"},
    };
    for (const auto& row : cases)
        ExpectRefusal([&] { return AddRelayListenInterface(row[0], row[1]); }, row[0], row[2]);
    for (const char* interface : {"eth7", "x' or '1' = '1"})
        ExpectRefusal([&] { return RemoveRelayListenInterface("1", interface); }, "1",
                      interface + std::string(": listen interface is not in use"));
}

TEST_F(RelayTest, ServerRefusals) {
    Relays(kTwoRelays);
    // ID, server ID, server, interface, what is said
    const char* cases[][5] = {
        {"1", "0", "", "eth0", "DHCP server is unspecified"},
        {"1", "0", "10.0.0.7;x", "eth0",
         "10.0.0.7;x: DHCP server address in a format other than IP or DNS is unsupported"},
        {"1", "0", "10.0.0.7", "", "external interface of DHCP server 10.0.0.7 is unspecified"},
        {"1", "0", "10.0.0.7", "eth99",
         "eth99: unconfigured external interface of DHCP server 10.0.0.7 is unsupported"},
        {"1", "0", "10.0.0.7", "eth3",
         "eth3: trunk mode of external interface of DHCP server 10.0.0.7 is unsupported"},
        {"1", "0", "10.0.0.7", "eth5",
         "eth5: external interface of DHCP server 10.0.0.7 without IP address is unsupported"},
        {"1", "1", "10.0.0.5", "eth0", "10.0.0.5: DHCP server is already in use as external interface"},
        {"1", "0", "10.0.0.6", "eth0",
         "10.0.0.6: DHCP server is already in use as backup interface within DHCP relay 2"},
        {"2", "0", "10.0.0.7", "eth1",
         "eth1: external interface is already in use as listen interface within DHCP relay 1"},
        {"2", "1", "10.0.0.7", "eth2",
         "eth2: backup interface is already in use as listen interface within DHCP server"},
        {"9'or@id='1", "0", "10.0.0.7", "eth0", "ID with a quote is unsupported"},
    };
    for (const auto& row : cases)
        ExpectRefusal([&] { return AddRelayServer(row[0], row[1], row[2], row[3]); }, row[0], row[4]);
    ExpectRefusal([] { return RemoveRelayServer("1", "0", "10.0.0.5", "eth6"); }, "1",
                  "10.0.0.5: external DHCP server on interface eth6 is not in use");
    ExpectRefusal([] { return RemoveRelayServer("2", "1", "x' or '1' = '1", "eth6"); }, "2",
                  "x' or '1' = '1: backup DHCP server on interface eth6 is not in use");
    ExpectRefusal([] { return EraseRelay("3"); }, "3", "does not exist");
}

TEST_F(RelayTest, RunningRelayIsNotChanged) {
    Relays(kTwoRelays);
    Start("1");
    const std::function<bool()> calls[] = {
        [] { return AddRelayListenInterface("1", "eth7"); },
        [] { return RemoveRelayListenInterface("1", "eth1"); },
        [] { return AddRelayServer("1", "1", "10.0.0.7", "eth0"); },
        [] { return RemoveRelayServer("1", "0", "10.0.0.5", "eth0"); },
        [] { return EraseRelay("1"); },
    };
    for (const auto& call : calls)
        ExpectRefusal(call, "1", "prohibited to change configuration while daemon is running");
    Expect([] { return AddRelayListenInterface("2", "eth7"); }, true, {});
}

TEST_F(RelayTest, EditsFromTheFirstElementToTheLast) {
    Expect([] { return AddRelayListenInterface("7", "eth1"); }, true, {});
    Expect([] { return AddRelayServer("7", "0", "10.0.0.5", "eth0"); }, true, {});
    Expect([] { return AddRelayServer("7", "0", "10.0.0.5", "eth0"); }, true, {});
    for (const std::string server : {"10.0.0.5", "10.0.0.6"}) // its interface changes alone, and its address
        Expect([&] { return AddRelayServer("7", "0", server, "eth4"); }, true,
               {"",
                "DHCP relay 7: " + server + ": external DHCP server with interface eth4 has been altered\n"});
    Expect([] { return AddRelayServer("7", "1", "localhost", "eth0"); }, true, {});
    Expect([] { return AddRelayServer("7", "1", "dhcp.invalid", "eth0"); }, true,
           {"", "DHCP relay 7: dhcp.invalid: failed to resolve domain name of backup DHCP server\n"
                "DHCP relay 7: dhcp.invalid: backup DHCP server with interface eth0 has been altered\n"});
    EXPECT_EQ(ReadFile(kSettings), Unit(R"(  <dhcp-relay id="7">
    <interface type="listen">eth1</interface>
    <server id="0" interface="eth4">10.0.0.6</server>
    <server id="1" interface="eth0">dhcp.invalid</server>
  </dhcp-relay>
)"));
    EXPECT_EQ(ListRelayInterfaces(), (std::vector<std::string>{"eth0", "eth1", "eth4"}));
    EXPECT_EQ(ListRelayListenInterfaces(), (std::vector<std::string>{"eth1"}));
    EXPECT_EQ(ListRelayExternalInterfaces(), (std::vector<std::string>{"eth0", "eth4"}));
    EXPECT_EQ(GetRelayExternalServer("7", "eth4") + GetRelayBackupServer("7", "eth0"),
              "10.0.0.6dhcp.invalid");

    Expect([] { return RemoveRelayServer("7", "0", "10.0.0.6", "eth4"); }, true, {});
    Expect([] { return RemoveRelayServer("7", "1", "dhcp.invalid", "eth0"); }, true, {});
    Expect([] { return RemoveRelayListenInterface("7", "eth1"); }, true, {});
    EXPECT_EQ(ReadFile(kSettings),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<unit name=\"dhcp-relay\"/>\n");
}

TEST_F(RelayTest, InterfacesAndTheirRelays) {
    Relays(kTwoRelays + R"(  <dhcp-relay id="3">
    <interface type="listen">eth6</interface>
    <interface type="other">eth7</interface>
    <interface type="listen">eth1</interface>
    <server id="0" interface="eth8"/>
    <server id="1" interface="eth6">10.0.0.8</server>
  </dhcp-relay>
)");
    const InterfaceIndex index;
    for (const auto& [interface, relay] :
         {std::pair{"eth0", "1"}, {"eth1", "1"}, {"eth6", "3"}, {"eth7", ""}, {"eth8", ""}, {"", ""}}) {
        EXPECT_EQ(FindRelayByInterface(interface), relay);
        EXPECT_EQ(index.Find(interface), relay);
    }
    ExpectRequest("?required=eth6", true, {"2\n", ""}); // the server's relay comes first here
}

TEST_F(RelayTest, LimitOfListenInterfacesIsEachRelays) {
    Relays("<dhcp-relay id='1'><server id='0' interface='eth0'>10.0.0.5</server><interface/></dhcp-relay>");
    for (int i = 10; i < 42; i++)
        Expect([&] { return AddRelayListenInterface("1", "eth" + std::to_string(i)); }, true, {});
    ExpectRefusal([] { return AddRelayListenInterface("1", "eth42"); }, "1",
                  "failed to add interface due to maximum number of listen interfaces: 32");
    Expect([] { return AddRelayListenInterface("2", "eth42"); }, true, {});
}

TEST_F(RelayTest, EraseRemovesTheFilesWithTheLastRelay) {
    Relays(kTwoRelays);
    Expect([] { return EraseRelay("2"); }, true, {});
    EXPECT_EQ(ReadFile(kSettings), Unit(kTwoRelays.substr(0, kTwoRelays.find("  <dhcp-relay id=\"2\">"))));
    support::WriteFile(kDaemonFile, "old");
    Expect([] { return EraseRelay("1"); }, true, {});
    EXPECT_FALSE(Exists(kSettings));
    EXPECT_FALSE(Exists(kDaemonFile));
    Relays(kTwoRelays);
    support::WriteFile(std::string(kDaemonFile) + "/in-the-way", "");
    Expect([] { return EraseRelay("1") && EraseRelay("2"); }, false,
           {"", "DHCP relay: /etc/dhcp-relay.conf: failed to remove daemon settings file: Is a directory\n"});
}

TEST_F(RelayTest, InterfaceChange) {
    struct Change {
        bool going_down;
        bool changing_address;
        const char* new_class;
        const char* forbidden;
        const char* warned;
    };
    const Change changes[] = {
        {true, true, "slave", "interface eth6 cannot go DOWN since DHCP relay autostart is on",
         "interface eth6 going DOWN but it is present in DHCP relay configuration"},
        {false, true, "slave", "interface eth6 cannot change IP address since DHCP relay autostart is on",
         "interface eth6 changing IP address but it is present in DHCP relay configuration"},
        {false, false, "slave", "interface eth6 cannot set slave class since DHCP relay autostart is on",
         "interface eth6 can set slave class but it is present in DHCP relay configuration"},
        {false, false, "access", nullptr, nullptr},
    };
    Relays(kTwoRelays);
    for (const bool autostart : {true, false}) {
        WriteProtected(path_list::common_settings, autostart ? "DHCP_RELAY on\n" : "DHCP_RELAY off\n");
        for (const Change& row : changes) {
            const char* text = autostart ? row.forbidden : row.warned;
            bool done = false;
            const Output output = support::Capture([&] {
                done = CheckRelayInterfaceChange("eth6", row.going_down, row.changing_address, row.new_class);
            });
            EXPECT_EQ(done, !autostart || text == nullptr);
            EXPECT_EQ(output, (Output{"", text != nullptr ? "DHCP relay: " + std::string(text) + "\n" : ""}));
            const std::string logged = std::string("DHCP relay autostart is ") + (autostart ? "on " : "off ");
            EXPECT_EQ(TakeLog(), (std::vector<support::LogLine>{{6, logged}}));
        }
    }
    Expect([] { return CheckRelayInterfaceChange("eth7", true, true, "slave"); }, true, {});
    Expect([] { return CheckRelayInterfaceChange("", true, true, "slave"); }, false,
           {"", "DHCP relay: listen interface is incorrect\n"});
    Start("2");
    Expect([] { return CheckRelayInterfaceChange("eth6", false, false, "access"); }, false,
           {"", "DHCP relay is running and the interface eth6 is in use\n"});
}

} // namespace
} // namespace settings::dhcp_relay
