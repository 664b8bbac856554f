#include "units/dhcp_server/model/addresses.h"

#include "platform/messages.h"
#include "platform/network.h"

namespace settings::dhcp_server {

std::int64_t ParseAddressQuiet(const std::string& text) {
    return corvanshell::address_to_number(text);
}

std::int64_t ParseAddress(const std::string& text, const std::string& owner, const char* label) {
    const std::int64_t value = ParseAddressQuiet(text);
    if (value == kNoAddress)
        PrintError("DHCP server: %s: incorrect address format of %s: %s", owner, label, text);
    return value;
}

std::string FormatAddress(std::int64_t value) {
    return corvanshell::number_to_address(value);
}

} // namespace settings::dhcp_server
