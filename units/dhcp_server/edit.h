#pragma once

#include "units/dhcp_server/model/area.h"

#include <functional>
#include <string>

// The frame of the editing operations. A step changes the document in memory; the file on disk changes only
// when every step was good.

namespace settings::dhcp_server {

// Opens the settings for a change, runs the step and saves.
[[nodiscard]] bool EditUnit(const std::function<bool(File& file)>& step);

// The same for a place that must be there; the step gets its node.
[[nodiscard]] bool EditArea(const Area& area, const std::function<bool(File& file, Node node)>& step);

// The nodes of the area that a path with one text in single quotes finds; none when the text holds a quote.
NodeSet SelectText(const Area& area, const File& file, const std::string& head, const std::string& text,
                   const std::string& tail = "']");

// False, reported, where the area holds as many of something as it may.
[[nodiscard]] bool RefuseMore(const Area& area, const char* label, std::size_t maximum);

} // namespace settings::dhcp_server
