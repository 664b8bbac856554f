#include "units/snmp/daemon_settings.h"

#include "front/probes/cluster.h"
#include "front/probes/system.h"
#include "platform/messages.h"
#include "units/snmp/agent_settings.h"
#include "units/snmp/cluster_contexts.h"
#include "units/snmp/cluster_lines.h"
#include "units/snmp/cluster_settings.h"
#include "units/snmp/communities.h"
#include "units/snmp/daemon_lines.h"
#include "units/snmp/engine_state.h"
#include "units/snmp/trapsinks.h"
#include "units/snmp/user_lines.h"

#include <fstream>
#include <sstream>

namespace snmp {
namespace {

using settings::File;

constexpr const char* kMainFile = "/etc/snmp/snmpd.conf";
constexpr const char* kEnvironmentFile = "/etc/default/snmpd";
constexpr const char* kVersionFile = "/etc/hw_pack_version";

struct LevelRow {
    const char* word;
    int number; // syslog(3)'s
};

constexpr LevelRow kLevels[] = {{"debug", 7}, {"info", 6}, {"error", 3}, {"critical", 2}, {"off", 0}};

int LevelNumber(const std::string& word) {
    for (const LevelRow& row : kLevels) {
        if (word == row.word)
            return row.number;
    }
    return 0;
}

// The network record, which is read for all else, has no key for the model; the one place that knows it is
// the platform line.
std::string ReadModel() {
    std::istringstream words(GetPlatformLine());
    std::string marker;
    std::string model;
    words >> marker >> model;
    return model;
}

std::string ReadVersion() {
    std::ifstream file(kVersionFile);
    std::string version;
    if (!file)
        PrintError("Failed to open %s", kVersionFile);
    file >> version;
    return version;
}

void WriteHead(std::FILE* out) {
    // The product stands in it whatever the model.
    std::fprintf(out, "sysDescr %s Corvanode ZQ100 %s\n\n", ReadModel().c_str(), ReadVersion().c_str());
    std::fputs("includeAllDisks  1%\n\n", out);
    std::fputs("master          agentx\n\n", out);
}

// The arguments for the daemon's start script.
void WriteEnvironment(const File& file) {
    Stream out = OpenDaemonFile(kEnvironmentFile, false);
    if (out == nullptr)
        return;
    std::fputs("export MIBS=\n\nSNMPDRUN=yes\n\n", out.get());
    std::fprintf(out.get(),
                 "SNMPDOPTS='-LS%dd -Lf /dev/null -I -smux,mteTrigger,mteTriggerConf -p /run/snmpd.pid'\n",
                 LevelNumber(GetSetting(file, kLogLevel)));
    (void)CloseDaemonFile(std::move(out), kEnvironmentFile); // reported, and the daemon has its settings
}

bool WriteIdentity(const File& file, std::FILE* out) {
    if (const std::string seed = ObtainEngineSeed(); !seed.empty())
        std::fprintf(out, "engineID %s\n", seed.c_str());
    SettingsFile unique(kUniqueUnit);
    bool done = LoadSettings(unique); // unread, the daemon does without its name and its place
    done =
        WriteLine(out, "agent port",
                  {"agentAddress ", Word(GetSetting(file, kProtocol)), ":", Word(GetSetting(file, kPort))}) &&
        done;
    const struct {
        const char* subject;
        const char* directive;
        std::string value;
    } rows[] = {{"system name", "sysName ", GetSetting(unique, kSysName)},
                {"system contact", "sysContact ", GetSetting(file, kSysContact)},
                {"system location", "sysLocation ", GetSetting(unique, kSysLocation)}};
    for (const auto& row : rows) {
        if (!row.value.empty())
            done = WriteLine(out, row.subject, {row.directive, RestOfLine(row.value)}) && done;
    }
    return done;
}

bool WriteCommunities(const File& file, std::FILE* out) {
    bool done = true;
    for (const std::string& name : ListCommunities(file))
        done = WriteLine(out, "community", {"rocommunity ", Word(name)}) && done;
    return done;
}

// The type is the line's directive, so it has to be one of the three.
bool WriteTrapsink(const Trapsink& sink, std::FILE* out) {
    const std::string subject = "trap receiver " + sink.destination;
    if (!IsTrapsinkType(sink.type))
        return Refuse("SNMP: %s: unknown type", subject);
    return WriteLine(out, subject,
                     {sink.type.c_str(), " ", Word(sink.prot), ":", Word(sink.destination), ":",
                      Word(sink.port), " ", Word(sink.community)});
}

bool WriteTrapsinks(const File& file, std::FILE* out) {
    bool done = true;
    for (const Trapsink& sink : ListTrapsinks(file))
        done = WriteTrapsink(sink, out) && done;
    return done;
}

bool IsClusterMonitored(const File& file) {
    return GetClusterMode() == 1 &&
           ((IsOn(file, kV2Mode) && ReadClusterSettings(file).v2_mode) || IsOn(file, kV3Mode));
}

bool WriteAgent(const File& file, std::FILE* out) {
    bool done = !IsClusterMonitored(file) || WriteClusterLines(file, out);
    WriteEnvironment(file);
    done = WriteIdentity(file, out) && done;
    if (IsOn(file, kV3Traps) || IsOn(file, kV3Mode))
        done = WriteUsers(file, out) && done;
    if (IsOn(file, kV2Mode))
        done = WriteCommunities(file, out) && done;
    if (IsOn(file, kV2Traps) && !IsDisabledOnPassiveNode(""))
        done = WriteTrapsinks(file, out) && done;
    return done;
}

} // namespace

bool WriteDaemonFiles() {
    SettingsFile file(kCommonUnit);
    if (!LoadSettings(file))
        return false;
    Stream out = OpenDaemonFile(kMainFile, true);
    if (out == nullptr)
        return false;
    LogInfo("New SNMP configuration will be applied");
    WriteHead(out.get());
    const bool read = !SettleClusterContexts(file) || LoadSettings(file);
    const bool done = read && WriteAgent(file, out.get());
    return CloseDaemonFile(std::move(out), kMainFile) && done;
}

} // namespace snmp
