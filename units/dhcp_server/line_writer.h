#pragma once

#include "settings/node.h"
#include "units/dhcp_server/tree_writer.h"

#include <string>

// The lines of a walk's text. Without an output each succeeds and writes nothing.

namespace settings::dhcp_server {

// One line at the writer's depth. A failure is reported once a walk.
[[nodiscard]] bool WriteLine(TreeWriter& writer, const std::string& text);

// False, reported, for a key or a value that would be more than that to the daemon.
[[nodiscard]] bool CheckValue(const TreeWriter& writer, const std::string& key, const std::string& value);

// "<key> <value>;" for the daemon, "<key> = <value>" to read. A value that the daemon can't have is left out,
// and false.
[[nodiscard]] bool WriteSetting(TreeWriter& writer, const std::string& key, const std::string& value);

// A setting whose key has "option " before it.
[[nodiscard]] bool WriteOption(TreeWriter& writer, const std::string& name, const std::string& value);

// An option for the daemon whose value is a text in quotes.
[[nodiscard]] bool WriteQuotedOption(TreeWriter& writer, const std::string& name, const std::string& text);

// An option whose value are the texts of the node's children of that name.
[[nodiscard]] bool WriteAddressList(TreeWriter& writer, const std::string& name, Node node,
                                    const char* child);

// False, reported once a walk: the output can't be written.
[[nodiscard]] bool RefuseWriting(TreeWriter& writer);

} // namespace settings::dhcp_server
