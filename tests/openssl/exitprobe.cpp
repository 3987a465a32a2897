// A program that ends while a synchronised thread computes, with what its argument says.
#include "base/log.h"
#include "base/thread.h"
#include "openssl/evp_digest_wrapper.h"
#include "openssl/rsa_wrapper.h"

#include <openssl/crypto.h>

#include <chrono>

using namespace quillon;

namespace {

struct Worker final : Thread {
    explicit Worker(bool mode) : Thread("worker", PRIORITY_NORMAL, true), signs(mode) {}
    void main() override {
        auto const end = std::chrono::steady_clock::now() + std::chrono::milliseconds(500);
        int rounds = 0;
        do {
            signs ? sign() : hash();
            ++rounds;
        } while (std::chrono::steady_clock::now() < end);
        log(TRACE, "Worker", "main", "done");
    }
    void hash() {
        tls::EVPDigest digest("sha256");
        digest.update(Memory(String("text")));
        digest.final();
    }
    void sign() {
        tls::RSA key;
        key.generateKey(512);
        key.loadFromMem(key.toPem(true).str(), nullptr, true);
    }
    bool signs;
};

} // namespace

int main(int, char** arguments) {
    String const mode(arguments[1]);
    if (mode == "after others") // libraries that set OpenSSL up for themselves
        OPENSSL_init_crypto(OPENSSL_INIT_LOAD_CONFIG, nullptr);
    (new Worker(mode == "sign"))->run();
}
