#include "commands/services/web_ui.h"

#include "front/helpers/text.h"
#include "platform/messages.h"
#include "platform/processes.h"
#include "settings/file.h"

#include <iterator>
#include <set>
#include <sstream>

namespace {

constexpr const char* kUnit = "webui";
constexpr const char* kHttps = "https";
const std::string kCertificateFolder = "/mnt/main/etc/cert/";
const std::string kAlternativeNames = "/sbin/ssl_cert_manage.sh get_altnames_from_cert ";

struct Field {
    const char* path;
    const char* failure; // of setting it
};

constexpr Field kProtocol = {"/unit/ssl/protocol", "Failed to change protocol."};
constexpr Field kCertificate = {"/unit/ssl/certificate", "Failed to edit field certificate."};
constexpr Field kKey = {"/unit/ssl/key", "Failed to edit field key"};
constexpr Field kPort = {"/unit/server/port", "Failed to edit field server/port"};

bool Load(settings::File& file) {
    return file.Load() || Refuse("Couldn't parse XML config file");
}

bool Set(const Field& field, const std::string& value) {
    settings::File file(kUnit, "");
    if (!Load(file))
        return false;
    if (!file.SelectFirst("%s", field.path).SetText("%s", value))
        return Refuse("%s", field.failure);
    return file.Save() || Refuse("Failed to write to config file");
}

bool Get(const Field& field, std::string& value) {
    settings::File file(kUnit, "");
    if (!Load(file))
        return false;
    value = file.GetText("%s", field.path);
    return true;
}

bool SetFileName(const Field& field, const char* name) {
    const std::string bare = name != nullptr ? name : "";
    return Set(field, bare.empty() ? "" : kCertificateFolder + bare);
}

bool GetFileName(const Field& field, std::string& name) {
    std::string path;
    if (!Get(field, path))
        return false;
    const std::size_t place = path.find(kCertificateFolder);
    if (place != std::string::npos)
        path.erase(place, kCertificateFolder.size());
    name = path;
    return true;
}

} // namespace

bool WebUiSetHttps(bool https) {
    return Set(kProtocol, https ? kHttps : "http");
}

bool WebUiGetHttps(bool& https) {
    std::string protocol;
    if (!Get(kProtocol, protocol))
        return false;
    https = protocol == kHttps;
    return true;
}

bool WebUiSetCertificate(const char* name) {
    return SetFileName(kCertificate, name);
}

bool WebUiGetCertificate(std::string& name) {
    return GetFileName(kCertificate, name);
}

bool WebUiSetKey(const char* name) {
    return SetFileName(kKey, name);
}

bool WebUiGetKey(std::string& name) {
    return GetFileName(kKey, name);
}

bool WebUiSetPort(unsigned long port) {
    return Set(kPort, std::to_string(port));
}

bool WebUiGetPort(unsigned long& port) {
    std::string text;
    if (!Get(kPort, text))
        return false;
    port = std::stoul(text);
    return true;
}

bool is_ip_in_webui_https_cert(const std::string& address) {
    std::string certificate;
    if (!WebUiGetCertificate(certificate) || certificate.empty())
        return false;
    std::string output;
    if (corvanshell::run((kAlternativeNames + ShellQuote(certificate)).c_str(), output) != 0 ||
        output.empty())
        return false;
    std::istringstream words(output);
    const std::set<std::string> names{std::istream_iterator<std::string>(words), {}};
    return names.contains(address);
}
