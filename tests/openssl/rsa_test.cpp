#include "base/base64.h"
#include "openssl/rsa_wrapper.h"
#include "support/temporarydirectory.h"

#include <gtest/gtest.h>
#include <openssl/bio.h>
#include <openssl/err.h>

using namespace quillon;
using Key = tls::RSA; // OpenSSL has an RSA too

namespace {

// A key and its signature over `signedText`, both made with the openssl command.
constexpr char const* publicPem = "-----BEGIN PUBLIC KEY-----\n"
                                  "MIGfMA0GCSqGSIb3DQEBAQUAA4GNADCBiQKBgQDFp0mkonXScoUeoFHXq0lZXvRD\n"
                                  "2SCradgBXDKDqNuOopNzGWkMq1/MncTY8DCK+82eQNnPNjFYr0BUmvT3iAerMWKa\n"
                                  "VxyI4FlGFwryaJH1WA4B46evtqHaJ8+vuT7J/UAx7z5nRs1zuc8ezEIg1JU5T5mR\n"
                                  "m07UYp7Rm0QNBT2/kQIDAQAB\n"
                                  "-----END PUBLIC KEY-----\n";
constexpr char const* signedText = "name=module;version=1.0";
constexpr char const* signature64 =
    "R1PVEejiESNPPQ+LaLkzrYPKeufciN6X/"
    "XP5BceCJ4OdUrdw+L2LaGzQfXmcPeysvx5AjVkN7jrV9tbX28aHIVM5LVNAJwoCXYgHH+VqVyN8"
    "bVGK0Hn9s3dl5ZaOP5VnqSXzIiC0ZnY8Sxho9zss8W6/XyUsyiGGwd40vGvGTvk=";

// The same key in the form of PKCS#1.
constexpr char const* pkcs1Pem = "-----BEGIN RSA PUBLIC KEY-----\n"
                                 "MIGJAoGBAMWnSaSiddJyhR6gUderSVle9EPZIKtp2AFcMoOo246ik3MZaQyrX8yd\n"
                                 "xNjwMIr7zZ5A2c82MVivQFSa9PeIB6sxYppXHIjgWUYXCvJokfVYDgHjp6+2odon\n"
                                 "z6+5Psn9QDHvPmdGzXO5zx7MQiDUlTlPmZGbTtRintGbRA0FPb+RAgMBAAE=\n"
                                 "-----END RSA PUBLIC KEY-----\n";

constexpr char const* curvePem = "-----BEGIN PUBLIC KEY-----\n"
                                 "MFkwEwYHKoZIzj0CAQYIKoZIzj0DAQcDQgAEsALGCE6T5N4Ab/xw4ydp0mqhdZlV\n"
                                 "RiNoCS2VEJ+PzIDbm60q4w3layd5YT4UD1h5jw9Zh2m4RVKTMVaXjPEiFw==\n"
                                 "-----END PUBLIC KEY-----\n";

Memory bytes(char const* text) {
    return Memory(String(text));
}

class RsaTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        Key key;
        ASSERT_TRUE(key.generateKey(2048));
        s_private = key.toPem(false);
        s_public = key.toPem(true);
        s_encrypted = key.toPem(false, "secret");
    }

    // Whatever fails leaves nothing behind that the thread's next TLS connection would trip over.
    void TearDown() override { EXPECT_EQ(ERR_peek_error(), 0u); }

    static inline String s_private, s_public, s_encrypted;
};

} // namespace

TEST_F(RsaTest, only_the_keys_own_signature_over_the_data_is_valid) {
    Key key;
    ASSERT_TRUE(key.loadFromMem(publicPem, nullptr, true));
    Memory const good = Base64::decode(signature64);
    EXPECT_EQ(key.signLength(), good.size());
    EXPECT_TRUE(key.verify(bytes(signedText), good));
    EXPECT_FALSE(key.verify(bytes("name=module;version=1.1"), good));
    EXPECT_FALSE(key.verify(Memory(), good));
    for (std::size_t const length : {std::size_t(0), good.size() - 1, good.size() + 1}) {
        Memory other = good;
        other.resize(length);
        EXPECT_FALSE(key.verify(bytes(signedText), other)) << length;
    }
    Memory flipped = good;
    flipped.array()[17] ^= 1;
    EXPECT_FALSE(key.verify(bytes(signedText), flipped));
}

