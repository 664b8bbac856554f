#include "units/dhcp_server/unit.h"

#include "front/helpers/stream.h"
#include "front/unit_query.h"
#include "platform/console.h"
#include "settings/file.h"
#include "units/dhcp_server/conversion.h"
#include "units/dhcp_server/interface_rules.h"
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

Stream OpenForWriting(const char* path, const char* failure) {
    Stream stream(std::fopen(path, "we"));
    if (stream == nullptr) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
        shell_print_error(failure, path, std::strerror(errno));
#pragma GCC diagnostic pop
    }
    return stream;
}

bool WriteExtraSettings(const File& file) {
    const Stream out = OpenForWriting(kDaemonExtraSettings,
                                      "DHCP server: %s: failed to open daemon extra settings file: %s");
    if (out == nullptr)
        return false;
    std::string interfaces;
    for (const std::string& interface : CollectValues(file, "child::subnet/interface"))
        interfaces += (interfaces.empty() ? "" : " ") + interface;
    std::fprintf(out.get(), "INTERFACESv4=\"%s\"\n", interfaces.c_str());
    std::fprintf(out.get(), "DHCPDv4_PID=\"%s\"\n", kPidFile);
    if (std::fflush(out.get()) == 0 && std::ferror(out.get()) == 0)
        return true;
    shell_print_error("DHCP server: %s: failed to write daemon extra settings: %s", kDaemonExtraSettings,
                      std::strerror(errno));
    return false;
}

bool WriteDaemonFiles(const File& file) {
    const Stream out = OpenForWriting(kDaemonSettings, "DHCP server: %s: failed to open settings file: %s");
    return out != nullptr && GenerateDaemonSettings(file, out.get(), Area()) && WriteExtraSettings(file);
}

bool Check(File& file, const std::string& /*value*/) {
    return GenerateDaemonSettings(file, nullptr, Area());
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

struct QueryRow {
    const char* key;
    bool (*run)(File& file, const std::string& value);
};

constexpr QueryRow kQueries[] = {
    {"check", Check}, {"update", Update}, {"required", Required},
    {"print", Print}, {"dump", Dump},     {"convert-udhcpd-settings", Convert},
};

bool RunQuery(File& file, const QueryPair& pair) {
    for (const QueryRow& row : kQueries) {
        if (pair.key == row.key)
            return row.run(file, pair.value);
    }
    shell_print_error("DHCP server: wrong query format");
    return false;
}

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
    if (query.empty()) {
        shell_print_error("DHCP server: empty query");
        return false;
    }
    return RunQuery(file, query.front());
}
