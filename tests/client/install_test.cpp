// What a hostile reply or archive does to installed modules, and to the session of an honest one that
// follows.
#include "client/clientfixture.h"
#include "tarvikclient/moduledirectory.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

using Entries = std::map<std::string, std::string>;

class InstallTest : public ClientTest {
protected:
    InstallTest() {
        m_gateway.serve("/hostcheck", json(R"({"success":true,"result":{}})"));
        m_gateway.serve("/certs/client.pem", "client");
        m_gateway.serve("/certs/ca.pem", "ca");
        fs::create_directories(pluginDirectory());
        fs::permissions(pluginDirectory(), fs::perms::owner_all);
        writeFile(String::copyOf(pluginDirectory() + "/script.txt"), R"([{"code":"8","reason":"1"}])");
    }

    static std::string module() { return readFile(testModule("test_plugin")); }
    static Entries honest() { return {{"module.so", module()}, {"module.so.sig", signatureOf(module())}}; }
    /// The honest entries with others, which replace those of the same name.
    static Entries with(Entries entries) {
        entries.merge(honest());
        return entries;
    }
    std::string runWith(JsonObject const& configuration, std::string const& archive) {
        m_gateway.serve("/modules/module.zip", archive);
        m_gateway.serveResult(configuration);
        return runSession().back();
    }
    JsonObject pluginWith(JsonObject const& values) const {
        JsonObject configuration = m_gateway.pluginConfiguration();
        configuration["pluginDlls"] = FakeGateway::modules(values);
        return configuration;
    }
    JsonObject checkerWith(JsonObject const& values) const {
        JsonObject configuration = m_gateway.hostcheckerConfiguration();
        configuration["hostcheckerDlls"] = FakeGateway::modules(values);
        return configuration;
    }
    std::string checkerArchive() const {
        return signedArchive("module.so", readFile(testModule("test_hostchecker")));
    }
};

TEST_F(InstallTest, load_errors_name_the_module_as_installed) {
    m_gateway.serve("/modules/module.zip", signedArchive("module.so", "no library"));
    m_gateway.serveResult(checkerWith({{"version", quoted("$LIB")}}));
    EXPECT_EQ(runSession().back(), "onFatalError ");
    std::string const path = dataDirectory() + "/hostchecker/$LIB/module.so";
    EXPECT_TRUE(m_log->contains("Unable to load \"" + path + "\": " + path + ": ")) << m_log->text();
}

TEST_F(InstallTest, an_honest_session_succeeds_after_a_hostile_one) {
    std::string const bad = signatureOf(module() + "x");
    std::tuple<char const*, JsonObject, Entries> const cases[] = {
        {"no signature, and a way out", pluginWith({}), {{"module.so", "x"}, {"../../outside", "x"}}},
        {"the installed names alone", pluginWith({}), {{"plugindll.so", "x"}, {"plugindll.so.sig", bad}}},
        {"the archive under the module's name", pluginWith({{"filename", quoted("plugindll.so")}}),
         with({{"module.so.sig", bad}})},
        {"directories where files go", m_gateway.noTunnelConfiguration(),
         with({{"module.zip/x", "x"}, {"plugindll.so.sig/x", "x"}, {"PKIs", "x"}})},
        {"an archive of the client's own names", m_gateway.noTunnelConfiguration(),
         with({{".tarvik-record", "x"}, {".tarvik-load-1/x", "x"}})},
    };
    for (auto const& [what, configuration, archive] : cases) {
        runWith(configuration, zipOf(archive));
        // A module that verified is the publisher's all the same: as if it were to be fetched anew.
        fs::remove(pluginDirectory() + "/plugindll.so.sig");
        EXPECT_EQ(runWith(m_gateway.pluginConfiguration(), zipOf(honest())), "onStatus 4") << what << "\n"
                                                                                           << m_log->text();
        EXPECT_EQ(readFile(String::copyOf(pluginDirectory() + "/PKIs/acme/ca.pem")), "ca") << what;
        Lines files = filesAtHome();
        std::erase_if(files, [](std::string const& file) {
            return file.ends_with("calls.log") || file.ends_with("by-delegate") || file.ends_with(".zip");
        });
        EXPECT_EQ(files, (Lines{".Tarvik/Plugin/PKIs/acme/ca.pem", ".Tarvik/Plugin/PKIs/acme/client.pem",
                                ".Tarvik/Plugin/plugindll.so", ".Tarvik/Plugin/plugindll.so.sig",
                                ".Tarvik/Plugin/script.txt", ".Tarvik/tarvikclient.xml"}))
            << what;
        fs::remove(pluginDirectory() + "/plugindll.so.sig");
    }
}

