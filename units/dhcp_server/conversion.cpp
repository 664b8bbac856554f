#include "units/dhcp_server/conversion.h"

#include "front/helpers/stream.h"
#include "platform/console.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"
#include "settings/file.h"
#include "settings/text.h"
#include "units/dhcp_server/model/addresses.h"
#include "units/dhcp_server/model/options.h"
#include "units/dhcp_server/model/paths.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <unistd.h>
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
    if (input == nullptr) {
        shell_print_error("DHCP server: %s: failed to open UDHCPD settings file: %s", path.c_str(),
                          std::strerror(errno));
        return false;
    }
    char line[kLineSize];
    while (std::fgets(line, sizeof line, input.get()) != nullptr)
        TakeLine(settings, line);
    if (std::ferror(input.get()) == 0)
        return true;
    shell_print_error("DHCP server: %s: failed to read UDHCPD settings file: %s", path.c_str(),
                      std::strerror(errno));
    return false;
}

// Looked at before the old settings file goes, so that it is not lost to words that no settings file can
// hold.
bool CheckTexts(const OldSettings& settings) {
    for (const auto& [key, values] : settings) {
        for (const std::string& value : values) {
            if (!IsXmlText(value.c_str()))
                return false;
        }
    }
    return true;
}

std::string FirstValue(const OldSettings& settings, const char* key) {
    const auto found = settings.find(key);
    return found != settings.end() ? found->second.front() : "";
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
    if (unlink(path.c_str()) == 0 || errno == ENOENT)
        return true;
    shell_print_error("DHCP server: %s: failed to remove settings file: %s", path.c_str(),
                      std::strerror(errno));
    return false;
}

bool AddLeaseTimes(Node root, const OldSettings& settings) {
    const std::string lease = FirstValue(settings, "lease");
    return root.AddChild("default-lease-time", "%s", lease.empty() ? kTenDays : lease.c_str()) &&
           root.AddChild("max-lease-time", "%s", kTenDays);
}

// The subnet of an interface's own network, or of its address as it stands where the pair makes none.
Node AddSubnet(Node root, const std::string& interface) {
    corvanshell::InterfaceEntry entry;
    const corvanshell::CConfStruct record(path_list::local_settings, false);
    // An interface that the record doesn't know has neither address nor mask.
    static_cast<void>(record.FindInterface(interface, entry));
    const std::int64_t address = ParseAddressQuiet(entry.address);
    const std::int64_t mask = ParseAddressQuiet(entry.netmask);
    const bool valid = address != kNoAddress && mask != kNoAddress;
    const std::string network = valid ? FormatAddress(address & mask) : entry.address;
    Node subnet = root.AddChild("subnet");
    const bool made = subnet.NewAttr("address", "%s", network.c_str()) &&
                      subnet.NewAttr("netmask", "%s", entry.netmask.c_str()) &&
                      subnet.AddChild("interface", "%s", interface.c_str())
                          .NewAttr("type", "listen")
                          .NewAttr("address", "%s", entry.address.c_str());
    return made ? subnet : Node();
}

bool AddRange(Node subnet, const OldSettings& settings) {
    const std::string start = FirstValue(settings, "start");
    const std::string end = FirstValue(settings, "end");
    if (start.empty() || end.empty())
        return true;
    Node range = subnet.AddChild("range").NewAttr("from", "%s", start.c_str());
    return !range.NewAttr("to", "%s", end.c_str()).IsNull();
}

bool AddOptions(Node subnet, const OldSettings& settings) {
    const std::string mask = FirstValue(settings, "subnet");
    if (!mask.empty() && !AddOptionChild(subnet, "subnet-mask", mask))
        return false;
    for (const ListRow& row : kLists) {
        const auto found = settings.find(row.old_key);
        if (found == settings.end())
            continue;
        Node option = subnet.AddChild("option").NewAttr("name", "%s", row.option);
        for (const std::string& value : found->second) {
            if (!option.AddChild("address", "%s", value.c_str()))
                return false;
        }
    }
    return true;
}

} // namespace

bool ConvertUdhcpdSettings(const std::string& path) {
    OldSettings settings;
    if (!ReadOldSettings(path, settings) || !CheckTexts(settings))
        return false;
    SwitchToTree(path);
    File file(kDhcpServerUnit, "");
    if (!RemoveSettings() || !file.Load() || !AddLeaseTimes(file.Root(), settings))
        return false;
    const std::string interface = FirstValue(settings, "interface");
    if (interface.empty())
        return true;
    const Node subnet = AddSubnet(file.Root(), interface);
    return subnet && AddRange(subnet, settings) && AddOptions(subnet, settings) && file.Save();
}

} // namespace settings::dhcp_server
