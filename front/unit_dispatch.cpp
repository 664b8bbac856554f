#include "front/unit_dispatch.h"

#include "platform/messages.h"
#include "units/content_filter/unit.h"
#include "units/dhcp_relay/rules/lookup.h"
#include "units/dhcp_relay/unit.h"
#include "units/dhcp_server/model/paths.h"
#include "units/dhcp_server/unit.h"
#include "units/snmp/unit.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <libxml/uri.h>
#include <memory>
#include <string>

namespace {

constexpr char kPrefix[] = "unit://";
constexpr std::size_t kPrefixSize = sizeof kPrefix - 1;
constexpr std::size_t kUriSize = 8192;

using Uri = std::unique_ptr<xmlURI, decltype(&xmlFreeURI)>;

bool Dispatch(const xmlURI* uri) {
    const UnitEntry units[] = {
        {kDhcpRelayUnit, DhcpRelayUnit},
        {kDhcpServerUnit, DhcpServerUnit},
        {kContentFilterUnit, ContentFilterUnit},
        {kSnmpAgentUnit, SnmpAgentUnit},
        {nullptr, nullptr},
    };
    // A URI without a host part names no unit.
    if (uri->server == nullptr)
        return false;
    const bool all = std::strcmp(uri->server, "all") == 0;
    bool done = all;
    for (const UnitEntry* unit = units; unit->name != nullptr; ++unit) {
        if (all)
            done = unit->handler(uri) && done;
        else if (std::strcmp(uri->server, unit->name) == 0)
            return unit->handler(uri);
    }
    return done;
}

} // namespace

bool ApplyUnitUri(const char* format, ...) {
    char buffer[kUriSize] = {};
    std::memcpy(buffer, kPrefix, kPrefixSize);
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer + kPrefixSize, kUriSize - kPrefixSize, format, arguments);
    va_end(arguments);
    const Uri uri(xmlParseURI(buffer), xmlFreeURI);
    if (uri == nullptr)
        return Refuse("%s: failed to parse unit URI", std::string(buffer));
    return Dispatch(uri.get());
}
