#include "units/snmp/settings_access.h"

#include <algorithm>

namespace snmp {

using settings::File;
using settings::Node;
using settings::NodeSet;

bool LoadSettings(File& file) {
    return file.Load() || Refuse("Couldn't parse XML config file");
}

bool SaveSettings(File& file) {
    return file.Save() || Refuse("Failed to write to config file");
}

std::string GetAttr(const std::string& xpath, const std::string& attribute, const std::string& unit) {
    return Read(unit.c_str(),
                [&](const File& file) { return file.SelectFirst("%s", xpath).GetAttr(attribute.c_str()); });
}

bool SetText(File& file, const std::string& xpath, const std::string& value) {
    return file.SelectFirst("%s", xpath).SetText(value) || Refuse("Failed to edit %s", xpath);
}

bool SetAttr(File& file, const std::string& xpath, const std::string& attribute, const std::string& value) {
    Node node = file.SelectFirst("%s", xpath);
    if (!node)
        return Refuse("Couldn't find %s path", xpath);
    return node.SetAttr(attribute.c_str(), value) || Refuse("Failed to set %s", attribute);
}

bool SetText(const std::string& xpath, const std::string& value, const std::string& unit) {
    return Edit(unit.c_str(), [&](File& file) { return SetText(file, xpath, value); });
}

bool SetAttr(const std::string& xpath, const std::string& attribute, const std::string& value,
             const std::string& unit) {
    return Edit(unit.c_str(), [&](File& file) { return SetAttr(file, xpath, attribute, value); });
}

std::vector<std::string> ListAttrs(const NodeSet& nodes, const char* attribute) {
    std::vector<std::string> values;
    for (std::size_t i = 0; i < nodes.Size(); ++i)
        values.push_back(nodes.At(i).GetAttr(attribute));
    return values;
}

std::vector<std::string> ListDistinctAttrs(const NodeSet& nodes, const char* attribute) {
    std::vector<std::string> values = ListAttrs(nodes, attribute);
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

} // namespace snmp
