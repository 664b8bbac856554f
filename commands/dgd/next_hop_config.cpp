// The next hops of a DgdConfig.

#include "commands/dgd/dgd_config.h"
#include "commands/dgd/words.h"
#include "commands/vtysh/daemon.h"
#include "platform/console.h"
#include "platform/log.h"

#include <algorithm>
#include <libintl.h>

namespace dgd {
namespace {

constexpr const char* kShowNextHops = "/usr/bin/vtysh -d dgdd -c \"show next-hop\"";
constexpr const char* kTitle =
    "Next-hop name\nMode      Type        TestIP-address             Interface (Global state)\n"
    "Gateway IP-address    Success / Failed rate      State   Last state change\n";
constexpr std::size_t kRuleLength = 79;
constexpr const char* kModem = "modem";

bool CheckName(const std::string& name, const char* function) {
    if (name.empty())
        shell_log_error("%s: next-hop name is empty", function);
    return !name.empty();
}

bool ChangesFields() {
    shell_print_error(gettext("it is prohibited to change fields for the nexthop"));
    return false;
}

// Whether no other next hop has the address.
bool CheckAddressUnused(const std::string& name, const std::string& address) {
    vtysh::Lines lines;
    if (!vtysh::Ask("/usr/bin/vtysh -d \"dgdd\" -c \"show next-hop\"", lines)) {
        shell_log_error("Failed dgd command \"show next-hop\".");
        return false;
    }
    for (const auto& next_hop : nexthop::ParseShown(lines)) {
        const bool is_same = next_hop->Name() == name && next_hop->GetInterface().empty();
        if (!is_same && next_hop->Gateway() == address) {
            shell_print_error(gettext("Next-hop address is already in use"));
            return false;
        }
    }
    return true;
}

void AddCheck(std::vector<std::string>& parts, const std::string& check, const std::string& type) {
    if (check == "no-check") {
        parts.emplace_back("no check");
        return;
    }
    parts.push_back(check);
    parts.push_back("check-type " + type);
}

} // namespace

// The daemon knows states too; without it there is its configuration alone.
void DgdConfig::ListNextHops() {
    next_hops.clear();
    Lines lines;
    const bool asks = enabled && running;
    if (!vtysh::Ask(asks ? kShowNextHops : "cat /etc/quagga/dgdd.conf", lines))
        return;
    for (auto& next_hop : asks ? nexthop::ParseShown(lines) : nexthop::ParseConfigured(lines))
        next_hops[next_hop->Name()] = std::move(next_hop);
}

const nexthop::NextHop* DgdConfig::FindNextHop(const std::string& name) {
    ListNextHops();
    const auto found = next_hops.find(name);
    return found == next_hops.end() ? nullptr : found->second.get();
}

bool DgdConfig::NextHopExists(const std::string& name) {
    return CheckName(name, "NextHopExists") && FindNextHop(name) != nullptr;
}

bool DgdConfig::CheckNextHopAddr(const std::string& name, const std::string& address,
                                 const std::string& check, const std::string& type,
                                 const std::string& test_address) {
    if (!CheckName(name, "CheckNextHopAddr"))
        return false;
    const nexthop::NextHop* const known = FindNextHop(name);
    if (known == nullptr)
        return true;
    const bool is_static = dynamic_cast<const nexthop::StaticNextHop*>(known) != nullptr;
    return (is_static && known->Gateway() == address && known->HasCheck(check, type) &&
            known->HasTestAddress(test_address.empty() ? address : test_address)) ||
           ChangesFields();
}

bool DgdConfig::CheckNextHopIface(const std::string& name, const std::string& interface,
                                  const std::string& check, const std::string& type,
                                  const std::string& test_address) {
    if (!CheckName(name, "CheckNextHopIface"))
        return false;
    const nexthop::NextHop* const known = FindNextHop(name);
    if (known == nullptr)
        return true;
    const bool is_dynamic = dynamic_cast<const nexthop::DynamicNextHop*>(known) != nullptr;
    const bool has_interface = interface == kModem ? known->IsModem() : known->GetInterface() == interface;
    return (is_dynamic && has_interface && known->HasCheck(check, type) &&
            (test_address.empty() || known->HasTestAddress(test_address))) ||
           ChangesFields();
}

bool DgdConfig::IfaceInUse(const std::string& interface) {
    if (interface.empty()) {
        shell_log_error("%s: interface name is empty", "IfaceInUse");
        return false;
    }
    ListNextHops();
    return std::any_of(next_hops.begin(), next_hops.end(), [&](const auto& entry) {
        const nexthop::NextHop& next_hop = *entry.second;
        return interface == kModem ? next_hop.IsModem() : next_hop.GetInterface() == interface;
    });
}

bool DgdConfig::AddStatic(const std::string& name, const std::string& address,
                          const std::string& test_address, const std::string& check,
                          const std::string& type) {
    if (!CheckAddressUnused(name, address))
        return false;
    std::vector<std::string> parts{"next-hop " + name, "address " + address,
                                   "test-address " + (test_address.empty() ? address : test_address)};
    AddCheck(parts, check, type);
    return Change(parts);
}

bool DgdConfig::AddDynamic(const std::string& name, const std::string& interface,
                           const std::string& test_address, const std::string& check,
                           const std::string& type) {
    std::vector<std::string> parts{"dyn-next-hop " + name, "interface " + interface};
    if (!test_address.empty())
        parts.push_back("test-address " + test_address);
    AddCheck(parts, check, type);
    return Change(parts);
}

bool DgdConfig::DeleteNextHop(const std::string& kind, const std::string& name) {
    Lines lines;
    if (!vtysh::Ask("/usr/bin/vtysh -d dgdd -c \"show running-config\"", lines))
        return false;
    const std::string reference = "match next-hop " + name + " state ";
    for (const std::string& line : lines) {
        if (vtysh::Contains(line, reference)) {
            shell_print_error(
                gettext("Can't delete this next-hop, because it is referenced by at least one dgd rule."));
            return false;
        }
    }
    names.erase(name);
    return Change({"no " + kind + " " + name});
}

std::string DgdConfig::ShowNextHops(const std::string& name) {
    ListNextHops();
    std::string rows;
    int count = 0;
    for (const auto& [key, next_hop] : next_hops) {
        if (!name.empty() && key != name)
            continue;
        rows += next_hop->Format();
        ++count;
    }
    if (count == 0)
        return "\nNext-hop(s) " + name + " configured: 0 \n";
    return kTitle + std::string(kRuleLength, '-') + "\n" + rows +
           "Next-hop(s) configured: " + std::to_string(count) + "\n";
}

} // namespace dgd
