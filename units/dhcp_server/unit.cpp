#include "units/dhcp_server/unit.h"

#include "front/helpers/stream.h"
#include "front/query_table.h"
#include "platform/messages.h"
#include "settings/file.h"
#include "units/dhcp_server/conversion.h"
#include "units/dhcp_server/interface_change.h"
#include "units/dhcp_server/model/area.h"
#include "units/dhcp_server/model/gates.h"
#include "units/dhcp_server/model/paths.h"
#include "units/dhcp_server/report.h"
#include "units/dhcp_server/tree_writer.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace settings::dhcp_server {
namespace {

bool WriteExtraSettings(const File& file) {
    const Stream out(std::fopen(kDaemonExtraSettings, "we"));
    if (out == nullptr)
        return Refuse("DHCP server: %s: failed to open daemon extra settings file: %s", kDaemonExtraSettings,
                      std::strerror(errno));
    std::string interfaces;
    for (const std::string& interface : CollectValues(file, "child::subnet/interface"))
        interfaces += (interfaces.empty() ? "" : " ") + interface;
    std::fprintf(out.get(), "INTERFACESv4=\"%s\"\n", interfaces.c_str());
    std::fprintf(out.get(), "DHCPDv4_PID=\"%s\"\n", kPidFile);
    return (std::fflush(out.get()) == 0 && std::ferror(out.get()) == 0) ||
           Refuse("DHCP server: %s: failed to write daemon extra settings: %s", kDaemonExtraSettings,
                  std::strerror(errno));
}

bool WriteDaemonFiles(const File& file) {
    TreeWriter writer(file);
    // Asked before the daemon's file is opened anew: a record that is locked for a moment empties nothing.
    if (!writer.memory.NetworkRecord().CheckRead())
        return false;
    const Stream out(std::fopen(kDaemonSettings, "we"));
    if (out == nullptr)
        return Refuse("DHCP server: %s: failed to open settings file: %s", kDaemonSettings,
                      std::strerror(errno));
    return GenerateDaemonSettings(writer, out.get(), Area()) && WriteExtraSettings(file);
}

bool Check(File& file, const std::string& /*value*/) {
    TreeWriter writer(file);
    return GenerateDaemonSettings(writer, nullptr, Area());
}

bool Update(File& file, const std::string& interface) {
    return UpdateListenInterface(file, interface, true);
}

bool Required(File& file, const std::string& interface) {
    return static_cast<bool>(SelectIn(LocalSubnet(interface), file));
}

bool Print(File& file, const std::string& /*value*/) {
    file.Close();
    return PrintDhcpServer();
}

bool Dump(File& file, const std::string& /*value*/) {
    file.Close();
    return DumpDhcpServer();
}

bool Convert(File& file, const std::string& path) {
    file.Close();
    return ConvertUdhcpdSettings(path);
}

constexpr QueryRow<File&> kQueries[] = {
    {"check", Check}, {"update", Update}, {"required", Required},
    {"print", Print}, {"dump", Dump},     {"convert-udhcpd-settings", Convert},
};

} // namespace
} // namespace settings::dhcp_server

bool DhcpServerUnit(const _xmlURI* uri) {
    using namespace settings::dhcp_server;
    settings::File file(kDhcpServerUnit, "");
    if (!file.Load())
        return false;
    if (!HasUnitQuery(uri))
        return WriteDaemonFiles(file);
    const QueryList query = ParseUnitQuery(uri);
    if (query.empty())
        return Refuse("DHCP server: empty query");
    return RunQuery(kQueries, query.front(), "DHCP server: wrong query format", file);
}
