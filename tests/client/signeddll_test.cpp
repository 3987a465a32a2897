// Signature files with a manifest: what is read of them, and what verifies.
#include "tarvikclient/signeddll.h"

#include "openssl/rsa_wrapper.h"
#include "support/logcapture.h"
#include "tarvikclient/publisherkeys.h"

#include <gtest/gtest.h>

namespace quillon::test {

namespace {

// The record of a module that holds the text "the module"; both signatures were made with the openssl
// command.
constexpr char const* publicPem = "-----BEGIN PUBLIC KEY-----\n"
                                  "MIGfMA0GCSqGSIb3DQEBAQUAA4GNADCBiQKBgQDmkBgY1/EJ4fUwePswJWUJeUAv\n"
                                  "MTCGnFJ0k9TPnrnyWR0Nqwsl11uRmDsPhP+T0ulrk8O/lnAXLECDjScwt/zLdeYv\n"
                                  "DsddEQs2JdNf+WqZG8mcJY4CaIM3dmFBPATjU9N+poL25gervwDRyUakKgcLXIIt\n"
                                  "D4dFCQBvc3VKm9DSpQIDAQAB\n"
                                  "-----END PUBLIC KEY-----\n";
constexpr char const* moduleHash = "J7eeCQ9wHb4dYcA+ntx9ARDuQUBqg/TmirFHdLZMDr8=";
std::string const record =
    "<dll><version>1.0</version><name>tunnel</name><signdate>2026-11-21T23:26:51Z</signdate>"
    "<sha256>J7eeCQ9wHb4dYcA+ntx9ARDuQUBqg/TmirFHdLZMDr8=</sha256><signature>tQWb7M/gZVcjBnyAhYYpvNzKMp6zwy"
    "t7YE1xMsl47gsKDWU5F7fnpHdBqghy37iPrdR/hQJZ3WDH9QpfVDqxWTLNTEJtZ9zEPgn+/0goZfxFU/EpJJFZ/tosqChyY3TykKS8"
    "p69vfbyEtkiFH9yeC/w64ipl9zCul0ocE3HsTB8=</signature><manifest><kind>plugin</kind>"
    "<platform>linux-x86_64</platform><companion><name>bin/helper</name>"
    "<sha256>be6Is751QnGoI+TdXNAjpUnj9Jox3p8ANuGLf/hhh1I=</sha256></companion><companion>"
    "<name>rules.txt</name>"
    "<sha256>47DEQpj8HBSa+/TImW+5JCeuQeRkm5NMpJWZG3hSuFU=</sha256></companion></manifest><signature2>RrWaAT"
    "rTp73d4hG70RaB9WnFv0+5kv5yU335EKxBels9YcjlQRwJiX+NMDFs6yj/j466OtIDSggx6fPLqXZGJJIsGmIdIz91+pGK8VrztKFV"
    "6nhqCmx0CpNFK9kE7nr57RaYHZ+NJcU43igzWcp5aShDDwWQg2J4ZqcfShEkDj4=</signature2></dll>";

std::string with(std::string const& from, std::string const& to) {
    std::string changed = record;
    return changed.replace(changed.find(from), from.size(), to);
}

std::string without(std::string const& first, std::string const& last) {
    std::size_t const from = record.find(first);
    return record.substr(0, from) + record.substr(record.find(last, from) + last.size());
}

class SignedDllTest : public ::testing::Test {
protected:
    SignedDllTest() { EXPECT_TRUE(m_key.loadFromMem(publicPem, nullptr, true)); }

    bool verifies(std::string const& xml, SignedDll& read) {
        try {
            read.loadFromText(String::copyOf(xml));
        } catch (EBadSignature const&) {
            return false;
        }
        return read.verifyHash(m_key, moduleHash);
    }

