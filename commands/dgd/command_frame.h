#pragma once

#include "commands/dgd/dgd_config.h"

#include <functional>
#include <string>

namespace dgd {

enum class Outcome {
    kDone,
    kFailed,  // the frame says so
    kRefused, // the command has said why
};

struct Command {
    std::string log;
    bool works_disabled = false; // with the dead gateway detection off, too
    std::function<bool()> check_arguments = [] { return true; };
    std::function<Outcome(DgdConfig&)> run;
};

// What every command does: log, ask whether this node and these arguments may, load, run, tell the outcome.
[[nodiscard]] bool RunCommand(const Command& command);

// The outcome of a change that the daemon has taken or not.
inline Outcome Sent(bool done) {
    return done ? Outcome::kDone : Outcome::kFailed;
}

// Tells the reason.
Outcome Refuse(const char* message);

} // namespace dgd