TEST_F(InstallTest, names_that_would_leave_the_directory_touch_nothing) {
    writeFile(m_home.file("kept"), "kept");
    // Certificates have names of their own, and are fetched.
    Lines const before{".Tarvik/Plugin/PKIs/acme/ca.pem", ".Tarvik/Plugin/PKIs/acme/client.pem",
                       ".Tarvik/Plugin/script.txt", ".Tarvik/tarvikclient.xml", "kept"};
    for (std::string const& name :
         {std::string("../../kept"), std::string("a/../../kept"), std::string("..\\\\kept"),
          m_home.path() + "/kept", std::string("kept\\u0000")})
        for (char const* const key : {"filename", "pattern", "version"})
            for (JsonObject const& configuration :
                 {pluginWith({{key, quoted(name)}}), checkerWith({{key, quoted(name)}})}) {
                if (configuration.contains("pluginDlls") && *key == 'v')
                    continue; // says nothing of where a plug-in goes
                EXPECT_EQ(runWith(configuration, zipOf(honest())), "onFatalError ") << key << " " << name;
                EXPECT_EQ(filesAtHome(), before) << key << " " << name;
            }
    EXPECT_EQ(readFile(m_home.file("kept")), "kept");
    EXPECT_EQ(m_gateway.count("/modules/module.zip"), 0u);
}

TEST_F(InstallTest, what_a_session_leaves_is_not_taken_for_a_module) {
    for (char const* const name : {"plugindll.so.sig", "plugindll.so", "plugindll.so/x", "plugindll.so/."})
        runWith(pluginWith({{"filename", quoted(name)}}), "");  // there is no such archive
    runWith(m_gateway.pluginConfiguration(), checkerArchive()); // the publisher's, but no plug-in
    EXPECT_EQ(runWith(m_gateway.pluginConfiguration(), zipOf(honest())), "onStatus 4") << m_log->text();
    for (char const* const name : {"7.1/module.so/x", "7.1/module.so/."})
        runWith(checkerWith({{"filename", quoted(name)}}), "");
    EXPECT_EQ(runWith(checkerWith({}), checkerArchive()), "onStatus 4") << m_log->text();
}

TEST_F(InstallTest, what_was_there_stays_when_a_host_checker_does_not_verify) {
    ASSERT_EQ(runWith(checkerWith({}), checkerArchive()), "onStatus 4");
    Lines const before = filesAtHome();
    std::string const installed = dataDirectory() + "/hostchecker/7.1/module.so";
    std::string const content = readFile(String::copyOf(installed));
    Entries const hostile = {{"module.so", "x"}, {"module.so.sig", signatureOf("y")}, {"companion", "x"}};
    for (char const* const filename : {"evil.zip", "7.1", "7.1/companion", ".tarvik-record"}) {
        m_gateway.serve(std::string("/modules/") + filename, zipOf(hostile));
        runWith(checkerWith({{"filename", quoted(filename)}}), checkerArchive());
        EXPECT_EQ(filesAtHome(), before) << filename;
        EXPECT_TRUE(readFile(String::copyOf(installed)) == content) << filename;
    }
    EXPECT_EQ(
        runWith(checkerWith({{"pattern", quoted("")}, {"filename", quoted("evil.zip")}}), zipOf(hostile)),
        "onFatalError ");
    EXPECT_EQ(filesAtHome(), before) << "no name is a module's";
    std::string const checker = readFile(testModule("test_hostchecker"));
    std::string const other =
        zipOf({{"module.so", checker}, {"module.so.sig", signatureOf(checker)}, {"7.1/module.so", "x"}});
    EXPECT_EQ(runWith(checkerWith({{"version", quoted("")}}), other), "onStatus 4");
    EXPECT_TRUE(readFile(String::copyOf(installed)) == content) << "another module's file";
}