    LogCapture m_log;
    tls::RSA m_key;
};

TEST(PublisherKeys, a_fingerprint_is_that_of_the_encoded_key) {
    // openssl pkey -pubin -outform DER | sha256sum
    EXPECT_EQ(keyFingerprint(publicPem), "2448740314f71e947148b86f18f4511a88927d4ca2faa1913afe8ca59b7e3b5b");
}

TEST_F(SignedDllTest, a_manifest_says_what_its_publisher_signed) {
    SignedDll read;
    ASSERT_TRUE(verifies(record, read)) << m_log.text();
    ASSERT_EQ(read.manifest->companions.size(), 2u);
    EXPECT_EQ(read.manifest->companions[1].name, "rules.txt");
    EXPECT_TRUE(read.manifest->suits("plugin", "plugindll.so"));
    EXPECT_FALSE(read.manifest->suits("hostchecker", "module.so"));
    EXPECT_FALSE(read.manifest->suits("plugin", "Rules.txt"));
    EXPECT_FALSE(read.manifest->suits("plugin", "bin"));
    read.manifest->companions[1].name = "module.so.SIG";
    EXPECT_FALSE(read.manifest->suits("plugin", "module.so"));
    read.manifest->platform = "macos-x86_64";
    EXPECT_FALSE(read.manifest->suits("plugin", "plugindll.so"));
    // Cut out, it leaves the record of old.
    EXPECT_TRUE(verifies(without("<manifest>", "</signature2>"), read));
    EXPECT_FALSE(read.manifest);
}

TEST_F(SignedDllTest, only_the_signed_manifest_verifies) {
    std::string const helper = "<name>bin/helper</name>", rules = "<name>rules.txt</name>";
    std::string const unreadable = "SignedDll.loadFromFile Error while parsing signature";
    std::string const unsignedOne = "FileSignature.verify bad manifest signature";
    std::string const manifest =
        record.substr(record.find("<manifest>"), record.find("<signature2>") - record.find("<manifest>"));
    std::string const second =
        record.substr(record.find("<signature2>"), record.find("</dll>") - record.find("<signature2>"));
    std::string many;
    for (int i = 0; i < 255; ++i)
        many += "<companion><name>" + std::to_string(i) + "</name><sha256>" + moduleHash +
                "</sha256></companion>";
    std::pair<std::string, std::string> const cases[] = {
        {with("1.0</version><name>tunnel", "1.0t</version><name>unnel"), unsignedOne},
        {with("<kind>plugin", "<kind>hostchecker"), unsignedOne},
        {with("linux-", "macos-"), unsignedOne},
        {without("<companion>", "</companion>"), unsignedOne},
        {with("<companion>", "<companion><name>a</name><sha256>" + std::string(moduleHash) +
                                 "</sha256></companion><companion>"),
         unsignedOne},
        {with(second, "<signature2>" + record.substr(record.find("<signature>") + 11, 172) + "</signature2>"),
         unsignedOne},
        {without("<manifest>", "</manifest>"), unreadable},
        {without("<signature2>", "</signature2>"), unreadable},
        {with(second, "<signature2></signature2>"), unreadable},
        {with(second, second + second), unreadable},
        {with(manifest, "<manifest/>" + manifest), unreadable},
        {with("<kind>plugin</kind>", ""), unreadable},
        {with("</kind>", "</kind><kind>hostchecker</kind>"), unreadable},
        {with("linux-x86_64", "windows-x86_64"), unreadable},
        {with(helper, ""), unreadable},
        {with(rules, "<name>BIN/Helper</name>"), unreadable},
        {with("<sha256>47DEQpj8HBSa+/TImW+5JCeuQeRkm5NMpJWZG3hSuFU=", "<sha256>47DE"), unreadable},
        {record + std::string(65536 - record.size() + 1, ' '), unreadable},
        {with("</manifest>", many + "</manifest>"), unreadable},
    };
    for (auto const& [xml, logged] : cases) {
        std::size_t const before = m_log.count(logged);
        SignedDll read;
        EXPECT_FALSE(verifies(xml, read)) << xml;
        EXPECT_EQ(m_log.count(logged), before + 1) << xml << m_log.text();
    }
}

// The first signature is over texts one behind the other: their ends can be moved.
TEST_F(SignedDllTest, no_record_is_of_a_module_without_a_hash) {
    SignedDll read;
    ASSERT_TRUE(verifies(without("<manifest>", "</signature2>"), read));
    read.version = read.version + read.name + read.signdate + read.sha256;
    read.name = read.signdate = read.sha256 = String();
    EXPECT_FALSE(read.verifyHash(m_key, String()));
}

TEST_F(SignedDllTest, names_mean_one_file_below_the_module) {
    std::string const withNul("a\0b", 3), tooLong(256, 'a');
    for (std::string const& name :
         std::vector<std::string>{"", "/a", "../a", "a/../b", "a/..", "./a", ".", "a//b", "a/", "a\\b", "a.",
                                  "a\nb", "a&lt;b", "a&amp;b", "a&#x202E;b", "\xC3\xA9", withNul, tooLong}) {
        SignedDll read;
        std::size_t const before = m_log.count("ModuleManifest.check unsafe");
        EXPECT_FALSE(verifies(with("rules.txt", name), read)) << name;
        EXPECT_EQ(m_log.count("ModuleManifest.check unsafe"), before + 1) << name;
    }
}

// Every byte replaced, left out and doubled: whatever still verifies says what was signed.
TEST_F(SignedDllTest, no_change_of_a_byte_verifies_with_another_meaning) {
    SignedDll original;
    ASSERT_TRUE(verifies(record, original));
    String const meaning = original.manifest->signedBytes(original);
    unsigned harmless = 0;
    for (std::size_t at = 0; at < record.size(); ++at) {
        std::string const byte(1, record[at]);
        std::string const flipped(1, static_cast<char>(record[at] ^ 1)),
            folded(1, static_cast<char>(record[at] ^ 0x20));
        for (std::string const& other :
             std::vector<std::string>{flipped, folded, {'\0'}, "<", "/", " ", "", byte + byte}) {
            SignedDll read;
            if (!verifies(record.substr(0, at) + other + record.substr(at + 1), read))
                continue;
            ++harmless;
            ASSERT_TRUE(read.manifest) << at << other;
            EXPECT_EQ(read.manifest->signedBytes(read), meaning) << at << other;
        }
    }
    EXPECT_GT(harmless, 0u); // names of elements in the other case
}

} // namespace

} // namespace quillon::test
