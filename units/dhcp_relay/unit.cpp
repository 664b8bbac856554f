#include "units/dhcp_relay/unit.h"

#include "front/query_table.h"
#include "settings/file.h"
#include "units/dhcp_relay/conversion.h"
#include "units/dhcp_relay/daemon_settings.h"
#include "units/dhcp_relay/report.h"
#include "units/dhcp_relay/rules/listen_interfaces.h"
#include "units/dhcp_relay/rules/lookup.h"
#include "units/dhcp_relay/rules/servers.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <iterator>
#include <libxml/uri.h>
#include <map>

namespace settings::dhcp_relay {
namespace {

struct Request {
    File& file;
    const std::string& id; // "" when the URI names no relay
    const QueryList& query;
};

// The number counts; what stands behind it is part of the ID all the same.
bool IsRelayId(const std::string& id) {
    char* end = nullptr;
    errno = 0;
    const long number = std::strtol(id.c_str(), &end, 10);
    if (end != id.c_str() && errno == 0 && number >= 1)
        return true;
    return Refuse("DHCP relay: wrong format of ID of DHCP relay");
}

constexpr Format<> kWrongQuery = "DHCP relay: wrong query format";

bool Check(const Request& request, const std::string& /*value*/) {
    return GenerateRelaySettings(request.file, nullptr, request.id);
}

bool Print(const Request& request, const std::string& /*value*/) {
    request.file.Close();
    return PrintDhcpRelays("");
}

bool Dump(const Request& request, const std::string& /*value*/) {
    request.file.Close();
    return DumpRelaySettings();
}

bool Convert(const Request& request, const std::string& path) {
    request.file.Close();
    return ConvertRelayDaemonSettings(path);
}

bool Required(const Request& request, const std::string& interface) {
    Node found = FindServerInterface(request.file, interface);
    if (!found)
        found = FindListenInterface(request.file, interface);
    if (!found)
        return false;
    std::printf("%s\n", found.Parent().GetAttr("id").c_str());
    return true;
}

// The pairs behind the first, by key. False unless each has one of the keys, and there are as many as keys.
bool TakeArguments(const Request& request, std::initializer_list<const char*> keys,
                   std::map<std::string, std::string>& arguments) {
    if (request.id.empty() || request.query.size() != keys.size() + 1)
        return false;
    for (const char* key : keys)
        arguments[key] = "";
    for (auto pair = std::next(request.query.begin()); pair != request.query.end(); ++pair) {
        const auto argument = arguments.find(pair->key);
        if (argument == arguments.end())
            return false;
        argument->second = pair->value;
    }
    return true;
}

bool AddServer(const Request& request, const std::string& /*value*/) {
    std::map<std::string, std::string> arguments;
    if (!TakeArguments(request, {"server", "server_id", "interface"}, arguments))
        return Refuse(kWrongQuery);
    const std::string& server_id = arguments["server_id"];
    if (server_id != kExternalServer && server_id != kBackupServer)
        return Refuse(kWrongQuery);
    return AddRelayServer(request.id, server_id, arguments["server"], arguments["interface"]);
}

bool AddListenInterface(const Request& request, const std::string& /*value*/) {
    std::map<std::string, std::string> arguments;
    if (!TakeArguments(request, {"interface"}, arguments))
        return Refuse(kWrongQuery);
    return AddRelayListenInterface(request.id, arguments["interface"]);
}

constexpr QueryRow<const Request&> kQueries[] = {
    {"check", Check},
    {"print", Print},
    {"dump", Dump},
    {"convert-daemon-settings", Convert},
    {"required", Required},
    {"add-server", AddServer},
    {"add-listen-interface", AddListenInterface},
};

} // namespace
} // namespace settings::dhcp_relay

bool DhcpRelayUnit(const _xmlURI* uri) {
    using namespace settings::dhcp_relay;
    const std::string id = GetUnitFragment(uri);
    if (uri != nullptr && uri->fragment != nullptr && !IsRelayId(id))
        return false;
    settings::File file(kDhcpRelayUnit, "");
    if (!file.Load())
        return false;
    const QueryList query = ParseUnitQuery(uri);
    if (query.empty())
        return WriteRelayDaemonSettings(file, id);
    return RunQuery(kQueries, query.front(), kWrongQuery, Request{file, id, query});
}
