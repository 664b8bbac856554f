#include "units/snmp/communities.h"

#include "units/snmp/settings_access.h"

namespace snmp {
namespace {

using settings::File;
using settings::Node;

Node FindCommunity(const File& file, const std::string& name) {
    return settings::IsLiteral(name) ? file.SelectFirst("/unit/agent/access/community[@name = '%s']", name)
                                     : Node();
}

} // namespace

std::vector<std::string> ListCommunities() {
    return Read(kCommonUnit, [](const File& file) { return ListCommunities(file); });
}

std::vector<std::string> ListCommunities(const File& file) {
    return ListDistinctAttrs(file.Select("/unit/agent/access/community"), "name");
}

bool AddCommunity(const std::string& name) {
    return Edit(kCommonUnit, [&](File& file) {
        return file.SelectFirst("/unit/agent/access").AddChild("community").NewAttr("name", name) ||
               Refuse("Failed to add community");
    });
}

bool RenameCommunity(const std::string& old_name, const std::string& new_name) {
    return Edit(kCommonUnit, [&](File& file) {
        Node community = FindCommunity(file, old_name);
        if (!community)
            return Refuse("No such name found");
        return community.SetAttr("name", new_name) || Refuse("Failed to change community name");
    });
}

bool DeleteCommunity(const std::string& name) {
    return Edit(kCommonUnit, [&](File& file) {
        Node community = FindCommunity(file, name);
        if (!community)
            return Refuse("Failed to find %s community", name);
        return community.Remove() || Refuse("Failed to erase");
    });
}

} // namespace snmp
