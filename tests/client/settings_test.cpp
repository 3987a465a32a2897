// The settings file and the policy that follows from it.
#include "base/confhelper.h"
#include "base/console.h"
#include "base/file.h"
#include "support/logcapture.h"
#include "tarvikclient/clientcurlsession.h"
#include "tarvikclient/logplace.h"
#include "tarvikclient/systemproxy.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <set>
#include <thread>

namespace quillon::test {

namespace {

List<String> domains(std::initializer_list<char const*> names) {
    List<String> list;
    for (char const* const name : names)
        list.add(name);
    return list;
}

bool sameSettings(ClientLocalConfiguration const& a, ClientLocalConfiguration const& b) {
    List<String> const first = a.getSslCertIgnoreDomains();
    List<String> const second = b.getSslCertIgnoreDomains();
    return a.getProxyCredentials() == b.getProxyCredentials() &&
           std::equal(first.begin(), first.end(), second.begin(), second.end());
}

TEST(Settings, what_is_saved_is_read_back_and_the_password_is_in_clear) {
    TemporaryDirectory directory;
    String const path = directory.file("tarvikclient.xml");
    ClientLocalConfiguration saved;
    saved.setSslCertIgnoreDomains(domains({"b.example", "a.example:8443"}));
    saved.setProxyCredentials(Credentials("user", "p&q word ", ""));
    saved.save(path);
    EXPECT_EQ(readFile(path),
              "<tarvikclient>\r\n <sslcertignoredomains>\r\n  <domains>b.example</domains>\r\n"
              "  <domains>a.example:8443</domains>\r\n </sslcertignoredomains>\r\n <proxy>\r\n"
              "  <credentials>\r\n   <login>user</login>\r\n   <password>p&q word </password>\r\n"
              "   <domain></domain>\r\n  </credentials>\r\n </proxy>\r\n</tarvikclient>");
    ClientLocalConfiguration read;
    read.readFromFile(path);
    EXPECT_TRUE(sameSettings(read, saved));
}

TEST(Settings, values_that_a_saved_file_would_not_give_back_are_known_before) {
    std::vector<std::string> const kept{
        "plain",  "",    "gr\u00FC\u00DF", "latin \xFC", " blanks ", " ", "line\r\nbreak",
        "\x01\t", "'\"", "a > b",          "]]>",        "AT&T"};
    std::vector<std::string> const lost{"&amp;",    "&#65;",         "<",
                                        "a<b>c",    "<b></b>",       "</password>",
                                        "<!-- -->", "<![CDATA[x]]>", "</password><password>"};
    TemporaryDirectory directory;
    LogCapture log;
    for (std::size_t i = 0; i < kept.size() + lost.size(); ++i)
        for (int field = 0; field < 4; ++field) {
            bool const survives = i < kept.size();
            char const* const value = (survives ? kept[i] : lost[i - kept.size()]).c_str();
            ClientLocalConfiguration settings, read;
            settings.setSslCertIgnoreDomains(domains({"first", field == 0 ? value : "d", "last"}));
            settings.setProxyCredentials(
                Credentials(field == 1 ? value : "l", field == 2 ? value : "p", field == 3 ? value : "d"));
            EXPECT_EQ(settings.survivesSaving(), survives) << value << " " << field;
            settings.save(directory.file("settings"));
            try {
                read.readFromFile(directory.file("settings"));
            } catch (EConfMissingKey const&) {
            }
            EXPECT_EQ(sameSettings(read, settings), survives) << value << " " << field;
        }
}

TEST(Settings, files_that_are_none_leave_the_defaults_and_are_named) {
    TemporaryDirectory directory;
    String const path = directory.file("settings");
    for (char const* const content : {"", "<tarvikclient>", "<other/>", "\xff\xfe"}) {
        LogCapture log;
        writeFile(path, content);
        ClientLocalConfiguration settings;
        settings.readFromFile(path);
        EXPECT_TRUE(settings.getProxyCredentials().empty());
        EXPECT_TRUE(log.contains(
            "ERROR ClientLocalConfiguration.readFromFile Can not read local configuration from " +
            std::string(path.view())))
            << content;
    }
    writeFile(path, "<tarvikclient/>");
    ClientLocalConfiguration().readFromFile(path);
}

TEST(Settings, a_file_that_could_not_be_read_is_kept_beside_the_one_that_takes_its_place) {
    TemporaryDirectory directory;
    String const path = directory.file("settings"), broken = directory.file("settings.broken");
    LogCapture log;
    writeFile(broken, "an earlier one");
    for (std::string const& content :
         {std::string("<tarvikclient"), std::string("<tarvikclient><proxy><credentials><login>l</login>"
                                                    "</credentials></proxy></tarvikclient>")}) {
        writeFile(path, content);
        ClientLocalConfiguration settings;
        try {
            settings.readFromFile(path);
        } catch (EConfMissingKey const&) {
        }
        EXPECT_TRUE(settings.isFileUnreadable());
        EXPECT_EQ(readFile(path), content) << "changed by reading";
        settings.save(path);
        EXPECT_EQ(readFile(broken), content);
        EXPECT_FALSE(settings.isFileUnreadable());
        settings.save(path);
        settings.readFromFile(path);
        EXPECT_FALSE(settings.isFileUnreadable());
        EXPECT_EQ(readFile(broken), content) << "replaced by settings that are whole";
    }
    writeFile(path, "broken again");
    ClientLocalConfiguration settings;
    settings.readFromFile(path);
    std::filesystem::remove(broken.str());
    File::createDirectory(broken);
    EXPECT_THROW(settings.save(path), EFile);
    EXPECT_EQ(readFile(path), "broken again") << "replaced although it could not be kept";
}

/// The names in a directory, each with a blank behind it.
std::string entriesOf(TemporaryDirectory const& directory) {
    std::set<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(directory.path()))
        names.insert(entry.path().filename());
    std::string all;
    for (std::string const& name : names)
        all += name + " ";
    return all;
}

TEST(Settings, a_save_that_fails_leaves_the_old_file_and_no_password_beside_it) {
    TemporaryDirectory directory;
    LogCapture log;
    EXPECT_THROW(ClientLocalConfiguration().save(directory.file("missing/settings")), EFile);
    File::createDirectory(directory.file("taken"));
    EXPECT_THROW(ClientLocalConfiguration().save(directory.file("taken")), EFile);
    writeFile(directory.file("settings"), "old");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit const small{16, before.rlim_max};
    Console::instance()->drain(10000);
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_THROW(ClientLocalConfiguration().save(directory.file("settings")), EFile);
    Console::instance()->drain(10000);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(readFile(directory.file("settings")), "old");
    EXPECT_EQ(entriesOf(directory), "settings taken ");
    EXPECT_EQ(log.count("ERROR ClientLocalConfiguration.save Can not write local configuration to /"), 2u);
}

TEST(Settings, what_a_killed_save_has_left_goes_with_the_next) {
    TemporaryDirectory directory;
    for (char const* const name : {"settings.new", "settings.newABCDEF", "settings.newer", "other.newABCDEF"})
        writeFile(directory.file(name), "secret");
    ASSERT_EQ(symlink("other.newABCDEF", directory.file("settings.newLINKED").str()), 0);
    ClientLocalConfiguration().save(directory.file("settings"));
    EXPECT_EQ(entriesOf(directory), "other.newABCDEF settings settings.newLINKED settings.newer ");
    EXPECT_EQ(std::filesystem::status(directory.file("settings").str()).permissions(),
              std::filesystem::perms::all);
}

TEST(Settings, several_may_save_at_once) {
    TemporaryDirectory directory;
    String const path = directory.file("settings");
    ClientLocalConfiguration settings;
    settings.setProxyCredentials(Credentials("l", "p", "d"));
    std::vector<std::thread> savers;
    for (int i = 0; i < 4; ++i)
        savers.emplace_back([&] {
            for (int round = 0; round < 50; ++round)
                EXPECT_NO_THROW(settings.save(path));
        });
    for (std::thread& saver : savers)
        saver.join();
    ClientLocalConfiguration read;
    read.readFromFile(path);
    EXPECT_TRUE(sameSettings(read, settings));
    EXPECT_EQ(entriesOf(directory), "settings ");
}

TEST(SystemProxy, is_asked_only_where_the_file_says_yes) {
    TemporaryDirectory directory;
    String const file = directory.file("use-system-proxy");
    auto const proxy = [&] {
        SystemProxy choice;
        choice.load(directory.toString());
        return choice.proxyFor("https://gate.example/", [] { return false; });
    };
    EXPECT_EQ(proxy(), "");
    for (std::string const& text :
         {std::string("no\n"), std::string("YES"), std::string(), std::string("ye")}) {
        writeFile(file, text);
        EXPECT_EQ(proxy(), "") << text;
    }
    writeFile(file, "yes\n");
    EXPECT_EQ(proxy(), "socks5h://127.0.0.1:9");
    std::filesystem::remove(file.str());
    ASSERT_EQ(mkfifo(file.str(), 0600), 0);
    EXPECT_EQ(proxy(), "");
}

TEST(LogPlace, is_the_data_directory_where_the_first_is_not_ones_own) {
    TemporaryDirectory directory;
    LogCapture restoresTheStreams;
    String const first = directory.file("first"), data = directory.file("data");
    EXPECT_EQ(logTo(first), "");
    EXPECT_EQ(Console::instance()->getFilename(DEBUG), first);
    std::filesystem::remove(first.str());
    ASSERT_EQ(mkfifo(first.str(), 0600), 0);
    logToDataDirectory(data, first, logTo(first));
    for (LogCategory const category : {TRACE, DEBUG, ERROR, ASSERT})
        EXPECT_EQ(Console::instance()->getFilename(category), data + "/tarvikclient.log");
    Console::instance()->drain(10000);
    EXPECT_NE(readFile(data + "/tarvikclient.log").find(("Can not log to " + first + ": ").toString().view()),
              std::string::npos);
}

TEST(Settings, certificates_are_skipped_for_the_exact_authority_alone) {
    ClientLocalConfiguration settings;
    settings.setSslCertIgnoreDomains(domains({"gw.example", "gw.example:8443"}));
    TarvikClientCurlSession session(settings);
    EXPECT_FALSE(session.verifySSL("https://gw.example/path"));
    EXPECT_FALSE(session.verifySSL("https://gw.example:8443"));
    for (char const* const url : {"https://gw.example:443/", "https://GW.example/", "https://a.gw.example/",
                                  "https://user@gw.example/", "https://gw.example.evil/"})
        EXPECT_TRUE(session.verifySSL(url)) << url;
}

} // namespace

} // namespace quillon::test
