#pragma once

#include "platform/console.h"
#include "platform/format.h"
#include "platform/log.h"

#include <libintl.h>

// The calls of the console and the log, with formats that the compiler checks and std::string as a text.

namespace messages {

template <class... Arguments>
void Send(void (*print)(const char*, ...), const FormatFor<Arguments...>& format,
          const Arguments&... arguments) {
    print(format.IsTranslated() ? gettext(format.Text()) : format.Text(), format::Raw(arguments)...);
}

} // namespace messages

template <class... Arguments>
void PrintError(FormatFor<Arguments...> format, const Arguments&... arguments) {
    messages::Send(shell_print_error, format, arguments...);
}

template <class... Arguments>
void PrintWarning(FormatFor<Arguments...> format, const Arguments&... arguments) {
    messages::Send(shell_print_warning, format, arguments...);
}

template <class... Arguments>
void PrintInfo(FormatFor<Arguments...> format, const Arguments&... arguments) {
    messages::Send(shell_print_info, format, arguments...);
}

template <class... Arguments>
void LogError(FormatFor<Arguments...> format, const Arguments&... arguments) {
    messages::Send(shell_log_error, format, arguments...);
}

template <class... Arguments>
void LogWarning(FormatFor<Arguments...> format, const Arguments&... arguments) {
    messages::Send(shell_log_warning, format, arguments...);
}

template <class... Arguments>
void LogInfo(FormatFor<Arguments...> format, const Arguments&... arguments) {
    messages::Send(shell_log_info, format, arguments...);
}

// A refusal, told as an error on the terminal. False, for the operation to end with.
template <class... Arguments>
[[nodiscard]] bool Refuse(FormatFor<Arguments...> format, const Arguments&... arguments) {
    PrintError<Arguments...>(format, arguments...);
    return false;
}

// The same, told in the log as well.
template <class... Arguments>
[[nodiscard]] bool RefuseAndLog(FormatFor<Arguments...> format, const Arguments&... arguments) {
    LogError<Arguments...>(format, arguments...);
    return Refuse<Arguments...>(format, arguments...);
}

// A refusal that the log alone tells.
template <class... Arguments>
[[nodiscard]] bool RefuseInLog(FormatFor<Arguments...> format, const Arguments&... arguments) {
    LogError<Arguments...>(format, arguments...);
    return false;
}
