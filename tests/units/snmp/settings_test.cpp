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

const Trapsess kInform{"10.0.0.5", "162", "udp", "inform"};

TEST_F(SnmpTest, EditsAreSavedAndRead) {
    const std::function<bool()> edits[] = {
        [] { return SetAutostart("yes") && SetLogLevel("error") && SetPort(1161, "tcp"); },
        [] { return SetV2Mode("off") && SetV3Mode("off") && DisableV2Traps() && DisableV3Traps(); },
        [] { return EnableV2Traps() && DisableV2Traps() && EnableV3Traps(); },
        [] { return SetSysContact("a \"b\" & c") && SetSysName("gate two") && SetSysLocation("Roof"); },
        [] { return AddCommunity("site") && RenameCommunity("lab", "x") && DeleteCommunity("site"); },
        [] { return DeleteTrapsink("10.0.0.3", "162", "udp", "site", "trap2sink"); },
        [] { return AddTrapsink("h", "c", "inform", "9", "udp"); },
        [] { return RenameUser("bob", "rob") && SetUserPassword("rob", "new"); },
        [] {
            return SetUserAuthType("zoe", "md5") && SetUserPrivKey("zoe", "k") && SetUserRead("zoe", "off");
        },
        [] { return SetUserEncryption("amy", "off") && DeleteUserPrivKey("amy") && DeleteUser("idle"); },
        [] { return SetUserTrapsess("zoe", "on") && AddUser("eve", "e&e", "sha"); },
        [] { return DeleteUser("nobody") && SetUserRead("it's", "on"); },
        [] { return AddUserTrapsess("rob", "::1", "udp", 99, "inform"); },
        [] { return DeleteUserTrapsess("amy", kInform); },
        [] {
            return SetClusterNodeContext("10.9.0.9", "Up") && SetClusterNodeCommunity("10.9.0.10", "west");
        },
        [] {
            return SetClusterV2Mode("off") && AddClusterNode({"a", "b", "c"});
        },
    };
    for (const auto& edit : edits) {
        SCOPED_TRACE(&edit - edits);
        Expect(edit, true, {});
    }
    support::ExpectGolden(kCommon, "units/snmp/edited.xml");
    EXPECT_EQ(support::ModeOf(kCommon), 0600U);

    EXPECT_EQ(
        (Strings{GetLogLevel(), GetProtocol(), GetPort(), GetSysName(), GetSysContact(), GetSysLocation(),
                 GetUserPrivKey("zoe"), GetUserPrivKey("eve"), GetUserPrivKey("it's")}),
        (Strings{"error", "tcp", "1161", "gate two", "a \"b\" & c", "Roof", "k", "", ""}));
    EXPECT_FALSE(GetAutostart() || IsV2Mode() || IsV3Mode() || IsV2Traps() || !IsV3Traps());
    EXPECT_TRUE(IsUserRead("eve") && !IsUserRead("rob") && IsUserTrapsess("rob") && !IsUserTrapsess("eve"));
    EXPECT_EQ(ListCommunities(), (Strings{"site", "x"}));
    EXPECT_EQ(ListTrapsinkDestinations(), (Strings{"10.0.0.2", "h"}));
    EXPECT_EQ(ListTrapsinks()[0], (Trapsink{"10.0.0.2", "lab", "informsink", "1162", "tcp"}));
    EXPECT_EQ(ListUserNames(), (Strings{"amy", "eve", "ned", "rob", "zoe"}));
    EXPECT_EQ(ListUsers()[1], (User{"eve", "e&e", "sha", "off", "on", ""}));
    EXPECT_EQ(ListUserTrapsessDestinations("rob"), (Strings{"10.0.0.4", "::1"}));
    EXPECT_EQ(ListUserTrapsess("amy")[0], (Trapsess{"10.0.0.4", "163", "tcp", "trap"}));
    EXPECT_TRUE(AnyUserHasTrapsess() && DeleteUser("rob") && DeleteUser("amy") && !AnyUserHasTrapsess());
}

struct Case {
    std::function<bool()> call;
    const char* said;
};

