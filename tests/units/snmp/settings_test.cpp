#include "tests/units/snmp/snmp_fixture.h"
#include "units/snmp/agent_settings.h"
#include "units/snmp/cluster_settings.h"
#include "units/snmp/communities.h"
#include "units/snmp/trapsinks.h"
#include "units/snmp/users.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace snmp {
namespace {

using Strings = std::vector<std::string>;

// An edit of Settings(): either it replaces `from` by `to` and says nothing, or it leaves the file alone.
struct Case {
    std::function<bool()> call;
    std::string from;
    std::string to;
    Output output = {};
};

Case Told(std::function<bool()> call, const std::string& info) {
    return {std::move(call), "", "", {info + "\n", ""}};
}
Case Refused(std::function<bool()> call, const std::string& error) {
    return {std::move(call), "", "", {"", error + "\n"}};
}

const Trapsess kInform{"10.0.0.5", "162", "udp", "inform"};
const ClusterNode kThird{"a", "b", "c"};

const Case kCases[] = {
    {[] { return SetAutostart("yes"); }, "<autostart>on", "<autostart>off"},
    {[] { return SetLogLevel("error"); }, "level=\"info", "level=\"error"},
    {[] { return SetSysContact("a \"b\" & c"); }, "Jo &lt;jo@example.org&gt;", "a &quot;b&quot; &amp; c"},
    Told([] { return SetV2Mode("on"); }, "Reading OIDs via SNMPv1 and SNMPv2c is already ON"),
    {[] { return SetV2Mode("off"); }, "v2_mode=\"on", "v2_mode=\"off"},
    Told([] { return SetV3Mode("on"); }, "Reading OIDs via SNMPv3 is already ON"),
    {[] { return SetV3Mode("off"); }, "v3_mode=\"on", "v3_mode=\"off"},
    Told([] { return EnableV2Traps(); }, "Sending traps via SNMPv1 and SNMPv2c is already ON"),
    {[] { return DisableV2Traps(); }, "v2_traps=\"on", "v2_traps=\"off"},
    Told([] { return EnableV3Traps(); }, "Sending traps via SNMPv3 is already ON"),
    {[] { return DisableV3Traps(); }, "v3_traps=\"on", "v3_traps=\"off"},
    Refused([] { return SetAttr("/unit/none", "x", "y", kCommonUnit); }, "Couldn't find /unit/none path"),
    Refused([] { return SetText("/unit/none", "y", kCommonUnit); }, "Failed to edit /unit/none"),
    Refused([] { return SetSysContact("\x01"); },
            "settings: the text holds characters that a settings file cannot hold\nFailed to set syscontact"),

    Told([] { return SetPort(161, "udp"); }, "SNMP is already set to use UDP port 161"),
    Told([] { return SetPort(4161, "tcp"); }, "TCP port 4161 is already in use. Please choose another port"),
    Refused([] { return SetPort(65536, "udp"); }, "65536 is not a port number"),
    {[] { return SetPort(1161, "tcp"); }, "protocol=\"udp\">161", "protocol=\"tcp\">1161"},

    {[] { return AddCommunity("lab"); }, "    </access>", "      <community name=\"lab\"/>\n    </access>"},
    {[] { return RenameCommunity("lab", "x"); }, "<community name=\"lab", "<community name=\"x"},
    {[] { return DeleteCommunity("lab"); }, "      <community name=\"lab\"/>\n", ""},
    Refused([] { return RenameCommunity("' or '1'='1", "x"); }, "No such name found"),
    Refused([] { return DeleteCommunity("x"); }, "Failed to find x community"),

    Told([] { return AddTrapsink("10.0.0.3", "site", "inform", "162", "udp"); },
         "Inform -> 10.0.0.3:162 UDP Community = site already exists"),
    Told([] { return AddTrapsink("10.0.0.2", "lab", "v1", "1162", "tcp"); },
         "Trap -> 10.0.0.2:1162 TCP Community = lab already exists"),
    Refused([] { return AddTrapsink("10.0.0.9", "lab", "v4", "162", "udp"); },
            "v4: unknown kind of trapsink"),
    Told([] { return DeleteTrapsink("10.0.0.3", "162", "udp", "site", "' or ''='"); }, "No such trapsink"),
    {[] { return DeleteTrapsink("10.0.0.3", "162", "udp", "site", "trap2sink"); },
     R"(    <trapsink destination="10.0.0.3" community="site" type="trap2sink" port="162" prot="udp"/>)"
     "\n",
     ""},

    {[] { return RenameUser("bob", "rob"); }, "user name=\"bob", "user name=\"rob"},
    {[] { return SetUserPassword("bob", "new"); }, "bob-pass", "new"},
    {[] { return SetUserAuthType("zoe", "md5"); }, "\"sha\"", "\"md5\""},
    {[] { return SetUserPrivKey("zoe", "k"); }, "zoe's key", "k"},
    {[] { return DeleteUserPrivKey("zoe"); }, "zoe's key", ""},
    {[] { return SetUserEncryption("zoe", "off"); }, "encryption=\"on", "encryption=\"off"},
    Told([] { return SetUserEncryption("bob", "off"); }, "Privacy key for user bob is already OFF"),
    {[] { return SetUserRead("zoe", "off"); }, "read=\"on", "read=\"off"},
    {[] { return SetUserTrapsess("zoe", "on"); }, "zoe's key\"", "zoe's key\" trapsess=\"on\""},
    {[] { return DeleteUser("zoe"); },
     "    <user name=\"zoe\" pass=\"zoe's pass\" read=\"on\" auth_type=\"sha\" encryption=\"on\" "
     "priv_key=\"zoe's key\"/>\n",
     ""},
    {[] { return DeleteUser("nobody") && SetUserRead("it's", "on"); }, "<unit", "<unit"},
    Refused([] { return RenameUser("' or '1'='1", "x"); }, "Failed to change user name"),
    Refused([] { return SetUserPassword("x", "y"); }, "Failed to change user password"),
    Refused([] { return SetUserAuthType("x", "y"); }, "Failed to change user auth_type"),
    Refused([] { return SetUserPrivKey("x", "y"); }, "Failed to set privacy key for x"),
    Refused([] { return DeleteUserPrivKey("x"); }, "Failed to delete privacy key for user x"),
    Refused([] { return SetUserEncryption("x", "off"); }, "Failed to set encryption for user x"),
    Refused([] { return SetUserTrapsess("x", "on"); }, "Failed to set trapsess mode for user x"),

    {[] { return AddUserTrapsess("bob", "::1", "udp", 99, "inform"); }, "    </user>",
     "      <trapsess destination=\"::1\" port=\"99\" prot=\"udp\" type=\"inform\"/>\n    </user>"},
    Told([] { return AddUserTrapsess("amy", "10.0.0.4", "tcp", 163, "inform"); },
         "Inform -> 10.0.0.4:163 TCP for user amy already exists"),
    Told([] { return AddUserTrapsess("bob", "10.0.0.4", "udp", 162, "trap"); },
         "Trap -> 10.0.0.4:162 UDP for user bob already exists"),
    Told([] { return DeleteUserTrapsess("bob", kInform); }, "No such trapsess found"),
    {[] { return DeleteUserTrapsess("amy", kInform); },
     "      <trapsess destination=\"10.0.0.5\" port=\"162\" prot=\"udp\" type=\"inform\"/>\n", ""},

    {[] { return SetClusterNodeContext("10.9.0.9", "Up"); }, "Node2", "Up"},
    {[] { return SetClusterNodeCommunity("10.9.0.10", "west"); }, "left", "west"},
    {[] { return SetClusterV2Mode("off"); }, "cluster v2_mode=\"on", "cluster v2_mode=\"off"},
    {[] { return AddClusterNode(kThird); }, "    </cluster>",
     "      <node address=\"a\" context=\"b\" community=\"c\"/>\n    </cluster>"},
    Refused([] { return SetClusterNodeContext("x", "Up"); }, "Failed to set context for node x"),
    Refused([] { return SetClusterNodeCommunity("' or ''='", "c"); },
            "Failed to set community for node ' or ''='"),
};

TEST_F(SnmpTest, EditsChangeOnePlaceAndRefusalsNone) {
    const int holder = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const sockaddr_in held{AF_INET, htons(4161), {}, {}};
    ASSERT_EQ(bind(holder, reinterpret_cast<const sockaddr*>(&held), sizeof held), 0);
    for (const Case& edit : kCases) {
        SCOPED_TRACE(edit.output.out + edit.output.err + edit.from + " -> " + edit.to);
        WriteFile(kCommon, Settings());
        const bool refused = edit.from.empty();
        const support::Snapshot before = refused ? support::TakeSnapshot() : support::Snapshot();
        Expect(edit.call, !refused, edit.output);
        if (refused)
            support::ExpectUnchanged(before);
        else
            EXPECT_EQ(ReadFile(kCommon), Replaced(Settings(), edit.from, edit.to));
    }
    close(holder);
}

TEST_F(SnmpTest, NewEntriesStandLastAndAreRead) {
    WriteFile(kCommon, Settings());
    Expect([] { return AddUser("eve", "e&e", "sha") && AddTrapsink("h", "c", "inform", "9", "udp"); }, true,
           {});
    EXPECT_EQ(ReadFile(kCommon),
              Replaced(Settings(), "  </agent>",
                       R"(    <user name="eve" pass="e&amp;e" read="on" auth_type="sha" encryption="off"/>
    <trapsink destination="h" community="c" type="informsink" port="9" prot="udp"/>
  </agent>)"));
    EXPECT_EQ(support::ModeOf(kCommon), 0600U);
    Expect([] { return SetSysName("gate two") && SetSysLocation("Roof"); }, true, {});

    EXPECT_EQ(
        (Strings{GetLogLevel(), GetProtocol(), GetPort(), GetSysName(), GetSysContact(), GetSysLocation(),
                 GetUserPrivKey("zoe"), GetUserPrivKey("eve"), GetUserPrivKey("it's")}),
        (Strings{"info", "udp", "161", "gate two", "Jo <jo@example.org>", "Roof", "zoe's key", "", ""}));
    EXPECT_TRUE(GetAutostart() && IsV2Mode() && IsV3Mode() && IsV2Traps() && IsV3Traps());
    EXPECT_TRUE(IsUserRead("eve") && !IsUserRead("bob") && IsUserTrapsess("bob") && !IsUserTrapsess("eve"));
    EXPECT_EQ(ListCommunities(), (Strings{"lab", "site"}));
    EXPECT_EQ(ListTrapsinkDestinations(), (Strings{"10.0.0.2", "10.0.0.3", "h"}));
    EXPECT_EQ(ListTrapsinks()[1], (Trapsink{"10.0.0.2", "lab", "informsink", "1162", "tcp"}));
    EXPECT_EQ(ListUserNames(), (Strings{"amy", "bob", "eve", "idle", "zoe"}));
    EXPECT_EQ(ListUsers()[2], (User{"eve", "e&e", "sha", "off", "on", ""}));
    EXPECT_EQ(ListUserTrapsessDestinations("amy"), (Strings{"10.0.0.5", "10.0.0.4"}));
    EXPECT_EQ(ListUserTrapsess("amy")[1], (Trapsess{"10.0.0.4", "163", "tcp", "trap"}));
    EXPECT_TRUE(AnyUserHasTrapsess());
    EXPECT_TRUE(DeleteUser("bob") && AnyUserHasTrapsess() && DeleteUser("amy") && !AnyUserHasTrapsess());
}

TEST_F(SnmpTest, SixteenTrapsinksAtMost) {
    for (int i = 2; i < 16; i++)
        EXPECT_TRUE(
            AddTrapsink("10.0.1." + std::to_string(i), "site", i % 2 == 0 ? "v1" : "inform", "162", "udp"));
    const support::Snapshot before = support::TakeSnapshot();
    Expect([] { return AddTrapsink("10.0.2.1", "site", "v2", "162", "udp"); }, false,
           {"For SNMPv1 and SNMPv2c user can have only 16 hosts for sending SNMP TRAP or SNMP INFORM\n", ""});
    support::ExpectUnchanged(before);
}

TEST_F(SnmpTest, NodesAreErasedInPairs) {
    const std::string none = "<cluster v2_mode=\"on\" system_community=\"between-us\"/>";
    const auto nodes = [] { return ReadClusterSettings().nodes; };
    EXPECT_TRUE(EraseClusterNodes() && nodes().empty() && EraseClusterNodes());
    EXPECT_NE(ReadFile(kCommon).find(none), std::string::npos);
    EXPECT_TRUE(AddClusterNode({"1", "", ""}) && EraseClusterNodes());
    EXPECT_EQ(nodes().size(), 1U);
    EXPECT_TRUE(AddClusterNode({"2", "", ""}) && AddClusterNode({"3", "", "c"}) && EraseClusterNodes());
    EXPECT_EQ(nodes(), (std::vector<ClusterNode>{{"3", "", "c"}}));
}

TEST_F(SnmpTest, UnreadableAndUnwritableFilesAreReported) {
    WriteFile(kCommon, "<unit>");
    const std::function<bool()> calls[] = {
        [] { return GetAutostart(); },       [] { return !GetLogLevel().empty(); },
        [] { return !ListUsers().empty(); }, [] { return ReadClusterSettings().v2_mode; },
        [] { return SetV2Mode("on"); },      [] { return SetText("/unit", "x", kCommonUnit); },
        [] { return SetPort(161, "udp"); },  [] { return AddTrapsink("a", "b", "v1", "1", "udp"); },
        [] { return DeleteUser("a"); },      [] { return AddUserTrapsess("a", "b", "udp", 1, "trap"); },
        [] { return EraseClusterNodes(); },
    };
    const support::Snapshot before = support::TakeSnapshot();
    for (const auto& call : calls)
        Expect(call, false,
               {"", "snmp_common: failed to parse configuration\nCouldn't parse XML config file\n"});
    support::ExpectUnchanged(before);
    support::FillDisk("/mnt/main/etc/settings");
    Expect([] { return SetSysName("x"); }, false,
           {"", "snmp_unique: failed to write configuration\nFailed to write to config file\n"});
}

} // namespace
} // namespace snmp
