#include "commands/l2overip/driver.h"

#include "commands/l2overip/outcome.h"
#include "front/probes/cluster.h"
#include "platform/processes.h"
#include "records/service_permissions.h"

#include <libintl.h>
#include <sys/wait.h>

namespace {

constexpr const char* kService = "L2OVERIP"; // in the lists of restricted services
constexpr const char* kStateFile = "/proc/driver/l2overip/config";
constexpr const char* kSwitchLine = "mode = switch";

int ExitStatus(int wait_status) {
    if (wait_status == -1)
        return -1;
    return WIFSIGNALED(wait_status) ? 128 + WTERMSIG(wait_status) : WEXITSTATUS(wait_status);
}

} // namespace

bool L2OverIpEnabled() {
    corvanshell::ServiceRestrictions restrictions;
    corvanshell::ReadRestrictions(restrictions);
    return !corvanshell::IsServiceRestricted(restrictions, kService);
}

bool L2OverIpDriverConfigured() {
    if (GetClusterMode() == 1 && !IsClusterActive())
        return false;
    return shell_spawn_quiet("grep", "-z", "-q", kSwitchLine, kStateFile, nullptr) == 0;
}

int L2OverIpScript(const std::string& command) {
    const int status = ExitStatus(BaseExec::run("l2overip.sh " + command));
    const std::string failure = status == 0 ? "" : gettext(" :Failed, exit code ") + std::to_string(status);
    l2overip::Log(gettext("<L2OverIP> Script command: <") + command + ">", {failure, status == 0});
    return status;
}

bool L2OverIpReconfigure() {
    const char* const prefix = gettext("<L2OverIP> Reconfigure driver");
    if (L2OverIpScript("configure") == 0)
        return l2overip::Log(prefix, l2overip::Ok());
    return l2overip::End(prefix, l2overip::Refused(Tr(": Error reconfiguring l2overip")));
}
