#include "units/dhcp_relay/conversion.h"

#include "front/helpers/stream.h"
#include "platform/console.h"
#include "settings/file.h"
#include "settings/text.h"
#include "units/dhcp_relay/rules/lookup.h"

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
    if (stream == nullptr) {
        shell_print_error("DHCP relay: %s: failed to open daemon settings file: %s", path.c_str(),
                          std::strerror(errno));
        return false;
    }
    char line[kLineSize];
    while (std::fgets(line, sizeof line, stream.get()) != nullptr)
        TakeLine(settings, Split(line));
    if (std::ferror(stream.get()) == 0)
        return true;
    shell_print_error("DHCP relay: %s: failed to read daemon settings file: %s", path.c_str(),
                      std::strerror(errno));
    return false;
}

// Looked at before the old settings file goes, so that it is not lost to words that no settings file can
// hold.
bool CheckTexts(const DaemonSettings& settings) {
    for (const Keyword& keyword : kKeywords) {
        for (const std::string& word : settings.*keyword.list) {
            if (!IsXmlText(word.c_str()))
                return false;
        }
    }
    return true;
}

bool RemoveSettingsFile() {
    const std::string path = GetFilePath(kDhcpRelayUnit);
    if (unlink(path.c_str()) == 0 || errno == ENOENT)
        return true;
    shell_print_error("DHCP relay: %s: failed to remove settings file: %s", path.c_str(),
                      std::strerror(errno));
    return false;
}

bool AddRelay(const File& file, const DaemonSettings& settings) {
    Node relay = FindOrCreateRelay(file, kConvertedId);
    if (!relay)
        return false;
    if (!settings.servers.empty() && !settings.external.empty()) {
        Node server = relay.AddChild("server", "%s", settings.servers.front().c_str());
        if (!server.NewAttr("id", "%s", kExternalServer) ||
            !server.NewAttr("interface", "%s", settings.external.front().c_str()))
            return false;
    }
    for (const std::string& interface : settings.interfaces) {
        if (!relay.AddChild("interface", "%s", interface.c_str()).NewAttr("type", "listen"))
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
