#include "platform/startup.h"

#include <openssl/crypto.h>
#include <openssl/err.h>

namespace TOO {

// The library loads its texts when the first one is asked for: doing so here would cost every run.
void ErrorInit() {
    ERR_clear_error();
}

void ErrorFini() {
    ERR_clear_error();
}

} // namespace TOO

bool InitCSPShort() {
    // Digests need nothing of openssl.cnf, and reading it would double what the library costs at start-up.
    return OPENSSL_init_crypto(OPENSSL_INIT_NO_LOAD_CONFIG, nullptr) == 1;
}
