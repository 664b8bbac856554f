#include "units/dhcp_server/line_writer.h"

#include "platform/console.h"
#include "units/dhcp_server/paths.h"

#include <cerrno>
#include <cstring>

namespace settings::dhcp_server {

bool ReportWriteFailure(TreeWriter& writer) {
    if (writer.write_failed)
        return false;
    writer.write_failed = true;
    if (writer.daemon_form)
        shell_print_error("DHCP server: %s: failed to write daemon settings: %s", kDaemonSettings,
                          std::strerror(errno));
    else
        shell_print_error("DHCP server: failed to print daemon settings");
    return false;
}

bool WriteLine(TreeWriter& writer, const std::string& text) {
    if (writer.out == nullptr)
        return true;
    const int width = static_cast<int>(text.size()) + 2 * writer.depth;
    std::fprintf(writer.out, "%*s\n", width, text.c_str());
    return std::ferror(writer.out) == 0 || ReportWriteFailure(writer);
}

bool WriteSetting(TreeWriter& writer, const std::string& key, const std::string& value) {
    if (writer.out == nullptr)
        return true;
    return WriteLine(writer, writer.daemon_form ? key + " " + value + ";" : key + " = " + value);
}

bool WriteOption(TreeWriter& writer, const std::string& name, const std::string& value) {
    return WriteSetting(writer, "option " + name, value);
}

bool WriteAddressList(TreeWriter& writer, const std::string& name, Node node, const char* child) {
    std::string list;
    for (Node value = node.FirstChild(); value; value = value.NextSibling()) {
        if (!value.IsNamed(child))
            continue;
        if (!list.empty())
            list += ", ";
        list += value.GetText();
    }
    return WriteOption(writer, name, list);
}

} // namespace settings::dhcp_server
