#include "shell/secret.h"

#include "platform/console.h"
#include "shell/values.h"

#include <unistd.h>

namespace shell {
namespace {

constexpr std::size_t kMinimumLength = 8; // RFC 3414, section 11.2

} // namespace

bool AskSecret(const char* what, std::string& secret) {
    std::string typed;
    if (!shell_get_user_response((std::string(what) + ":").c_str(), true, typed)) {
        shell_print_error("no %s was given", what);
        return false;
    }
    if (typed.size() < kMinimumLength || !IsWord(typed)) {
        shell_print_error("a %s has %zu characters at least, and no blanks, quotes or backslashes", what,
                          kMinimumLength);
        return false;
    }
    std::string again = typed;
    if (::isatty(STDIN_FILENO) &&
        (!shell_get_user_response((std::string(what) + " once more:").c_str(), true, again) ||
         again != typed)) {
        shell_print_error("the second %s is not the same as the first one", what);
        return false;
    }
    secret = typed;
    return true;
}

} // namespace shell
