#include "units/dhcp_server/model/options.h"

#include "platform/messages.h"
#include "units/dhcp_server/model/level.h"

namespace settings::dhcp_server {

Node AddOptionChild(Node parent, const char* name, const std::string& text) {
    Node option = parent.AddChild("option", text);
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
        PrintWarning("DHCP server: %s: %s %s will be overwritten with %s", area.Name(), label,
                     option.GetText(), value);
    return FindOrCreateOption(area, file, name, value.c_str());
}

std::string GetSubnetAddress(const Area& area, const File& file) {
    return area.LevelIn(file)->Address();
}

std::string GetSubnetNetmask(const Area& area, const File& file) {
    return area.LevelIn(file)->Netmask();
}

std::string GetSubnetMask(const Area& area, const File& file) {
    return area.LevelIn(file)->Mask();
}

std::string GetBroadcastAddress(const Area& area, const File& file) {
    return area.LevelIn(file)->Broadcast();
}

} // namespace settings::dhcp_server