TEST_F(RsaTest, signatures_of_a_private_key_verify_with_its_public_half) {
    Key signer, verifier;
    ASSERT_TRUE(signer.loadFromMem(s_private.str(), nullptr, false));
    ASSERT_TRUE(verifier.loadFromMem(s_public.str(), nullptr, true));
    EXPECT_EQ(signer.signLength(), 256u);
    EXPECT_TRUE(verifier.verify(bytes("text"), signer.sign(bytes("text"))));
    EXPECT_TRUE(verifier.verify(Memory(), signer.sign(Memory())));
    Memory const signature = signer.signSha256(bytes("text"));
    EXPECT_TRUE(verifier.verifySha256(bytes("text"), signature));
    EXPECT_FALSE(verifier.verifySha256(bytes("texu"), signature));
    EXPECT_FALSE(verifier.verifySha256(bytes("text"), Memory(signature.array(), signature.size() - 1)));
    EXPECT_FALSE(verifier.verifySha256(bytes("text"), signer.sign(bytes("text"))));
    EXPECT_FALSE(verifier.verify(bytes("text"), signature));
    EXPECT_TRUE(verifier.signSha256(bytes("text")).empty());
    EXPECT_TRUE(verifier.sign(bytes("text")).empty());
    EXPECT_TRUE(verifier.toPem(false).empty());
}

TEST_F(RsaTest, keys_load_in_their_form_only) {
    std::tuple<char const*, char const*, char const*, bool, bool> const cases[] = {
        {"public", publicPem, nullptr, true, true},
        {"private", s_private.str(), nullptr, false, true},
        {"private as public", s_private.str(), nullptr, true, false},
        {"public as private", publicPem, nullptr, false, false},
        {"PKCS#1", pkcs1Pem, nullptr, true, false},
        {"elliptic curve", curvePem, nullptr, true, false},
        {"encrypted", s_encrypted.str(), "secret", false, true},
        {"wrong password", s_encrypted.str(), "Secret", false, false},
        {"no password", s_encrypted.str(), nullptr, false, false},
        {"no PEM", "key", nullptr, true, false},
        {"empty", "", nullptr, true, false},
        {"null", nullptr, nullptr, true, false}};
    test::TemporaryDirectory directory;
    for (auto const& [name, pem, password, publicKey, loads] : cases) {
        Key key;
        EXPECT_EQ(key.loadFromMem(pem, password, publicKey), loads) << name;
        EXPECT_EQ(key.valid(), loads) << name;
        String const file = directory.file("key.pem");
        test::writeFile(file, pem ? pem : "");
        EXPECT_EQ(key.loadFromPem(file.str(), password, publicKey), loads) << name;
        EXPECT_EQ(ERR_peek_error(), 0u) << name;
    }
    Key key;
    ASSERT_TRUE(key.loadFromMem(publicPem, nullptr, true));
    EXPECT_FALSE(key.loadFromPem(directory.file("missing").str(), nullptr, true));
    EXPECT_FALSE(key.valid()) << "the old key must not pass for the one that failed to load";
    EXPECT_FALSE(key.loadFromPem(directory.path().c_str(), nullptr, true));
    BIO* const bio = BIO_new_mem_buf(pkcs1Pem, -1);
    EXPECT_FALSE(key.loadFromBIO(bio, nullptr, true));
    BIO_free(bio);
}

TEST_F(RsaTest, decrypts_what_the_public_key_encrypted) {
    Key pair, publicKey;
    ASSERT_TRUE(pair.loadFromMem(s_private.str(), nullptr, false));
    ASSERT_TRUE(publicKey.loadFromMem(s_public.str(), nullptr, true));
    Memory cipher, plain, longest;
    longest.resize(publicKey.maxPlainLength());
    for (Memory const& text : {Memory(), bytes("text"), longest}) {
        ASSERT_TRUE(publicKey.encrypt(text, cipher));
        EXPECT_EQ(cipher.size(), 256u);
        EXPECT_TRUE(pair.decrypt(cipher, plain));
        EXPECT_EQ(plain, text);
    }
    EXPECT_FALSE(publicKey.decrypt(cipher, plain));
    cipher.array()[0] ^= 1;
    EXPECT_FALSE(pair.decrypt(cipher, plain));
    longest.resize(longest.size() + 1);
    EXPECT_FALSE(publicKey.encrypt(longest, cipher));
}

TEST_F(RsaTest, using_an_empty_key_is_fatal) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    Key key;
    EXPECT_EQ(key.signLength(), 0u);
    EXPECT_EXIT(key.verify(Memory(), Memory()), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(key.sign(Memory()), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(key.verifySha256(Memory(), Memory()), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(key.signSha256(Memory()), testing::KilledBySignal(SIGABRT), "");
}
