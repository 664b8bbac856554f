#pragma once

#include "platform/messages.h"
#include "settings/file.h"
#include "settings/node.h"

#include <string>
#include <utility>
#include <vector>

// The agent's two settings files. What all appliances of a cluster share stands in snmp_common, what belongs
// to this node in snmp_unique; docs/snmp.md shows both.
//
// An operation that takes no file loads one, does one thing, saves and closes; what it can't do it reports.
// The forms that take a loaded file serve who reads many things from it.

namespace snmp {

inline constexpr const char* kCommonUnit = "snmp_common";
inline constexpr const char* kUniqueUnit = "snmp_unique";

// A settings file that is written readable by its owner alone: it may hold passwords and keys.
class SettingsFile : public settings::File {
public:
    explicit SettingsFile(const char* unit) : File(unit, "") { KeepPrivate(); }
};

[[nodiscard]] bool LoadSettings(settings::File& file);
[[nodiscard]] bool SaveSettings(settings::File& file);

// The attribute of the first match, "" when it is absent.
std::string GetAttr(const std::string& xpath, const std::string& attribute, const std::string& unit);
// Set the text or an attribute of the first match, which must be there.
[[nodiscard]] bool SetText(const std::string& xpath, const std::string& value, const std::string& unit);
[[nodiscard]] bool SetAttr(const std::string& xpath, const std::string& attribute, const std::string& value,
                           const std::string& unit);
// The same in memory.
[[nodiscard]] bool SetText(settings::File& file, const std::string& xpath, const std::string& value);
[[nodiscard]] bool SetAttr(settings::File& file, const std::string& xpath, const std::string& attribute,
                           const std::string& value);

// One attribute of every node of the set, in document order.
std::vector<std::string> ListAttrs(const settings::NodeSet& nodes, const char* attribute);
// The same sorted, each text once.
std::vector<std::string> ListDistinctAttrs(const settings::NodeSet& nodes, const char* attribute);

// The frame of every edit: `step` changes the loaded file, and reports why it can't.
template <class Step>
[[nodiscard]] bool Edit(const char* unit, const Step& step) {
    SettingsFile file(unit);
    return LoadSettings(file) && step(file) && SaveSettings(file);
}

// The frame of every read: an empty result when the file can't be loaded.
template <class Reader>
auto Read(const char* unit, const Reader& reader) -> decltype(reader(std::declval<const settings::File&>())) {
    SettingsFile file(unit);
    if (!LoadSettings(file))
        return {};
    return reader(file);
}

} // namespace snmp
