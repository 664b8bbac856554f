#include "platform/startup.h"

// Digests come from libmd, which has neither texts of errors to load nor anything to set up.

namespace TOO {

void ErrorInit() {}

void ErrorFini() {}

} // namespace TOO

bool InitCSPShort() {
    return true;
}
