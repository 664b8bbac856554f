#include "platform/network.h"

#include "files.h"
#include "spawn.h"
#include "text.h"

#include "platform/messages.h"

#include <algorithm>
#include <arpa/inet.h>
#include <bit>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <limits>
#include <memory>
#include <net/if.h>
#include <optional>
#include <sstream>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <system_error>

namespace {

namespace fs = std::filesystem;

constexpr const char* licensed_services = "/etc/licensed_services";
constexpr std::size_t licence_limit = 65536;
constexpr std::size_t domain_name_limit = 253;
constexpr std::size_t label_limit = 63;

std::optional<std::uint32_t> ParseAddress(const std::string& text) {
    in_addr address{};
    if (text.find('\0') != std::string::npos || ::inet_pton(AF_INET, text.c_str(), &address) != 1)
        return std::nullopt;
    return ntohl(address.s_addr);
}

std::string AddressText(std::uint32_t number) {
    const in_addr address{htonl(number)};
    char text[INET_ADDRSTRLEN];
    return ::inet_ntop(AF_INET, &address, text, sizeof text) ? text : std::string();
}

// The length of a mask without holes, -1 for any other number.
int PrefixLength(std::uint32_t mask) {
    const int length = std::countl_one(mask);
    return length == std::popcount(mask) ? length : -1;
}

struct AddressPair {
    std::uint32_t address;
    std::uint32_t mask;
};

std::optional<AddressPair> ParsePair(const std::string& address, const std::string& netmask) {
    const auto number = ParseAddress(address);
    const auto mask = ParseAddress(netmask);
    if (!number || !mask || PrefixLength(*mask) < 0)
        return std::nullopt;
    return AddressPair{*number, *mask};
}

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

bool IsLabel(std::string_view label) {
    const auto good = [](char character) {
        return IsDigit(character) || (character >= 'a' && character <= 'z') ||
               (character >= 'A' && character <= 'Z') || character == '-';
    };
    return !label.empty() && label.size() <= label_limit && label.front() != '-' && label.back() != '-' &&
           std::all_of(label.begin(), label.end(), good);
}

// Runs a program whose complaints are not for the terminal: its caller tells the administrator in the
// system's own words. False when it fails.
bool Ask(const std::vector<std::string>& arguments, std::string& output) {
    const Descriptor nowhere(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    return linux_platform::CollectProgram(arguments, {-1, -1, nowhere.Get()}, output) == 0;
}

} // namespace

namespace corvanshell {

const int default_mtu = 1500;

std::string getbrcast(const std::string& address, const std::string& netmask) {
    const auto pair = ParsePair(address, netmask);
    return pair ? AddressText(pair->address | ~pair->mask) : std::string();
}

std::string getnetwork(const std::string& address, const std::string& netmask) {
    const auto pair = ParsePair(address, netmask);
    return pair ? AddressText(pair->address & pair->mask) : std::string();
}

bool is_valid_ip(const std::string& text) {
    return ParseAddress(text).has_value();
}

bool is_valid_domain_name(const std::string& text, bool allow_wildcard, bool require_dot) {
    if (text.size() > domain_name_limit || (require_dot && text.find('.') == std::string::npos))
        return false;
    std::string_view rest = text;
    if (allow_wildcard && rest.starts_with("*."))
        rest.remove_prefix(2);
    for (;;) {
        const std::size_t dot = rest.find('.');
        const std::string_view label = rest.substr(0, dot);
        if (!IsLabel(label))
            return false;
        // A last label of digits alone would be taken for the end of an address.
        if (dot == std::string_view::npos)
            return !std::all_of(label.begin(), label.end(), IsDigit);
        rest.remove_prefix(dot + 1);
    }
}

std::int64_t address_to_number(const std::string& text) {
    const auto number = ParseAddress(text);
    return number ? std::int64_t{*number} : -1;
}

std::string number_to_address(std::int64_t number) {
    const bool is_address = number >= 0 && number <= std::numeric_limits<std::uint32_t>::max();
    return is_address ? AddressText(static_cast<std::uint32_t>(number)) : std::string();
}

int subnetmask_to_cidr(const std::string& netmask) {
    const auto mask = ParseAddress(netmask);
    return mask ? PrefixLength(*mask) : -1;
}

std::string cidr_to_subnetmask(const std::string& prefix_length) {
    const char* const end = prefix_length.data() + prefix_length.size();
    unsigned int length = 0;
    const auto [stop, error] = std::from_chars(prefix_length.data(), end, length);
    if (error != std::errc() || stop != end || length > 32)
        return {};
    return AddressText(length == 0 ? 0 : ~std::uint32_t{0} << (32 - length));
}

bool IsInterfaceAvailable(const std::string& name) {
    return ::if_nametoindex(name.c_str()) != 0;
}

bool has_wifi_adapter() {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator("/sys/class/net", error))
        if (fs::exists(entry.path() / "wireless", error) || fs::exists(entry.path() / "phy80211", error))
            return true;
    return false;
}

std::vector<std::string> get_int_list() {
    std::vector<std::string> names;
    const std::unique_ptr<struct if_nameindex, decltype(&::if_freenameindex)> list(::if_nameindex(),
                                                                                   ::if_freenameindex);
    if (!list) {
        LogError("failed to list the network interfaces: %s", std::strerror(errno));
        return names;
    }
    for (const struct if_nameindex* entry = list.get(); entry->if_index != 0; ++entry)
        if (std::strcmp(entry->if_name, "lo") != 0)
            names.emplace_back(entry->if_name);
    std::sort(names.begin(), names.end());
    return names;
}

std::string ifconfig(const std::string& name) {
    std::string output;
    // A name that begins so would be read as an option.
    if (name.empty() || name.front() == '-' || !Ask({"/sbin/ifconfig", name}, output))
        return {};
    return output;
}

bool set_interface_mtu(const std::string& name, int mtu) {
    ifreq request{};
    if (name.empty() || name.size() >= sizeof request.ifr_name) {
        return RefuseInLog("%s: failed to set MTU to %d: no such interface", name, mtu);
    }
    name.copy(request.ifr_name, name.size());
    request.ifr_mtu = mtu;
    const Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (!socket.IsOpen() || ::ioctl(socket.Get(), SIOCSIFMTU, &request) != 0) {
        return RefuseInLog("%s: failed to set MTU to %d: %s", name, mtu, std::strerror(errno));
    }
    return true;
}

bool get_dhcp_distance(std::string& distance, const std::string& kind) {
    std::string output;
    if (!Ask({"/usr/bin/vtysh", "-d", "zdhcpd", "-c", "show running-config"}, output))
        return false;
    for (const std::string& line : linux_platform::SplitLines(output)) {
        std::istringstream words(line);
        std::string key, value, default_key, default_value;
        words >> key >> value >> default_key >> default_value;
        if (key != "distance" || value.empty() || !std::all_of(value.begin(), value.end(), IsDigit))
            continue;
        distance = kind == "default_route" && default_key == "default" ? default_value : value;
    }
    return true;
}

bool is_service_licensed(const std::string& service) {
    std::string text;
    if (const int error = linux_platform::ReadText(licensed_services, licence_limit, text)) {
        if (error != ENOENT)
            LogError("%s: failed to read: %s", licensed_services, std::strerror(error));
        return error == ENOENT;
    }
    const auto lines = linux_platform::SplitLines(text);
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string& line) { return linux_platform::Trim(line) == service; });
}

} // namespace corvanshell
