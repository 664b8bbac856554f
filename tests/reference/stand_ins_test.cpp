#include "tests/support/appliance.h"

#include <csignal>
#include <gmock/gmock.h>

namespace {

using support::RunShell;
using ::testing::HasSubstr;

// The reference appliance's own programs, which stand for closed ones.
class StandInTest : public support::Appliance {
protected:
    StandInTest() {
        const support::Result booted =
            support::RunProgram({SOURCE_FOLDER "/reference/boot", BUILD_FOLDER, "true"});
        EXPECT_EQ(booted.status, 0) << booted.err;
    }

    static std::string Out(const std::string& line) {
        const support::Result result = RunShell(line);
        EXPECT_EQ(result.status, 0) << line << '\n' << result.err;
        return result.out;
    }

    // One call of the terminal with these lines of its configuration mode.
    static int Configure(const std::string& daemon, const std::vector<std::string>& lines) {
        support::Arguments arguments{"/usr/bin/vtysh", "-d", daemon, "-c", "configure terminal"};
        for (const std::string& line : lines)
            arguments.insert(arguments.end(), {"-c", line});
        return support::RunProgram(arguments).status;
    }
};

TEST_F(StandInTest, DaemonsKeepNothingThatTheyRefuse) {
    ASSERT_EQ(RunShell("dgd.sh start").status, 0);
    ASSERT_EQ(Configure("zebra", {"table 5 vpn", "ip rule p 1024", "set table VPN"}), 0);
    ASSERT_EQ(Configure("dgdd", {"next-hop b", "address 10.0.0.1", "exit", "dyn-next-hop d", "exit",
                                 "dgd-rule r", "match next-hop b state up"}),
              0);
    const struct {
        std::string daemon;
        std::vector<std::string> lines;
    } rows[] = {
        {"dgdd", {"next-hop b", "address nonsense"}},
        {"dgdd", {"next-hop b", "test-address 1.2.3"}},
        {"dgdd", {"dyn-next-hop d", "interface a/b"}},
        {"dgdd", {"dyn-next-hop d", "interface 0123456789abcdef"}},
        {"dgdd", {"no next-hop b"}}, // the rule refers to it
        {"dgdd", {"dgd-rule r", "action 1 route policy $(reboot)"}},
        {"zebra", {"table 5 new"}}, // the rule refers to the old name
        {"zebra", {"table 5"}},
        {"zebra", {"no table 5"}},
        {"zebra", {"table 255 mine"}}, // the kernel's
        {"zebra", {"ip route table 253 10.0.0.0/8 192.168.1.2"}},
        {"zebra", {"ip rule p 1024", "match inbound-interface a/b"}},
        {"zebra", {"ip rule default 32766", "set blackhole"}},
    };
    for (const auto& [daemon, lines] : rows) {
        const std::string show = "vtysh -d " + daemon + " -c 'show running-config'";
        const std::string before = Out(show);
        EXPECT_EQ(Configure(daemon, lines), 1) << lines.back();
        EXPECT_EQ(Out(show), before) << lines.back();
    }
}

TEST_F(StandInTest, UnreadableStoreIsNoEmptyOne) {
    ASSERT_EQ(Configure("zebra", {"ip route 10.0.0.0/8 192.168.1.2", "end", "write file"}), 0);
    const std::string saved = support::ReadFile("/etc/quagga/zebra.conf");
    Out("rm /run/quagga/zebra.running && mkdir /run/quagga/zebra.running");
    EXPECT_EQ(Configure("zebra", {"ip route 10.1.0.0/16 192.168.1.2", "end", "write file"}), 1);
    EXPECT_THAT(RunShell("vtysh -c 'show running-config'").err, HasSubstr("zebra.running: failed to read"));
    EXPECT_EQ(support::ReadFile("/etc/quagga/zebra.conf"), saved);
}

// One rule that stays is a failure, and no reason to keep the others.
TEST_F(StandInTest, PoliciesGoWholeOrFail) {
    ASSERT_EQ(Configure("zebra", {"ip rule p 1024", "set blackhole", "exit", "ip rule p 1100",
                                  "set blackhole", "exit", "ip rule q 1024", "set reject"}),
              0);
    Out("mv /usr/bin/vtysh /run/vtysh");
    support::WriteFile(
        "/usr/bin/vtysh",
        "#!/bin/sh\ncase \"$*\" in *'no ip rule p 1024'*) exit 1 ;; esac\nexec /run/vtysh \"$@\"\n", 0755);
    EXPECT_EQ(RunShell("policy_routing rule_clear_name p").status, 1);
    EXPECT_EQ(Out("vtysh -c 'show running-config' | grep 'ip rule [pq]'"), "ip rule p 1024\nip rule q 1024\n");
    Out("mv /run/vtysh /usr/bin/vtysh && policy_routing rule_clear_name p");
    EXPECT_EQ(Out("vtysh -c 'show running-config' | grep 'ip rule [pq]'"), "ip rule q 1024\n");
    EXPECT_EQ(RunShell("policy_routing rule_clear_name p").status, 1);
}

// In a folder where everybody may make files.
TEST_F(StandInTest, LockFilesAreThereFromTheBeginning) {
    EXPECT_EQ(Out("cd /run/lock && stat -c '%n %U %a' *.lock"), "critops.lock root 600\n"
                                                                "dhcp-relay.lock root 600\n"
                                                                "dhcp-server.lock root 600\n"
                                                                "settings.lock root 600\n"
                                                                "snmp.lock root 600\n");
}

TEST_F(StandInTest, KernelHasWhatIsConfigured) {
    const std::string routes = "ip -4 route show proto zebra";
    ASSERT_EQ(Configure("zebra", {"ip route 10.8.0.0/16 203.0.113.1", "ip route 10.9.0.0/16 172.16.0.1",
                                  "ip route 10.9.0.0/16 192.168.2.9 20", "ip rule p 1024", "match tos 184",
                                  "match to 10.8.0.0/16", "set reject", "ip policy p"}),
              0);
    EXPECT_EQ(Out(routes), "10.8.0.0/16 via 203.0.113.1 dev eth0 metric 10 onlink \n"
                           "10.9.0.0/16 via 192.168.2.9 dev eth2 metric 20 onlink \n");
    EXPECT_EQ(Out("vtysh -c 'show ip route' | grep 10.9"), "S   10.9.0.0/16 [10/0] via 172.16.0.1 inactive\n"
                                                           "S>* 10.9.0.0/16 [20/0] via 192.168.2.9\n");
    EXPECT_EQ(Out("ip rule show pref 1024"),
              "1024:\tfrom all to 10.8.0.0/16 fwmark 0xd5c000b8 prohibit proto zebra\n");
    // A rule that asks for less in the place of one that asks for more.
    ASSERT_EQ(Configure("zebra", {"ip rule p 1024", "no match to", "no match tos"}), 0);
    EXPECT_EQ(Out("ip rule show pref 1024"), "1024:\tfrom all prohibit proto zebra\n");
    EXPECT_EQ(Out("nft list ruleset"), "");
    // A change of nothing touches nothing.
    EXPECT_EQ(
        Out("timeout 1 ip monitor route rule > /tmp/seen & sleep 0.2; vtysh -c 'conf t' -c 'table 7 new'; "
            "wait; grep -c zebra /tmp/seen || true"),
        "0\n");
    // Routes that went with their link come back by the scripts behind a change.
    Out("ip link set eth2 down && ip link set eth2 up && if_postcmd.sh eth2 up");
    EXPECT_THAT(Out(routes), HasSubstr("10.9.0.0/16"));
    ASSERT_EQ(Configure("zebra", {"ip policy default", "no ip route 10.8.0.0/16 203.0.113.1"}), 0);
    EXPECT_EQ(Out(routes + "; ip rule show pref 1024"),
              "10.9.0.0/16 via 192.168.2.9 dev eth2 metric 20 onlink \n");
}

TEST_F(StandInTest, FailoverKnowsItsDaemon) {
    const std::string state = "sed -n 2p /var/spool/corvan/failoverstat";
    Out("failover install");
    // The number of the pid file is another program's by now.
    support::Daemon stranger({"sleep", "60"});
    support::WriteFile("/run/failoverd.pid", std::to_string(stranger.Pid()) + "\n");
    EXPECT_EQ(RunShell("failover stop").status, 1);
    EXPECT_EQ(kill(stranger.Pid(), 0), 0);

    Out("failover start active");
    EXPECT_EQ(Out(state), "2\n");
    Out("kill -KILL $(cat /run/failoverd.pid)");
    EXPECT_TRUE(support::WaitFor([] { return !support::Exists("/run/failoverd.pid"); }));
    EXPECT_EQ(Out(state), "0\n");

    Out("failover start passive && kill -STOP $(cat /run/failoverd.pid)");
    EXPECT_EQ(Out(state), "1\n");
    Out("failover stop"); // it does not listen
    EXPECT_EQ(Out(state), "0\n");
}

TEST_F(StandInTest, EditorIsTheRestrictedOneOrNone) {
    support::WriteFile("/run/file", "text\n");
    Out("ln -sf /bin/false /usr/bin/vi; rm -f /usr/bin/nano");
    const support::Result result = RunShell("script -qec 'rnano -w /run/file' /dev/null");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.out, HasSubstr("rnano: there is no nano"));
}

