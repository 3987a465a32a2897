#include "base/file.h"
#include "openssl/evp_digest_wrapper.h"
#include "openssl/md5_wrapper.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <cstdlib>

using namespace quillon;

TEST(Digest, of_known_texts) {
    static constexpr char const* cases[][3] = {
        {"md5", "abc", "900150983cd24fb0d6963f7d28e17f72"},
        {"sha1", "abc", "a9993e364706816aba3e25717850c26c9cd0d89d"},
        {"sha256", "abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"SHA256", "", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
    };
    for (auto const& [name, text, hex] : cases) {
        tls::EVPDigest digest{name};
        for (int round = 0; round < 2; ++round) { // after final() it starts anew
            digest.update(Memory(String(text)));
            EXPECT_EQ(digest.final().toHex(), hex) << name << " round " << round;
        }
    }
}

TEST(Digest, unknown_name_is_logged_and_thrown) {
    test::LogCapture log;
    EXPECT_THROW(tls::EVPDigest(String("no-such-digest")), tls::EEVPDigest);
    EXPECT_TRUE(log.contains("ERROR EVPDigest.initByName Cannot retrive digest \"no-such-digest\".\n"));
    evp_md_st const* const none = nullptr;
    EXPECT_THROW(tls::EVPDigest{none}, tls::EEVPDigest);
}

TEST(OpenSsl, computes_until_the_last_synchronised_thread_has_ended) {
    test::TemporaryDirectory directory;
    for (char const* const mode : {"hash", "sign", "after others"}) {
        std::string const out = directory.path() + "/out";
        // The probe leaves a thread behind on purpose.
        std::string const command =
            "env TSAN_OPTIONS=\"$TSAN_OPTIONS report_thread_leaks=0\" '" EXITPROBE "' '";
        EXPECT_EQ(std::system((command + mode + "' >'" + out + "'").c_str()), 0) << mode;
        EXPECT_NE(test::readFile(out.c_str()).find("[worker] TRACE Worker.main done"), std::string::npos)
            << mode;
    }
}

TEST(Digest, of_a_source_does_not_depend_on_its_chunks) {
    test::TemporaryDirectory directory;
    String const path = directory.file("content");
    for (unsigned const size : {0u, 1u, 1023u, 1024u, 1025u, 5000u}) {
        String content;
        for (unsigned i = 0; i < size; ++i)
            content.append(static_cast<char>(i * 7));
        File::writeAllFile(path, content);
        File file;
        ASSERT_TRUE(file.open(path, File::in));
        tls::MD5 chunked, whole;
        whole.update(Memory(content));
        EXPECT_EQ(chunked.computehash(file), whole.final()) << size;
    }
}
