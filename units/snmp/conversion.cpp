#include "units/snmp/conversion.h"

#include "platform/messages.h"
#include "units/snmp/agent_settings.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace snmp {
namespace {

using settings::File;
using settings::Node;

constexpr const char* kOldUnit = "vpn-snmpd";
constexpr const char* kDefaultProtocol = "udp";
constexpr const char* kDefaultPort = "161";
constexpr const char* kDefaultTrapPort = "162";

struct Port {
    std::string protocol;
    std::string number;
};

// "<protocol>:<port>". A text without a colon is a protocol.
Port ParsePort(const std::string& text) {
    const std::size_t colon = text.find(':');
    Port port{text.substr(0, colon), colon == std::string::npos ? "" : text.substr(colon + 1)};
    if (port.number.find_first_not_of("0123456789") != std::string::npos)
        port.number = kDefaultPort;
    if (port.protocol != "tcp" && port.protocol != "udp")
        port.protocol = kDefaultProtocol;
    return port;
}

bool Put(File& file, const char* xpath, const char* attribute, const std::string& value) {
    return static_cast<bool>(file.SelectFirst("%s", xpath).SetAttr(attribute, value));
}

bool ConvertLogLevel(const File& old, File& file) {
    const std::string level = old.SelectFirst("/snmp/agent/log").GetAttr("level");
    return level.empty() || Put(file, "/unit/agent/log", "level", level);
}

bool ConvertPort(const File& old, File& file) {
    const Port port = ParsePort(old.GetText("/snmp/agent/port"));
    Node node = file.SelectFirst("/unit/agent/port");
    return node.SetText(port.number) && node.SetAttr("protocol", port.protocol);
}

bool ConvertCommunity(const File& old, File& file) {
    const std::string name = old.SelectFirst("/snmp/agent/access/rocommunity").GetAttr("name");
    return file.Select("/unit/agent/access/community").RemoveAll() &&
           (name.empty() ||
            file.SelectFirst("/unit/agent/access").AddChild("community").NewAttr("name", name));
}

bool SetModes(const File& /*old*/, File& file) {
    return Put(file, "/unit/agent", "v2_mode", "on") && Put(file, "/unit/agent", "v2_traps", "off");
}

bool ConvertTrapsink(const File& old, File& file) {
    const std::string community = old.SelectFirst("/snmp/agent/access/trapcommunity").GetAttr("name");
    const std::string destination = old.SelectFirst("/snmp/agent/trap2sink").GetAttr("destination");
    if (!file.Select("/unit/agent/trapsink[@type = 'trap2sink']").RemoveAll())
        return false;
    if (community.empty() || destination.empty() || destination == "null")
        return true;
    return file.SelectFirst("/unit/agent")
               .AddChild("trapsink")
               .NewAttr("destination", destination)
               .NewAttr("community", community)
               .NewAttr("type", "trap2sink")
               .NewAttr("port", "%s", kDefaultTrapPort)
               .NewAttr("prot", "%s", kDefaultProtocol) &&
           Put(file, "/unit/agent", "v2_traps", "on");
}

struct StepRow {
    bool (*run)(const File& old, File& file);
    Format<> failure;
};

constexpr StepRow kSteps[] = {
    {ConvertLogLevel, Tr("SNMP: failed to set log level")},
    {ConvertPort, Tr("SNMP: failed to set agent port")},
    {ConvertCommunity, Tr("SNMP: failed to add community")},
    {SetModes, Tr("SNMP: failed to set v2 mode")},
    {ConvertTrapsink, Tr("SNMP: failed to add trap")},
};

} // namespace

bool ConvertDaemonSettings(const std::string& path) {
    // An unreadable settings file counts as an empty one, and a mistyped path would empty the new settings.
    const std::string place = path.empty() ? settings::GetFilePath(kOldUnit) : path;
    if (access(place.c_str(), R_OK) != 0)
        return Refuse(Tr("SNMP: %s: failed to read settings: %s"), place, std::strerror(errno));
    File old(kOldUnit, path.c_str());
    old.KeepPrivate();
    SettingsFile file(kCommonUnit);
    if (!old.Load() || !file.Load())
        return false;
    for (const StepRow& step : kSteps) {
        if (!step.run(old, file))
            return Refuse(step.failure);
    }
    return file.Save();
}

} // namespace snmp
