#include "commands/l2overip/outcome.h"

#include "platform/console.h"
#include "platform/log.h"

#include <libintl.h>

namespace l2overip {

std::string Ok() {
    return gettext(": OK");
}

std::string Failed() {
    return gettext(": Failed");
}

std::string Failed(const std::string& reason) {
    return gettext(": Failed (") + reason + ")";
}

std::string NotConfigured() {
    return gettext(": Error (driver not configured)");
}

bool Log(const std::string& prefix, const std::string& outcome, bool done) {
    const std::string text = prefix + outcome;
    if (done)
        shell_log_info("%s", text.c_str());
    else
        shell_log_error("%s", text.c_str());
    return done;
}

bool End(const std::string& prefix, const std::string& outcome) {
    const bool done = outcome == Ok();
    if (done)
        shell_print_info("%s", outcome.c_str());
    else
        shell_print_error("%s", outcome.c_str());
    return Log(prefix, outcome, done);
}

} // namespace l2overip
