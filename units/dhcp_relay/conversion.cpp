#include "units/dhcp_relay/conversion.h"

#include "front/helpers/stream.h"
#include "platform/messages.h"
#include "settings/file.h"
#include "settings/text.h"
#include "units/dhcp_relay/rules/lookup.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>
#include <vector>

namespace settings::dhcp_relay {
namespace {

constexpr std::size_t kLineSize = 8192;
constexpr const char* kConvertedId = "1";

using Words = std::vector<std::string>;

struct DaemonSettings {
    Words servers;
    Words external;
    Words interfaces;
};

struct Keyword {
    const char* name;
    Words DaemonSettings::*list;
};

constexpr Keyword kKeywords[] = {
    {"SERVERS", &DaemonSettings::servers},
    {"EXTERNAL", &DaemonSettings::external},
    {"INTERFACES", &DaemonSettings::interfaces},
};

Words Split(char* line) {
    line[std::strcspn(line, "\n#")] = '\0';
    Words words;
    char* rest = nullptr;
    for (char* word = strtok_r(line, " \t\n='\"", &rest); word != nullptr;
         word = strtok_r(nullptr, " \t\n='\"", &rest))
        words.emplace_back(word);
    return words;
}

void TakeLine(DaemonSettings& settings, const Words& words) {
    for (const Keyword& keyword : kKeywords) {
        Words& list = settings.*keyword.list;
        if (!words.empty() && words.front() == keyword.name)
            list.insert(list.end(), words.begin() + 1, words.end());
    }
}

bool ReadDaemonSettings(const std::string& path, DaemonSettings& settings) {
    const Stream stream(std::fopen(path.c_str(), "re"));
    if (stream == nullptr)
        return Refuse("DHCP relay: %s: failed to open daemon settings file: %s", path, std::strerror(errno));
    char line[kLineSize];
    while (std::fgets(line, sizeof line, stream.get()) != nullptr)
        TakeLine(settings, Split(line));
    return std::ferror(stream.get()) == 0 ||
           Refuse("DHCP relay: %s: failed to read daemon settings file: %s", path, std::strerror(errno));
}

bool HasServer(const DaemonSettings& settings) {
    return !settings.servers.empty() && !settings.external.empty();
}

bool IsContent(const std::string& text) {
    return IsXmlContent(text.c_str());
}

// What the relay takes, as its nodes will look at it. Looked at before the old settings file goes, so that it
// is not lost to words that no settings file can hold.
bool CheckTexts(const DaemonSettings& settings) {
    const bool server_fits = !HasServer(settings) || (IsContent(settings.servers.front()) &&
                                                      IsXmlText(settings.external.front().c_str()));
    return server_fits && std::all_of(settings.interfaces.begin(), settings.interfaces.end(), IsContent);
}

bool RemoveSettingsFile() {
    const std::string path = GetFilePath(kDhcpRelayUnit);
    return unlink(path.c_str()) == 0 || errno == ENOENT ||
           Refuse("DHCP relay: %s: failed to remove settings file: %s", path, std::strerror(errno));
}

bool AddRelay(const File& file, const DaemonSettings& settings) {
    Node relay = FindOrCreateRelay(file, kConvertedId);
    if (!relay)
        return false;
    if (HasServer(settings)) {
        Node server = relay.AddChild("server", settings.servers.front());
        if (!server.NewAttr("id", "%s", kExternalServer) ||
            !server.NewAttr("interface", settings.external.front()))
            return false;
    }
    for (const std::string& interface : settings.interfaces) {
        if (!relay.AddChild("interface", interface).NewAttr("type", "listen"))
            return false;
    }
    return true;
}

} // namespace

bool ConvertRelayDaemonSettings(const std::string& path) {
    DaemonSettings settings;
    File file(kDhcpRelayUnit, "");
    if (!ReadDaemonSettings(path, settings) || !CheckTexts(settings) || !RemoveSettingsFile() || !file.Load())
        return false;
    const bool empty = settings.servers.empty() && settings.external.empty() && settings.interfaces.empty();
    return (empty || AddRelay(file, settings)) && file.Save();
}

} // namespace settings::dhcp_relay
