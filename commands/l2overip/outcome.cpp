#include "commands/l2overip/outcome.h"

#include "platform/messages.h"

namespace l2overip {

Outcome Ok() {
    return {gettext(": OK"), true};
}

Outcome Failed() {
    return {gettext(": Failed"), false};
}

Outcome Failed(const std::string& reason) {
    return {gettext(": Failed (") + reason + ")", false};
}

Outcome NotConfigured() {
    return {gettext(": Error (driver not configured)"), false};
}

Outcome Refused(format::Translated text, const std::string& behind) {
    return {gettext(text.text) + behind, false};
}

bool Log(const std::string& prefix, const Outcome& outcome) {
    if (outcome.done)
        LogInfo("%s", prefix + outcome.text);
    else
        LogError("%s", prefix + outcome.text);
    return outcome.done;
}

bool End(const std::string& prefix, const Outcome& outcome) {
    if (!outcome.is_told && outcome.done)
        PrintInfo("%s", outcome.text);
    else if (!outcome.is_told)
        PrintError("%s", outcome.text);
    return Log(prefix, outcome);
}

} // namespace l2overip
