#include "units/dhcp_server/conversion.h"

#include "front/helpers/stream.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"
#include "settings/file.h"
#include "settings/text.h"
#include "units/dhcp_server/model/addresses.h"
#include "units/dhcp_server/model/options.h"
#include "units/dhcp_server/model/paths.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <unistd.h>
#include <utility>
#include <vector>

namespace settings::dhcp_server {
namespace {

constexpr std::size_t kLineSize = 8192;
constexpr const char* kTenDays = "864000"; // seconds

using Values = std::vector<std::string>;
using OldSettings = std::map<std::string, Values>;

struct ListRow {
    const char* old_key;
    const char* option;
};

constexpr ListRow kLists[] = {
    {"router", "routers"},
    {"dns", "domain-name-servers"},
    {"ntpsrv", "ntp-servers"},
    {"wins", "netbios-name-servers"},
};

// What the new settings are made of.
struct Source {
    std::string lease; // seconds
    std::string interface;
    corvanshell::InterfaceEntry entry; // of that interface
    std::string start;                 // of the range; both or none
    std::string end;
    std::string mask;
    std::vector<std::pair<const char*, Values>> lists; // by option
};

void TakeLine(OldSettings& settings, char* line) {
    line[std::strcspn(line, "#\n")] = '\0';
    char* rest = nullptr;
    const char* key = strtok_r(line, " \t", &rest);
    if (key != nullptr && std::strcmp(key, "option") == 0)
        key = strtok_r(nullptr, " \t", &rest);
    if (key == nullptr)
        return;
    for (const char* value = strtok_r(nullptr, " \t", &rest); value != nullptr;
         value = strtok_r(nullptr, " \t", &rest))
        settings[key].emplace_back(value);
}

bool ReadOldSettings(const std::string& path, OldSettings& settings) {
    const Stream input(std::fopen(path.c_str(), "re"));
    if (input == nullptr)
        return Refuse("DHCP server: %s: failed to open UDHCPD settings file: %s", path, std::strerror(errno));
    char line[kLineSize];
    while (std::fgets(line, sizeof line, input.get()) != nullptr)
        TakeLine(settings, line);
    return std::ferror(input.get()) == 0 ||
           Refuse("DHCP server: %s: failed to read UDHCPD settings file: %s", path, std::strerror(errno));
}

Values AllValues(const OldSettings& settings, const char* key) {
    const auto found = settings.find(key);
    return found != settings.end() ? found->second : Values();
}

std::string FirstValue(const OldSettings& settings, const char* key) {
    const Values values = AllValues(settings, key);
    return values.empty() ? "" : values.front();
}

// From here on the process reads the records of the saved tree, which has no guards.
void SwitchToTree(const std::string& path) {
    namespace fs = std::filesystem;
    corvanshell::BasicConfStruct::DisableGuards();
    const fs::path folder = fs::path(path).parent_path();
    for (std::string* record : {&path_list::local_settings, &path_list::common_settings})
        *record = folder / fs::path(*record).filename();
}

bool RemoveSettings() {
    const std::string path = GetFilePath(kDhcpServerUnit);
    return unlink(path.c_str()) == 0 || errno == ENOENT ||
           Refuse("DHCP server: %s: failed to remove settings file: %s", path, std::strerror(errno));
}

// False for a network record that can't be read.
bool ReadSource(const OldSettings& settings, Source& source) {
    source.lease = FirstValue(settings, "lease");
    source.interface = FirstValue(settings, "interface");
    if (source.interface.empty())
        return true;
    // An interface that the record doesn't know has neither address nor mask.
    const corvanshell::CConfStruct record(path_list::local_settings, false);
    static_cast<void>(record.FindInterface(source.interface, source.entry));
    source.start = FirstValue(settings, "start");
    source.end = FirstValue(settings, "end");
    if (source.start.empty() || source.end.empty())
        source.start = source.end = "";
    source.mask = FirstValue(settings, "subnet");
    for (const ListRow& row : kLists)
        source.lists.emplace_back(row.option, AllValues(settings, row.old_key));
    return record.CheckRead();
}

// Every text that goes into the new settings, looked at before the old ones go: they are not lost to a word
// that no settings file can hold.
bool CheckTexts(const Source& source) {
    Values texts = {source.lease, source.interface, source.entry.address, source.entry.netmask,
                    source.start, source.end,       source.mask};
    for (const auto& [option, values] : source.lists)
        texts.insert(texts.end(), values.begin(), values.end());
    return std::ranges::all_of(texts, [](const std::string& text) { return IsXmlContent(text.c_str()); });
}

bool AddLeaseTimes(Node root, const Source& source) {
    return root.AddChild("default-lease-time", source.lease.empty() ? kTenDays : source.lease) &&
           root.AddChild("max-lease-time", "%s", kTenDays);
}

// The subnet of an interface's own network, or of its address as it stands where the pair makes none.
Node AddSubnet(Node root, const Source& source) {
    const std::int64_t address = ParseAddressQuiet(source.entry.address);
    const std::int64_t mask = ParseAddressQuiet(source.entry.netmask);
    const bool valid = address != kNoAddress && mask != kNoAddress;
    Node subnet = root.AddChild("subnet");
    const bool made =
        subnet.NewAttr("address", valid ? FormatAddress(address & mask) : source.entry.address) &&
        subnet.NewAttr("netmask", source.entry.netmask) &&
        subnet.AddChild("interface", source.interface)
            .NewAttr("type", "listen")
            .NewAttr("address", source.entry.address);
    return made ? subnet : Node();
}

bool AddRange(Node subnet, const Source& source) {
    return source.start.empty() ||
           subnet.AddChild("range").NewAttr("from", source.start).NewAttr("to", source.end);
}

bool AddOptions(Node subnet, const Source& source) {
    if (!source.mask.empty() && !AddOptionChild(subnet, "subnet-mask", source.mask))
        return false;
    for (const auto& [name, values] : source.lists) {
        if (values.empty())
            continue;
        Node option = subnet.AddChild("option").NewAttr("name", "%s", name);
        for (const std::string& value : values) {
            if (!option.AddChild("address", value))
                return false;
        }
    }
    return true;
}

} // namespace

bool ConvertUdhcpdSettings(const std::string& path) {
    OldSettings settings;
    if (!ReadOldSettings(path, settings))
        return false;
    SwitchToTree(path);
    Source source;
    File file(kDhcpServerUnit, "");
    if (!ReadSource(settings, source) || !CheckTexts(source) || !RemoveSettings() || !file.Load() ||
        !AddLeaseTimes(file.Root(), source))
        return false;
    if (source.interface.empty())
        return true;
    const Node subnet = AddSubnet(file.Root(), source);
    return subnet && AddRange(subnet, source) && AddOptions(subnet, source) && file.Save();
}

} // namespace settings::dhcp_server
