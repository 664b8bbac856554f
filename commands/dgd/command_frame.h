#pragma once

#include "commands/dgd/dgd_config.h"
#include "platform/format.h"

#include <functional>
#include <string>

namespace dgd {

enum class Outcome {
    kDone,
    kFailed,  // the frame says so
    kRefused, // the command has said why
};

// What a command needs of the dead gateway detection.
enum class Needs {
    kNothing, // a daemon that answers nothing can be stopped, too
    kAnswers,
    kEnabled,
};

struct Command {
    std::string log;
    Needs needs = Needs::kEnabled;
    std::function<bool()> check_arguments = [] { return true; };
    std::function<Outcome(DgdConfig&)> run;
};

// What every command does: log, ask whether this node and these arguments may, load, run, tell the outcome.
// What the daemon has refused fails, whatever the command makes of it.
[[nodiscard]] bool RunCommand(const Command& command);

// The outcome of a change that the daemon has taken or not.
inline Outcome Sent(bool done) {
    return done ? Outcome::kDone : Outcome::kFailed;
}

// Tells the reason.
Outcome Refused(format::Translated message);

// Prints a report, unless the daemon has refused what it is made of.
Outcome Show(const DgdConfig& config, const std::string& report);

} // namespace dgd
