#include "tarvikclient/sessionmark.h"

#include "base/log.h"
#include "base/ownfile.h"
#include "base/stringconversion.h"
#include "tarvikclient/keptforsignals.h"
#include "tarvikclient/modulecall.h"
#include "tarvikclient/signaltext.h"

#include <fcntl.h>
#include <stdlib.h> // NOLINT(modernize-deprecated-headers): mkostemps()
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <ctime>
#include <string>
#include <system_error>

namespace quillon {

namespace {

constexpr char runningWord[] = "running",
               endingWord[] = "ending "; // of one length: the one is written over the other
static_assert(sizeof runningWord == sizeof endingWord);
constexpr char prefix[] = "/session-", suffix[] = ".mark";

enum class State { none, running, ending };
constinit std::atomic<State> g_state{State::none};
constinit std::atomic<pid_t> g_process{0}; // a child that a module forks has no say
constinit SignalDescriptor g_mark;
constinit std::atomic<char const*> g_spareMark{nullptr}; // for an accident between two sessions

/// A file that nobody takes for a left one, or none. Whoever looks for those may have come between the making
/// and the locking, and has then taken it away.
Descriptor makeLocked(std::string& path) {
    Descriptor file(mkostemps(path.data(), sizeof suffix - 1, O_CLOEXEC));
    struct stat info {};
    if (file && flock(file.number(), LOCK_EX | LOCK_NB) == 0 && fstat(file.number(), &info) == 0 &&
        info.st_nlink == 1)
        return file;
    if (file)
        unlink(path.c_str());
    return Descriptor();
}

} // namespace

void SessionMark::begin(String const& directory, String const& log) noexcept {
    try {
        end();
        String const base = directory.trimRight('/') + prefix;
        g_spareMark = keptForSignals(base + toString(static_cast<int>(getpid())) + suffix);
        g_process = getpid();
        String const now = toString(static_cast<unsigned long>(std::time(nullptr)));
        if (make(base, String(runningWord) + " " + now + "\nlog " + log + "\n"))
            g_state = State::running;
        else
            quillon::log(ERROR, "SessionMark", "begin",
                         "No mark of this session: " +
                             String::copyOf(std::generic_category().message(errno)));
    } catch (std::exception const&) {
        // Without memory there are more urgent matters than a mark.
    }
}

bool SessionMark::make(String const& base, String const& text) {
    constexpr int tries = 3;
    for (int left = tries; left > 0; --left) {
        std::string path = std::string(base.view()) + "XXXXXX" + suffix;
        Descriptor file = makeLocked(path);
        if (!file)
            continue;
        m_path = String::copyOf(path);
        bool const written = writeAll(file, text.view());
        int const error = errno;
        if (written)
            g_mark.set(std::move(file));
        else
            end();
        errno = error;
        return written;
    }
    return false;
}

void SessionMark::end() noexcept {
    if (m_path.empty())
        return;
    g_state = State::none;
    unlink(m_path.str());
    m_path = String();
}

void SessionMark::expectEnd() noexcept {
    State expected = State::running;
    int const savedErrno = errno;
    if (getpid() == g_process && g_state.compare_exchange_strong(expected, State::ending)) [[maybe_unused]]
        ssize_t const written = pwrite(g_mark.number(), endingWord, sizeof endingWord - 1, 0);
    errno = savedErrno;
}

bool SessionMark::isEndUnexpected() noexcept {
    return g_state == State::running && getpid() == g_process;
}

void SessionMark::add(Accident accident) noexcept {
    ModuleCall::AtWork const work = ModuleCall::current();
    SignalText line;
    int file = g_mark.number();
    if (g_state != State::none) {
        lseek(file, 0, SEEK_END);
    } else {
        char const* const path = g_spareMark;
        file =
            path ? open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR) : -1;
        line.add(endingWord).add(" 0\n");
    }
    line.add(accident == Accident::crash ? "crashed " : "exited ");
    line.addNumber(static_cast<unsigned long>(std::time(nullptr))).add(" ");
    line.add(work.here ? work.call : "-").add(" ").add(work.module ? work.module : "-").add("\n");
    if (file >= 0)
        line.writeTo(file);
}

} // namespace quillon
