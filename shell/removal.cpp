#include "shell/removal.h"

#include "platform/console.h"

#include <unistd.h>

namespace shell {

bool IsRemovalMeant(const char* question) {
    return ::isatty(STDIN_FILENO) == 0 || shell_get_user_confirmation("%s", question) != 0;
}

} // namespace shell
