#include "platform/guards.h"
#include "platform/locks.h"
#include "platform/path_list.h"
#include "records/common_conf_struct.h"
#include "records/conf_struct.h"
#include "tests/support/appliance.h"

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace corvanshell {
namespace {

using support::Capture;
using support::LogLine;
using support::ReadFile;
using support::WriteFile;

constexpr const char* kLocal = "/mnt/main/etc/local.conf";
constexpr const char* kUnread = "/mnt/main/etc/local.conf.unread";
constexpr const char* kCommon = "/mnt/main/etc/common.conf";
constexpr const char* kGuard = "/mnt/main/etc/settings.crg";

class RecordsTest : public support::Appliance {
protected:
    static CConfStruct Read(const std::string& text) {
        WriteProtected(kLocal, text);
        return CConfStruct(kLocal, true);
    }
    static void WriteProtected(const char* path, const std::string& text) {
        WriteFile(path, text);
        ASSERT_TRUE(UpdateGuardFile(kGuard, 1, path, nullptr));
    }
    static std::string HostName() { return CConfStruct(kLocal, true).HostName(); }
};

TEST_F(RecordsTest, NetworkRecordRoundTrip) {
    CConfStruct record = Read(R"(# a note
FOO_UP 1
alone

HOSTNAME   gate
GSMSIMPIN 1234
GSMTRAFFIC_LIMIT 12x
WIFIROLE SERVER
NTP_EXTRA   three more words
ETH1_IP  10.0.1.1  10.0.1.2 10.0.1.3
ETH1_MASK 255.255.255.0 255.255.255.0 255.255.255.0
ETH1_BROADCAST 10.0.1.255 10.0.1.255 10.0.1.255
ETH1_UP 1
ETH1_SPEED 1000 half
ETH1_DHCP_NTP on
ETH0_IP 10.0.0.1 10.0.0.2
ETH0_CLASS Trunk
ETH0_DHCP_METRIC 40
ETH0_UNKNOWN x
ETH0.7_VLAN 7
ETH0.7_PARENT ETH0
ETH0.7_IP dhcp
CDC-MODEM0_UP
VLAN7_COMMENT  guests,  second floor
L2TP on
)");
    ASSERT_TRUE(record.Write());
    support::ExpectGolden(kLocal, "records/after.conf");
    EXPECT_EQ(support::RunShell(std::string("sha256sum -c ") + kGuard).out, "/mnt/main/etc/local.conf: OK\n");
    // What was written reads back as the same.
    ASSERT_TRUE(CConfStruct(kLocal, true).Write());
    support::ExpectGolden(kLocal, "records/after.conf");
    EXPECT_EQ(support::ModeOf(kLocal), 0600U); // it holds a SIM PIN
}

TEST_F(RecordsTest, InterfacesKeepWhatTheFileSays) {
    const CConfStruct record =
        Read("ETH0_IP 10.0.0.1 10.0.0.2\nETH0_MASK 255.255.255.0 255.255.255.128\n"
             "ETH0_SPEED 100\nETH0_AUTONEG auto\nETH0_UP 01\n"
             "ETH1_IP 10.0.0.9 10.0.0.8\nETH1_IP\nETH0.5_PARENT ETH0\nETH2 on\nETHX_FOO 1\n");
    InterfaceEntry entry;
    ASSERT_TRUE(record.FindInterface("eth0", entry));
    EXPECT_TRUE(entry.up);
    EXPECT_EQ(entry.address, "10.0.0.1");
    EXPECT_EQ(entry.alias_addresses, std::vector<std::string>{"10.0.0.2"});
    EXPECT_EQ(entry.alias_netmasks, std::vector<std::string>{"255.255.255.128"});
    EXPECT_EQ(entry.speed + " " + entry.duplex + " " + entry.autoneg, "100 full on");
    EXPECT_EQ(entry.interface_class, "access");
    ASSERT_TRUE(record.FindInterface("eth1", entry));
    EXPECT_TRUE(entry.address.empty() && entry.alias_addresses.empty());
    EXPECT_EQ(entry.speed + " " + entry.autoneg, "auto off");
    ASSERT_TRUE(record.FindInterface("eth0.5", entry));
    EXPECT_EQ(entry.parent, "eth0");
    EXPECT_FALSE(record.FindInterface("ethx", entry));
    EXPECT_TRUE(record.GetFlag("ETH2"));
}

TEST_F(RecordsTest, BadUpValueEndsTheRead) {
    for (const char* value : {"+1", "-0", "on", "2"}) {
        WriteProtected(kLocal, std::string("ETH0_UP ") + value + "\n");
        EXPECT_EQ(Capture([] { static_cast<void>(HostName()); }).err, "ReadConf exception\n") << value;
    }
    WriteProtected(kLocal, "HOSTNAME first\nETH0_UP on\nHOSTNAME second\n");
    const auto output = Capture([] {
        CConfStruct record(kLocal, true);
        EXPECT_EQ(record.HostName(), "first");
        EXPECT_FALSE(record.CheckRead());
        EXPECT_TRUE(record.Write());
    });
    EXPECT_EQ(output.err, "ReadConf exception\n/mnt/main/etc/local.conf: failed to read settings: line 2\n");
    EXPECT_EQ(ReadFile(kUnread), "HOSTNAME first\nETH0_UP on\nHOSTNAME second\n");
}

TEST_F(RecordsTest, FlagsAreWordsThatStartWithOnOrOff) {
    const CConfStruct record =
        Read("A online\nGSMSETDNS OFF\nGSMTRAFFIC_COUNTER\toffice\n# on\nD xon\nWIFI\tON extra\n");
    EXPECT_TRUE(record.GetFlag("A") && record.GetFlag("#") && record.GetFlag("WIFI"));
    EXPECT_FALSE(record.GetFlag("GSMSETDNS") || record.GetFlag("GSMTRAFFIC_COUNTER") || record.GetFlag("D"));
    EXPECT_TRUE(record.GetFlag("USB_MODEM_ROUTE")); // a default
}

TEST_F(RecordsTest, GuardsDecideWhatIsRead) {
    WriteFile("/mnt/main/etc/local.conf.orig", "HOSTNAME original\n");
    EXPECT_EQ(Read("HOSTNAME guarded\n").HostName(), "guarded");
    // Changed behind the system's back: nothing is read, and nothing is lost.
    WriteFile(kLocal, "HOSTNAME foreign\n");
    EXPECT_EQ(HostName(), "zq100");
    const auto before = support::TakeSnapshot();
    const std::string refusal = std::string(kLocal) + " does not match its guard\n";
    EXPECT_EQ(Capture([] {
                  CConfStruct record(kLocal, true);
                  EXPECT_FALSE(record.CheckRead() || record.Write());
              }).err,
              std::string(kLocal) + ": failed to read settings: " + refusal + kLocal +
                  ": not written, as it was not read: " + refusal);
    support::ExpectUnchanged(before);
    // A damaged guard says nothing against the set, and the file's default version is read.
    WriteFile(kGuard, "damaged\n");
    static_cast<void>(TakeLog());
    EXPECT_EQ(HostName(), "original");
    const LogLine corrupted = {3, "File '/mnt/main/etc/local.conf' is corrupted. Using default version..."};
    EXPECT_EQ(TakeLog().front(), corrupted);
    // A write keeps what it replaces, and the next one knows the file.
    ASSERT_EQ(chmod(kLocal, 0640), 0);
    CConfStruct original(kLocal, true);
    EXPECT_TRUE(original.CheckRead() && original.Write() && original.Write());
    EXPECT_EQ(ReadFile(kUnread), "HOSTNAME foreign\n");
    EXPECT_EQ(support::ModeOf(kUnread), 0640U);
    EXPECT_EQ(TakeLog().at(1),
              (LogLine{3, std::string(kLocal) + ": what was not read of it is kept as " + kUnread}));
    EXPECT_EQ(HostName(), "original");
    WriteFile(kLocal, "HOSTNAME foreign\n");
    WriteFile(kGuard, "damaged\n");
    EXPECT_EQ(CConfStruct(kLocal, false).HostName(), "foreign"); // an unguarded record asks no guard
    ASSERT_EQ(support::RunShell("rm /mnt/main/etc/local.conf.orig").status, 0);
    EXPECT_EQ(HostName(), "zq100");
    // The other files of the set count for every record.
    WriteProtected(kCommon, "NTP on\n");
    WriteFile("/etc/failover.ini", "[channel]\n");
    WriteFile("/etc/failover.ini.crg", std::string(64, '0') + "  /etc/failover.ini\n");
    EXPECT_EQ(Read("HOSTNAME guarded\n").HostName(), "zq100");
    EXPECT_FALSE(CommonConfStruct().GetFlag("NTP"));
}

TEST_F(RecordsTest, HeldLocksAreToldAndNothingIsWritten) {
    CConfStruct record = Read("HOSTNAME gate\n");
    {
        const auto holder = support::HoldLock(path_list::settings_lock, true);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(Capture([] { EXPECT_EQ(HostName(), "zq100"); }).err,
                  "settings file is locked by another process, please try later\n");
        EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::seconds(9));
        static_cast<void>(TakeLog());
        const auto before = support::TakeSnapshot();
        EXPECT_FALSE(record.Write());
        support::ExpectUnchanged(before);
        EXPECT_EQ(TakeLog(),
                  (std::vector<LogLine>{{4, "config is locked by another process, please try again"}}));
    }
    EXPECT_TRUE(record.Write());
    // An outside program's lock file is waited for, and then passed over.
    WriteFile("/mnt/main/etc/local.conf.lock", "");
    EXPECT_EQ(HostName(), "gate");
    EXPECT_EQ(TakeLog().front(),
              (LogLine{3, "Lock file '/mnt/main/etc/local.conf.lock' presents, ignore it..."}));
}

TEST_F(RecordsTest, FullDiskIsLoggedAndLosesNothing) {
    CConfStruct record = Read("HOSTNAME gate\n");
    support::FillDisk("/mnt/main/etc");
    static_cast<void>(TakeLog());
    EXPECT_FALSE(record.Write());
    EXPECT_EQ(TakeLog().front(),
              (LogLine{3, "/mnt/main/etc/local.conf: failed to write: No space left on device"}));
    EXPECT_EQ(HostName(), "gate");
}

TEST_F(RecordsTest, CommonRecordWritesAnExistingFile) {
    ASSERT_EQ(unlink(kCommon), 0);
    CommonConfStruct missing;
    EXPECT_FALSE(missing.Write());
    EXPECT_EQ(TakeLog().back(),
              (LogLine{3, "/mnt/main/etc/common.conf: failed to open: No such file or directory"}));
    WriteProtected(kCommon,
                   "SESSION_TIMEOUT 15\nMAX_REMOTE_SESSIONS abc\n\nNEW on\nDHCP_SERVER on\n other words \n");
    CommonConfStruct record;
    EXPECT_TRUE(record.GetFlag("DHCP_SERVER"));
    EXPECT_TRUE(record.SetFlag("NTP", true));
    ASSERT_TRUE(record.Write());
    EXPECT_EQ(ReadFile(kCommon),
              "SESSION_TIMEOUT\t15\nMAX_REMOTE_SESSIONS\t0\nDHCP_RELAY\toff\nDHCP_SERVER\ton\n"
              "DNS\toff\nHTTPPROXY\toff\nNEW\ton\nNTP\ton\nREBOOTSCHEDULE\toff\n"
              "VPN_PERFMODE_SINGLE\toff\n other words \n");
    EXPECT_TRUE(support::Exists("/mnt/main/etc/common.conf.crg"));
    const int outside = open(kCommon, O_RDWR | O_CLOEXEC); // of another program that locks the file
    const POSIX_File::SoftLock held(outside, F_WRLCK, true);
    EXPECT_FALSE(record.Write());
    EXPECT_EQ(TakeLog().back(), (LogLine{3, "cannot set write lock on /mnt/main/etc/common.conf"}));
}

TEST_F(RecordsTest, RestrictedServicesCannotBeSwitchedOn) {
    WriteFile("/etc/single_only", "WIFI,comment\nL2TP\n");
    WriteFile("/etc/multi_disk_only", "SWAP\n");
    WriteFile("/etc/licensed_services", "OTHER\n");
    WriteFile("/mnt/main/etc/sk_nums", "FO_PARAMS=\"cluster\"\n");
    CConfStruct record = Read("L2TP on\n"); // the file itself is not gated
    EXPECT_TRUE(record.GetFlag("L2TP"));
    static_cast<void>(TakeLog());
    const std::pair<const char*, const char*> cases[] = {
        {"WIFI", "Can't turn on WIFI service in cluster mode"},
        {"SWAP", "Your appliance is not allowed to run this service."},
    };
    for (const auto& row : cases) {
        const char* service = row.first;
        const char* text = row.second;
        const auto output = Capture([&] { EXPECT_FALSE(record.SetFlag(service, true)); });
        EXPECT_EQ(output.out, std::string(text) + "\n");
        EXPECT_EQ(TakeLog(), (std::vector<LogLine>{{6, text}}));
        EXPECT_FALSE(record.GetFlag(service));
    }
    EXPECT_TRUE(record.SetFlag("SMTP_MODE", true) && record.SetFlag("WIFI", false));
    WriteFile("/mnt/main/etc/sk_nums", "FO_PARAMS=\"single\"\n");
    EXPECT_TRUE(record.SetFlag("WIFI", true));
}

// Every interface of a whole record has the same writer's mark.
bool IsWhole(const CConfStruct& record) {
    const auto& interfaces = record.Interfaces();
    return interfaces.size() == 50 &&
           std::all_of(interfaces.begin(), interfaces.end(),
                       [&](const auto& pair) { return pair.second.mtu == interfaces.begin()->second.mtu; });
}

bool WriteMarked(int length) {
    CConfStruct record(kLocal, true);
    InterfaceEntry entry = MakeInterfaceEntry();
    entry.mtu = std::string(static_cast<std::size_t>(length), 'm');
    for (int i = 0; i < 50; ++i)
        record.AddInterface("eth" + std::to_string(i), entry, true);
    return record.Write();
}

bool ReadOrWriteInLoop(int number) {
    for (int i = 1; i < 40; ++i) {
        if (number % 2 == 0 ? !IsWhole(CConfStruct(kLocal, true)) : i % 3 == 0 && !WriteMarked(number * i))
            return false;
    }
    return true;
}

TEST_F(RecordsTest, ReadersBesideWritersSeeWholeRecords) {
    ASSERT_TRUE(WriteMarked(1));
    std::vector<pid_t> children;
    for (int i = 0; i < 16; ++i) {
        const pid_t child = fork();
        if (child == 0)
            _exit(ReadOrWriteInLoop(i) ? 0 : 1);
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0) << "reader or writer " << child;
    }
    EXPECT_TRUE(IsWhole(CConfStruct(kLocal, true)));
    EXPECT_EQ(support::RunShell(std::string("sha256sum -c ") + kGuard).status, 0);
}

} // namespace
} // namespace corvanshell
