#include "front/helpers/temporary.h"

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

int MakeTemporary(std::string& path) {
    const int descriptor = mkostemp(path.data(), O_CLOEXEC);
    if (descriptor < 0)
        return -1;
    unlink(path.c_str());
    path = "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(descriptor);
    return descriptor;
}
