#include "units/dhcp_server/list_options.h"

#include "platform/messages.h"
#include "units/dhcp_server/edit.h"
#include "units/dhcp_server/model/address_rules.h"
#include "units/dhcp_server/model/options.h"

namespace settings::dhcp_server {
namespace {

constexpr const char* kChild = "address";

struct ListOption {
    const char* name;
    const char* label;
    std::size_t maximum; // values a level
};

constexpr ListOption kRouters = {"routers", "router", 10};
constexpr ListOption kNtpServers = {"ntp-servers", "NTP server", 10};
constexpr ListOption kDnsServers = {"domain-name-servers", "domain name server", 10};
constexpr ListOption kVoipTftpServers = {"voip-tftp-server", "VOIP TFTP server", 2};
constexpr ListOption kWinsServers = {"netbios-name-servers", "WINS server", 2};

// The path of an option's values, up to the text of one: "option[...]/address[text() = '".
std::string ValuePath(const std::string& option, const std::string& child, bool operators_only) {
    return "option[@name = '" + option + (operators_only ? "' and not(@auto = 'yes')]/" : "']/") + child +
           "[text() = '";
}

bool CheckUnused(const Area& area, const File& file, const char* option, const char* label, const char* child,
                 const std::string& value) {
    return !SelectText(area, file, ValuePath(option, child, true), value) ||
           Refuse("DHCP server: %s: %s %s is already in use", area.Name(), label, value);
}

// Routers count only what the operator has set, and the limit is looked at first; they must suit the subnet.
bool CheckRouter(const Area& area, const File& file, const std::string& value) {
    const NodeSet known =
        SelectIn(area, file, "option[@name = '%s' and not(@auto = 'yes')]/address", kRouters.name);
    if (known.Size() >= kRouters.maximum)
        return RefuseMore(area, kRouters.label, kRouters.maximum);
    return CheckUnused(area, file, kRouters.name, kRouters.label, kChild, value) &&
           CheckAddressScope(area, file, kRouters.label, value) &&
           CheckAddressFree(area, file, false, kRouters.label, value);
}

bool AddValue(const Area& area, const ListOption& option, const std::string& value) {
    return AddListOptionValue(area, option.name, option.label, kChild, value, option.maximum);
}

bool RemoveValue(const Area& area, const ListOption& option, const std::string& value) {
    return EditArea(area, [&](File& file, Node /*node*/) {
        Node found = SelectText(area, file, ValuePath(option.name, kChild, false), value).At(0);
        if (!found)
            return Refuse("DHCP server: %s: %s %s is not in use", area.Name(), option.label, value);
        Node parent = found.Parent();
        return found.Remove() && (parent.FirstChild().IsNamed(kChild) || parent.Remove());
    });
}

} // namespace

bool AddListOptionValue(const Area& area, const char* option, const char* label, const char* child,
                        const std::string& value, std::size_t maximum) {
    return EditArea(area, [&](File& file, Node /*node*/) {
        if (!CheckUnused(area, file, option, label, child, value))
            return false;
        // A list that the program manages gives way to the operator's.
        Node list = FindOrCreateOption(area, file, option, nullptr);
        if (!list)
            return false;
        if (maximum != 0 && SelectIn(area, file, "option[@name = '%s']/%s", option, child).Size() >= maximum)
            return RefuseMore(area, label, maximum);
        return !list.AddChild(child, value).IsNull();
    });
}

bool AddRouter(const Area& area, const std::string& value) {
    return EditArea(area, [&](File& file, Node /*node*/) {
        if (!CheckRouter(area, file, value))
            return false;
        WarnIfNotPrivate(area, value, kRouters.label);
        return !FindOrCreateOption(area, file, kRouters.name, nullptr).AddChild(kChild, value).IsNull();
    });
}

bool RemoveRouter(const Area& area, const std::string& value) {
    return RemoveValue(area, kRouters, value);
}

bool AddNtpServer(const Area& area, const std::string& value) {
    return AddValue(area, kNtpServers, value);
}

bool RemoveNtpServer(const Area& area, const std::string& value) {
    return RemoveValue(area, kNtpServers, value);
}

bool AddDnsServer(const Area& area, const std::string& value) {
    return AddValue(area, kDnsServers, value);
}

bool RemoveDnsServer(const Area& area, const std::string& value) {
    return RemoveValue(area, kDnsServers, value);
}

bool AddVoipTftpServer(const Area& area, const std::string& value) {
    return AddValue(area, kVoipTftpServers, value);
}

bool RemoveVoipTftpServer(const Area& area, const std::string& value) {
    return RemoveValue(area, kVoipTftpServers, value);
}

bool AddWinsServer(const Area& area, const std::string& value) {
    return AddValue(area, kWinsServers, value);
}

bool RemoveWinsServer(const Area& area, const std::string& value) {
    return RemoveValue(area, kWinsServers, value);
}

} // namespace settings::dhcp_server