TEST(EnterTest, NothingOfTheMachineIsWritten) {
    // Mounted read-write: the appliance's own file systems, and the checkout.
    const support::Result result = RunShell(
        "findmnt -rno TARGET,FSTYPE,SOURCE,OPTIONS | awk '$4 ~ /(^|,)rw/ && $2 != \"overlay\" && $3 !~ "
        "/^(appliance|proc)/ { print $1 }'");
    EXPECT_EQ(result.out, SOURCE_FOLDER "\n");
    EXPECT_EQ(RunShell("touch /home/probe").status, 1);
}

TEST(EnterTest, ApplianceInAnApplianceIsItsOwn) {
    if (RunShell("findmnt -no FSTYPE /").out == "overlay\n")
        GTEST_SKIP() << "the kernel lays no third overlay over two";
    const support::Result result = RunShell(
        "echo outer > /usr/bin/probe; " SOURCE_FOLDER "/reference/enter sh -c 'echo inner > /usr/bin/probe; "
        "ip link add v0 type veth peer name v1'; cat /usr/bin/probe; ip link");
    EXPECT_THAT(result.out, HasSubstr("outer\n"));
    EXPECT_THAT(result.out, ::testing::Not(HasSubstr("v0")));
    EXPECT_EQ(result.err, "");
}

} // namespace
