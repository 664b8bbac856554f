#include "units/dhcp_server/single_options.h"

#include "platform/messages.h"
#include "platform/network.h"
#include "units/dhcp_server/edit.h"
#include "units/dhcp_server/model/address_rules.h"
#include "units/dhcp_server/model/addresses.h"
#include "units/dhcp_server/model/level.h"
#include "units/dhcp_server/model/options.h"

namespace settings::dhcp_server {
namespace {

struct SingleOption {
    const char* name;
    const char* label;
};

constexpr SingleOption kSubnetMask = {"subnet-mask", "subnet mask"};
constexpr SingleOption kBroadcastAddress = {"broadcast-address", "broadcast address"};
constexpr SingleOption kDomainName = {"domain-name", "domain name"};
constexpr SingleOption kTftpServer = {"tftp-server", "TFTP server"};
constexpr SingleOption kDefaultLeaseTime = {"default-lease-time", "default lease time"};
constexpr SingleOption kMaxLeaseTime = {"max-lease-time", "max lease time"};
constexpr const char* kCustomOption = "custom option";

void WarnOfOverwriting(const Area& area, const char* label, const std::string& old_text,
                       const std::string& value) {
    PrintWarning("DHCP server: %s: %s %s will be overwritten with %s", area.Name(), label, old_text, value);
}

// Removes what the path finds below the area.
bool Clear(const Area& area, const std::string& path, const char* label) {
    return EditArea(area, [&](File& file, Node /*node*/) {
        Node found = FirstIn(area, file, "%s", path);
        if (!found)
            return Refuse("DHCP server: %s: %s is not set", area.Name(), label);
        return found.Remove();
    });
}

// An element of the area's own with that text; it is added when it is missing.
bool SetElementText(Node node, Node element, const char* name, const std::string& text) {
    if (!element)
        element = node.AddChild(name);
    return element.SetText(text);
}

// No option of that number has another type, wherever it stands.
bool CheckType(const File& file, const std::string& number, const std::string& type) {
    const NodeSet options = SelectIn(Area(), file, "descendant::option[@num and @type]");
    for (std::size_t i = 0; i < options.Size(); ++i) {
        const std::string known = options.At(i).GetAttr("type");
        if (options.At(i).GetAttr("num") == number && known != type)
            return Refuse("DHCP server: %s %s already has different type: %s", kCustomOption, number, known);
    }
    return true;
}

} // namespace

bool SetSubnetMask(const Area& area, const std::string& mask) {
    return EditArea(area, [&](File& file, Node /*node*/) {
        const std::string known = FirstIn(area, file, "option[@name = '%s']", kSubnetMask.name).GetText();
        // Also where none is set; the old value then prints as nothing. Kept.
        if (known != mask)
            WarnOfOverwriting(area, kSubnetMask.label, known, mask);
        return CheckSubnetMaskScope(area, file, mask) &&
               FindOrCreateOption(area, file, kSubnetMask.name, mask.c_str());
    });
}

bool ClearSubnetMask(const Area& area) {
    return ClearNamedOption(area, kSubnetMask.name, kSubnetMask.label);
}

bool SetBroadcastAddress(const Area& area) {
    return EditArea(area, [&](File& file, Node /*node*/) {
        const std::shared_ptr<Level> level = area.LevelIn(file);
        const std::string value = corvanshell::getbrcast(level->Address(), level->Mask());
        // The whole unit has none, and neither has a damaged subnet.
        if (ParseAddress(value, area.Name(), kBroadcastAddress.label) == kNoAddress)
            return false;
        const Node known = FirstIn(area, file, "option[@name = '%s']", kBroadcastAddress.name);
        if (known)
            WarnOfOverwriting(area, kBroadcastAddress.label, known.GetText(), value);
        WarnIfNotPrivate(area, value, kBroadcastAddress.label);
        return !FindOrCreateOption(area, file, kBroadcastAddress.name, value.c_str()).IsNull();
    });
}

bool ClearBroadcastAddress(const Area& area) {
    return ClearNamedOption(area, kBroadcastAddress.name, kBroadcastAddress.label);
}

bool SetDomainName(const Area& area, const std::string& name) {
    return SetNamedOption(area, kDomainName.name, kDomainName.label, name);
}

bool ClearDomainName(const Area& area) {
    return ClearNamedOption(area, kDomainName.name, kDomainName.label);
}

bool SetTftpServer(const Area& area, const std::string& server, const std::string& boot_file) {
    return EditArea(area, [&](File& file, Node /*node*/) {
        Node option = SetOptionWithWarning(area, file, kTftpServer.name, kTftpServer.label, server);
        return option && (boot_file.empty() || option.SetAttr("file", boot_file));
    });
}

bool ClearTftpServer(const Area& area) {
    return ClearNamedOption(area, kTftpServer.name, kTftpServer.label);
}

bool SetNamedOption(const Area& area, const char* name, const char* label, const std::string& value) {
    return EditArea(area, [&](File& file, Node /*node*/) {
        return !SetOptionWithWarning(area, file, name, label, value).IsNull();
    });
}

bool ClearNamedOption(const Area& area, const char* name, const char* label) {
    return Clear(area, std::string("option[@name = '") + name + "']", label);
}

bool SetCustomOption(const Area& area, const std::string& number, const std::string& type,
                     const std::string& value) {
    return EditArea(area, [&](File& file, Node node) {
        if (!CheckType(file, number, type))
            return false;
        Node option = SelectText(area, file, "option[@num = '", number).At(0);
        if (option)
            PrintWarning("DHCP server: %s: %s %s %s will be overwritten with %s", area.Name(), number,
                         kCustomOption, option.GetText(), value);
        else
            option = node.AddChild("option");
        return option.SetText(value) && option.SetAttr("num", number) && option.SetAttr("type", type);
    });
}

bool ClearCustomOption(const Area& area, const std::string& number) {
    return EditArea(area, [&](File& file, Node /*node*/) {
        Node option = SelectText(area, file, "option[@num = '", number).At(0);
        if (!option)
            return Refuse("DHCP server: %s: %s %s is not set", area.Name(), number, kCustomOption);
        return option.Remove();
    });
}

bool SetDefaultLeaseTime(const Area& area, const std::string& seconds) {
    return EditArea(area, [&](File& file, Node node) {
        const Node known = FirstIn(area, file, "%s", kDefaultLeaseTime.name);
        if (known)
            WarnOfOverwriting(area, kDefaultLeaseTime.label, known.GetText(), seconds);
        return SetElementText(node, known, kDefaultLeaseTime.name, seconds);
    });
}

bool ClearDefaultLeaseTime(const Area& area) {
    return Clear(area, kDefaultLeaseTime.name, kDefaultLeaseTime.label);
}

bool SetMaxLeaseTime(const Area& area, const std::string& seconds) {
    return EditArea(area, [&](File& file, Node node) {
        const Node known = FirstIn(area, file, "%s", kMaxLeaseTime.name);
        // Without the area's name, unlike the default lease time. Kept.
        if (known)
            PrintWarning("DHCP server: %s %s will be overwritten with %s", kMaxLeaseTime.label,
                         known.GetText(), seconds);
        return SetElementText(node, known, kMaxLeaseTime.name, seconds);
    });
}

bool ClearMaxLeaseTime(const Area& area) {
    return Clear(area, kMaxLeaseTime.name, kMaxLeaseTime.label);
}

} // namespace settings::dhcp_server
