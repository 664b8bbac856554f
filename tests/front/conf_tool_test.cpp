#include "front/unit_query.h"
#include "tests/support/appliance.h"

#include <libxml/uri.h>
#include <memory>

namespace {

using support::Arguments;
using support::ConfTool;
using support::Exists;
using support::ReadFile;
using support::WriteFile;

class ConfToolTest : public support::Appliance {};

TEST_F(ConfToolTest, QueriesSplitIntoPairs) {
    const std::string long_value(10000, 'v');
    const struct {
        std::string query;
        QueryList pairs;
    } cases[] = {
        {"", {}},
        {"?", {}},
        {"?check", {{"check", ""}}},
        {"?a=1&&b", {{"a", "1"}, {"b", ""}}},
        {"?=&=", {}},
        {"?a=b=c&a=d", {{"a", "b=c"}, {"a", "d"}}},
        {"?=x&", {{"", "x"}}},
        {"?key=%41", {{"key", "%41"}}},
        {"?k=" + long_value, {{"k", long_value}}},
    };
    for (const auto& row : cases) {
        const std::unique_ptr<xmlURI, decltype(&xmlFreeURI)> uri(
            xmlParseURI(("unit://name" + row.query + "#part").c_str()), xmlFreeURI);
        ASSERT_NE(uri, nullptr) << row.query;
        EXPECT_EQ(ParseUnitQuery(uri.get()), row.pairs) << row.query;
        EXPECT_EQ(GetUnitFragment(uri.get()), "part");
    }
    EXPECT_TRUE(ParseUnitQuery(nullptr).empty());
}

TEST_F(ConfToolTest, ExitStatusTellsWhetherEveryOptionSucceeded) {
    const struct {
        Arguments arguments;
        int status;
        std::string err;
    } cases[] = {
        {{}, 1, ""},
        {{"--settings", "/tmp/x", "-s", "/tmp/y"}, 0, ""},
        {{"-s", "/tmp/x", "operand"}, 1, ""},
        {{"-a"}, 1, ""},
        {{"-z"}, 1, ""},
        {{"-a", "no-such-unit"}, 1, ""},
        {{"-a", "/x"}, 1, ""},
        {{"-p", "/mnt/no-such-file"}, 1, ""},
        {{"-a", "a b"}, 1, "unit://a b: failed to parse unit URI\n"},
        {{"-a", "dhcp-server?%%%s%n"}, 1, "unit://dhcp-server?%%%s%n: failed to parse unit URI\n"},
        {{"-a", "dhcp-server?x=%"}, 1, "unit://dhcp-server?x=%: failed to parse unit URI\n"},
        {{"-a", "dhcp-server?x%%41"}, 1, "DHCP server: wrong query format\n"},
        {{"-a", "dhcp-server?"}, 1, "DHCP server: empty query\n"},
        {{"-a", "all?x"}, // every unit in its order, also behind one that failed
         1,
         "DHCP relay: wrong query format\nDHCP server: wrong query format\nSNMP: wrong query format\n"},
    };
    for (const auto& row : cases) {
        const support::Result result = ConfTool(row.arguments);
        EXPECT_EQ(result.status, row.status) << ::testing::PrintToString(row.arguments);
        EXPECT_EQ(result.err, row.err) << ::testing::PrintToString(row.arguments);
        EXPECT_EQ(result.out, "") << ::testing::PrintToString(row.arguments);
    }
}

TEST_F(ConfToolTest, LongUriIsCut) {
    EXPECT_EQ(ConfTool({"-a", "a b" + std::string(20000, 'x')}).err,
              "unit://a b" + std::string(8181, 'x') + ": failed to parse unit URI\n");
}

TEST_F(ConfToolTest, FailedOptionEndsTheRun) {
    WriteFile("/mnt/file", "text");
    WriteFile("/mnt/file.crg", "");
    EXPECT_EQ(ConfTool({"-a", "no-such-unit", "-p", "/mnt/file"}).status, 1);
    EXPECT_EQ(ReadFile("/mnt/file.crg"), "");
    EXPECT_EQ(ConfTool({"-p", "/mnt/file", "-a", "no-such-unit"}).status, 1);
    EXPECT_NE(ReadFile("/mnt/file.crg"), "");
}

TEST_F(ConfToolTest, XmlFaultsGoToTheLogAlone) {
    WriteFile("/mnt/main/etc/settings/dhcp-server.xml", "<unit name='dhcp-server'><subnet></unit>");
    const support::Result result = ConfTool({"-a", "dhcp-server"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "dhcp-server: failed to parse configuration\n");
    const auto log = TakeLog();
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(log.front().level, 3);
    EXPECT_NE(log.front().text.find("Opening and ending tag mismatch"), std::string::npos);
}

TEST_F(ConfToolTest, ProtectRenewsOwnAndSharedGuards) {
    WriteFile("/mnt/dir/a", "a");
    WriteFile("/mnt/dir/b", "b");
    WriteFile("/mnt/dir/a.crg", "");
    WriteFile("/mnt/shared.crg", "");
    support::WriteLink("/mnt/dir/b.crg", "/mnt/shared.crg");
    ASSERT_EQ(ConfTool({"-p", "/mnt/dir/a", "-p", "/mnt/dir/b"}).status, 0);
    EXPECT_EQ(support::RunShell("sha256sum -c /mnt/dir/a.crg /mnt/shared.crg").out,
              "/mnt/dir/a: OK\n/mnt/dir/b: OK\n");
    EXPECT_TRUE(support::RunShell("test -L /mnt/dir/b.crg").status == 0);
}

// The other file's line in each guard tells whether it was kept.
TEST_F(ConfToolTest, EachGuardIsRenewedInItsOwnWay) {
    const std::string other = std::string(64, '0') + "  /other\n";
    const auto files = [](const std::string& guard) {
        return support::RunShell("cut -c 67- " + guard + " | tr '\\n' ' '").out;
    };
    for (const char* file :
         {"/mnt/dir/a", "/mnt/dir/b", "/mnt/main/etc/syslog.conf", "/mnt/main/etc/http-proxy.conf",
          "/mnt/main/etc/icap.conf", "/mnt/main/etc/settings/content-filter.xml", "/etc/nut/ups.conf",
          "/etc/nut/upsmon.conf"})
        WriteFile(file, file);
    support::WriteLink("/mnt/link", "/mnt/dir/a"); // a file that is a link, with a guard beside the link
    support::WriteLink("/mnt/dir/b.crg", "/mnt/dir/shared");
    const struct {
        Arguments arguments;
        std::vector<std::pair<std::string, std::string>> guards; // with the files that they hold then
    } cases[] = {
        {{"-p", "/mnt/dir/a"}, {{"/mnt/dir/a.crg", "/mnt/dir/a "}}},
        {{"-p", "/mnt/dir/../dir/a"}, {{"/mnt/dir/a.crg", "/mnt/dir/a "}}},
        {{"-p", "/mnt/dir/b"}, {{"/mnt/dir/shared", "/other /mnt/dir/b "}}},
        {{"-p", "/mnt/link"}, {{"/mnt/link.crg", "/other /mnt/link "}}},
        {{"-p"},
         {{"/mnt/main/etc/settings.crg",
           "/other /mnt/main/etc/local.conf /mnt/main/etc/syslog.conf /mnt/main/etc/common.conf "},
          {"/mnt/main/etc/http-proxy.conf.crg", "/mnt/main/etc/http-proxy.conf "},
          {"/mnt/main/etc/icap.conf.crg", "/mnt/main/etc/icap.conf "},
          {"/mnt/main/etc/settings/content-filter.xml.crg", "/mnt/main/etc/settings/content-filter.xml "},
          {"/mnt/main/etc/l2overip-config.crg", "/other /mnt/main/etc/l2overip.conf "},
          {"/etc/nut/nut.crg", "/other /etc/nut/ups.conf /etc/nut/upsmon.conf "}}},
    };
    for (const auto& row : cases) {
        for (const auto& [guard, held] : row.guards)
            WriteFile(guard, other);
        EXPECT_EQ(ConfTool(row.arguments).status, 0) << row.guards.front().first;
        for (const auto& [guard, held] : row.guards)
            EXPECT_EQ(files(guard), held) << guard;
    }
    // A reader may stand between a file and its guard.
    const auto holder = support::HoldLock("/run/lock/settings.lock", false);
    const auto before = support::TakeSnapshot();
    const support::Result refused = ConfTool({"-p", "/mnt/dir/a"});
    EXPECT_EQ(std::to_string(refused.status) + refused.out + refused.err, "1");
    support::ExpectUnchanged(before);
}

TEST_F(ConfToolTest, TakesNothingThatHurtsFromItsCaller) {
    WriteFile("/mnt/bin/start-stop-daemon", "#!/bin/sh\ntouch /run/foreign\n", 0755);
    const std::string tool = CONF_TOOL " ";
    const auto run = [&](const std::string& before, const std::string& behind) {
        return support::RunShell(before + tool + behind);
    };
    ASSERT_EQ(support::RunShell("rm /mnt/main/etc/local.conf*").status, 0);
    WriteFile("/mnt/main/etc/settings.crg", "");
    EXPECT_EQ(run("umask 000; ", "-g 0<&- 1>&- 2>&-").status, 0);
    EXPECT_EQ(support::ModeOf("/mnt/main/etc/local.conf"), 0644U);
    EXPECT_TRUE(ReadFile("/mnt/main/etc/local.conf").starts_with("CDC-MODEM0_UP"));
    EXPECT_EQ(run("PATH=/mnt/bin:$PATH ", "-a 'dhcp-server?print'").status, 0);
    EXPECT_FALSE(Exists("/run/foreign"));
    // What can't be written is told, and nothing is left behind.
    const support::Result full = run("", "-a 'dhcp-server?print' > /dev/full");
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.err, "failed to write to stream: No space left on device\n");
    EXPECT_EQ(run("{ sleep 0.3; ", "-a 'dhcp-server?print'; echo $? >&2; } | true").err, "1\n");
    // A reader who stands still holds up nobody.
    WriteFile("/mnt/main/etc/settings/dhcp-server.xml",
              "<unit name='dhcp-server'><!--" + std::string(1 << 20, '.') + "--></unit>\n");
    const std::string reader = "{ head -c1 >&2; flock -n /run/lock/dhcp-server.lock echo free; cat >&2; }";
    EXPECT_EQ(run("", "-a 'dhcp-server?dump' | " + reader).out, "free\n");
    EXPECT_EQ(support::RunShell("ls /tmp").out, "");
}

TEST_F(ConfToolTest, GenerationNeverWritesOverWhatItCouldNotRead) {
    ASSERT_EQ(ConfTool({"-p"}).status, 0);
    WriteFile("/mnt/main/etc/local.conf", "HOSTNAME gate\n"); // behind the system's back
    const auto before = support::TakeSnapshot();
    const support::Result result = ConfTool({"-g"});
    EXPECT_EQ(result.status, 0);
    const std::string reason =
        "not written, as it was not read: /mnt/main/etc/local.conf does not match its guard\n";
    EXPECT_EQ(result.err, "/mnt/main/etc/local.conf: " + reason + "/mnt/main/etc/common.conf: " + reason);
    support::ExpectUnchanged(before);
}

TEST_F(ConfToolTest, ProtectAllStopsAtTheFirstFailure) {
    WriteFile("/mnt/main/etc/local.conf", "HOSTNAME\tgate\n");
    WriteFile("/mnt/main/etc/http-proxy.conf", "x");
    ASSERT_EQ(support::RunShell("rm -r /mnt/main/etc/settings /mnt/main/etc/[cs]*.conf").status, 0);
    EXPECT_EQ(ConfTool({"-p"}).status, 1); // the content filter's folder is not there
    EXPECT_EQ(support::RunShell("sha256sum -c /mnt/main/etc/settings.crg").out,
              "/mnt/main/etc/local.conf: OK\n");
    EXPECT_TRUE(Exists("/mnt/main/etc/icap.conf.crg"));
    EXPECT_FALSE(Exists("/mnt/main/etc/l2overip-config.crg"));
    ASSERT_EQ(support::RunShell("mkdir /mnt/main/etc/settings").status, 0);
    EXPECT_EQ(ConfTool({"-p"}).status, 0);
    EXPECT_TRUE(Exists("/etc/nut/nut.crg"));
}

} // namespace
