#include "units/dhcp_server/removal.h"

#include "platform/console.h"

#include <cstdio>
#include <unistd.h>

namespace settings::dhcp_server {

bool ConfirmRemoval(const char* question) {
    std::fflush(stdout);
    return isatty(STDIN_FILENO) == 0 || shell_get_user_confirmation("%s", question) != 0;
}

} // namespace settings::dhcp_server
