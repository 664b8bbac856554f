#include "tests/support/appliance.h"

#include <cstdio>
#include <cstdlib>

namespace support {

Appliance::Inside::Inside() {
    if (!Exists("/dev/appliance")) {
        std::fputs("Tests write to the appliance's own paths: start them with ctest or reference/enter.\n",
                   stderr);
        std::exit(EXIT_FAILURE);
    }
}

Appliance::Appliance() = default;

Result ConfTool(const Arguments& arguments, const std::string& input) {
    Arguments line{CONF_TOOL};
    line.insert(line.end(), arguments.begin(), arguments.end());
    return RunProgram(line, input);
}

} // namespace support
