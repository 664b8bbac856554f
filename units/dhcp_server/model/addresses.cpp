#include "units/dhcp_server/model/addresses.h"

#include "platform/console.h"

#include <arpa/inet.h>

namespace settings::dhcp_server {

std::int64_t ParseAddressQuiet(const std::string& text) {
    in_addr address = {};
    if (inet_pton(AF_INET, text.c_str(), &address) != 1)
        return kNoAddress;
    return static_cast<std::int64_t>(ntohl(address.s_addr));
}

std::int64_t ParseAddress(const std::string& text, const std::string& owner, const char* label) {
    const std::int64_t value = ParseAddressQuiet(text);
    if (value == kNoAddress)
        shell_print_error("DHCP server: %s: incorrect address format of %s: %s", owner.c_str(), label,
                          text.c_str());
    return value;
}

std::string FormatAddress(std::int64_t value) {
    if (value < 0 || value > INT64_C(0xffffffff))
        return "";
    const in_addr address = {htonl(static_cast<std::uint32_t>(value))};
    char text[INET_ADDRSTRLEN];
    return inet_ntop(AF_INET, &address, text, sizeof text) != nullptr ? text : "";
}

} // namespace settings::dhcp_server
