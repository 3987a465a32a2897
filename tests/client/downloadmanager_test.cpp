#include "tarvikclient/downloadManager.h"

#include "base/file.h"
#include "client/fakegateway.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <thread>

namespace quillon::test {

namespace {

class DownloadTest : public ::testing::Test {
protected:
    DownloadTest() : m_downloads(m_settings) {
        List<String> trusted;
        trusted.add(String::copyOf(m_gateway.server().authority()));
        m_settings.setSslCertIgnoreDomains(trusted);
        m_downloads.setServer(String::copyOf(m_gateway.server().authority()));
        m_gateway.serve("/files/f", "content");
    }

    static constexpr char md5OfContent[] = "9a0364b9e99bb480dd25e1f0284c8555";

    DownloadManager::DownloadConfig config(char const* md5) const {
        DownloadManager::DownloadConfig config;
        config.filename = "f";
        config.urlpath = "/files/";
        config.md5 = md5;
        return config;
    }

    FakeGateway m_gateway;
    TemporaryDirectory m_directory;
    ClientLocalConfiguration m_settings;
    DownloadManager m_downloads;
    LogCapture m_log;
};

TEST_F(DownloadTest, paths_go_to_the_gateway_and_urls_where_they_say) {
    for (std::string const& url : {std::string("/files/f"), std::string("files/f"),
                                   std::string("//elsewhere/files/f"), m_gateway.server().url("/files/f")}) {
        String const target = m_directory.file("a/b/c");
        EXPECT_TRUE(m_downloads.downloadFileTo(String::copyOf(url), target)) << url;
        EXPECT_EQ(readFile(target), "content") << url;
    }
}

TEST_F(DownloadTest, everything_but_a_whole_reply_with_status_200_is_a_failure) {
    for (Reply const& reply :
         {status(404), status(304), status(302, "", {"Location: /files/f"}), status(201, "x"),
          silent(Reply::reset), raw("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf")}) {
        m_gateway.serve("/files/bad", reply);
        EXPECT_FALSE(m_downloads.downloadFileTo("/files/bad", m_directory.file("f"))) << reply.bytes;
    }
    EXPECT_EQ(m_log.count("Error while downloding '" + m_directory.path() + "/f' from '" +
                          m_gateway.server().url("/files/bad") + "'"),
              6u);
    EXPECT_TRUE(File::exists(m_directory.file("f")));
}

TEST_F(DownloadTest, urls_and_paths_that_are_none_are_failures_and_not_exceptions) {
    EXPECT_FALSE(m_downloads.downloadFileTo("file:///etc/hostname", m_directory.file("f")));
    EXPECT_FALSE(m_downloads.downloadFileTo("https://h/#a\nb", m_directory.file("f")));
    EXPECT_FALSE(m_downloads.downloadFileTo("/files/f", m_directory.toString()));
    EXPECT_TRUE(m_log.contains("Cannot open file \"" + m_directory.path() + "\""));
    writeFile(m_directory.file("plain"), "");
    EXPECT_FALSE(m_downloads.downloadFileTo("/files/f", m_directory.file("plain/below")));
}

TEST_F(DownloadTest, a_file_with_the_configured_md5_is_not_fetched_again) {
    String const path = m_directory.file("f");
    EXPECT_EQ(m_downloads.downloadFromConfig(config(md5OfContent), m_directory.toString()), path);
    EXPECT_EQ(DownloadManager::computeFileMd5(path), md5OfContent);
    EXPECT_EQ(m_downloads.downloadFromConfig(config(md5OfContent), m_directory.toString()), path);
    EXPECT_EQ(m_gateway.count("/files/f"), 1u);
    for (char const* const md5 : {"", "9A0364B9E99BB480DD25E1F0284C8555"})
        m_downloads.downloadFromConfig(config(md5), m_directory.toString());
    EXPECT_EQ(m_gateway.count("/files/f"), 3u);
    EXPECT_THROW(DownloadManager::computeFileMd5(m_directory.file("none")), EFile);
}

TEST_F(DownloadTest, the_delegate_works_from_any_thread_and_refuses_before_it_is_configured) {
    std::string url = "/files/f";
    std::string path = m_directory.path() + "/f";
    auto* const delegate = &DownloadManager::StaticDownloadWrapper::downloadFileTo;
    EXPECT_FALSE(delegate(url.data(), path.data()));
    EXPECT_TRUE(m_log.contains(
        "ERROR StaticDownloadWrapper.downloadFromConfig StaticDownloadWrapper is not configured !"));
    DownloadManager::StaticDownloadWrapper::m_downloadManager = &m_downloads;
    EXPECT_FALSE(delegate(nullptr, path.data()));
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&, own = path + std::to_string(i)]() mutable {
            EXPECT_TRUE(delegate(url.data(), own.data()));
            EXPECT_EQ(readFile(String::copyOf(own)), "content");
        });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace

} // namespace quillon::test
