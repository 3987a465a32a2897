// A victim's home, a hostile gateway, and the headless client between them.
#pragma once

#include "client/fakegateway.h"
#include "client/signedmodule.h"
#include "e2e/childprocess.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <set>

namespace quillon::test {

enum class Kind { plugin, hostchecker };

/// The exit codes that an attack may end with.
using Codes = std::set<int>;

/// What every attack has in common: run() checks after each session that the mark module was not loaded, that
/// the client's memory stayed bounded, that nothing but the data directory changed in the home, that little
/// is left in it, and that standard output holds no control characters.
class AttackTest : public ::testing::Test {
protected:
    static constexpr long peakLimitKiB = 200 * 1024;
    static constexpr std::uintmax_t homeLimit = 17 << 20; // an archive goes; a certificate may have 16 MB

    AttackTest();
    ~AttackTest() override { std::printf("sessions: %u\n", m_sessions); }

    /// A session with the headless client. Its exit code.
    int run(String const& url);
    int run() { return run(m_gateway.launchUrl()); }
    ChildProcess start(String const& url) const;
    ChildProcess::Environment environment() const;

    /// Serves a session of the kind whose module comes in this archive. `module` overrides keys of the
    /// download, as JSON texts.
    void serve(Kind kind, std::string const& archive, JsonObject const& module = {});
    /// A session as it should be, with the module of that name: ends well and calls the module.
    void expectHonestSession(Kind kind, std::string const& module = "");
    /// Makes the home new.
    void restart();

    std::string dataDirectory() const { return home() + "/.Tarvik"; }
    std::string directory(Kind kind) const;
    std::string installed(Kind kind) const;
    std::string calls(Kind kind) const;
    std::string home() const { return m_home->path(); }
    std::string mark() const { return m_elsewhere.path() + "/mark"; }

    FakeGateway m_gateway;
    TemporaryDirectory m_elsewhere; // for files that the client must leave alone

private:
    void checkHome() const;

    std::unique_ptr<TemporaryDirectory> m_home;
    unsigned m_sessions = 0;
};

/// The mark module without a signature that fits it.
std::string hostileModule();
std::string honestModule(Kind kind);
inline std::string honestArchive(Kind kind) {
    return signedArchive("module.so", honestModule(kind));
}
/// A reply of `head`, then `piece` again and again, `megabytes` in all; then the connection is closed.
Reply flood(std::string const& head, std::string const& piece, std::size_t megabytes);
/// Whether a terminal that shows this text might obey it: control characters other than the line end, and
/// those that turn the direction of writing.
bool hasControlCharacters(std::string const& text);

} // namespace quillon::test
