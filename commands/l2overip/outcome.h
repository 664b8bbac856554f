#pragma once

#include <string>

// How the operations of L2OverIP end: one text, the operation's prefix with its outcome behind it, goes to
// the log, at level 6 on success and level 3 on failure.

namespace l2overip {

// The outcomes that all share, translated.
std::string Ok();
std::string Failed();
std::string Failed(const std::string& reason);
std::string NotConfigured();

// Logs the text and gives `done`.
bool Log(const std::string& prefix, const std::string& outcome, bool done);

// Ends a command: logs the text and tells the administrator the outcome. True for the outcome "OK".
[[nodiscard]] bool End(const std::string& prefix, const std::string& outcome);

} // namespace l2overip
