#include "front/probes/system.h"

#include "platform/console.h"
#include "platform/processes.h"

#include <cstdlib>
#include <libintl.h>
#include <unistd.h>

namespace {

constexpr const char* kProduct = "Corvanode ZQ100";
constexpr const char* kVersionScript = "/sbin/version.sh";

} // namespace

bool IsOldVsgMode() {
    return access("/var/run/old_vsg", F_OK) == 0;
}

bool IsServiceRunning(const std::string& exe) {
    return std::system(("start-stop-daemon -K -t -x " + exe + " >/dev/null").c_str()) == 0;
}

std::string GetPlatformLine() {
    return "Platform: ZQ100";
}

std::string RunVersionScript(const std::string& option) {
    ShellProcess process({kVersionScript, "-" + option});
    process.Run();
    if (process.Error()) {
        // The product takes the place of the script, so the error's own text is never shown. Kept: it is
        // the message that administrators know.
        shell_print_error(gettext("failed to run %s %s with error: %s"), kProduct, kVersionScript,
                          option.c_str());
        return "";
    }
    if (process.Output().empty()) {
        shell_print_error(gettext("failed to retrieve %s platform name from an empty output"), kProduct);
        return "";
    }
    return process.Output().front();
}

std::string GetPlatformName() {
    return RunVersionScript("l");
}
