#pragma once

#include "platform/format.h"

#include <string>

// What a command of the routes leaves in the log: its words as they were typed, and what came of them.

namespace routing {

// "<RT_ADD> <text>"
void LogCommand(int level, const char* tag, const std::string& text);

// A refusal, told on the terminal, and behind the command in the log. False.
[[nodiscard]] bool RefuseCommand(const char* tag, const std::string& command, const Format<>& message);

// A word of a command with its value, "" when that was left out.
std::string OptionalPart(const char* word, const std::string& value);

} // namespace routing
