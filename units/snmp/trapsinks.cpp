#include "units/snmp/trapsinks.h"

#include "front/helpers/text.h"
#include "units/snmp/settings_access.h"

#include <algorithm>

namespace snmp {
namespace {

using settings::File;
using settings::Node;
using settings::NodeSet;

constexpr const char* kTrapsinks = "/unit/agent/trapsink";
constexpr std::size_t kMaximumTrapsinks = 16;

struct KindRow {
    const char* kind;
    const char* type;
};

constexpr KindRow kKinds[] = {{"v1", "trapsink"}, {"v2", "trap2sink"}, {"inform", "informsink"}};

bool IsSameReceiver(const Trapsink& one, const Trapsink& other) {
    return one.destination == other.destination && one.community == other.community &&
           one.port == other.port && one.prot == other.prot;
}

bool CheckNewTrapsink(const File& file, const Trapsink& sink) {
    const std::vector<Trapsink> sinks = ListTrapsinks(file);
    if (std::none_of(sinks.begin(), sinks.end(),
                     [&](const Trapsink& known) { return IsSameReceiver(known, sink); }))
        return true;
    PrintInfo("%s -> %s:%s %s Community = %s already exists", sink.type == "informsink" ? "Inform" : "Trap",
              sink.destination, sink.port, ToUpper(sink.prot), sink.community);
    return false;
}

bool HasRoom(const File& file) {
    if (file.Select("%s", kTrapsinks).Size() < kMaximumTrapsinks)
        return true;
    PrintInfo("For SNMPv1 and SNMPv2c user can have only 16 hosts for sending SNMP TRAP or SNMP "
              "INFORM");
    return false;
}

} // namespace

std::string TypeOfKind(const std::string& kind) {
    const auto row = std::find_if(std::begin(kKinds), std::end(kKinds),
                                  [&](const KindRow& known) { return kind == known.kind; });
    return row != std::end(kKinds) ? row->type : "";
}

bool IsTrapsinkType(const std::string& type) {
    return std::any_of(std::begin(kKinds), std::end(kKinds),
                       [&](const KindRow& row) { return type == row.type; });
}

std::vector<std::string> ListTrapsinkDestinations() {
    return Read(kCommonUnit, [](const File& file) {
        return ListDistinctAttrs(file.Select("%s", kTrapsinks), "destination");
    });
}

std::vector<Trapsink> ListTrapsinks() {
    return Read(kCommonUnit, [](const File& file) { return ListTrapsinks(file); });
}

std::vector<Trapsink> ListTrapsinks(const File& file) {
    const NodeSet nodes = file.Select("%s", kTrapsinks);
    std::vector<Trapsink> sinks;
    for (std::size_t i = 0; i < nodes.Size(); ++i) {
        const Node node = nodes.At(i);
        sinks.push_back({node.GetAttr("destination"), node.GetAttr("community"), node.GetAttr("type"),
                         node.GetAttr("port"), node.GetAttr("prot")});
    }
    return sinks;
}

bool AddTrapsink(const std::string& destination, const std::string& community, const std::string& kind,
                 const std::string& port, const std::string& prot) {
    return Edit(kCommonUnit, [&](File& file) {
        if (!HasRoom(file))
            return false;
        const std::string type = TypeOfKind(kind);
        if (type.empty())
            return Refuse("%s: unknown kind of trapsink", kind);
        if (!CheckNewTrapsink(file, {destination, community, type, port, prot}))
            return false;
        return file.SelectFirst("/unit/agent")
                   .AddChild("trapsink")
                   .NewAttr("destination", destination)
                   .NewAttr("community", community)
                   .NewAttr("type", type)
                   .NewAttr("port", port)
                   .NewAttr("prot", prot) ||
               Refuse("Failed to add trapsink");
    });
}

bool DeleteTrapsink(const std::string& destination, const std::string& port, const std::string& prot,
                    const std::string& community, const std::string& type) {
    return Edit(kCommonUnit, [&](File& file) {
        Node sink;
        if (settings::IsLiteral(destination + port + prot + community + type))
            sink = file.SelectFirst("/unit/agent/trapsink[@destination = '%s' and @port = '%s' and @prot = "
                                    "'%s' and @community = '%s' and @type = '%s']",
                                    destination, port, prot, community, type);
        if (!sink) {
            PrintInfo("No such trapsink");
            return false;
        }
        return sink.Remove() || Refuse("Failed to erase item");
    });
}

} // namespace snmp
