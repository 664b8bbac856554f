#include "units/dhcp_server/model/options.h"

#include "platform/console.h"
#include "platform/network.h"
#include "units/dhcp_server/model/subnet_view.h"

namespace settings::dhcp_server {
namespace {

// The text of the node's first option of that name.
std::string ChildOption(Node parent, const char* name) {
    for (Node child = parent.FirstChild(); child; child = child.NextSibling()) {
        if (child.IsNamed("option") && child.GetAttr("name") == name)
            return child.GetText();
    }
    return "";
}

// The option of a subnet, or of a host with the subnet's behind it.
std::string LevelOption(const Area& area, const File& file, const char* name) {
    const bool host = IsHost(area, file);
    if (area.View() != nullptr) {
        const std::string own = host ? ChildOption(area.BoundNode(), name) : "";
        return own.empty() ? area.View()->Option(name) : own;
    }
    const std::string own = FirstIn(area, file, "option[@name = '%s']", name).GetText();
    return own.empty() && host ? FirstIn(area, file, "../option[@name = '%s']", name).GetText() : own;
}

Node SubnetOf(const Area& area, const File& file) {
    const Node node = FirstIn(area, file);
    return node.IsNamed("host") ? node.Parent() : node;
}

} // namespace

Node AddOptionChild(Node parent, const char* name, const std::string& text) {
    Node option = parent.AddChild("option", "%s", text.c_str());
    if (!option.NewAttr("name", "%s", name))
        option.Remove();
    return option;
}

Node FindOrCreateOption(const Area& area, const File& file, const char* name, const char* value) {
    Node option = FirstIn(area, file, "option[@name = '%s']", name);
    if (option && option.GetAttr("auto") != "yes" && (value == nullptr || option.SetText("%s", value)))
        return option;
    option.Remove();
    return AddOptionChild(FirstIn(area, file), name, value != nullptr ? value : "");
}

Node SetOptionWithWarning(const Area& area, const File& file, const char* name, const char* label,
                          const std::string& value) {
    const Node option = FirstIn(area, file, "option[@name = '%s']", name);
    if (option)
        shell_print_warning("DHCP server: %s: %s %s will be overwritten with %s", area.Name().c_str(), label,
                            option.GetText().c_str(), value.c_str());
    return FindOrCreateOption(area, file, name, value.c_str());
}

bool IsHost(const Area& area, const File& file) {
    return FirstIn(area, file).IsNamed("host");
}

std::string GetSubnetAddress(const Area& area, const File& file) {
    return SubnetOf(area, file).GetAttr("address");
}

std::string GetSubnetNetmask(const Area& area, const File& file) {
    return SubnetOf(area, file).GetAttr("netmask");
}

std::string GetSubnetMask(const Area& area, const File& file) {
    const std::string mask = LevelOption(area, file, "subnet-mask");
    return mask.empty() ? GetSubnetNetmask(area, file) : mask;
}

std::string GetBroadcastAddress(const Area& area, const File& file) {
    const std::string broadcast = LevelOption(area, file, "broadcast-address");
    if (!broadcast.empty())
        return broadcast;
    return corvanshell::getbrcast(GetSubnetAddress(area, file), GetSubnetMask(area, file));
}

} // namespace settings::dhcp_server
