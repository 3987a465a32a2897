// Launch URLs, tickets, and what a gateway answers.
#include "attacks/attackfixture.h"

#include <chrono>
#include <csignal>
#include <thread>

#include <unistd.h>

namespace quillon::test {

namespace {

class ReplyAttack : public AttackTest {};

std::string const ok200 = "HTTP/1.1 200 OK\r\n";
std::string const chunked = ok200 + "Transfer-Encoding: chunked\r\n\r\n";
std::string const success = ok200 + "\r\n" + R"({"success":true,"result":)";
std::string const longLine = "X-a: " + std::string(1000, 'a') + "\r\n";

TEST_F(ReplyAttack, floods) {
    struct {
        char const* name;
        char const* path;
        Reply reply;
        Codes codes;
    } const cases[] = {
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
        {"one header", "/mediation", flood(ok200 + "X-a: ", "a", 300), {1, 2}},
        {"a status line", "/mediation", flood("HTTP/1.1 200 ", "a", 300), {1, 2}},
        {"cookies", "/mediation", flood(ok200, "Set-Cookie: a=b\r\n", 100), {1, 2}},
        {"interim replies", "/mediation", flood("", "HTTP/1.1 100 Continue\r\n\r\n", 100), {1, 2}},
        {"trailers", "/mediation", flood(chunked + "0\r\n", longLine, 300), {1, 2}},
        {"no HTTP", "/mediation", flood("", "x", 300), {1, 2}},
        {"trailers of an archive", "/modules/module.zip", flood(chunked + "0\r\n", longLine, 300), {1}},
        {"an archive",
         "/modules/module.zip",
         flood(ok200 + "Content-Length: 600000000\r\n\r\n", "x", 573),
         {1}},
        {"a host check's answer", "/hostcheck", flood(ok200 + "\r\n", "x", 300), {0}},
        {"its trailers", "/hostcheck", flood(chunked + "0\r\n", longLine, 300), {0}},
    };
    for (auto const& [name, path, reply, codes] : cases) {
        SCOPED_TRACE(name);
        restart();
        serve(Kind::hostchecker, honestArchive(Kind::hostchecker));
        m_gateway.serve("/hostcheck", json(R"({"success":true,"result":{}})"));
        m_gateway.serve(path, reply);
        int const code = run().code;
        EXPECT_TRUE(codes.contains(code)) << code;
    }
}

TEST_F(ReplyAttack, whole_replies_that_are_none) {
    std::string const manyKeys = [] {
        std::string keys;
        for (int i = 0; i < 100'000; ++i)
            keys += "\"k" + std::to_string(i) + "\":{},";
        return keys;
    }();
    struct {
        char const* name;
        Reply reply;
        Codes codes;
    } const cases[] = {
        {"nothing", silent(Reply::close), {2}},
        {"a reset", silent(Reply::reset), {2}},
        {"an empty body", ok(), {1}},
        {"a hundred thousand keys", json("{" + manyKeys + R"("success":false})"), {1}},
        {"a number for the envelope", json("1"), {1}},
        {"success as a text", json(R"({"success":"yes","result":{}})"), {1}},
        {"no result", json(R"({"success":true})"), {1}},
        {"a list for the result", json(R"({"success":true,"result":[]})"), {1}},
        {"an unknown kind", json(R"({"success":true,"result":{"type":"../x"}})"), {1}},
        {"UTF-16", ok(std::string("\xFF\xFE{\0}\0", 6)), {1}},
        {"two lengths", raw(ok200 + "Content-Length: 2\r\nContent-Length: 3\r\n\r\n{}"), {1, 2}},
        {"a length below zero", raw(ok200 + "Content-Length: -1\r\n\r\n{}"), {1, 2}},
        {"a length beyond all", raw(ok200 + "Content-Length: 99999999999999999999\r\n\r\n{}"), {1, 2}},
        {"a redirect to itself", status(302, "", {"Location: /mediation"}), {1, 2}},
        {"a redirect to a file", status(302, "", {"Location: file:///etc/passwd"}), {1, 2}},
        {"a coding that is none", ok("{}", {"Content-Encoding: gzip"}), {1, 2}},
        {"a login", status(401, "{}", {"WWW-Authenticate: Negotiate"}), {1, 2}},
        {"HTTP/3.0", raw("HTTP/3.0 200 OK\r\n\r\n{}"), {1, 2}},
    };
    for (auto const& [name, reply, codes] : cases) {
        SCOPED_TRACE(name);
        m_gateway.serve("/mediation", reply);
        int const code = run().code;
        EXPECT_TRUE(codes.contains(code)) << code;
    }
}

TEST_F(ReplyAttack, slow_replies_end_with_an_order_to_stop) {
    for (char const* const path : {"/mediation", "/modules/module.zip", "/certs/ca.pem"})
        for (auto const ending : {Reply::trickle, Reply::hold}) {
            SCOPED_TRACE(path);
            restart();
            serve(Kind::plugin, honestArchive(Kind::plugin));
            m_gateway.serve(path, raw(ok200 + "\r\n", ending));
            std::size_t const before = m_gateway.count(path);
            ChildProcess client = start(m_gateway.launchUrl());
            while (m_gateway.count(path) == before)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            auto const begin = std::chrono::steady_clock::now();
            client.signal(SIGTERM);
            EXPECT_EQ(client.wait(), 0);
            EXPECT_TRUE(client.output().ends_with("onStatus 4\n")) << client.output();
            EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(SANITIZED ? 15 : 5));
        }
}

TEST_F(ReplyAttack, urls_without_an_authority_ask_nobody) {
    std::string const host = m_gateway.server().authority();
    writeFile(
        String::copyOf(dataDirectory() + "/tarvikclient.xml"), // an exception for the host that no URL has
        "<tarvikclient><sslcertignoredomains><domains></domains></sslcertignoredomains></tarvikclient>");
    for (std::string const& url :
         {"https:/" + host + "/mediation", "https:///" + host + "/mediation",
          "tarvik://t@/" + host + "/mediation", "tarvik:/" + host + "/mediation",
          "tarvik:////" + host + "/mediation", "/" + host + "/mediation", "tarvik:" + host + "/mediation",
          "tarvik://t@:443/" + host, std::string("tarvik://"), std::string("tarvik:"),
          std::string("tarvik://@"), std::string("x")}) {
        std::size_t const before = m_gateway.server().requests().size();
        int const code = run(String::copyOf(url)).code;
        EXPECT_TRUE(code == 1 || code == 2) << url << ": " << code;
        EXPECT_EQ(m_gateway.server().requests().size(), before) << url;
    }
}

TEST_F(ReplyAttack, a_ticket_is_sent_whole_or_the_session_is_refused) {
    for (std::string const& ticket :
         {std::string(3000, 't'), std::string(4096, 't'), std::string(5000, 't'), std::string(60000, 't'),
          std::string("a\tb"), std::string("a%09b"), std::string("a b"), std::string("a,b"),
          std::string("a\"b"), std::string("a=b")}) {
        m_gateway.serve("/mediation", json(R"({"success":false})"));
        std::size_t const before = m_gateway.server().requests().size();
        EXPECT_EQ(run(m_gateway.launchUrl(ticket)).code, 1);
        auto const requests = m_gateway.server().requests();
        bool const sent = requests.size() > before;
        EXPECT_TRUE(!sent || requests.back().header("Cookie") == "Tarvik-Id=" + ticket)
            << ticket.substr(0, 40);
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
    struct {
        char const* name;
        std::string path;
        Reply reply;
        Kind kind;
        JsonObject module;
    } const cases[] = {
        {"an exception",
         "/mediation",
         json(R"({"success":false,"exception":")" + seen + escaped + "\"}"),
         {},
         {}},
        {"a host check's text",
         "/hostcheck",
         json(R"({"success":true,"result":{"info":")" + seen + escaped + "\"}}"),
         Kind::hostchecker,
         {}},
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
