#include "platform/log.h"
#include "tests/units/snmp/snmp_fixture.h"
#include "units/snmp/cluster_settings.h"
#include "units/snmp/engine_state.h"

#include <set>
#include <unistd.h>

namespace snmp {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

TEST_F(SnmpTest, FilesOfASingleAppliance) {
    WriteFile(kMain, "old", 0644);
    Generate();
    support::ExpectGolden(kMain, "units/snmp/single.snmpd.conf");
    support::ExpectGolden(kPersistent, "units/snmp/persistent.snmpd.conf");
    EXPECT_EQ(ReadFile(kEnvironment),
              "export MIBS=\n\nSNMPDRUN=yes\n\n"
              "SNMPDOPTS='-LS6d -Lf /dev/null -I -smux,mteTrigger,mteTriggerConf -p /run/snmpd.pid'\n");
    for (const char* path : {kMain, kPersistent, kCommon})
        EXPECT_EQ(support::ModeOf(path), 0600U) << path;
    EXPECT_THAT(TakeLog(),
                ElementsAre(LogLine{6, "New SNMP configuration will be applied"}, kNoCluster,
                            LogLine{6, "createUser amy SHA AES"}, LogLine{6, "createUser bob MD5"},
                            LogLine{6, "createUser ned MD5"}, LogLine{6, "createUser zoe SHA AES"}));
    EXPECT_TRUE(ReadClusterSettings().nodes.empty());

    // What stands beside the settings may be missing, and with SNMPv3 off its state is left alone.
    unlink("/etc/hw_pack_version");
    unlink(kEnvironment);
    WriteFile(std::string(kEnvironment) + "/x", "");
    WriteFile(kPersistent, "daemon's own");
    WriteFile(kUnique, "<unit/>");
    WriteFile(kCommon, "<unit><agent><port protocol='tcp'/><user name='u' read='on'/></agent></unit>");
    Generate(true, {"", "Failed to open /etc/hw_pack_version\n/etc/default/snmpd: failed to apply "
                        "corvansnmp_agent configuration: Is a directory\n"});
    EXPECT_EQ(ReadFile(kMain), "sysDescr ZQ100 Corvanode ZQ100 \n\nincludeAllDisks  1%\n\nmaster          "
                               "agentx\n\nengineID Seed12345678\nagentAddress tcp:\n");
    EXPECT_EQ(ReadFile(kPersistent), "daemon's own");
}

TEST_F(SnmpTest, UnknownLogLevelIsOff) {
    for (const auto& [word, option] :
         {std::pair{"critical", "'-LS2d "}, {"error", "'-LS3d "}, {"loud", "'-LS0d "}}) {
        WriteFile(kCommon, Replaced(Settings(), "level=\"info", std::string("level=\"") + word));
        Generate();
        EXPECT_THAT(ReadFile(kEnvironment), HasSubstr(option));
    }
}

// Values that would become lines or arguments of their own.
TEST_F(SnmpTest, UnfitValuesLeaveTheirLineOut) {
    const struct {
        const char* from;
        const char* to;
        const char* subject;
        const char* directive;
        const char* line; // in either of the files
    } cases[] = {
        {"name=\"lab", "name=\"lab&#10;rwcommunity x", "community", "rocommunity", "rocommunity lab"},
        {"name=\"lab", "name=\"lab 0.0.0.0/0", "community", "rocommunity", "rocommunity lab"},
        {"name=\"lab", "name=\"'lab", "community", "rocommunity", "rocommunity lab"},
        {"Jo &lt;", "Jo&#13;exec x", "system contact", "sysContact", "sysContact"},
        {"udp\">161", "udp\">161\nexec x", "agent port", "agentAddress", "agentAddress"},
        {"community=\"lab", "community=\"l\\", "trap receiver 10.0.0.2", "informsink", "informsink"},
        {"bob-pass", "bob pass", "user bob", "trapsess", "trapsess -v 3 -u bob"},
        {"priv_key=\"key-of-amy", "priv_key=\"", "user amy", "trapsess", "-u amy"},
        {"zoe's key", "k&quot; exec", "user zoe", "createUser", "createUser zoe"},
        {"zoe's pass", "p\\", "user zoe", "createUser", "createUser zoe"},
    };
    Generate();
    const std::string main_text = ReadFile(kMain);
    for (const auto& row : cases) {
        SCOPED_TRACE(row.to);
        WriteFile(kCommon, Replaced(Settings(), row.from, row.to));
        const Output output = support::Capture([] { EXPECT_FALSE(ApplyUnitUri("corvansnmp_agent")); });
        const std::string error = std::string("SNMP: ") + row.subject + ": the \"" + row.directive +
                                  "\" line is left out: a value is empty or holds a character that cannot "
                                  "stand there\n";
        // Both of amy's lines are left out.
        EXPECT_EQ(Replaced(output.err, error, ""), row.subject == std::string("user amy") ? error : "");
        const std::string all = ReadFile(kMain) + ReadFile(kPersistent);
        EXPECT_THAT(all, Not(HasSubstr(row.line)));
        EXPECT_THAT(all, Not(HasSubstr("exec")));
        EXPECT_THAT(all, HasSubstr("trap2sink udp:10.0.0.3:162 site"));
    }
    WriteFile(kCommon, Replaced(Settings(), "\"trap2sink", "\"rwcommunity"));
    Generate(false, {"", "SNMP: trap receiver 10.0.0.3: unknown type\n"});
    EXPECT_EQ(ReadFile(kMain), Without(main_text, "trap2sink"));
}

TEST_F(SnmpTest, UnreadableAndUnwritableFiles) {
    const auto failure = [](const char* path, const char* reason) {
        return Output{"", std::string(path) + ": failed to apply corvansnmp_agent configuration: " + reason +
                              "\n"};
    };
    unlink(kPersistent);
    WriteFile(std::string(kPersistent) + "/x", "");
    Output expected = failure(kPersistent, "Is a directory");
    Generate(true, expected);
    EXPECT_THAT(ReadFile(kMain), HasSubstr("rocommunity site"));
    const std::string no_parse = ": failed to parse configuration\nCouldn't parse XML config file\n";
    WriteFile(kUnique, "<unit>");
    expected.err = "snmp_unique" + no_parse + expected.err;
    Generate(false, expected);
    EXPECT_THAT(ReadFile(kMain), HasSubstr("rocommunity site"));
    support::FillDisk("/etc/snmp");
    expected.err += failure(kMain, "No space left on device").err;
    Generate(false, expected);
    unlink(kMain);
    WriteFile(std::string(kMain) + "/x", "");
    const support::Snapshot before = support::TakeSnapshot();
    Generate(false, failure(kMain, "Is a directory"));
    support::ExpectUnchanged(before);
    // Its faults are logged, its secrets are not.
    WriteFile(kCommon, Replaced(Settings(), "priv_key=\"key-of-amy\"", "priv_key=\"key-of-&amy;\"<"));
    (void)TakeLog();
    Generate(false, {"", "snmp_common" + no_parse});
    const std::vector<LogLine> log = TakeLog();
    EXPECT_FALSE(log.empty());
    for (const LogLine& line : log)
        EXPECT_THAT(line.text,
                    Not(::testing::AnyOf(HasSubstr("amy"), HasSubstr("pass"), HasSubstr("key-of"))));
}

TEST_F(SnmpTest, LockedSettingsAreNotTaken) {
    const auto holder = support::HoldLock("/run/lock/snmp.lock", true);
    Generate(false, {"", "settings file is locked by another process, please try later\n"});
}

class SnmpClusterTest : public SnmpTest {
protected:
    SnmpClusterTest() {
        WriteFile("/mnt/main/etc/sk_nums", "FO_PARAMS=\"cluster\"\n");
        WriteFile("/etc/failover.ini", "[channel]\nactiveip = 10.8.0.1/24\n\n[sendconfig]\n"
                                       "activeip = 10.9.0.9 # ours\ndevice = v0\n");
        State("2");
        support::MakeVeth("v0", "v1");
        EXPECT_EQ(support::RunProgram({"ip", "address", "add", "10.9.0.10/22", "dev", "v0"}).status, 0);
    }
    static void State(const std::string& state) {
        WriteFile("/var/spool/corvan/failoverstat", "x\n" + state + "\n");
    }
};

TEST_F(SnmpClusterTest, NodesReachEachOther) {
    Generate();
    support::ExpectGolden(kMain, "units/snmp/cluster.snmpd.conf");
    EXPECT_EQ(ReadFile(kCommon), Settings());
    const std::string active = ReadFile(kMain);

    State("0");
    Generate(); // the passive node sends no traps
    EXPECT_EQ(ReadFile(kMain), Without(Without(Without(active, "trapsess"), "trap2sink"), "informsink"));
    State("2");
    WriteFile(kCommon, Replaced(Replaced(Settings(), ".9\" context", ".10\" context"), ".10\"", ".9\""));
    Generate(); // the active address is the first node's
    for (const char* user : {"amy", "ned", "zoe"})
        EXPECT_THAT(ReadFile(kMain), HasSubstr(std::string("\nproxy  -Cn \"Node1\" -v3 -u ") + user));
    const std::string cluster_v2_off = Replaced(Settings(), "cluster v2_mode=\"on", "cluster v2_mode=\"off");
    WriteFile(kCommon, cluster_v2_off);
    Generate();
    EXPECT_EQ(ReadFile(kMain), Without(Without(Without(active, "view nodev"), "com2sec"), "noGroup"));
    WriteFile(kCommon, Replaced(cluster_v2_off, "v3_mode=\"on", "v3_mode=\"off"));
    Generate();
    EXPECT_THAT(ReadFile(kMain), Not(HasSubstr("proxy")));
}

TEST_F(SnmpClusterTest, ActiveNodeMakesTheContexts) {
    const auto expect_fresh = [](const std::vector<ClusterNode>& nodes) {
        const ClusterSettings cluster = ReadClusterSettings();
        EXPECT_EQ(cluster.nodes, nodes);
        EXPECT_FALSE(cluster.v2_mode);
        EXPECT_EQ(std::set(cluster.system_community.begin(), cluster.system_community.end()).size(), 18U);
    };
    EXPECT_TRUE(EraseClusterNodes());
    Generate();
    expect_fresh({{"10.9.0.10", "Node1", ""}, {"10.9.0.9", "Node2", ""}}); // as texts "9" stands behind "10"
    EXPECT_THAT(TakeLog(),
                ::testing::Contains(LogLine{6, "Generate context and communities for cluster monitoring"}));

    // Only the first two count, and only two are erased.
    WriteFile(kCommon, Replaced(Settings(), "<node", "<node address='10.9.0.7'/><node"));
    Generate();
    EXPECT_EQ(ReadClusterSettings().nodes,
              (std::vector<ClusterNode>{
                  {"10.9.0.9", "Node2", "right"}, {"10.9.0.10", "Node1", ""}, {"10.9.0.9", "Node2", ""}}));
    EXPECT_EQ(support::RunProgram({"grep", "-c", "^proxy -Cn", kMain}).out, "2\n");

    // The last piece alone decides.
    WriteFile(kCommon, Settings());
    WriteFile("/etc/failover.ini", "[sendconfig]\nactiveip = 10.99.0.1\ndevice = v0\n");
    Generate();
    expect_fresh({{"10.9.0.10", "Node2", ""}, {"10.99.0.1", "Node1", ""}});
}

TEST_F(SnmpClusterTest, UnknownAddressesCostNothing) {
    const struct {
        const char* file;
        const char* log;
    } cases[] = {
        {"[sendconfig]\nactiveip = 10.9.0.9\ndevice = v7\n",
         "SNMP: v7: failed to get the interface's address: No such device"},
        {"[sendconfig]\nactiveip\n", "Failed to parse /etc/failover.ini, line 2: no section and no value"},
        {nullptr, "Failed to parse /etc/failover.ini, No such file or directory"},
    };
    for (const auto& row : cases) {
        unlink("/etc/failover.ini");
        if (row.file != nullptr)
            WriteFile("/etc/failover.ini", row.file);
        (void)TakeLog();
        Generate(true,
                 {"", "SNMP: the addresses of the cluster are unknown, its monitoring contexts stay as they "
                      "are\nSNMP: cluster monitoring: the network between the nodes is unknown\n"});
        EXPECT_THAT(TakeLog(), ::testing::Contains(LogLine{3, row.log}));
        EXPECT_EQ(ReadFile(kCommon), Settings());
        EXPECT_THAT(ReadFile(kMain), Not(HasSubstr("rocommunity between-us")));
    }
}

// Each step is done and told, whatever became of the one before.
TEST_F(SnmpClusterTest, ContextsWithoutAPlaceFailNothing) {
    WriteFile(kCommon, "<unit><agent v3_mode='on'/></unit>");
    Generate(true, {"", "Failed to set mode\nFailed to add node 10.9.0.10\nFailed to add node 10.9.0.9\n"
                        "Couldn't find /unit/agent/cluster path\n"});
    WriteFile(kCommon, Settings());
    WriteFile("/etc/failover.ini", "[sendconfig]\nactiveip = 10.9.0.11\ndevice = v0\n");
    support::FillDisk("/mnt/main/etc/settings");
    std::string failures;
    for (int i = 0; i < 5; ++i) // the erasing, the mode, two nodes, the community
        failures += "snmp_common: failed to write configuration\nFailed to write to config file\n";
    Generate(true, {"", failures});
    EXPECT_EQ(ReadFile(kCommon), Settings());
}

// The state is left of a cluster that is no more.
TEST_F(SnmpClusterTest, SingleApplianceErasesTheContexts) {
    WriteFile("/mnt/main/etc/sk_nums", "FO_PARAMS=\"single\"\n");
    unlink("/etc/failover.ini");
    Generate();
    EXPECT_TRUE(ReadClusterSettings().nodes.empty());
    WriteFile(kCommon, Without(Settings(), "right")); // one alone is left, and monitors nobody
    Generate();
    EXPECT_THAT(ReadFile(kMain), Not(HasSubstr("proxy")));
}

// The passive node neither makes nor checks the contexts.
TEST_F(SnmpClusterTest, OneNodeIsEnoughForItsLines) {
    State("1");
    WriteFile(kCommon, Without(Settings(), "right"));
    Generate();
    EXPECT_EQ(ReadFile(kCommon), Without(Settings(), "right"));
    EXPECT_THAT(ReadFile(kMain), HasSubstr("proxy  -Cn \"Node1\" -v3 -u amy"));
}

TEST_F(SnmpTest, SeedAndRandomTexts) {
    WriteFile(kSeed, "");
    Generate(true, {"", std::string(kSeed) + " holds no engine seed\n"});
    EXPECT_EQ(support::RunShell(std::string("ln -sf engineid_seed ") + kSeed).status,
              0); // not to be looked at
    Generate(true,
             {"", "Failed to open seed_file " + std::string(kSeed) + "\nFailed to open " + kSeed + "\n"});
    EXPECT_EQ(support::RunProgram({"rm", "-r", "/mnt/main/var"}).status, 0);
    WriteFile("/mnt/main/var", "");
    (void)TakeLog();
    Generate(true, {"", "Failed to open " + std::string(kSeed) + "\n"});
    EXPECT_THAT(TakeLog(), ::testing::Contains(
                               LogLine{3, "Failed to create directories of the /mnt/main/var/lib/cvtk/snmp "
                                          "path with error: Not a directory"}));
    EXPECT_THAT(ReadFile(kMain), Not(HasSubstr("engineID")));
    const std::string all = GenerateRandomString(63);
    EXPECT_EQ(std::set(all.begin(), all.end()).size(), 62U);
    EXPECT_EQ(all.size(), 62U);
    EXPECT_EQ(TakeLog(),
              (std::vector<LogLine>{{6, "Length of generated random string is less than requested"}}));
    EXPECT_NE(all, GenerateRandomString(62));
}

} // namespace
} // namespace snmp
