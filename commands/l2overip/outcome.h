#pragma once

#include "platform/format.h"

#include <string>

// How the operations of L2OverIP end: one text, the operation's prefix with its outcome behind it, goes to
// the log, at level 6 on success and level 3 on failure.

namespace l2overip {

struct Outcome {
    std::string text; // translated
    bool done;
    bool is_told = false; // the administrator knows it already
};

// The outcomes that all share.
Outcome Ok();
Outcome Failed();
Outcome Failed(const std::string& reason);
Outcome NotConfigured();

// What keeps an operation from being done, in its own words.
Outcome Refused(format::Translated text, const std::string& behind = "");

// Logs the text and gives whether it is done.
bool Log(const std::string& prefix, const Outcome& outcome);

// Ends a command: logs the text and tells the administrator the outcome. True when it is done.
[[nodiscard]] bool End(const std::string& prefix, const Outcome& outcome);

} // namespace l2overip
