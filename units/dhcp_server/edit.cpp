#include "units/dhcp_server/edit.h"

#include "platform/messages.h"
#include "units/dhcp_server/model/gates.h"
#include "units/dhcp_server/model/paths.h"

namespace settings::dhcp_server {

bool EditUnit(const std::function<bool(File& file)>& step) {
    File file(kDhcpServerUnit, "");
    return OpenForChange(file) && step(file) && file.Save();
}

bool EditArea(const Area& area, const std::function<bool(File& file, Node node)>& step) {
    return EditUnit([&](File& file) {
        const Node node = area.GetNode(file);
        return node && step(file, node);
    });
}

NodeSet SelectText(const Area& area, const File& file, const std::string& head, const std::string& text,
                   const std::string& tail) {
    if (!IsLiteral(text))
        return {};
    return SelectIn(area, file, "%s", head + text + tail);
}

bool RefuseMore(const Area& area, const char* label, std::size_t maximum) {
    return Refuse("DHCP server: %s: failed to add %s due to maximum number is reached: %zu", area.Name(),
                  label, maximum);
}

} // namespace settings::dhcp_server
