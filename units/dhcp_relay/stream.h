#pragma once

#include <cstdio>
#include <memory>

namespace settings::dhcp_relay {

struct CloseStream {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

using Stream = std::unique_ptr<std::FILE, CloseStream>;

} // namespace settings::dhcp_relay
