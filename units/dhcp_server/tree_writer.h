#pragma once

#include "settings/file.h"
#include "units/dhcp_server/model/area.h"
#include "units/dhcp_server/walk_memory.h"

#include <cstdio>

namespace settings::dhcp_server {

// The state of one walk over the settings, which checks them, writes the daemon's settings, or prints them.
struct TreeWriter {
    explicit TreeWriter(const File& settings, std::FILE* output = nullptr)
        : file(settings), out(output), memory(settings) {}

    const File& file;
    std::FILE* out; // null: nothing is written, and all checks run
    // The daemon's settings or a check; otherwise the form that an administrator reads.
    bool daemon_form = false;
    int depth = 0;             // level of indentation
    bool write_failed = false; // reported already
    WalkMemory memory;
};

// Checks the area, and writes its part of the daemon's settings to `out` unless that is null. Reports every
// fault and is false when there was one; what could be written is written all the same. A network record that
// was not read is the one fault that leaves nothing to check.
[[nodiscard]] bool GenerateDaemonSettings(TreeWriter& writer, std::FILE* out, const Area& area);

// Writes one host with its head, in the form that an administrator reads; nothing for a null node.
[[nodiscard]] bool WriteHostBlock(TreeWriter& writer, Node host);

// Walks what stands below the area, in the form and from the depth that the writer has.
[[nodiscard]] bool WriteTree(TreeWriter& writer, const Area& area);

} // namespace settings::dhcp_server
