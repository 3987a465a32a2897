// Modules, archives, certificates and their names.
#include "attacks/attackfixture.h"

#include <sys/stat.h>

#include <filesystem>

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

class InstallAttack : public AttackTest {};

std::string replaced(std::string text, std::string const& what, std::string const& by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
        text.replace(at, what.size(), by);
    return text;
}

void put(std::string const& path, std::string const& content) {
    fs::create_directories(fs::path(path).parent_path());
    writeFile(String::copyOf(path), content);
}

TEST_F(InstallAttack, words_that_the_dynamic_linker_replaces_in_paths) {
    std::pair<char const*, std::vector<std::string>> const words[] = {
        {"LIB", {"lib", "lib64", "lib/x86_64-linux-gnu"}},
        {"PLATFORM", {"x86_64", "haswell", "xeon_phi", "aarch64"}},
        {"ORIGIN", {TEST_PROGRAMS}}};
    std::pair<char const*, char const*> const places[] = {
        {"@", "module.so"}, {"7.1", "@/module.so"}, {"v/a@/w", "module.so"}, {"@", "@/@"}};
    for (auto const& [word, values] : words)
        for (auto const& [version, pattern] : places)
            for (std::string const& written : {std::string("$") + word, std::string("${") + word + "}"}) {
                restart();
                std::string const path = directory(Kind::hostchecker) + "/" + version + "/" + pattern;
                for (std::string const& value : values)
                    put(replaced(path, "@", value), hostileModule());
                std::string const name = replaced(pattern, "@", written);
                std::string const entry = fs::path(name).filename(); // unpacked into the module's directory
                serve(Kind::hostchecker, signedArchive(entry, honestModule(Kind::hostchecker)),
                      {{"version", quoted(replaced(version, "@", written))}, {"pattern", quoted(name)}});
                EXPECT_EQ(run(), 0) << name << " in " << version << " for " << written;
                EXPECT_NE(calls(Kind::hostchecker), "") << name;
            }
}

TEST_F(InstallAttack, archives_that_are_not_the_publishers_and_stand_in_the_way_of_nothing) {
    for (Kind const kind : {Kind::plugin, Kind::hostchecker}) {
        std::string const genuine = honestModule(kind);
        std::string const signature = signatureOf(genuine);
        std::string const other = signatureOf(hostileModule() + "?");
        std::string const hostile = zipOf({{"module.so", hostileModule()}});
        std::string const honest = honestArchive(kind);
        std::string const asModule = kind == Kind::plugin ? "plugindll.so" : "7.1/module.so";
        auto const named = [](std::string const& file) { return JsonObject{{"filename", quoted(file)}}; };
        std::tuple<char const*, std::string, JsonObject> const cases[] = {
            {"unsigned", hostile, {}},
            {"with another's signature",
             zipOf({{"module.so", hostileModule()}, {"module.so.sig", signature}}),
             {}},
            {"with a signature of something else",
             zipOf({{"module.so", genuine}, {"module.so.sig", other}}),
             {}},
            {"no XML", zipOf({{"module.so", genuine}, {"module.so.sig", std::string(70000, '<')}}), {}},
            {"empty", zipOf({}), {}},
            {"no archive", "PK", {}},
            {"a directory for the module", zipOf({{"module.so/x", ""}, {"module.so.sig/x", ""}}), {}},
            {"one for the installed module", zipOf({{"plugindll.so/x", ""}, {"plugindll.so.sig/x", ""}}), {}},
            {"one for the archive", zipOf({{"module.zip/x", ""}, {"module.so", hostileModule()}}), {}},
            {"a file for the version's directory",
             zipOf({{"7.1", "x"}, {"hostchecker", "x"}, {"PKIs", "x"}}),
             {{"version", quoted(".")}, {"pattern", quoted("7.1")}}},
            {"named as the version", honest, named("7.1")},
            {"named as the certificates", honest, named("PKIs/acme")},
            {"named as the module", hostile, named(asModule)},
            {"named as the signature", hostile, named(asModule + ".sig")},
        };
        for (auto const& [name, archive, module] : cases) {
            SCOPED_TRACE(std::string(name) + (kind == Kind::plugin ? ", plug-in" : ", host checker"));
            restart();
            serve(kind, archive, module);
            int const code = run();
            EXPECT_TRUE(code == 1 || (code == 0 && archive == honest)) << code;
            expectHonestSession(kind);
        }
    }
}

TEST_F(InstallAttack, installed_modules_that_were_replaced) {
    std::string const kept = m_elsewhere.path() + "/module.so";
    for (Kind const kind : {Kind::plugin, Kind::hostchecker}) {
        put(kept, honestModule(kind));
        std::pair<char const*, std::function<void(std::string const&)>> const cases[] = {
            {"by a stranger's", [&](auto& module) { put(module, hostileModule()); }},
            {"in its signature", [&](auto& module) { put(module + ".sig", signatureOf("x")); }},
            {"by a directory", [&](auto& module) { fs::remove(module), fs::create_directory(module); }},
            {"by a FIFO", [&](auto& module) { fs::remove(module), mkfifo(module.c_str(), 0600); }},
            {"by an empty file", [&](auto& module) { put(module, ""); }},
        };
        for (auto const& [name, replace] : cases) {
            SCOPED_TRACE(std::string(name) + (kind == Kind::plugin ? ", plug-in" : ", host checker"));
            restart();
            expectHonestSession(kind);
            replace(installed(kind));
            int const code = run();
            EXPECT_TRUE(code == 0 || code == 1) << code; // fetched anew, or refused
        }
        // A link to a genuine module could lead to another file by the time it is loaded.
        for (bool const hard : {false, true}) {
            restart();
            expectHonestSession(kind);
            std::string const module = installed(kind);
            fs::remove(module);
            hard ? fs::create_hard_link(kept, module) : fs::create_symlink(kept, module);
            m_gateway.serve("/modules/module.zip", status(503));
            EXPECT_EQ(run(), 1) << (hard ? "hard" : "symbolic");
        }
    }
}

