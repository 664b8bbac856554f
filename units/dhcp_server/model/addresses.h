#pragma once

#include <cstdint>
#include <string>

// IPv4 addresses as numbers in host order. They are signed and 64 bits wide, so that -1 can stand for a text
// that is no address and the plain comparison orders the whole range.

namespace settings::dhcp_server {

constexpr std::int64_t kNoAddress = -1;

std::int64_t ParseAddressQuiet(const std::string& text);

// The same, reporting a text that is no address. `owner` is the word for the place in the settings, `label`
// the word for the value.
std::int64_t ParseAddress(const std::string& text, const std::string& owner, const char* label);

// A dotted quad; "" for a number that is no address.
std::string FormatAddress(std::int64_t value);

} // namespace settings::dhcp_server
