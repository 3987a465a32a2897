// What the administrator learns of each session.
#pragma once

#include "base/string.h"

#include <functional>
#include <vector>

namespace quillon {

/// Collects one session's facts and writes them as one line:
///
///     session gateway="gate.example:8443" module="plugin" sha256="Ab…=" outcome="finished"
///
/// The line holds no user and no ticket, is at most 2 KB long, and in its values everything but printable
/// ASCII stands as "\xNN", quotes and backslashes too. Client thread.
class SessionAudit {
public:
    /// Takes a finished line; called on the client thread.
    using Sink = std::function<void(String const& line)>;

    explicit SessionAudit(Sink sink = &toSystemLog) : m_sink(std::move(sink)) {}

    /// A new session; forgets the last one.
    void begin();
    /// An authority as a URL has it; what stands before an "@" is left out.
    void setGateway(String const& authority);
    /// A module that is about to be loaded: its signed name, and the SHA-256 of its file as its record has
    /// it. Of a session's modules the first ones are named.
    void setModule(String const& name, String const& sha256);
    /// How the session ends; the last word counts. A word of the program's own.
    void setOutcome(char const* outcome) { m_outcome = outcome; }
    /// Writes the line. Never throws.
    void write() const noexcept;

    /// Where lines go in a program: the system's log, facility "user".
    static void toSystemLog(String const& line);

private:
    struct Module {
        String name;
        String sha256;
    };

    Sink m_sink;
    String m_gateway;
    std::vector<Module> m_modules;
    char const* m_outcome = "";
};

} // namespace quillon
