#include "records/service_permissions.h"

#include "front/probes/cluster.h"
#include "platform/messages.h"
#include "platform/network.h"

#include <fstream>
#include <iostream>

namespace corvanshell {
namespace {

constexpr const char* kSingleOnlyList = "/etc/single_only";
constexpr const char* kMultiDiskOnlyList = "/etc/multi_disk_only";

bool IsForbiddenInCluster(const ServiceRestrictions& restrictions, const std::string& service) {
    return GetClusterMode() != 0 && restrictions.single_only.contains(service);
}

bool IsUnlicensed(const ServiceRestrictions& restrictions, const std::string& service) {
    return restrictions.multi_disk_only.contains(service) && !is_service_licensed(service);
}

// Told as information and on standard output.
bool Deny(const std::string& text) {
    LogInfo("%s", text);
    std::cout << text << std::endl;
    return false;
}

} // namespace

void ReadRestrictedList(std::set<std::string>& services, const std::string& path) {
    services.clear();
    std::ifstream input(path);
    if (!input) {
        LogWarning(Tr("Failed to open restricted services list file: '%s'"), path);
        return;
    }
    std::string line;
    while (std::getline(input, line)) {
        line.resize(std::min(line.find(','), line.size()));
        if (!line.empty())
            services.insert(line);
    }
}

void ReadRestrictions(ServiceRestrictions& restrictions) {
    ReadRestrictedList(restrictions.single_only, kSingleOnlyList);
    ReadRestrictedList(restrictions.multi_disk_only, kMultiDiskOnlyList);
}

bool IsServiceRestricted(const ServiceRestrictions& restrictions, const std::string& service) {
    return IsForbiddenInCluster(restrictions, service) || IsUnlicensed(restrictions, service);
}

bool IsServicePermitted(const ServiceRestrictions& restrictions, const std::string& service) {
    if (IsForbiddenInCluster(restrictions, service))
        return Deny(gettext("Can't turn on ") + service + gettext(" service in cluster mode"));
    if (IsUnlicensed(restrictions, service))
        return Deny(gettext("Your appliance is not allowed to run this service."));
    return true;
}

} // namespace corvanshell
