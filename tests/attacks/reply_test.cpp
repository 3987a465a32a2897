// Launch URLs, tickets, and what a gateway answers.
#include "attacks/attackfixture.h"

#include <unistd.h>

namespace quillon::test {

namespace {

class ReplyAttack : public AttackTest {};

std::string const ok200 = "HTTP/1.1 200 OK\r\n";
std::string const chunked = ok200 + "Transfer-Encoding: chunked\r\n\r\n";
std::string const success = ok200 + "\r\n" + R"({"success":true,"result":)";
std::string const announced = ok200 + "Content-Length: 600000000\r\n\r\n";
std::string const longLine = "X-a: " + std::string(1000, 'a') + "\r\n";

TEST_F(ReplyAttack, floods) {
    std::tuple<char const*, char const*, Reply, Codes> const cases[] = {
        {"a body", "/mediation", flood(ok200 + "\r\n", "x", 300), {1, 2}},
        {"chunks", "/mediation", flood(chunked, "1\r\nx\r\n", 20), {1, 2}},
        {"a chunk's extension", "/mediation", flood(chunked + "1;", "x", 300), {1, 2}},
        {"arrays in arrays", "/mediation", flood(success, "[", 31), {1, 2}},
        {"objects in objects", "/mediation", flood(success, R"({"a":)", 31), {1, 2}},
        {"empty objects", "/mediation", flood(success + "[", "{},", 31), {1, 2}},
        {"one key", "/mediation", flood(success + "{", R"("k":0,)", 31), {1, 2}},
        {"one text", "/mediation", flood(success + "\"", "\\u0041", 31), {1, 2}},
        {"one number", "/mediation", flood(success, "9", 31), {1, 2}},
        {"headers", "/mediation", flood(ok200, longLine, 300), {1, 2}},
        {"a status line", "/mediation", flood("HTTP/1.1 200 ", "a", 300), {1, 2}},
        {"cookies", "/mediation", flood(ok200, "Set-Cookie: a=b\r\n", 100), {1, 2}},
        {"interim replies", "/mediation", flood("", "HTTP/1.1 100 Continue\r\n\r\n", 100), {1, 2}},
        {"trailers", "/mediation", flood(chunked + "0\r\n", longLine, 300), {1, 2}},
        {"trailers of an archive", "/modules/module.zip", flood(chunked + "0\r\n", longLine, 300), {1}},
        {"an archive", "/modules/module.zip", flood(announced, "x", 573), {1}},
        {"a host check's answer", "/hostcheck", flood(ok200 + "\r\n", "x", 300), {0}},
    };
    for (auto const& [name, path, reply, codes] : cases) {
        SCOPED_TRACE(name);
        restart();
        serve(Kind::hostchecker, honestArchive(Kind::hostchecker));
        m_gateway.serve("/hostcheck", json(R"({"success":true,"result":{}})"));
        m_gateway.serve(path, reply);
        int const code = run();
        EXPECT_TRUE(codes.contains(code)) << code;
    }
}

TEST_F(ReplyAttack, whole_replies_that_are_none) {
    std::pair<char const*, Reply> const cases[] = {
        {"two lengths", raw(ok200 + "Content-Length: 2\r\nContent-Length: 3\r\n\r\n{}")},
        {"a length below zero", raw(ok200 + "Content-Length: -1\r\n\r\n{}")},
        {"a length beyond all", raw(ok200 + "Content-Length: 99999999999999999999\r\n\r\n{}")},
        {"a redirect to itself", status(302, "", {"Location: /mediation"})},
        {"a redirect to a file", status(302, "", {"Location: file:///etc/passwd"})},
        {"a coding that is none", ok("{}", {"Content-Encoding: gzip"})},
        {"a login", status(401, "{}", {"WWW-Authenticate: Negotiate"})},
        {"HTTP/3.0", raw("HTTP/3.0 200 OK\r\n\r\n{}")},
    };
    for (auto const& [name, reply] : cases) {
        SCOPED_TRACE(name);
        m_gateway.serve("/mediation", reply);
        int const code = run();
        EXPECT_TRUE(code == 1 || code == 2) << code;
    }
}

/// The rows that read the log. All clients of this machine write it: in its own place where the machine's is
/// somebody else's.
class LogAttack : public AttackTest {
protected:
    std::string logOf(std::string const& mark) const {
        for (std::string const& path :
             {std::string("/tmp/tarvikclient.log"), dataDirectory() + "/tarvikclient.log"})
            if (std::string const text = readFile(String::copyOf(path)); text.find(mark) != std::string::npos)
                return text;
        return {};
    }
};

TEST_F(LogAttack, control_characters_reach_neither_the_log_nor_a_terminal) {
    std::string const raws = "\x1b]0;x\x07\x7f\u009b31m\u202e";
    std::string const escaped = R"(\u001b]0;x\u0007\u007f\u009b31m\u202e\r\b)";
    std::string const seen = "seen-" + std::to_string(getpid());
    Reply const exception = json(R"({"success":false,"exception":")" + seen + escaped + "\"}");
    Reply const checked = json(R"({"success":true,"result":{"info":")" + seen + escaped + "\"}}");
    std::tuple<char const*, std::string, Reply, Kind, JsonObject> const cases[] = {
        {"an exception", "/mediation", exception, {}, {}},
        {"a host check's text", "/hostcheck", checked, Kind::hostchecker, {}},
        {"a name", "", {}, Kind::plugin, {{"pattern", quoted("../" + seen + escaped)}}},
        {"a path", "", {}, Kind::plugin, {{"urlpath", quoted("/" + seen + escaped)}}},
        {"a version", "", {}, Kind::hostchecker, {{"version", quoted("../" + seen + escaped)}}},
        {"a reason phrase", "/mediation", raw("HTTP/1.1 500 " + seen + raws + "\r\n\r\n{}"), {}, {}},
        {"a JSON text that is none", "/mediation", ok("{" + seen + raws), {}, {}},
    };
    for (auto const& [name, path, reply, kind, module] : cases) {
        SCOPED_TRACE(name);
        m_gateway.serve("/hostcheck", json(R"({"success":true,"result":{}})"));
        serve(kind, honestArchive(kind), module);
        if (!path.empty())
            m_gateway.serve(path, reply);
        run();
        std::string const log = logOf("Tarvik directory is : " + dataDirectory());
        EXPECT_NE(log, "") << "the client left no log";
        EXPECT_FALSE(hasControlCharacters(log)) << log;
    }
    // What a module says is a gateway's text, too.
    writeFile(String::copyOf(directory(Kind::plugin) + "/script.txt"),
              R"([{"code":"5","status":")" + escaped + R"("},{"code":"8","reason":"1"}])");
    expectHonestSession(Kind::plugin);
}

} // namespace

} // namespace quillon::test
