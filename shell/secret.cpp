#include "shell/secret.h"

#include "platform/messages.h"
#include "shell/values.h"

#include <unistd.h>

namespace shell {
namespace {

constexpr std::size_t kMinimumLength = 8; // RFC 3414, section 11.2

} // namespace

bool AskSecret(const char* what, std::string& secret) {
    std::string typed;
    if (!shell_get_user_response((std::string(what) + ":").c_str(), true, typed))
        return Refuse("no %s was given", what);
    if (typed.size() < kMinimumLength || !IsWord(typed))
        return Refuse("a %s has %zu characters at least, and no blanks, quotes or backslashes", what,
                      kMinimumLength);
    std::string again = typed;
    if (::isatty(STDIN_FILENO) &&
        (!shell_get_user_response((std::string(what) + " once more:").c_str(), true, again) ||
         again != typed))
        return Refuse("the second %s is not the same as the first one", what);
    secret = typed;
    return true;
}

} // namespace shell
