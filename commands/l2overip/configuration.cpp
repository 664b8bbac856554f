#include "commands/l2overip/configuration.h"

#include "commands/arguments/arguments.h"
#include "commands/l2overip/driver.h"
#include "commands/l2overip/outcome.h"
#include "platform/guards.h"
#include "platform/locks.h"
#include "platform/messages.h"
#include "platform/path_list.h"

#include <arpa/inet.h>
#include <boost/algorithm/string/trim.hpp>
#include <boost/program_options/parsers.hpp>
#include <cerrno>
#include <cstring>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

namespace {

using l2overip::Outcome;
using l2overip::Refused;

constexpr const char* kGroup = "options.";
constexpr const char* kSwitchMode = "switch";
constexpr const char* kNoDevice = "none";

struct Option {
    const char* name;
    std::string L2OverIpConfig::*value;
    bool has_line; // a line of its own in the file
};

// In the order of the lines.
constexpr Option kOptions[] = {
    {"mode", &L2OverIpConfig::mode, true},
    {"mac_ttl", &L2OverIpConfig::mac_ttl, true},
    {"device", &L2OverIpConfig::device, true},
    {"unsolicited_frames", &L2OverIpConfig::unsolicited_frames, true},
    {"local_num", &L2OverIpConfig::local_num, false},
    {"local_ip", &L2OverIpConfig::local_ip, false},
};

const Option* FindOption(const std::string& name) {
    for (const Option& option : kOptions) {
        if (name == option.name)
            return &option;
    }
    return nullptr;
}

struct Port {
    unsigned long number;
    std::string address;
};

// "<number>, <address>"
Port ParsePort(const std::string& key, const std::string& value) {
    const std::size_t comma = value.find(',');
    if (comma != std::string::npos) {
        const std::string number = boost::trim_copy(value.substr(0, comma));
        const std::string address = boost::trim_copy(value.substr(comma + 1));
        if (arguments::IsNumber(number) && arguments::IsAddress(address))
            return {std::stoul(number), address};
    }
    throw std::runtime_error(key + " = " + value + ": no number and address");
}

void SetValue(L2OverIpConfig& config, const std::string& key, const std::string& value) {
    const Option* const option = FindOption(key);
    if (option != nullptr && option->has_line) {
        config.*option->value = value;
    } else if (key == "local_port") {
        const Port port = ParsePort(key, value);
        config.local_num = std::to_string(port.number);
        config.local_ip = port.address;
    } else if (key == "remote_port") {
        const Port port = ParsePort(key, value);
        config.remote_ports[port.number] = port.address;
    }
}

// Throws what is wrong with the file.
L2OverIpConfig ReadFile() {
    namespace options = boost::program_options;
    std::ifstream input(path_list::l2overip);
    if (!input)
        throw std::runtime_error(std::strerror(errno));
    L2OverIpConfig config;
    const options::options_description any;
    for (const auto& option : options::parse_config_file(input, any, true).options) {
        std::string key = option.string_key;
        if (key.starts_with(kGroup))
            key.erase(0, std::strlen(kGroup));
        SetValue(config, key, option.value.empty() ? "" : option.value.front());
    }
    return config;
}

void WriteLines(std::ostream& output, const L2OverIpConfig& config) {
    for (const Option& option : kOptions) {
        const std::string& value = config.*option.value;
        if (option.has_line && !value.empty())
            output << option.name << " = " << value << '\n';
    }
    if (!config.local_num.empty() && !config.local_ip.empty())
        output << "local_port = " << config.local_num << ", " << config.local_ip << '\n';
    for (const auto& [number, address] : config.remote_ports)
        output << "remote_port = " << number << ", " << address << '\n';
}

bool UpdateGuard() {
    // Who finds a file at odds with its guard looks once more with the lock.
    lock_tool::FileLock lock(path_list::settings_lock);
    try {
        if (lock.AcquireExclusive(settings_lock_timeout, true)) {
            CHCRG::SaveCrgToFile(path_list::l2overip.c_str(), path_list::l2overip_guard.c_str());
            return true;
        }
    } catch (const std::exception&) {
        // Told below, like a lock that isn't granted.
    }
    LogError(Tr("Failed to save the checksum for file l2overip.conf."));
    return Refuse("%s%s", gettext("Failed to save the checksum for file l2overip.conf. "),
                  gettext("Your files may appear corrupt.\n"));
}

// What keeps the driver from working.
Outcome FindFault(const L2OverIpConfig& config) {
    if (config.mode != kSwitchMode)
        return Refused(Tr(": Mode is incorrect"));
    if (config.device.empty() || config.device == kNoDevice)
        return Refused(Tr(": Interface is empty"));
    if (config.local_num.empty())
        return Refused(Tr(": Local port num is empty"));
    if (config.local_ip.empty())
        return Refused(Tr(": Local port IP is empty"));
    if (config.remote_ports.empty())
        return Refused(Tr(": At least one remote port is required"));
    if (config.mac_ttl.empty())
        return Refused(Tr(": MAC-TTL is empty"));
    return {gettext("All OK"), true}; // kept: the one outcome without a colon
}

// Tells the failure of a file in its own words.
bool RefuseFile(const char* prefix, const char* what, const char* reason) {
    Outcome outcome = l2overip::Failed(reason);
    outcome.is_told = true;
    PrintError("%s%s", what, outcome.text);
    return l2overip::End(prefix, outcome);
}

} // namespace

bool L2OverIpRead(L2OverIpConfig& config) {
    const char* const prefix = gettext("<L2OverIP> Reading config");
    try {
        config = ReadFile();
        return l2overip::Log(prefix, l2overip::Ok());
    } catch (const std::exception& error) {
        return RefuseFile(prefix, gettext("Reading config failed"), error.what());
    }
}

bool L2OverIpWrite(const L2OverIpConfig& config) {
    const char* const prefix = gettext("<L2OverIP> Writing config");
    std::ofstream output(path_list::l2overip, std::ios::trunc);
    if (output) {
        WriteLines(output, config);
        output.close();
    }
    if (!output)
        return RefuseFile(prefix, gettext("Writing config failed"), std::strerror(errno));
    l2overip::Log(prefix, l2overip::Ok());
    return (!L2OverIpDriverConfigured() || L2OverIpReconfigure()) && UpdateGuard();
}

std::string L2OverIpGet(const L2OverIpConfig& config, const std::string& name) {
    const Option* const option = FindOption(name);
    return option != nullptr ? config.*option->value : "";
}

bool L2OverIpCheck(const L2OverIpConfig& config) {
    const Outcome found = FindFault(config);
    if (!found.done) {
        PrintError("%s", found.text);
        PrintError(Tr("Error in config, please correct"));
    }
    return l2overip::Log(gettext("<L2OverIP> Check config correctness"), found);
}

bool IsL2OverIpSwitchOn(const std::string& interface) {
    L2OverIpConfig config;
    return L2OverIpEnabled() && access(path_list::l2overip.c_str(), R_OK) == 0 && L2OverIpRead(config) &&
           L2OverIpGet(config, "device") == interface && L2OverIpGet(config, "mode") == kSwitchMode;
}

bool IsBroadcastLike(const std::string& address) {
    in_addr parsed{};
    if (inet_pton(AF_INET, address.c_str(), &parsed) != 1)
        throw std::system_error(EINVAL, std::generic_category(), address);
    const std::uint32_t number = ntohl(parsed.s_addr);
    const std::uint32_t first = number >> 24;
    const std::uint32_t last = number & 0xff;
    return (first >= 224 && first <= 239) || last == 0 || last == 255 || first == 255;
}