TEST_F(InstallTest, a_mapped_module_is_replaced_and_not_written_to) {
    ASSERT_EQ(runWith(checkerWith({}), checkerArchive()), "onStatus 4");
    std::string const directory = dataDirectory() + "/hostchecker/";
    for (char const* const name : {"7.1/module.so", "module.zip"}) {
        int const held = open((directory + name).c_str(), O_RDONLY);
        ASSERT_EQ(runWith(checkerWith({}), checkerArchive()), "onStatus 4");
        struct stat info {};
        EXPECT_EQ(fstat(held, &info), 0);
        EXPECT_EQ(info.st_nlink, 0u) << name;
        close(held);
    }
}

TEST_F(InstallTest, a_lock_ends_with_its_session_though_a_forked_process_holds_it) {
    using namespace std::chrono_literals;
    String const path = String::copyOf(pluginDirectory());
    Descriptor inherited;
    {
        ModuleDirectory directory(path);
        ASSERT_TRUE(directory.lock(0ms));
        inherited = Descriptor(dup(directory.number()));
    }
    EXPECT_TRUE(ModuleDirectory(path).lock(0ms));
}

TEST_F(InstallTest, nothing_is_loaded_from_where_others_can_write) {
    std::string const directory = dataDirectory() + "/hostchecker";
    std::string const installed = directory + "/7.1/module.so";
    std::pair<char const*, std::function<void()>> const cases[] = {
        {"the module's directory", [&] { chmod((directory + "/7.1").c_str(), 0777); }},
        {"the directory of all modules", [&] { chmod(directory.c_str(), 0720); }},
    };
    for (auto const& [what, open] : cases) {
        ASSERT_EQ(runWith(checkerWith({}), checkerArchive()), "onStatus 4") << what;
        open();
        EXPECT_EQ(runWith(checkerWith({}), checkerArchive()), "onFatalError ") << what;
        fs::remove_all(directory);
    }
    // A second name of an installed module may be another user's.
    ASSERT_EQ(runWith(m_gateway.pluginConfiguration(), zipOf(honest())), "onStatus 4");
    fs::create_hard_link(pluginDirectory() + "/plugindll.so", m_home.path() + "/second");
    EXPECT_EQ(runSession().back(), "onFatalError ");
    fs::remove(m_home.path() + "/second");
    EXPECT_EQ(runSession().back(), "onStatus 4");
}

TEST_F(InstallTest, what_killed_processes_left_goes_and_old_installs_are_bounded) {
    ASSERT_EQ(runWith(checkerWith({}), checkerArchive()), "onStatus 4");
    std::string const directory = dataDirectory() + "/hostchecker/";
    fs::create_directories(directory + ".tarvik-install-left/x");
    writeFile(String::copyOf(directory + "7.1/.tarvik-load-left"), "x");
    for (int i = 0; i < 12; ++i) {
        std::string const number = std::to_string(i);
        m_gateway.serve("/modules/" + number + ".zip", checkerArchive());
        m_gateway.serveResult(
            checkerWith({{"version", quoted("v" + number)}, {"filename", quoted(number + ".zip")}}));
        ASSERT_EQ(runSession().back(), "onStatus 4") << i;
    }
    EXPECT_FALSE(fs::exists(directory + ".tarvik-install-left"));
    EXPECT_FALSE(fs::exists(directory + "v3"));
    EXPECT_FALSE(fs::exists(directory + "3.zip"));
    EXPECT_TRUE(fs::exists(directory + "v4/module.so"));
    EXPECT_TRUE(fs::exists(directory + "4.zip"));
    EXPECT_EQ(runWith(checkerWith({}), checkerArchive()), "onStatus 4");
    EXPECT_FALSE(fs::exists(directory + "7.1/.tarvik-load-left"));
}

} // namespace

} // namespace quillon::test