TEST_F(InstallAttack, what_stands_where_a_download_goes_is_never_written_into) {
    std::string const victim = m_elsewhere.path() + "/victim";
    std::tuple<char const*, std::function<void(std::string const&)>, int> const cases[] = {
        {"a link", [&](auto& path) { fs::create_symlink(victim, path); }, 0},
        {"a link to nothing", [&](auto& path) { fs::create_symlink(victim + "-new", path); }, 0},
        {"a hard link", [&](auto& path) { fs::create_hard_link(victim, path); }, 0},
        {"a FIFO", [&](auto& path) { mkfifo(path.c_str(), 0600); }, 0},
        {"a directory", [&](auto& path) { fs::create_directories(path + "/x"); }, 1},
    };
    std::string const archive = "module.zip";
    std::pair<Kind, std::string> const places[] = {
        {Kind::plugin, archive}, {Kind::hostchecker, archive}, {Kind::plugin, "PKIs/acme/ca.pem"}};
    for (auto const& [kind, file] : places)
        for (auto const& [name, place, code] : cases) {
            SCOPED_TRACE(std::string(name) + " at " + file);
            restart();
            writeFile(String::copyOf(victim), "precious");
            fs::remove(victim + "-new");
            std::string const path = directory(kind) + "/" + file;
            fs::create_directories(fs::path(path).parent_path());
            place(path);
            serve(kind, honestArchive(kind));
            EXPECT_EQ(run(), file == archive ? code : 0); // a session goes on without its certificates
            EXPECT_TRUE(readFile(String::copyOf(victim)) == "precious");
            EXPECT_FALSE(fs::exists(victim + "-new"));
        }
}

TEST_F(InstallAttack, certificates_of_odd_names_and_sizes) {
    std::string const cut = "HTTP/1.1 200 OK\r\nContent-Length: 30000000\r\n\r\nx";
    std::vector<std::pair<std::string, Reply>> cases = {
        {"../plugindll.so", ok(hostileModule())},
        {"c.pem", ok("")},
        {"c.pem", status(200, "", {"Content-Range: bytes 0-0/1"})},
        {"c.pem", flood("HTTP/1.1 200 OK\r\n\r\n", "x", 30)},
        {"c.pem", raw(cut)},
    };
    for (char const* const name : {"", ".", "..", "../../../x", "/etc/x", "a/../b", "a\\u0000b", "a\\nb", "~",
                                   "$HOME", "-rf", "client.pem/x"})
        cases.emplace_back(name, ok("x")); // as it stands in the JSON text
    for (std::size_t const length : {300, 5000})
        cases.emplace_back(std::string(length, 'n'), ok("x"));
    for (auto const& [name, reply] : cases) {
        SCOPED_TRACE(name.substr(0, 40));
        restart();
        serve(Kind::plugin, honestArchive(Kind::plugin));
        JsonObject configuration = m_gateway.pluginConfiguration();
        JsonObject const download{{"filename", quoted(name)}, {"urlpath", quoted("/certs/odd?")}};
        configuration["certificates"] = toJson({{"cert", toJson(download)}, {"ca", toJson(download)}});
        m_gateway.serve("/certs/odd", reply);
        m_gateway.serveResult(configuration);
        EXPECT_EQ(run(), 0); // a session goes on without its certificates
        EXPECT_FALSE(fs::exists(dataDirectory() + "/x"));
    }
}

TEST_F(InstallAttack, companions_are_found_and_a_manifest_keeps_strangers_out) {
    std::string const companion = "test_companion.so";
    for (Kind const kind : {Kind::plugin, Kind::hostchecker}) {
        std::string const name =
            kind == Kind::plugin ? "test_plugin_companion" : "test_hostchecker_companion";
        std::string const module = readFile(testModule(name));
        std::string const genuine = readFile(testModule("test_companion"));
        restart();
        expectHonestSession(
            kind,
            zipOf({{"module.so", module}, {"module.so.sig", signatureOf(module)}, {companion, genuine}}));
        std::string const record = calls(kind);
        EXPECT_NE(record.find("companion genuine\ndirectory its own\n"), std::string::npos) << record;

        std::string const signedFile = m_elsewhere.path() + "/module.so";
        put(signedFile, module);
        put(m_elsewhere.path() + "/" + companion, genuine);
        ChildProcess tool({TEST_PROGRAMS "/tarvik-signmodule", "sign", "--key", TEST_PRIVATE_KEY, "--name",
                           "n", "--version", "1", "--kind", kind == Kind::plugin ? "plugin" : "hostchecker",
                           "--platform", "linux-x86_64", "--companion", m_elsewhere.path() + "/" + companion,
                           signedFile});
        ASSERT_EQ(tool.wait(), 0) << tool.errors();
        std::string const manifest = readFile(String::copyOf(signedFile + ".sig"));
        restart();
        serve(kind,
              zipOf({{"module.so", module}, {"module.so.sig", manifest}, {companion, hostileModule()}}));
        EXPECT_EQ(run(), 1);
        expectHonestSession(
            kind, zipOf({{"module.so", module}, {"module.so.sig", manifest}, {companion, genuine}}));
        EXPECT_NE(calls(kind).find("companion genuine\n"), std::string::npos);
    }
}

} // namespace

} // namespace quillon::test
