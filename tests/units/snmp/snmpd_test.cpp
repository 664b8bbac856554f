#include "tests/units/snmp/snmp_fixture.h"
#include "units/snmp/engine_state.h"

#include <csignal>

// The daemon itself reads what we generate.

namespace snmp {
namespace {

using ::testing::HasSubstr;

constexpr const char* kName = ".1.3.6.1.2.1.1.5.0";
constexpr const char* kDescription = ".1.3.6.1.2.1.1.1.0";
constexpr const char* kEngineBoots = ".1.3.6.1.6.3.10.2.1.2.0";
constexpr const char* kEngineId = ".1.3.6.1.6.3.10.2.1.1.0";

support::Result Ask(support::Arguments access, const char* oid) {
    access.insert(access.begin(), {"snmpget", "-m", "", "-OqvU", "-t", "0.5", "-r", "3"});
    access.insert(access.end(), {"127.0.0.1", oid});
    return support::RunProgram(access);
}

const support::Arguments kCommunity{"-v2c", "-c", "site"};
const support::Arguments kEncrypted{"-v3", "-u",         "zoe", "-l",  "authPriv", "-a",       "SHA",
                                    "-A",  "zoe's pass", "-x",  "AES", "-X",       "zoe's key"};

// Runs the daemon as its start script does, hands it to `examine` and ends it in good order, so that it keeps
// its state. What it says on its standard error is judged.
void RunDaemon(const std::function<void()>& examine) {
    support::Daemon daemon({"/bin/sh", "-c",
                            std::string(". ") + kEnvironment +
                                "; export SNMP_PERSISTENT_DIR=/var/lib/snmp; "
                                "exec snmpd -f -Le $SNMPDOPTS -Le"});
    ASSERT_TRUE(daemon.WaitForText("NET-SNMP version"));
    examine();
    kill(daemon.Pid(), SIGTERM);
    const support::Result end = daemon.Wait();
    EXPECT_EQ(end.status, 0);
    for (const char* fault : {"rror", "arning", "nknown", "ailure", "snmpd: "})
        EXPECT_EQ(end.err.find(fault), std::string::npos) << fault << " in:\n" << end.err;
}

void ExpectAnswer(const support::Arguments& access, const char* oid, const std::string& answer) {
    const support::Result result = Ask(access, oid);
    EXPECT_EQ(result.out, answer + "\n") << result.err;
}

TEST_F(SnmpTest, DaemonServesTheGeneratedFiles) {
    // An inform session waits for its receiver, and there is none here; traps get lost on the loopback.
    std::string settings = Replaced(Settings(), "\"inform\"", "\"trap\"");
    settings = Replaced(settings, "\"informsink\" port=\"1162\" prot=\"tcp",
                        "\"trapsink\" port=\"1162\" prot=\"udp");
    settings = Replaced(settings, "port=\"163\" prot=\"tcp", "port=\"163\" prot=\"udp");
    for (std::size_t at = 0; (at = settings.find("\"10.0.", at)) != std::string::npos;)
        settings.replace(at, 6, "\"127.0.");
    WriteFile(kCommon, settings);
    EXPECT_EQ(remove(kPersistent), 0);
    EXPECT_EQ(remove(kSeed), 0);
    const std::string unopened = std::string("Failed to open ") + kPersistent + "\n";
    Generate(true, {"", unopened + unopened});
    const std::string seed = ReadFile(kSeed);
    EXPECT_EQ(seed.size(), 12U);

    std::string engine_id;
    RunDaemon([&] {
        ExpectAnswer(kCommunity, kName, "\"gate\"");
        ExpectAnswer(kCommunity, kDescription, "\"ZQ100 Corvanode ZQ100 4.2\"");
        ExpectAnswer(kEncrypted, kName, "\"gate\"");
        ExpectAnswer(kEncrypted, kDescription, "\"ZQ100 Corvanode ZQ100 4.2\"");
        ExpectAnswer(kEncrypted, kEngineBoots, "1");
        engine_id = Ask(kEncrypted, kEngineId).out;
        ExpectAnswer({"-v3", "-u", "ned", "-l", "authNoPriv", "-a", "MD5", "-A", "ned's pass"}, kName,
                     "\"gate\"");
        // A user whose settings ask for encryption may not do without it, and a stranger gets nothing.
        EXPECT_NE(
            Ask({"-v3", "-u", "zoe", "-l", "authNoPriv", "-a", "SHA", "-A", "zoe's pass"}, kName).status, 0);
        EXPECT_NE(Ask({"-v2c", "-c", "public"}, kName).status, 0);
    });
    const std::map<std::string, std::string> state = ReadPersistentEngineState();
    EXPECT_EQ(state.at("engineBoots"), "1");
    EXPECT_THAT(state.at("oldEngineID"), HasSubstr("0x80001f8804"));

    WriteFile(kUnique, "<unit><agent sysname='gate two'/></unit>");
    Generate();
    EXPECT_EQ(ReadPersistentEngineState(), state);
    EXPECT_EQ(support::ModeOf(kPersistent), 0600U);
    RunDaemon([&] {
        ExpectAnswer(kEncrypted, kName, "\"gate two\"");
        ExpectAnswer(kEncrypted, kEngineBoots, "2");
        EXPECT_EQ(Ask(kEncrypted, kEngineId).out, engine_id);
    });
    EXPECT_EQ(ReadFile(kSeed), seed);
}

} // namespace
} // namespace snmp
