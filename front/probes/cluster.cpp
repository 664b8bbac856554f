#include "front/probes/cluster.h"

#include "front/helpers/stream.h"
#include "platform/console.h"
#include "platform/log.h"
#include "platform/path_list.h"
#include "platform/processes.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <libintl.h>

namespace {

constexpr const char* kStateFile = "/var/spool/corvan/failoverstat";
constexpr std::size_t kLineSize = 2048;

// The numbers are part of the texts that administrators search their logs for.
enum StateStep { kOpen = 77, kFirstLine = 85, kSecondLine = 93, kNumber = 101 };

bool LogStateFailure(StateStep step) {
    shell_log_error(gettext("at line %d. Failed to detect cluster state: %s: %s"), static_cast<int>(step),
                    "failoverstat", std::strerror(errno));
    return false;
}

// The second word of a line whose words stand between "=" and whose first word is `name`.
bool TakeValue(const std::string& line, const std::string& name, std::string& value) {
    const std::size_t start = line.find_first_not_of('=');
    if (start == std::string::npos)
        return false;
    const std::size_t end = line.find('=', start);
    if (line.substr(start, end - start) != name)
        return false;
    const std::size_t second = end == std::string::npos ? end : line.find_first_not_of('=', end);
    value = second == std::string::npos ? "" : line.substr(second, line.find('=', second) - second);
    return true;
}

} // namespace

bool IsClusterActive() {
    char line[kLineSize];
    unsigned state = 0;
    const Stream file(std::fopen(kStateFile, "re"));
    if (file == nullptr)
        return LogStateFailure(kOpen);
    if (std::fgets(line, sizeof line, file.get()) == nullptr)
        return LogStateFailure(kFirstLine);
    if (std::fgets(line, sizeof line, file.get()) == nullptr)
        return LogStateFailure(kSecondLine);
    if (std::sscanf(line, "%u", &state) != 1)
        return LogStateFailure(kNumber);
    if (state > 2)
        shell_log_error(gettext("failed to detect cluster state: unknown state: %u"), state);
    return state == 2;
}

int GetClusterMode() {
    std::ifstream parameters(path_list::velir_sk_nums);
    std::string line;
    std::string mode;
    while (std::getline(parameters, line)) {
        if (TakeValue(line, "FO_PARAMS", mode))
            break;
    }
    return mode == "\"cluster\"" ? 1 : 0;
}

bool IsDisabledOnPassiveNode(const std::string& feature) {
    if (GetClusterMode() < 1 || IsClusterActive())
        return false;
    if (!feature.empty())
        shell_print_error(gettext("%s is disabled because the cluster appliance is passive."),
                          feature.c_str());
    return true;
}

bool IsTimeSyncDisabled() {
    return shell_spawn_quiet("/bin/grep", "-q", "^syncdatetime\\s*=\\s*[nN][oO]\\s*\\(#.*\\)\\?$",
                             "/etc/failover.ini", nullptr) == 0;
}
