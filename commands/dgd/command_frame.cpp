#include "commands/dgd/command_frame.h"

#include "front/probes/cluster.h"
#include "platform/messages.h"

namespace dgd {
namespace {

constexpr const char* kFeature = "DGD management";

Outcome Run(const Command& command, DgdConfig& config) {
    const Outcome outcome = command.run(config);
    return config.HasRefused() && command.needs != Needs::kNothing ? Outcome::kFailed : outcome;
}

} // namespace

bool RunCommand(const Command& command) {
    LogInfo("%s", command.log);
    if (IsDisabledOnPassiveNode(gettext(kFeature)) || !command.check_arguments())
        return false;
    DgdConfig config;
    const bool loaded = config.Load() || command.needs == Needs::kNothing;
    if (loaded && !config.enabled && command.needs == Needs::kEnabled) {
        PrintInfo(Tr("DGD disabled."));
        return false;
    }
    const Outcome outcome = loaded ? Run(command, config) : Outcome::kFailed;
    if (outcome == Outcome::kDone)
        LogInfo("DGD command done.");
    if (outcome == Outcome::kFailed)
        PrintError(Tr("DGD command failed."));
    return outcome == Outcome::kDone;
}

Outcome Refused(format::Translated message) {
    PrintError("%s", gettext(message.text));
    return Outcome::kRefused;
}

Outcome Show(const DgdConfig& config, const std::string& report) {
    if (!config.HasRefused())
        PrintInfo("%s", report);
    return Outcome::kDone;
}

} // namespace dgd
