#include "commands/services/web_ui.h"
#include "platform/messages.h"
#include "shell/families.h"

#include <stdexcept>

namespace shell {
namespace {

using Text = const std::string&;

// What the operation throws names no field.
bool GetPort(unsigned long& port) {
    try {
        return WebUiGetPort(port);
    } catch (const std::logic_error&) {
        return Refuse("server/port: no port number is set");
    }
}

bool ShowWebSettings() {
    bool https = false;
    std::string certificate;
    std::string key;
    unsigned long port = 0;
    if (!WebUiGetHttps(https) || !WebUiGetCertificate(certificate) || !WebUiGetKey(key) || !GetPort(port))
        return false;
    PrintInfo("protocol: %s\nport: %lu\ncertificate: %s\nkey: %s", https ? "https" : "http", port,
              certificate, key);
    return true;
}

constexpr Command kCommands[] = {
    {"web", "the appliance's web interface"},
    {"web show", "shows the settings", kCall<&ShowWebSettings>, kShows},
    {"web protocol <http|https>", "sets the protocol",
     [](Text protocol) { return WebUiSetHttps(protocol == "https"); }},
    {"web port <1..65535>", "sets the port", kCall<&WebUiSetPort>},
    {"web certificate", "the certificate of HTTPS"},
    {"web certificate file <text>", "names the certificate in /mnt/main/etc/cert",
     kCall<&WebUiSetCertificate>},
    {"web certificate none", "takes the certificate away", [] { return WebUiSetCertificate(""); }},
    {"web key", "the key of the certificate"},
    {"web key file <text>", "names the key in /mnt/main/etc/cert", kCall<&WebUiSetKey>},
    {"web key none", "takes the key away", [] { return WebUiSetKey(""); }},
};

} // namespace

std::span<const Command> WebCommands() {
    return kCommands;
}

} // namespace shell
