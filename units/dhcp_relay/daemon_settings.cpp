#include "units/dhcp_relay/daemon_settings.h"

#include "front/helpers/stream.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"
#include "units/dhcp_relay/relay_knob.h"
#include "units/dhcp_relay/relay_list.h"
#include "units/dhcp_relay/rules/listen_interfaces.h"
#include "units/dhcp_relay/rules/lookup.h"
#include "units/dhcp_relay/rules/servers.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>
#include <string_view>
#include <vector>

namespace settings::dhcp_relay {
namespace {

// What the line of a relay tells its daemon.
struct Line {
    std::vector<std::string> listen_interfaces;
    std::set<std::string> external_interfaces;
    std::vector<std::string> servers;
};

std::string Format(const std::string& id, const Line& line) {
    std::string arguments;
    for (const std::string& interface : line.listen_interfaces)
        arguments += (arguments.empty() ? "-i " : " -i ") + interface;
    for (const std::string& interface : line.external_interfaces)
        arguments += " -iu " + interface;
    for (const std::string& server : line.servers)
        arguments += " " + server;
    return kKnobPrefix + id + "='" + arguments + "'\n";
}

// A shell runs the line and splits its value into the daemon's arguments, so a quote, a blank or a newline in
// a name would become a command or an argument. It is looked at here and not where a relay is edited, because
// files that nobody has edited here, such as a restored or a converted one, end in this line as well.
bool IsWord(std::string_view text) {
    const auto is_safe = [](char character) {
        return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
               (character >= 'a' && character <= 'z') ||
               std::string_view("._:@+-").find(character) != std::string_view::npos;
    };
    return !text.empty() && std::all_of(text.begin(), text.end(), is_safe);
}

bool CheckWord(const std::string& id, const std::string& name) {
    return IsWord(name) || Refuse("DHCP relay %s: %s: name is unsupported in daemon settings", id, name);
}

bool CheckId(const std::string& id) {
    if (id.empty() || id.find_first_not_of("0123456789") != std::string::npos)
        return Refuse("DHCP relay %s: ID in a format other than decimal is unsupported in daemon settings",
                      id);
    return id.find_first_not_of('0') != std::string::npos ||
           Refuse("DHCP relay %s: ID below 1 is unsupported in daemon settings", id);
}

// One relay on its way into its line. Each fault of it is reported.
class RelayCheck {
public:
    RelayCheck(const corvanshell::CConfStruct& record, const std::string& id) : record_(record), id_(id) {}

    // "" when the relay has a fault.
    std::string MakeLine(const RelayParts& parts) {
        bool good = ReadListenInterfaces(parts.listen_interfaces);
        good = (parts.external_server ? ReadServer(parts.external_server)
                                      : Refuse("DHCP relay %s: external DHCP server is unspecified", id_)) &&
               good;
        good = (!parts.backup_server || ReadServer(parts.backup_server)) && good;
        good = good && CheckId(id_);
        return good ? Format(id_, line_) : "";
    }

private:
    bool ReadListenInterfaces(const std::vector<Node>& nodes) {
        bool good = !nodes.empty() || Refuse("DHCP relay %s: neither one listen interface is specified", id_);
        for (const Node& node : nodes)
            good = ReadListenInterface(node.GetText()) && good;
        return good;
    }

    bool ReadListenInterface(const std::string& interface) {
        if (interface.empty())
            return Refuse("DHCP relay %s: listen interface is unspecified", id_);
        line_.listen_interfaces.push_back(interface);
        return CheckListenInterfaceUsable(record_, id_, interface) && CheckWord(id_, interface);
    }

    bool ReadServer(Node node) {
        const std::string server = node.GetText();
        const std::string interface = node.GetAttr("interface");
        line_.servers.push_back(server);
        line_.external_interfaces.insert(interface);
        return CheckRelayServer(record_, id_, server, interface) && CheckWord(id_, server) &&
               CheckWord(id_, interface);
    }

    const corvanshell::CConfStruct& record_;
    const std::string& id_;
    Line line_;
};

// Checks each relay, or just the one. The lines of those without a fault.
bool MakeLines(const File& file, const corvanshell::CConfStruct& record, Node only, std::string& lines) {
    const RelayList relays(file);
    if (relays.Nodes().empty())
        return Refuse("DHCP relay: no relays are configured");
    bool good = true;
    for (const Node& relay : relays.Nodes()) {
        if (only && !(relay == only))
            continue;
        const std::string id = relay.GetAttr("id");
        const std::string line = RelayCheck(record, id).MakeLine(relays.Find(id));
        good = good && !line.empty();
        lines += line;
    }
    return good;
}

bool RefuseWrite(const std::string& id) {
    const char* reason = std::strerror(errno);
    if (id.empty())
        return Refuse("DHCP relay: %s: failed to write settings: %s", kDaemonSettings, reason);
    return Refuse("DHCP relay %s: %s: failed to write settings: %s", id, kDaemonSettings, reason);
}

bool Generate(const File& file, const corvanshell::CConfStruct& record, std::FILE* out,
              const std::string& id) {
    const Node only = id.empty() ? Node() : FindRelay(file, id);
    if (!id.empty() && !only)
        return Refuse("DHCP relay %s: relay is unconfigured", id);
    std::string lines;
    const bool good = MakeLines(file, record, only, lines);
    if (out == nullptr)
        return good;
    std::fwrite(lines.data(), 1, lines.size(), out);
    return std::fflush(out) == 0 && std::ferror(out) == 0 ? good : RefuseWrite(id);
}

} // namespace

bool GenerateRelaySettings(const File& file, std::FILE* out, const std::string& id) {
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    return record.CheckRead() && Generate(file, record, out, id);
}

bool WriteRelayDaemonSettings(const File& file, const std::string& id) {
    // Read before the file is opened anew: no relay loses its line to a record that is locked for a moment.
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    if (!record.CheckRead() || (!id.empty() && !RemoveRelayKnob(id)))
        return false;
    Stream out(std::fopen(kDaemonSettings, id.empty() ? "we" : "ae"));
    if (out == nullptr)
        return Refuse("DHCP relay: %s: failed to open settings file: %s", kDaemonSettings,
                      std::strerror(errno));
    const bool good = Generate(file, record, out.get(), id);
    return std::fclose(out.release()) == 0 || !good ? good : RefuseWrite(id);
}

} // namespace settings::dhcp_relay
