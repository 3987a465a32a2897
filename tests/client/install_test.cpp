// What a hostile reply or archive does to installed modules, and to the session of an honest one that
// follows.
#include "client/clientfixture.h"

#include "base/exception.h"

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
    /// A configuration whose module record has these values in place of the usual ones.
    static JsonObject changed(JsonObject configuration, char const* modules, JsonObject const& values) {
        JsonObject record{{"filename", quoted("module.zip")},
                          {"urlpath", quoted("/modules/")},
                          {"pattern", quoted("module.so")},
                          {"version", quoted("7.1")}};
        for (auto const& [key, value] : values)
            record[key] = quoted(value);
        configuration[modules] = toJson({{"mac", toJson(record)}});
        return configuration;
    }
    JsonObject checkerWith(JsonObject const& values) const {
        return changed(m_gateway.hostcheckerConfiguration(), "hostcheckerDlls", values);
    }
    std::string checkerArchive() const {
        return signedArchive("module.so", readFile(testModule("test_hostchecker")));
    }
};

TEST_F(InstallTest, no_word_of_the_linker_in_a_name_leads_to_another_file) {
    std::string const library = "lib/x86_64-linux-gnu";
    std::pair<char const*, std::string> const cases[] = {{"$LIB", library},
                                                         {"${LIB}", library},
                                                         {"$PLATFORM", "x86_64"},
                                                         {"a$LIB", "a" + library},
                                                         {"$5", "x"}};
    for (auto const& [version, leadsTo] : cases) {
        // What the linker would load in place of the verified module: not even a host checker.
        fs::path const decoy = dataDirectory() + "/hostchecker/" + leadsTo;
        for (fs::path directory : {decoy, fs::path(dataDirectory() + "/hostchecker/lib64")}) {
            fs::create_directories(directory);
            fs::copy_file(testModule("test_plugin").str(), directory / "module.so",
                          fs::copy_options::overwrite_existing);
        }
        EXPECT_EQ(runWith(checkerWith({{"version", version}}), checkerArchive()), "onStatus 4") << version;
    }
}

TEST_F(InstallTest, load_errors_name_the_module_as_installed) {
    m_gateway.serve("/modules/module.zip", signedArchive("module.so", "no library"));
    m_gateway.serveResult(checkerWith({{"version", "$LIB"}}));
    EXPECT_EQ(runSession().back(), "onFatalError ");
    std::string const path = dataDirectory() + "/hostchecker/$LIB/module.so";
    EXPECT_TRUE(m_log->contains("Unable to load \"" + path + "\": " + path + ": ")) << m_log->text();
}

TEST_F(InstallTest, an_honest_session_succeeds_after_a_hostile_one) {
    std::string const bad = signatureOf(module() + "x");
    std::string const script = "script.txt";
    struct {
        char const* what;
        JsonObject configuration;
        Entries archive;
    } const cases[] = {
        {"another module's signature", m_gateway.pluginConfiguration(), with({{"module.so.sig", bad}})},
        {"no library", m_gateway.pluginConfiguration(), with({{"module.so", "x"}})},
        {"no signature", m_gateway.pluginConfiguration(), {{"module.so", module()}}},
        {"the installed names alone",
         m_gateway.pluginConfiguration(),
         {{"plugindll.so", "x"}, {"plugindll.so.sig", bad}}},
        {"the archive under the module's name",
         changed(m_gateway.pluginConfiguration(), "pluginDlls", {{"filename", "plugindll.so"}}),
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

TEST_F(InstallTest, what_was_there_stays_when_a_host_checker_does_not_verify) {
    ASSERT_EQ(runWith(checkerWith({}), checkerArchive()), "onStatus 4");
    Lines const before = filesAtHome();
    std::string const installed = dataDirectory() + "/hostchecker/7.1/module.so";
    std::string const content = readFile(String::copyOf(installed));
    Entries const hostile = {{"module.so", "x"}, {"module.so.sig", signatureOf("y")}, {"companion", "x"}};
    for (char const* const filename : {"evil.zip", "7.1", "7.1/companion", ".tarvik-record"}) {
        m_gateway.serve(std::string("/modules/") + filename, zipOf(hostile));
        runWith(checkerWith({{"filename", filename}}), checkerArchive());
        EXPECT_EQ(filesAtHome(), before) << filename;
        EXPECT_TRUE(readFile(String::copyOf(installed)) == content) << filename;
    }
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
        m_gateway.serveResult(checkerWith({{"version", "v" + number}, {"filename", number + ".zip"}}));
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