const Case kTold[] = {
    {[] { return SetV2Mode("on"); }, "Reading OIDs via SNMPv1 and SNMPv2c is already ON"},
    {[] { return SetV3Mode("on"); }, "Reading OIDs via SNMPv3 is already ON"},
    {[] { return EnableV2Traps(); }, "Sending traps via SNMPv1 and SNMPv2c is already ON"},
    {[] { return EnableV3Traps(); }, "Sending traps via SNMPv3 is already ON"},
    {[] { return SetPort(161, "udp"); }, "SNMP is already set to use UDP port 161"},
    {[] { return SetPort(4161, "tcp"); }, "TCP port 4161 is already in use. Please choose another port"},
    {[] { return AddTrapsink("10.0.0.3", "site", "inform", "162", "udp"); },
     "Inform -> 10.0.0.3:162 UDP Community = site already exists"},
    {[] { return AddTrapsink("10.0.0.2", "lab", "v1", "1162", "tcp"); },
     "Trap -> 10.0.0.2:1162 TCP Community = lab already exists"},
    {[] { return DeleteTrapsink("10.0.0.3", "162", "udp", "site", "' or ''='"); }, "No such trapsink"},
    {[] { return SetUserEncryption("bob", "off"); }, "Privacy key for user bob is already OFF"},
    {[] { return AddUserTrapsess("amy", "10.0.0.4", "tcp", 163, "inform"); },
     "Inform -> 10.0.0.4:163 TCP for user amy already exists"},
    {[] { return AddUserTrapsess("bob", "10.0.0.4", "udp", 162, "trap"); },
     "Trap -> 10.0.0.4:162 UDP for user bob already exists"},
    {[] { return DeleteUserTrapsess("bob", kInform); }, "No such trapsess found"},
};

const Case kRefused[] = {
    {[] { return SetAttr("/unit/none", "x", "y", kCommonUnit); }, "Couldn't find /unit/none path"},
    {[] { return SetText("/unit/none", "y", kCommonUnit); }, "Failed to edit /unit/none"},
    {[] { return SetSysContact("\x01"); },
     "settings: the text holds characters that a settings file cannot hold\nFailed to set syscontact"},
    {[] { return SetPort(65536, "udp"); }, "65536 is not a port number"},
    {[] { return RenameCommunity("' or '1'='1", "x"); }, "No such name found"},
    {[] { return DeleteCommunity("x"); }, "Failed to find x community"},
    {[] { return AddTrapsink("10.0.0.9", "lab", "v4", "162", "udp"); }, "v4: unknown kind of trapsink"},
    {[] { return RenameUser("' or '1'='1", "x"); }, "Failed to change user name"},
    {[] { return SetUserPassword("x", "y"); }, "Failed to change user password"},
    {[] { return SetUserAuthType("x", "y"); }, "Failed to change user auth_type"},
    {[] { return SetUserPrivKey("x", "y"); }, "Failed to set privacy key for x"},
    {[] { return DeleteUserPrivKey("x"); }, "Failed to delete privacy key for user x"},
    {[] { return SetUserEncryption("x", "off"); }, "Failed to set encryption for user x"},
    {[] { return SetUserTrapsess("x", "on"); }, "Failed to set trapsess mode for user x"},
    {[] { return SetClusterNodeContext("x", "Up"); }, "Failed to set context for node x"},
    {[] { return SetClusterNodeCommunity("' or ''='", "c"); }, "Failed to set community for node ' or ''='"},
};

TEST_F(SnmpTest, RefusalsChangeNothing) {
    const int holder = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const sockaddr_in held{AF_INET, htons(4161), {}, {}};
    ASSERT_EQ(bind(holder, reinterpret_cast<const sockaddr*>(&held), sizeof held), 0);
    const support::Snapshot before = support::TakeSnapshot();
    for (const Case& row : kTold)
        Expect(row.call, false, {std::string(row.said) + "\n", ""});
    for (const Case& row : kRefused)
        Expect(row.call, false, {"", std::string(row.said) + "\n"});
    support::ExpectUnchanged(before);
    close(holder);
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
        [] { return GetAutostart(); },
        [] { return !ListUsers().empty(); },
        [] { return SetV2Mode("on"); },
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
