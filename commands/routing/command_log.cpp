#include "commands/routing/command_log.h"

#include "platform/messages.h"

namespace routing {

void LogCommand(int level, const char* tag, const std::string& text) {
    slput(level, "<%s> %s", tag, text.c_str());
}

bool RefuseCommand(const char* tag, const std::string& command, const Format<>& message) {
    LogCommand(kLogInfo, tag, command + ". " + gettext(message.Text()));
    return Refuse(message);
}

std::string OptionalPart(const char* word, const std::string& value) {
    return value.empty() ? "" : word + value;
}

} // namespace routing
