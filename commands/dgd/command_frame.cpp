#include "commands/dgd/command_frame.h"

#include "front/probes/cluster.h"
#include "platform/console.h"
#include "platform/log.h"

#include <libintl.h>

namespace dgd {
namespace {

constexpr const char* kFeature = "DGD management";

} // namespace

bool RunCommand(const Command& command) {
    shell_log_info("%s", command.log.c_str());
    if (IsDisabledOnPassiveNode(gettext(kFeature)) || !command.check_arguments())
        return false;
    DgdConfig config;
    const bool loaded = config.Load();
    if (loaded && !config.enabled && !command.works_disabled) {
        shell_print_info(gettext("DGD disabled."));
        return false;
    }
    const Outcome outcome = loaded ? command.run(config) : Outcome::kFailed;
    if (outcome == Outcome::kDone)
        shell_log_info("DGD command done.");
    if (outcome == Outcome::kFailed)
        shell_print_error(gettext("DGD command failed."));
    return outcome == Outcome::kDone;
}

Outcome Refuse(const char* message) {
    shell_print_error("%s", gettext(message));
    return Outcome::kRefused;
}

} // namespace dgd
