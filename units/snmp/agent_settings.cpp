#include "units/snmp/agent_settings.h"

#include "front/helpers/text.h"

#include <cerrno>
#include <cstdint>
#include <netinet/in.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace snmp {
namespace {

using settings::File;
using settings::Node;

constexpr const char* kReadingV2 = "Reading OIDs via SNMPv1 and SNMPv2c";
constexpr const char* kReadingV3 = "Reading OIDs via SNMPv3";
constexpr const char* kTrapsV2 = "Sending traps via SNMPv1 and SNMPv2c";
constexpr const char* kTrapsV3 = "Sending traps via SNMPv3";

std::string GetSetting(const Setting& setting) {
    return Read(setting.unit, [&](const File& file) { return GetSetting(file, setting); });
}

bool IsOn(const Setting& setting) {
    return GetSetting(setting) == "on";
}

bool PutSetting(File& file, const Setting& setting, const std::string& value) {
    return setting.attribute != nullptr ? SetAttr(file, setting.xpath, setting.attribute, value)
                                        : SetText(file, setting.xpath, value);
}

bool PutSetting(const Setting& setting, const std::string& value) {
    return Edit(setting.unit, [&](File& file) { return PutSetting(file, setting, value); });
}

bool TellAlready(const char* what, const std::string& value) {
    PrintInfo("%s is already %s", what, ToUpper(value));
    return false;
}

bool SetMode(const Setting& mode, const std::string& value, const char* what) {
    return Edit(mode.unit, [&](File& file) {
        return GetSetting(file, mode) == value ? TellAlready(what, value) : PutSetting(file, mode, value);
    });
}

bool SwitchTraps(const Setting& traps, bool on, const char* what) {
    const char* value = on ? "on" : "off";
    return Edit(traps.unit, [&](File& file) {
        return IsOn(file, traps) == on ? TellAlready(what, value) : PutSetting(file, traps, value);
    });
}

// Whether a datagram socket can be bound to the port on all addresses.
bool CanBind(std::uint16_t port) {
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0)
        throw std::system_error(errno, std::generic_category(), "socket");
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    const bool bound = bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(descriptor);
    return bound;
}

bool CheckNewPort(const File& file, unsigned long port, const std::string& protocol) {
    if (std::to_string(port) == GetSetting(file, kPort) && protocol == GetSetting(file, kProtocol)) {
        PrintInfo("SNMP is already set to use %s port %lu", ToUpper(protocol), port);
        return false;
    }
    if (port == 0 || port > UINT16_MAX)
        return Refuse("%lu is not a port number", port);
    if (CanBind(static_cast<std::uint16_t>(port)))
        return true;
    PrintInfo("%s port %lu is already in use. Please choose another port", ToUpper(protocol), port);
    return false;
}

} // namespace

std::string GetSetting(const File& file, const Setting& setting) {
    const Node node = file.SelectFirst("%s", setting.xpath);
    return setting.attribute != nullptr ? node.GetAttr(setting.attribute) : node.GetText();
}

bool IsOn(const File& file, const Setting& setting) {
    return GetSetting(file, setting) == "on";
}

bool GetAutostart() {
    return IsOn(kAutostart);
}
std::string GetLogLevel() {
    return GetSetting(kLogLevel);
}
std::string GetProtocol() {
    return GetSetting(kProtocol);
}
std::string GetPort() {
    return GetSetting(kPort);
}
bool IsV2Mode() {
    return IsOn(kV2Mode);
}
bool IsV3Mode() {
    return IsOn(kV3Mode);
}
bool IsV2Traps() {
    return IsOn(kV2Traps);
}
bool IsV3Traps() {
    return IsOn(kV3Traps);
}
std::string GetSysName() {
    return GetSetting(kSysName);
}
std::string GetSysContact() {
    return GetSetting(kSysContact);
}
std::string GetSysLocation() {
    return GetSetting(kSysLocation);
}

bool SetAutostart(const std::string& value) {
    return PutSetting(kAutostart, value == "on" ? "on" : "off");
}
bool SetV2Mode(const std::string& value) {
    return SetMode(kV2Mode, value, kReadingV2);
}
bool SetV3Mode(const std::string& value) {
    return SetMode(kV3Mode, value, kReadingV3);
}
bool EnableV2Traps() {
    return SwitchTraps(kV2Traps, true, kTrapsV2);
}
bool DisableV2Traps() {
    return SwitchTraps(kV2Traps, false, kTrapsV2);
}
bool EnableV3Traps() {
    return SwitchTraps(kV3Traps, true, kTrapsV3);
}
bool DisableV3Traps() {
    return SwitchTraps(kV3Traps, false, kTrapsV3);
}
bool SetLogLevel(const std::string& level) {
    return PutSetting(kLogLevel, level);
}
bool SetSysName(const std::string& value) {
    return PutSetting(kSysName, value);
}
bool SetSysContact(const std::string& value) {
    return PutSetting(kSysContact, value);
}
bool SetSysLocation(const std::string& value) {
    return PutSetting(kSysLocation, value);
}

bool SetPort(unsigned long port, const std::string& protocol) {
    return Edit(kCommonUnit, [&](File& file) {
        return CheckNewPort(file, port, protocol) && PutSetting(file, kPort, std::to_string(port)) &&
               PutSetting(file, kProtocol, protocol);
    });
}

} // namespace snmp
