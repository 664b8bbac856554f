// The next hops of a DgdConfig.

#include "commands/dgd/dgd_config.h"
#include "commands/dgd/words.h"
#include "commands/vtysh/daemon.h"
#include "platform/messages.h"

#include <algorithm>

namespace dgd {
namespace {

constexpr const char* kShowNextHops = "show next-hop";
constexpr const char* kTitle =
    "Next-hop name\nMode      Type        TestIP-address             Interface (Global state)\n"
    "Gateway IP-address    Success / Failed rate      State   Last state change\n";
constexpr std::size_t kRuleLength = 79;
constexpr const char* kModem = "modem";

bool CheckName(const std::string& name, const char* function) {
    return !name.empty() || RefuseInLog("%s: next-hop name is empty", function);
}

bool RefuseOtherFields() {
    return Refuse(Tr("it is prohibited to change fields for the nexthop"));
}

void AddCheck(std::vector<std::string>& parts, const NewNextHop& added) {
    if (added.check == "no-check") {
        parts.emplace_back("no check");
        return;
    }
    parts.push_back(added.check);
    parts.push_back("check-type " + added.type);
}

bool Uses(const nexthop::NextHop& next_hop, const std::string& interface) {
    return interface == kModem ? next_hop.IsModem() : next_hop.GetInterface() == interface;
}

} // namespace

// The daemon knows states too; without it there is its configuration alone.
bool DgdConfig::ListNextHops() {
    next_hops.clear();
    Lines lines;
    const bool asks = enabled && running;
    if (!(asks ? Ask(kShowNextHops, lines) : Took(vtysh::AskSaved(vtysh::kDgdd, lines))))
        return false;
    for (auto& next_hop : asks ? nexthop::ParseShown(lines) : nexthop::ParseConfigured(lines))
        next_hops[next_hop->Name()] = std::move(next_hop);
    return true;
}

const nexthop::NextHop* DgdConfig::FindNextHop(const std::string& name) const {
    const auto found = next_hops.find(name);
    return found == next_hops.end() ? nullptr : found->second.get();
}

bool DgdConfig::NextHopExists(const std::string& name) {
    return CheckName(name, "NextHopExists") && ListNextHops() && FindNextHop(name) != nullptr;
}

bool DgdConfig::CheckNextHopAddr(const NewNextHop& added) {
    if (!CheckName(added.name, "CheckNextHopAddr") || !ListNextHops())
        return false;
    const nexthop::NextHop* const known = FindNextHop(added.name);
    if (known == nullptr)
        return true;
    const bool is_static = dynamic_cast<const nexthop::StaticNextHop*>(known) != nullptr;
    return (is_static && known->Gateway() == added.place && known->HasCheckOf(added) &&
            known->HasTestAddress(added.test_address.empty() ? added.place : added.test_address)) ||
           RefuseOtherFields();
}

bool DgdConfig::CheckNextHopIface(const NewNextHop& added) {
    if (!CheckName(added.name, "CheckNextHopIface") || !ListNextHops())
        return false;
    const nexthop::NextHop* const known = FindNextHop(added.name);
    if (known == nullptr)
        return true;
    const bool is_dynamic = dynamic_cast<const nexthop::DynamicNextHop*>(known) != nullptr;
    return (is_dynamic && Uses(*known, added.place) && known->HasCheckOf(added) &&
            (added.test_address.empty() || known->HasTestAddress(added.test_address))) ||
           RefuseOtherFields();
}

bool DgdConfig::IfaceInUse(const std::string& interface) {
    if (interface.empty())
        return RefuseInLog("%s: interface name is empty", "IfaceInUse");
    return ListNextHops() && std::any_of(next_hops.begin(), next_hops.end(),
                                         [&](const auto& entry) { return Uses(*entry.second, interface); });
}

// Whether no other next hop has the address.
bool DgdConfig::CheckAddressUnused(const NewNextHop& added) {
    Lines lines;
    if (!Ask(kShowNextHops, lines))
        return RefuseInLog("Failed dgd command \"show next-hop\".");
    for (const auto& next_hop : nexthop::ParseShown(lines)) {
        const bool is_same = next_hop->Name() == added.name && next_hop->GetInterface().empty();
        if (!is_same && next_hop->Gateway() == added.place)
            return Refuse(Tr("Next-hop address is already in use"));
    }
    return true;
}

bool DgdConfig::AddStatic(const NewNextHop& added) {
    if (!CheckAddressUnused(added))
        return false;
    std::vector<std::string> parts{"next-hop " + added.name, "address " + added.place,
                                   "test-address " +
                                       (added.test_address.empty() ? added.place : added.test_address)};
    AddCheck(parts, added);
    return Change(parts);
}

bool DgdConfig::AddDynamic(const NewNextHop& added) {
    std::vector<std::string> parts{"dyn-next-hop " + added.name, "interface " + added.place};
    if (!added.test_address.empty())
        parts.push_back("test-address " + added.test_address);
    AddCheck(parts, added);
    return Change(parts);
}

bool DgdConfig::DeleteNextHop(const std::string& kind, const std::string& name) {
    Lines lines;
    if (!Ask("show running-config", lines))
        return false;
    const std::string reference = "match next-hop " + name + " state ";
    if (std::any_of(lines.begin(), lines.end(),
                    [&](const std::string& line) { return vtysh::Contains(line, reference); }))
        return Refuse(Tr("Can't delete this next-hop, because it is referenced by at least one dgd rule."));
    names.erase(name);
    return Change({"no " + kind + " " + name});
}

std::string DgdConfig::ShowNextHops(const std::string& name) {
    if (!ListNextHops())
        return "";
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
