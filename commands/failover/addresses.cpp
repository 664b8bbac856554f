#include "commands/failover/addresses.h"

#include "commands/failover/backups.h"
#include "platform/cluster_file.h"
#include "platform/messages.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "records/address_checks.h"

#include <algorithm>
#include <string>
#include <vector>

namespace failover {
namespace {

constexpr const char* kPlaceholder = "change_this";

using Texts = std::vector<std::string>;

struct ActiveAddress {
    std::string interface;
    std::string address;
    std::string netmask;
    std::string broadcast; // empty for a malformed entry
};

ActiveAddress MakeActiveAddress(const std::string& interface, const std::string& entry) {
    const std::size_t slash = std::min(entry.find('/'), entry.size());
    ActiveAddress active = {interface, entry.substr(0, slash), "", ""};
    if (slash < entry.size())
        active.netmask = corvanshell::cidr_to_subnetmask(entry.substr(slash + 1));
    active.broadcast = corvanshell::getbrcast(active.address, active.netmask);
    return active;
}

bool HasAny(const Texts& texts) {
    return std::any_of(texts.begin(), texts.end(), [](const std::string& text) { return !text.empty(); });
}

// A channel without its address, or its interface, counts for the other alone.
bool DoMatch(const Texts& interfaces, const Texts& entries) {
    return std::equal(
        interfaces.begin(), interfaces.end(), entries.begin(), entries.end(),
        [](const std::string& one, const std::string& other) { return one.empty() == other.empty(); });
}

// Reads what the cluster file has, without what nobody has configured yet.
bool ReadActiveAddresses(std::vector<ActiveAddress>& addresses) {
    const Texts interfaces = get_active_ifaces();
    if (!HasAny(interfaces))
        return Refuse(Tr("failover address validation: cannot find active ifaces in failover.ini"));
    const Texts entries = get_active_ip();
    std::vector<ActiveAddress> found;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].empty() || entries[i] == kPlaceholder)
            continue;
        found.push_back(MakeActiveAddress(i < interfaces.size() ? interfaces[i] : "", entries[i]));
        if (found.back().broadcast.empty())
            return Refuse(
                Tr("failover address validation: cannot calculate broadcasts for failover active ip "
                   "addresses"));
    }
    if (!DoMatch(interfaces, entries))
        return Refuse(Tr("failover address validation: active IP address count does not match active "
                         "interfaces count in failover.ini"));
    addresses = std::move(found);
    return true;
}

bool CrossNothing(const corvanshell::CConfStruct& record, const std::vector<ActiveAddress>& addresses) {
    return std::all_of(addresses.begin(), addresses.end(), [&](const ActiveAddress& active) {
        return CheckAddressCrossing(record, active.interface, active.address, active.broadcast,
                                    active.netmask, true) == corvanshell::kNoCrossing;
    });
}

constexpr const char* kFailed = "failover address validation failed";

} // namespace

bool ValidateFailoverAddresses() {
    std::vector<ActiveAddress> addresses;
    if (!ReadActiveAddresses(addresses))
        return false;
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    if (record.IsWhole()) // an empty one would cross nothing
        return CrossNothing(record, addresses) || Refuse(Tr(kFailed));
    TellUnfinishedEdit();
    return Refuse(Tr(kFailed));
}

bool ValidateFailoverAddresses(const corvanshell::CConfStruct& record) {
    std::vector<ActiveAddress> addresses;
    return ReadActiveAddresses(addresses) && (CrossNothing(record, addresses) || Refuse(Tr(kFailed)));
}

} // namespace failover
