#include "front/helpers/text.h"
#include "front/probes/adapters.h"
#include "front/probes/cluster.h"
#include "front/probes/system.h"
#include "tests/support/appliance.h"

#include <climits>

namespace {

using support::Capture;
using support::LogLine;
using support::WriteFile;

class ProbesTest : public support::Appliance {};

constexpr const char* kState = "/var/spool/corvan/failoverstat";
constexpr const char* kParameters = "/mnt/main/etc/sk_nums";

TEST_F(ProbesTest, ClusterStateIsTheSecondLine) {
    EXPECT_FALSE(IsClusterActive());
    EXPECT_EQ(TakeLog(),
              (std::vector<LogLine>{{3, "at line 77. Failed to detect cluster state: failoverstat: No "
                                        "such file or directory"}}));
    const struct {
        const char* text;
        bool active;
        const char* log;
    } cases[] = {
        {"x\n2\n", true, nullptr},
        {"x\n0\n", false, nullptr},
        {"x\n1 2\n", false, nullptr},
        {"x\n3\n", false, "failed to detect cluster state: unknown state: 3"},
        {"", false, "at line 85."},
        {"x\n", false, "at line 93."},
        {"x\nword\n", false, "at line 101."},
    };
    for (const auto& row : cases) {
        WriteFile(kState, row.text);
        EXPECT_EQ(IsClusterActive(), row.active) << row.text;
        const auto log = TakeLog();
        ASSERT_EQ(log.size(), row.log != nullptr ? 1U : 0U) << row.text;
        if (row.log != nullptr) {
            EXPECT_EQ(log[0].text.substr(0, std::string(row.log).size()), row.log);
        }
    }
}

TEST_F(ProbesTest, PassiveNodeRefusesAndNamesTheFeature) {
    const struct {
        const char* parameters;
        int mode;
    } cases[] = {
        {"A=1\n\nFO_PARAMS=\"cluster\"\n", 1},
        {"FO_PARAMS=\"single\"\nFO_PARAMS=\"cluster\"\n", 0},
        {"FO_PARAMS=cluster\n", 0},
        {"FO_PARAMS=\"cluster\n", 0},
        {"FO_PARAMS\n", 0},
    };
    for (const auto& row : cases) {
        WriteFile(kParameters, row.parameters);
        EXPECT_EQ(GetClusterMode(), row.mode) << row.parameters;
    }
    EXPECT_FALSE(IsDisabledOnPassiveNode("DHCP")); // no cluster
    WriteFile(kParameters, cases[0].parameters);
    WriteFile(kState, "x\n1\n");
    EXPECT_EQ(Capture([] { EXPECT_TRUE(IsDisabledOnPassiveNode("DHCP")); }).err,
              "DHCP is disabled because the cluster appliance is passive.\n");
    EXPECT_EQ(Capture([] { EXPECT_TRUE(IsDisabledOnPassiveNode("")); }).err, "");
    WriteFile(kState, "x\n2\n");
    EXPECT_FALSE(IsDisabledOnPassiveNode("DHCP"));
}

TEST_F(ProbesTest, TimeSynchronisationCanBeTurnedOff) {
    const std::pair<const char*, bool> cases[] = {
        {"syncdatetime = No  # comment\n", true}, {"syncdatetime=no\n", true},
        {" syncdatetime = no\n", false},          {"syncdatetime = none\n", false},
        {"syncdatetime = yes\n", false},
    };
    for (const auto& [text, disabled] : cases) {
        WriteFile("/etc/failover.ini", text);
        EXPECT_EQ(IsTimeSyncDisabled(), disabled) << text;
    }
}

TEST_F(ProbesTest, TextHelpers) {
    EXPECT_EQ(ShellQuote("a'b"), R"('a'\''b')");
    EXPECT_EQ(ShellQuote(R"(a\b)"), R"('a\\b')");
    const struct {
        const char* text;
        bool good;
        long value;
    } cases[] = {
        {"12\n", true, 12},
        {"-7", true, -7},
        {"12 ", false, 12},
        {"", false, 0},
        {"x", false, 0},
        {"12x", false, 12},
        {" 5", true, 5},
        {"9223372036854775807", true, LONG_MAX},
        {"9223372036854775808", false, LONG_MAX},
    };
    for (const auto& row : cases) {
        long value = 99;
        EXPECT_EQ(ParseLong(row.text, &value), row.good) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
}

TEST_F(ProbesTest, ReplaceInFileIsWholeOrNothing) {
    WriteFile("/mnt/f", "mode = single\nother\n", 0640);
    ReplaceInFile("/mnt/f", "^mode = (\\w+)$", "mode = cluster # was $1");
    EXPECT_EQ(support::ReadFile("/mnt/f"), "mode = cluster # was single\nother\n");
    EXPECT_EQ(support::ModeOf("/mnt/f"), 0640U);
    for (const char* bad : {"(", "[z-a]"}) {
        const auto output = Capture([&] { ReplaceInFile("/mnt/f", bad, "x"); });
        const std::string head = std::string("Failed to replace string in file /mnt/f. Regexp: ") + bad +
                                 ". Replacement: x. Error: ";
        EXPECT_EQ(output.err.substr(0, head.size()), head);
        const auto log = TakeLog();
        ASSERT_EQ(log.size(), 1U);
        EXPECT_EQ(log[0].text.substr(0, 16 + head.size()), "<ReplaceInFile> " + head);
    }
    EXPECT_NE(Capture([] { ReplaceInFile("/mnt/none", "a", "b"); }).err, "");
    EXPECT_EQ(support::ReadFile("/mnt/f"), "mode = cluster # was single\nother\n");
    EXPECT_FALSE(support::Exists("/mnt/f.tmp") || support::Exists("/mnt/none.tmp"));
}

TEST_F(ProbesTest, AdaptersAreCountedWithoutTheHeader) {
    for (const char* path : {"/sbin/ifconfig", "/sbin/usb-modem-device.sh"})
        support::Record(path);
    const std::string table = "Iface\nlo\neth0\n";
    const struct {
        int up;
        int will_be_up;
        long count;
    } cases[] = {{0, 0, 2}, {1, 0, 3}, {1, 1, 2}};
    for (const auto& row : cases) {
        support::Queue("/sbin/ifconfig", {.out = table});
        support::Queue("/sbin/usb-modem-device.sh", {.status = row.up});
        support::Queue("/sbin/usb-modem-device.sh", {.status = row.will_be_up});
        EXPECT_EQ(CountNetworkAdapters(), row.count);
        ASSERT_EQ(support::RunShell("rm -rf /tmp/recorder/queue+sbin+usb-modem-device.sh").status, 0);
    }
    EXPECT_EQ(GetNetworkAdapterLimit(), 128);
    support::Queue("/sbin/ifconfig", {.out = std::string(128, '\n')});
    EXPECT_TRUE(CanAddNetworkAdapter());
    support::Queue("/sbin/ifconfig", {.out = std::string(129, '\n')});
    EXPECT_FALSE(CanAddNetworkAdapter());
    WriteFile("/usr/bin/wc", "#!/bin/sh\n", 0755); // counts nothing
    EXPECT_EQ(CountNetworkAdapters(), -1);
    EXPECT_FALSE(CanAddNetworkAdapter());
}

TEST_F(ProbesTest, VersionScriptGivesItsFirstLine) {
    support::Record("/sbin/version.sh");
    support::Queue("/sbin/version.sh", {.out = "ZQ100 rev 2\nmore\n"});
    EXPECT_EQ(GetPlatformName(), "ZQ100 rev 2");
    EXPECT_EQ(Capture([] { EXPECT_EQ(RunVersionScript("s"), ""); }).err,
              "failed to retrieve Corvanode ZQ100 platform name from an empty output\n");
    support::Queue("/sbin/version.sh", {.out = "x\n", .status = 2});
    EXPECT_EQ(Capture([] { EXPECT_EQ(RunVersionScript("s"), ""); }).err,
              "failed to run Corvanode ZQ100 /sbin/version.sh with error: s\n");
    support::ExpectCommands({"/sbin/version.sh -l", "/sbin/version.sh -s", "/sbin/version.sh -s"});
}

} // namespace
