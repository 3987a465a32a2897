#include "attacks/attackfixture.h"

#include <filesystem>

namespace quillon::test {

namespace fs = std::filesystem;

AttackTest::AttackTest() {
    m_gateway.serve("/certs/client.pem", "client");
    m_gateway.serve("/certs/ca.pem", "ca");
    m_gateway.serve("/hostcheck", json(R"({"success":true,"result":{}})"));
    restart();
}

void AttackTest::restart() {
    m_home = std::make_unique<TemporaryDirectory>();
    fs::create_directories(directory(Kind::plugin));
    // The module asks for the session's end at once.
    writeFile(String::copyOf(directory(Kind::plugin) + "/script.txt"), R"([{"code":"8","reason":"1"}])");
    writeFile(String::copyOf(dataDirectory() + "/tarvikclient.xml"), m_gateway.settings());
}

ChildProcess::Environment AttackTest::environment() const {
    return {{"HOME", home()}, {"TARVIK_TEST_MARK", mark()}};
}

ChildProcess AttackTest::start(String const& url) const {
    return ChildProcess({TEST_PROGRAMS "/tarvikclient-cli", std::string(url.view())}, environment());
}

int AttackTest::run(String const& url) {
    ++m_sessions;
    ChildProcess client = start(url);
    int const code = client.wait();
    EXPECT_FALSE(fs::exists(mark())) << "a stranger's code ran";
    fs::remove(mark());
    EXPECT_TRUE(SANITIZED || client.peakKiB() < peakLimitKiB) << client.peakKiB() << " KiB";
    EXPECT_FALSE(hasControlCharacters(client.output())) << client.output();
    checkHome();
    return code;
}

void AttackTest::checkHome() const {
    std::uintmax_t size = 0;
    for (auto const& entry : fs::directory_iterator(home()))
        EXPECT_EQ(entry.path(), dataDirectory());
    for (auto const& entry : fs::recursive_directory_iterator(home()))
        size += entry.is_regular_file() ? entry.file_size() : 0;
    EXPECT_LT(size, homeLimit);
}

void AttackTest::serve(Kind kind, std::string const& archive, JsonObject const& module) {
    bool const plugin = kind == Kind::plugin;
    JsonObject result = plugin ? m_gateway.pluginConfiguration() : m_gateway.hostcheckerConfiguration();
    result[plugin ? "pluginDlls" : "hostcheckerDlls"] = FakeGateway::modules(module);
    m_gateway.serveResult(result);
    std::string const name = module.contains("filename") ? module.at("filename") : quoted("module.zip");
    m_gateway.serve("/modules/" + name.substr(1, name.size() - 2), archive);
}

void AttackTest::expectHonestSession(Kind kind, std::string const& module) {
    fs::remove(directory(kind) + "/calls.log");
    serve(kind, module.empty() ? honestArchive(kind) : module);
    EXPECT_EQ(run(), 0);
    EXPECT_NE(calls(kind), "") << "the module was not called";
}

std::string AttackTest::directory(Kind kind) const {
    return dataDirectory() + (kind == Kind::plugin ? "/Plugin" : "/hostchecker");
}

std::string AttackTest::installed(Kind kind) const {
    return directory(kind) + (kind == Kind::plugin ? "/plugindll.so" : "/7.1/module.so");
}

std::string AttackTest::calls(Kind kind) const {
    return readFile(String::copyOf(directory(kind) + "/calls.log"));
}

std::string hostileModule() {
    return readFile(testModule("test_mark"));
}

std::string honestModule(Kind kind) {
    return readFile(testModule(kind == Kind::plugin ? "test_plugin" : "test_hostchecker"));
}

Reply flood(std::string const& head, std::string const& piece, std::size_t megabytes) {
    constexpr std::size_t blockSize = 1 << 16;
    Reply reply = raw(head);
    while (reply.again.size() < blockSize)
        reply.again += piece;
    reply.times = (megabytes << 20) / reply.again.size();
    return reply;
}

bool hasControlCharacters(std::string const& text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char const byte = static_cast<unsigned char>(text[i]);
        if ((byte < ' ' && byte != '\n') || byte == 0x7F)
            return true;
        std::string_view const rest = std::string_view(text).substr(i);
        if (rest[0] == '\xC2' && rest.size() > 1 && static_cast<unsigned char>(rest[1]) < 0xA0)
            return true;
        for (char const* const turn : {"\u200E", "\u200F", "\u202A", "\u202B", "\u202C", "\u202D", "\u202E",
                                       "\u2066", "\u2067", "\u2068", "\u2069"})
            if (rest.starts_with(turn))
                return true;
    }
    return false;
}

} // namespace quillon::test
