#include "units/dhcp_relay/daemon_settings.h"

#include "front/helpers/stream.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"
#include "units/dhcp_relay/relay_knob.h"
#include "units/dhcp_relay/rules/listen_interfaces.h"
#include "units/dhcp_relay/rules/lookup.h"
#include "units/dhcp_relay/rules/servers.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

namespace settings::dhcp_relay {
namespace {

constexpr const char* kListenPath = "interface[@type = 'listen' and text()]";

std::optional<std::uint64_t> ParseNumber(const std::string& text) {
    // Above this numbers of a query are no longer exact.
    constexpr std::uint64_t kLargest = std::uint64_t{1} << 53;
    std::uint64_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number > kLargest)
        return std::nullopt;
    return number;
}

// The relays of the file. Their IDs are compared as numbers, so that "1" and "01" are one relay: what the
// one has, the other has too.
class Relays {
public:
    explicit Relays(const File& file) : file_(file), nodes_(file.Select("/unit/dhcp-relay[@id]")) {
        for (std::size_t i = 0; i < nodes_.Size(); ++i) {
            const auto number = ParseNumber(nodes_.At(i).GetAttr("id"));
            all_plain_ = all_plain_ && number;
            if (number)
                ++counts_[*number];
        }
    }

    const NodeSet& Nodes() const { return nodes_; }

    // What a path finds in the relay of that ID. A relay that is alone with its number is asked itself, and
    // not the whole document.
    NodeSet Select(Node relay, const std::string& id, const std::string& path) const {
        const auto number = ParseNumber(id);
        if (all_plain_ && number && counts_.at(*number) == 1)
            return file_.SelectFrom(relay, "%s", path);
        return file_.Select("/unit/dhcp-relay[@id = %s]/%s", id, path);
    }

private:
    const File& file_;
    NodeSet nodes_;
    std::map<std::uint64_t, int> counts_;
    bool all_plain_ = true;
};

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
    RelayCheck(const Relays& relays, const corvanshell::CConfStruct& record, Node relay)
        : relays_(relays), record_(record), relay_(relay), id_(relay.GetAttr("id")) {}

    // "" when the relay has a fault.
    std::string MakeLine() {
        bool good = ReadListenInterfaces();
        good = ReadServer(kExternalServer) && good;
        good = ReadServer(kBackupServer) && good;
        good = good && CheckId(id_);
        return good ? Format(id_, line_) : "";
    }

private:
    bool ReadListenInterfaces() {
        const NodeSet nodes = relays_.Select(relay_, id_, kListenPath);
        if (!nodes)
            PrintError("DHCP relay %s: neither one listen interface is specified", id_);
        bool good = !nodes.IsEmpty();
        for (std::size_t i = 0; i < nodes.Size(); ++i)
            good = ReadListenInterface(nodes.At(i).GetText()) && good;
        return good;
    }

    bool ReadListenInterface(const std::string& interface) {
        if (interface.empty())
            return Refuse("DHCP relay %s: listen interface is unspecified", id_);
        line_.listen_interfaces.push_back(interface);
        return CheckListenInterfaceUsable(record_, id_, interface) && CheckWord(id_, interface);
    }

    bool ReadServer(const std::string& server_id) {
        const Node node =
            relays_.Select(relay_, id_, "server[@id = '" + server_id + "' and @interface and text()]").At(0);
        if (!node)
            return server_id != kExternalServer ||
                   Refuse("DHCP relay %s: external DHCP server is unspecified", id_);
        const std::string server = node.GetText();
        const std::string interface = node.GetAttr("interface");
        line_.servers.push_back(server);
        line_.external_interfaces.insert(interface);
        return CheckRelayServer(record_, id_, server, interface) && CheckWord(id_, server) &&
               CheckWord(id_, interface);
    }

    const Relays& relays_;
    const corvanshell::CConfStruct& record_;
    Node relay_;
    std::string id_;
    Line line_;
};

// Checks each relay, or just the one. The lines of those without a fault.
bool MakeLines(const File& file, const corvanshell::CConfStruct& record, Node only, std::string& lines) {
    const Relays relays(file);
    if (!relays.Nodes())
        return Refuse("DHCP relay: no relays are configured");
    bool good = true;
    for (std::size_t i = 0; i < relays.Nodes().Size(); ++i) {
        const Node relay = relays.Nodes().At(i);
        if (only && !(relay == only))
            continue;
        const std::string line = RelayCheck(relays, record, relay).MakeLine();
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
