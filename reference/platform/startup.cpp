#include "platform/startup.h"

#include <openssl/crypto.h>
#include <openssl/err.h>

namespace TOO {

void ErrorInit() {
    OPENSSL_init_crypto(OPENSSL_INIT_LOAD_CRYPTO_STRINGS, nullptr);
}

void ErrorFini() {
    ERR_clear_error();
}

} // namespace TOO

bool InitCSPShort() {
    // Digests need nothing of openssl.cnf, and reading it would be a third of a short run's start-up.
    return OPENSSL_init_crypto(OPENSSL_INIT_NO_LOAD_CONFIG, nullptr) == 1;
}
